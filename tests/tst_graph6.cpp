// graph6 strings read into the viewer and written from it; nauty reads and writes the same.

#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/literals.h"
#include "support/plaingraph6.h"
#include "support/runprogram.h"
#include "support/stderrcapture.h"

#include <QtTest>

#include <random>
#include <sstream>

namespace
{
using Pairs = QVector<QPair<int, int>>;

Pairs edgesOf(const Graph &graph)
{
    Pairs pairs;
    for (int i = 0; i < graph.getNbNodes(); ++i) {
        for (int j = i + 1; j < graph.getNbNodes(); ++j) {
            if (graph.edge(i, j)) {
                pairs.append({i, j});
            }
        }
    }
    return pairs;
}

/// The edges of the next graph in the output of nauty's showg: the number of vertices, the number of edges and their
/// ends.
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

Pairs randomPairs(int n, std::mt19937 &random)
{
    Pairs pairs;
    const unsigned density = 1 + random() % 9;
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (random() % 10 < density) {
                pairs.append({i, j});
            }
        }
    }
    return pairs;
}
} // namespace

class TestGraph6 : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void vertexCountsOutsideTheFormat_data();
    void vertexCountsOutsideTheFormat();
    void writes();
    void tooManyVerticesToWrite();
    void negativeCountWritesTheEmptyGraph();
    void freshPublishesTheVerticesBeforeTheEdges();
    void notFreshKeepsTheItemsAndReplacesTheEdges();
    void countsOneChangeAndOnePerPair();
    void missingAndStrangeCharacters_data();
    void missingAndStrangeCharacters();
    void agreesWithASecondCodec();
    void agreesWithNautyOnSmallGraphs_data();
    void agreesWithNautyOnSmallGraphs();
    void agreesWithNautyOnRandomGraphs_data();
    void agreesWithNautyOnRandomGraphs();

private:
    static void compareWithNauty(const QByteArray &lines);
};

void TestGraph6::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("n");
    QTest::addColumn<Pairs>("edges");
    QTest::newRow("two joined vertices") << latin1("A_") << 2 << Pairs{{0, 1}};
    QTest::newRow("two isolated vertices") << latin1("A?") << 2 << Pairs{};
    QTest::newRow("path of three") << latin1("Bg") << 3 << Pairs{{0, 1}, {1, 2}};
    QTest::newRow("complete graph on four")
        << latin1("C~") << 4 << Pairs{{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
    QTest::newRow("path of five") << latin1("DhC") << 5 << Pairs{{0, 1}, {1, 2}, {2, 3}, {3, 4}};
    QTest::newRow("petersen graph") << latin1("IheA@GUAo") << 10
                                    << Pairs{{0, 1}, {0, 4}, {0, 5}, {1, 2}, {1, 6}, {2, 3}, {2, 7}, {3, 4},
                                             {3, 8}, {4, 9}, {5, 7}, {5, 8}, {6, 8}, {6, 9}, {7, 9}};
}

void TestGraph6::reads()
{
    QFETCH(QString, text);
    QFETCH(int, n);
    QFETCH(Pairs, edges);
    Graph graph(latin1("test"), true);
    QVERIFY(graph.loadg6(text, true));
    QCOMPARE(graph.getNbNodes(), n);
    QCOMPARE(edgesOf(graph), edges);
    QCOMPARE(graph.g6currentGraphData(), text);

    Graph inPlace(latin1("test"), false);
    QVERIFY(inPlace.loadg6(text, false));
    QCOMPARE(inPlace.getNbNodes(), n);
    QCOMPARE(edgesOf(inPlace), edges);
}

void TestGraph6::vertexCountsOutsideTheFormat_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("freshCount");
    QTest::addColumn<int>("countInPlace");
    QTest::newRow("no vertex") << latin1("?") << 0 << 0;
    QTest::newRow("one vertex") << latin1("@") << 1 << 1;
    QTest::newRow("32 vertices") << QStringLiteral("_") + QString(83, QLatin1Char('~')) << 32 << 32;
    QTest::newRow("33 vertices") << QStringLiteral("`") + QString(88, QLatin1Char('~')) << 32 << 33;
    QTest::newRow("62 vertices") << latin1("}~~") << 32 << 62;
    QTest::newRow("large size field") << latin1("~?@?") << 32 << 63;
    QTest::newRow("header") << latin1(">>graph6<<A_") << 0 << -1;
    QTest::newRow("empty") << QString() << 0 << -63;
    QTest::newRow("latin-1") << QString(QChar(0xff)) << 32 << 192;
    QTest::newRow("beyond latin-1") << QString(QChar(0x2603)) + latin1("_") << 0 << -63;
}

