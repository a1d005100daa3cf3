// Small graphs as rows of bits, and their strict reading from graph6.

#include "smallgraph.h"

#include <QtTest>

#include <random>

namespace
{
SmallGraph graphOf(std::string_view text)
{
    SmallGraph graph;
    const QString fault = parseGraph6(text, graph);
    if (!fault.isEmpty()) {
        qFatal("%s", qPrintable(fault));
    }
    return graph;
}

/// The edges, "01 12" for the path on three vertices.
QString edgesOf(const SmallGraph &graph)
{
    QStringList edges;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (graph.adjacent(u, v)) {
                edges.append(QStringLiteral("%1%2").arg(u).arg(v));
            }
        }
    }
    return edges.join(QLatin1Char(' '));
}
} // namespace

class TestSmallGraph : public QObject
{
    Q_OBJECT

private slots:
    void strings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("order");
        QTest::addColumn<QString>("edges");
        QTest::newRow("no vertex") << QByteArray("?") << 0 << QString();
        QTest::newRow("one vertex") << QByteArray("@") << 1 << QString();
        QTest::newRow("an edge") << QByteArray("A_") << 2 << QStringLiteral("01");
        QTest::newRow("a path") << QByteArray("Bg") << 3 << QStringLiteral("01 12");
        QTest::newRow("a triangle") << QByteArray("Bw") << 3 << QStringLiteral("01 02 12");
        QTest::newRow("a star") << QByteArray("Cs") << 4 << QStringLiteral("01 02 03");
    }

    void strings()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, order);
        QFETCH(QString, edges);
        const SmallGraph graph = graphOf(std::string_view(text.constData(), text.size()));
        QCOMPARE(graph.order, order);
        QCOMPARE(edgesOf(graph), edges);
        QCOMPARE(graph.size(), edges.count(QLatin1Char(' ')) + (edges.isEmpty() ? 0 : 1));
    }

    void faults_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("fault");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("not graph6: empty");
        QTest::newRow("byte below") << QByteArray("B>") << QStringLiteral("not graph6: byte 62 at column 2");
        QTest::newRow("byte above") << QByteArray("B\x7f") << QStringLiteral("not graph6: byte 127 at column 2");
        QTest::newRow("63 vertices") << QByteArray("~??") << QStringLiteral("more than 62 vertices");
        QTest::newRow("too short") << QByteArray("B")
                                   << QStringLiteral("not graph6: 1 byte where a graph on 3 vertices has 2");
        QTest::newRow("too long") << QByteArray("Bg?")
                                  << QStringLiteral("not graph6: 3 bytes where a graph on 3 vertices has 2");
        QTest::newRow("a bit too many") << QByteArray("B@")
                                        << QStringLiteral("not graph6: bits are set behind the last pair of vertices");
        QTest::newRow("the nearest bit too many")
            << QByteArray("BC") << QStringLiteral("not graph6: bits are set behind the last pair of vertices");
    }

    void faults()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, fault);
        SmallGraph graph;
        QCOMPARE(parseGraph6(std::string_view(text.constData(), text.size()), graph), fault);
    }

    /// A graph that was something else before has no edge of it.
    void aGraphIsReadTwice()
    {
        SmallGraph graph = graphOf("E~~w"); // complete on six vertices
        QCOMPARE(graph.size(), 15);
        QCOMPARE(parseGraph6("Bg", graph), QString());
        QCOMPARE(graph.order, 3);
        QCOMPARE(edgesOf(graph), QStringLiteral("01 12"));
        graph.order = 6; // what the rows still hold
        QCOMPARE(edgesOf(graph), QStringLiteral("01 12"));
    }

    void edgesComeAndGo()
    {
        SmallGraph graph;
        graph.order = SmallGraph::maxOrder;
        graph.addEdge(0, 61);
        graph.addEdge(61, 60);
        QVERIFY(graph.adjacent(61, 0) && graph.adjacent(60, 61) && !graph.adjacent(0, 60));
        QCOMPARE(graph.size(), 2);
        graph.removeEdge(61, 0);
        QVERIFY(!graph.adjacent(0, 61) && !graph.adjacent(61, 0) && graph.adjacent(61, 60));
        QCOMPARE(graph.size(), 1);
    }

    void connected()
    {
        QVERIFY(!graphOf("?").isConnected());
        QVERIFY(graphOf("@").isConnected());
        QVERIFY(!graphOf("A?").isConnected());
        QVERIFY(graphOf("A_").isConnected());
        QVERIFY(!graphOf("C`").isConnected()); // two edges apart
        QVERIFY(graphOf("Bg").isConnected());
    }

    void withoutAVertexTheOthersMoveUp()
    {
        SmallGraph cycle; // 0 1 2 3 4
        cycle.order = 5;
        for (int v = 0; v < 5; ++v) {
            cycle.addEdge(v, (v + 1) % 5);
        }
        QCOMPARE(edgesOf(cycle.withoutVertex(0)), QStringLiteral("01 12 23"));
        QCOMPARE(edgesOf(cycle.withoutVertex(2)), QStringLiteral("01 03 23"));
        QCOMPARE(edgesOf(cycle.withoutVertex(4)), QStringLiteral("01 12 23"));
        QCOMPARE(cycle.withoutVertex(2).order, 4);
    }

    void keysTellGraphsApart()
    {
        std::mt19937 random(5);
        for (const int order : {0, 1, 2, 4, 5, 9, 62}) {
            SmallGraph graph;
            graph.order = order;
            for (int v = 1; v < order; ++v) {
                for (int u = 0; u < v; ++u) {
                    if (random() % 2 == 0) {
                        graph.addEdge(u, v);
                    }
                }
            }
            const std::string key = adjacencyKey(graph);
            QCOMPARE(key.size(), size_t(order * (order - 1) / 2 + 7) / 8);
            for (int v = 1; v < order; ++v) {
                for (int u = 0; u < v; ++u) {
                    SmallGraph other = graph;
                    if (graph.adjacent(u, v)) {
                        other.removeEdge(u, v);
                    } else {
                        other.addEdge(u, v);
                    }
                    QVERIFY(adjacencyKey(other) != key);
                }
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestSmallGraph)
#include "tst_smallgraph.moc"
