#include "graph.h"

#include <QtTest>

#include <limits>

// Takes the place of Qt's generator in this program: the counter of a graph starts at its greatest number.
int qrand()
{
    return std::numeric_limits<int>::max();
}

/// The change counter of a graph at the end of its range.
class TestGraphCounter : public QObject
{
    Q_OBJECT

private slots:
    void wraps();
};

void TestGraphCounter::wraps()
{
    Graph graph(QStringLiteral("wrapping"), false);
    // 496 removals of clear(), 10 vertices, 45 pairs; the first of them steps over the end.
    QCOMPARE(graph.getID(), std::numeric_limits<int>::min() + 496 + 10 + 45 - 1);
    QCOMPARE(graph.getNbEdges(), 45);
}

QTEST_MAIN(TestGraphCounter)
#include "tst_graph_counter.moc"
