#include "graph.h"
#include "support/patience.h"

#include <QProcess>
#include <QtTest>

#include <sstream>

namespace
{
using Pairs = QVector<QPair<int, int>>;

/// What nauty's program writes when it is given @p input.
QByteArray nauty(const QString &program, const QStringList &arguments, const QByteArray &input = QByteArray())
{
    QProcess process;
    process.start(QStringLiteral("nauty-") + program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patience) || process.exitCode() != 0) {
        qFatal("nauty-%s: %s", qPrintable(program), qPrintable(process.errorString()));
    }
    return process.readAllStandardOutput();
}

/// The edges of the next graph in the output of showg: the number of vertices, the number of edges and their ends.
Pairs readEdges(std::istream &in, int &vertices)
{
    int count = 0;
    in >> vertices >> count;
    Pairs edges(count);
    for (QPair<int, int> &edge : edges) {
        in >> edge.first >> edge.second;
    }
    return edges;
}

Pairs edgesOf(const Graph &graph)
{
    Pairs edges;
    for (int i = 0; i < graph.getNbNodes(); ++i) {
        for (int j = i + 1; j < graph.getNbNodes(); ++j) {
            if (graph.edge(i, j)) {
                edges.append({i, j});
            }
        }
    }
    return edges;
}
} // namespace

/// The graph6 strings of the viewer against those of nauty.
class TestGraph6Nauty : public QObject
{
    Q_OBJECT

private slots:
    void allSmallGraphs_data();
    void allSmallGraphs();
    void randomGraphs_data();
    void randomGraphs();

private:
    void compare(const QByteArray &lines);

    Graph graph{QStringLiteral("graph"), false};
};

/// Reads every line as a string and from a stream, and writes it again.
void TestGraph6Nauty::compare(const QByteArray &lines)
{
    std::istringstream stream(lines.toStdString());
    std::istringstream shown(nauty(QStringLiteral("showg"), {QStringLiteral("-eq")}, lines).toStdString());
    for (const QByteArray &line : lines.trimmed().split('\n')) {
        int vertices = 0;
        const Pairs edges = readEdges(shown, vertices);
        const QString name = QString::fromLatin1(line);

        QVERIFY2(graph.loadg6(name, true), line.constData());
        QVERIFY2(graph.getNbNodes() == vertices && edgesOf(graph) == edges, line.constData());
        QCOMPARE(graph.g6currentGraphData(), name);

        QVERIFY2(graph.loadg6(stream), line.constData());
        QVERIFY2(graph.getNbNodes() == vertices && edgesOf(graph) == edges, line.constData());
        QCOMPARE(graph.g6currentGraphData(), name);
    }
    QVERIFY(shown.good());
    QCOMPARE(stream.get(), std::char_traits<char>::eof());
}

void TestGraph6Nauty::allSmallGraphs_data()
{
    QTest::addColumn<int>("vertices");
    QTest::addColumn<int>("graphs");
    QTest::newRow("2") << 2 << 2;
    QTest::newRow("3") << 3 << 4;
    QTest::newRow("4") << 4 << 11;
    QTest::newRow("5") << 5 << 34;
    QTest::newRow("6") << 6 << 156;
    QTest::newRow("7") << 7 << 1044;
}

void TestGraph6Nauty::allSmallGraphs()
{
    QFETCH(int, vertices);
    QFETCH(int, graphs);
    const QByteArray lines = nauty(QStringLiteral("geng"), {QStringLiteral("-q"), QString::number(vertices)});
    QCOMPARE(lines.count('\n'), graphs);
    compare(lines);
}

void TestGraph6Nauty::randomGraphs_data()
{
    QTest::addColumn<int>("vertices");
    for (int vertices = 8; vertices < Graph::MAX_NODES; ++vertices) {
        QTest::newRow(qPrintable(QString::number(vertices))) << vertices;
    }
}

void TestGraph6Nauty::randomGraphs()
{
    QFETCH(int, vertices);
    const QByteArray lines =
        nauty(QStringLiteral("genrang"), {QStringLiteral("-gqS1"), QString::number(vertices), QStringLiteral("20")});
    QCOMPARE(lines.count('\n'), 20);
    compare(lines);
}

QTEST_MAIN(TestGraph6Nauty)
#include "tst_graph6_nauty.moc"