void TestGraph6::vertexCountsOutsideTheFormat()
{
    QFETCH(QString, text);
    Graph graph(latin1("test"), true);
    QVERIFY(!graph.loadg6(text, true));
    QTEST(graph.getNbNodes(), "freshCount");
    QCOMPARE(graph.getNbEdges(), 0);

    Graph inPlace(latin1("test"), true);
    QVERIFY(!inPlace.loadg6(text, false));
    QTEST(inPlace.getNbNodes(), "countInPlace");
}

void TestGraph6::writes()
{
    Graph graph(latin1("test"), false);
    graph.clear();
    QCOMPARE(graph.g6currentGraphData(), latin1("?"));
    graph.addNode();
    QCOMPARE(graph.g6currentGraphData(), latin1("@"));
    graph.addNode();
    QCOMPARE(graph.g6currentGraphData(), latin1("A?"));
    graph.addNode();
    graph.addEdge(0, 1);
    graph.addEdge(1, 2);
    QCOMPARE(graph.g6currentGraphData(), latin1("Bg"));
}

void TestGraph6::tooManyVerticesToWrite()
{
    Graph graph(latin1("test"), false);
    graph.loadg6(latin1("`"), false);
    StderrCapture errors;
    const QString text = graph.g6currentGraphData();
    QCOMPARE(errors.take(), QByteArray("Graph too large for g6 format\n"));
    QCOMPARE(text, latin1("0"));
    graph.randomGraph(32);
    QCOMPARE(graph.g6currentGraphData().size(), 1 + 83);
    QCOMPARE(graph.g6currentGraphData().at(0), QLatin1Char('_'));
}

void TestGraph6::negativeCountWritesTheEmptyGraph()
{
    Graph graph(latin1("test"), false);
    graph.loadg6(QString(), false);
    QCOMPARE(graph.g6currentGraphData(), latin1("?"));
}

void TestGraph6::freshPublishesTheVerticesBeforeTheEdges()
{
    Graph graph(latin1("test"), true);
    QVERIFY(graph.loadg6(latin1("Bw"), true));
    graph.update_display();
    QVERIFY(graph.edge(0, 1));
    QVERIFY(!graph.bestEdge(0, 1));
    QVERIFY(graph.node(2)->isVisible());
    QVERIFY(!graph.node(3)->isVisible());
    QVERIFY(!graph.edgeItem(0, 1)->isVisible());
    graph.changeBest();
    graph.update_display();
    QVERIFY(graph.bestEdge(0, 1));
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
}

void TestGraph6::notFreshKeepsTheItemsAndReplacesTheEdges()
{
    Graph graph(latin1("test"), true);
    QVERIFY(graph.loadg6(latin1("Bw"), true));
    graph.changeBest();
    graph.setPos(0, 1.0, 2.0, 3.0);
    graph.setPos(1, 4.0, 5.0, 6.0);
    QVERIFY(graph.loadg6(latin1("Bg"), false));
    QCOMPARE(edgesOf(graph), (Pairs{{0, 1}, {1, 2}}));
    QCOMPARE(graph.node(0)->pos(), QPointF(1.0, 2.0));
    QCOMPARE(graph.node(1)->pos(), QPointF(4.0, 5.0));
    QVERIFY2(graph.bestEdge(0, 2), "the best graph changes only when the current one is published");
}

