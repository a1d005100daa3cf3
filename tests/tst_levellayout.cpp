// Rows of vertices by their distance from a set.

#include "levellayout.h"
#include "support/adjacency.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

class TestLevelLayout : public QObject
{
    Q_OBJECT

private slots:
    void verticesStandBelowTheirNeighbours();
    void rowsAreDistances();
    void vertexThatCannotBeReached();
    void rowIsSpreadEvenly();
    void neighboursStandBelowEachOther();
    void noEdgeOfARowRunsThroughAVertex();
};

namespace
{
int rowOf(QPointF place)
{
    return int(std::ceil(place.y()));
}

/// The distance of each vertex from the nearest source, by trying all ways over one more vertex until nothing changes;
/// @p infinity where there is no way.
QVector<int> plainDistances(const Adjacency &graph, const QVector<int> &sources, int infinity)
{
    QVector<int> distance(graph.size(), infinity);
    for (const int source : sources) {
        distance[source] = 0;
    }
    for (int round = 0; round < graph.size(); ++round) {
        for (int i = 0; i < graph.size(); ++i) {
            for (int j = 0; j < graph.size(); ++j) {
                if (graph[i][j]) {
                    distance[j] = qMin(distance[j], distance[i] + 1);
                }
            }
        }
    }
    return distance;
}
} // namespace

void TestLevelLayout::rowsAreDistances()
{
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        const int order = 1 + round % 32;
        const Adjacency graph = randomGraph(order, 3 + round % 40, random);
        QVector<int> sources;
        for (int i = 0; i < order; ++i) {
            if (i == 0 || random() % 8 == 0) {
                sources.append(i);
            }
        }
        const int infinity = order + 1;
        const QVector<int> distances = plainDistances(graph, sources, infinity);
        int last = 0;
        for (const int distance : distances) {
            last = distance < infinity ? qMax(last, distance) : last;
        }
        const Places places = levelLayout(graph, sources);
        QCOMPARE(places.size(), order);
        for (int i = 0; i < order; ++i) {
            QCOMPARE(rowOf(places[i]), distances[i] < infinity ? distances[i] : last + 2);
        }
        QVERIFY(order == 1 || leastDistance(places) >= 0.6);
    }
}

void TestLevelLayout::vertexThatCannotBeReached()
{
    const Places places = levelLayout(graphOf(3, {{0, 2}}), {0});
    QCOMPARE(places, (Places{{0, 0}, {0, 3}, {0, 1}}));
}

void TestLevelLayout::rowIsSpreadEvenly()
{
    // A star from its centre. The row sags in its middle.
    const Places places = levelLayout(graphOf(5, {{2, 0}, {2, 1}, {2, 3}, {2, 4}}), {2});
    const auto x = [&](int vertex) { return places[vertex].x(); };
    QCOMPARE((QVector<double>{x(0), x(1), x(2), x(3), x(4)}), (QVector<double>{-1.5, -0.5, 0, 0.5, 1.5}));
    QVERIFY(places[0].y() < places[1].y());
    QCOMPARE(places[1].y(), places[3].y());
}

void TestLevelLayout::neighboursStandBelowEachOther()
{
    // 0-3, 1-4, 2-5 would cross in the order of their numbers.
    const Places places = levelLayout(graphOf(6, {{0, 5}, {1, 4}, {2, 3}}), {0, 1, 2});
    QCOMPARE(places[5].x(), places[0].x());
    QCOMPARE(places[4].x(), places[1].x());
    QCOMPARE(places[3].x(), places[2].x());
}

void TestLevelLayout::noEdgeOfARowRunsThroughAVertex()
{
    const Places places = levelLayout(graphOf(4, {{0, 1}, {0, 2}, {1, 2}}), {0, 1, 2});
    QVERIFY(places[1].y() - places[0].y() > 0.05);
    QCOMPARE(places[0].y(), places[2].y());
}

/// 4 is below the ends of the row above, 5 below its left half.
void TestLevelLayout::verticesStandBelowTheirNeighbours()
{
    const Places places = levelLayout(graphOf(6, {{0, 1}, {0, 2}, {0, 3}, {4, 1}, {4, 3}, {5, 1}, {5, 2}}), {0});
    QVERIFY(places[1].x() < places[2].x() && places[2].x() < places[3].x());
    QVERIFY(places[5].x() < places[4].x());
}

QTEST_APPLESS_MAIN(TestLevelLayout)
#include "tst_levellayout.moc"