void TestGraph6::countsOneChangeAndOnePerPair()
{
    Graph graph(latin1("test"), false);
    const int before = graph.getID();
    QVERIFY(graph.loadg6(latin1("DhC"), false));
    QCOMPARE(graph.getID() - before, 1 + 10);
    QVERIFY(graph.loadg6(latin1("DhC"), true));
    // One change, 496 removals of clear(), 5 vertices, 10 pairs.
    QCOMPARE(graph.getID() - before, 1 + 10 + 1 + 496 + 5 + 10);
    QVERIFY(!graph.loadg6(latin1("}"), false));
    QCOMPARE(graph.getID() - before, 1 + 10 + 1 + 496 + 5 + 10 + 1);
}

void TestGraph6::missingAndStrangeCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("readAs");
    QTest::newRow("size only") << latin1("D") << latin1("D??");
    QTest::newRow("one character missing") << latin1("D~") << latin1("D~?");
    QTest::newRow("more than needed") << latin1("Bg~~~~") << latin1("Bg");
    QTest::newRow("padding bits set") << latin1("A~") << latin1("A_");
    // Outside the alphabet the low six bits of the difference count: '>' is 62 - 63 = -1.
    QTest::newRow("below the alphabet") << latin1("B>") << latin1("Bw");
    QTest::newRow("beyond Latin-1") << QStringLiteral("B") + QChar(0x2603) << latin1("B?");
}

void TestGraph6::missingAndStrangeCharacters()
{
    QFETCH(QString, text);
    for (const bool fresh : {true, false}) {
        Graph graph(latin1("test"), false);
        QVERIFY(graph.loadg6(text, fresh));
        QTEST(graph.g6currentGraphData(), "readAs");
    }
}

void TestGraph6::agreesWithASecondCodec()
{
    std::mt19937 random(6);
    Graph graph(latin1("test"), false);
    for (int n = 2; n <= 31; ++n) {
        for (int round = 0; round < 4; ++round) {
            const Pairs pairs = randomPairs(n, random);
            const QString text = QString::fromLatin1(plainGraph6(n, [&pairs](int i, int j) {
                return pairs.contains({i, j});
            }));
            QVERIFY(graph.loadg6(text, round % 2 == 0));
            QCOMPARE(edgesOf(graph), pairs);
            QCOMPARE(graph.g6currentGraphData(), text);
        }
    }
}

/// Reads every line as a string and from a stream, and writes it again.
void TestGraph6::compareWithNauty(const QByteArray &lines)
{
    Graph graph(latin1("test"), false);
    std::istringstream stream(lines.toStdString());
    std::istringstream shown(outputOf(QStringLiteral("nauty-showg"), {QStringLiteral("-eq")}, lines).toStdString());
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

void TestGraph6::agreesWithNautyOnSmallGraphs_data()
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

void TestGraph6::agreesWithNautyOnSmallGraphs()
{
    QFETCH(int, vertices);
    QFETCH(int, graphs);
    const QByteArray lines = outputOf(QStringLiteral("nauty-geng"), {QStringLiteral("-q"), QString::number(vertices)});
    QCOMPARE(lines.count('\n'), graphs);
    compareWithNauty(lines);
}

void TestGraph6::agreesWithNautyOnRandomGraphs_data()
{
    QTest::addColumn<int>("vertices");
    for (int vertices = 8; vertices < Graph::MAX_NODES; ++vertices) {
        QTest::newRow(qPrintable(QString::number(vertices))) << vertices;
    }
}

void TestGraph6::agreesWithNautyOnRandomGraphs()
{
    QFETCH(int, vertices);
    const QByteArray lines = outputOf(QStringLiteral("nauty-genrang"),
                                      {QStringLiteral("-gqS1"), QString::number(vertices), QStringLiteral("20")});
    QCOMPARE(lines.count('\n'), 20);
    compareWithNauty(lines);
}

QTEST_MAIN(TestGraph6)
#include "tst_graph6.moc"
