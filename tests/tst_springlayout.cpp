// The layouts by springs.

#include "springlayout.h"
#include "support/adjacency.h"
#include "support/testfiles.h"

#include <QPolygonF>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace
{
using Layout = Places (*)(const Adjacency &);
} // namespace
Q_DECLARE_METATYPE(Layout)

class TestSpringLayout : public QObject
{
    Q_OBJECT

private slots:
    void noTwoVerticesOnOnePoint_data() { layouts(); }
    void noTwoVerticesOnOnePoint();
    void noTwoVerticesOnOnePointInLargerGraphs_data() { layouts(); }
    void noTwoVerticesOnOnePointInLargerGraphs();
    void alwaysTheSamePlaces_data() { layouts(); }
    void alwaysTheSamePlaces();
    void structureShows_data() { layouts(); }
    void structureShows();
    void componentsStandSideBySide_data() { layouts(); }
    void componentsStandSideBySide();
    void largestComponentComesFirst_data() { layouts(); }
    void largestComponentComesFirst();
    void distancesOfAPath();
    void noVertexIsThrownOut();

private:
    static void layouts();
};

namespace
{
/// Of the length of an edge: closer vertices would look like one.
constexpr double leastShare = 0.1;

Adjacency cycle(int order)
{
    Adjacency graph = emptyGraph(order);
    for (int i = 0; i < order; ++i) {
        const int next = (i + 1) % order;
        graph[i][next] = true;
        graph[next][i] = true;
    }
    return graph;
}
} // namespace

void TestSpringLayout::layouts()
{
    QTest::addColumn<Layout>("layout");
    QTest::newRow("Kamada and Kawai") << Layout(kamadaKawai);
    QTest::newRow("Fruchterman and Reingold") << Layout(fruchtermanReingold);
}

/// All connected graphs on up to six vertices.
void TestSpringLayout::noTwoVerticesOnOnePoint()
{
    QFETCH(Layout, layout);
    const QList<QByteArray> lines = contents(example("connected-8.tav")).split('\n');
    int graphs = 0;
    for (const QByteArray &line : lines) {
        const QByteArray name = line.split('\t').first();
        if (!name.isEmpty() && name.at(0) < 63 + 7) {
            QVERIFY2(leastDistance(layout(fromGraph6(name))) > leastShare, name.constData());
            ++graphs;
        }
    }
    QVERIFY(graphs > 140);
}

void TestSpringLayout::noTwoVerticesOnOnePointInLargerGraphs()
{
    QFETCH(Layout, layout);
    std::mt19937 random(7);
    for (int i = 0; i < 24; ++i) {
        const Places places = layout(randomGraph(9 + i % 24, 5 + i * 7 % 90, random));
        QVERIFY2(leastDistance(places) > leastShare, qPrintable(QString::number(i)));
    }
}

void TestSpringLayout::alwaysTheSamePlaces()
{
    QFETCH(Layout, layout);
    std::mt19937 random(8);
    const Adjacency graph = randomGraph(20, 20, random);
    const Places first = layout(graph);
    layout(randomGraph(12, 50, random));
    const Places second = layout(graph);
    for (int i = 0; i < graph.size(); ++i) {
        QVERIFY(first[i].x() == second[i].x() && first[i].y() == second[i].y());
    }
}

/// In a ladder the neighbours are half as far from each other, at most, as the others.
void TestSpringLayout::structureShows()
{
    QFETCH(Layout, layout);
    const int rungs = 6;
    Adjacency ladder = emptyGraph(2 * rungs);
    for (int i = 0; i < rungs; ++i) {
        ladder[i][rungs + i] = ladder[rungs + i][i] = true;
        for (const int side : {0, rungs}) {
            if (i + 1 < rungs) {
                ladder[side + i][side + i + 1] = ladder[side + i + 1][side + i] = true;
            }
        }
    }
    const Places places = layout(ladder);
    double edgeSum = 0;
    double otherSum = 0;
    int edges = 0;
    int others = 0;
    for (int j = 1; j < ladder.size(); ++j) {
        for (int i = 0; i < j; ++i) {
            const double length = QLineF(places[i], places[j]).length();
            (ladder[i][j] ? edgeSum : otherSum) += length;
            ++(ladder[i][j] ? edges : others);
        }
    }
    QCOMPARE(edges, 16);
    const double share = edgeSum / edges / (otherSum / others);
    QVERIFY2(share < 0.5, qPrintable(QString::number(share)));
}

void TestSpringLayout::componentsStandSideBySide()
{
    QFETCH(Layout, layout);
    // Three cycles of five vertices, two of three, and four isolated vertices.
    const QVector<int> orders{3, 5, 1, 5, 1, 3, 5, 1, 1};
    int order = 0;
    for (const int each : orders) {
        order += each;
    }
    Adjacency graph = emptyGraph(order);
    int start = 0;
    for (const int each : orders) {
        const Adjacency part = each > 1 ? cycle(each) : emptyGraph(1);
        for (int i = 0; i < each; ++i) {
            for (int j = 0; j < each; ++j) {
                graph[start + i][start + j] = part[i][j];
            }
        }
        start += each;
    }
    const Places places = layout(graph);
    QVector<QRectF> extents;
    start = 0;
    for (const int each : orders) {
        const QRectF extent = QPolygonF(places.mid(start, each)).boundingRect().adjusted(-0.4, -0.4, 0.4, 0.4);
        for (const QRectF &other : qAsConst(extents)) {
            QVERIFY(!extent.intersects(other));
        }
        extents.append(extent);
        start += each;
    }
    const QRectF all = QPolygonF(places).boundingRect();
    QVERIFY(all.width() < 3 * all.height() && all.height() < 3 * all.width());
    QVERIFY(leastDistance(layout(emptyGraph(32))) > leastShare);
    QVERIFY(layout(emptyGraph(0)).isEmpty());
}

/// Left of the others, or above them.
void TestSpringLayout::largestComponentComesFirst()
{
    QFETCH(Layout, layout);
    const Places places = layout(graphOf(6, {{1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 1}}));
    const QRectF pentagon = QPolygonF(places.mid(1)).boundingRect();
    QVERIFY(places[0].x() > pentagon.right() || places[0].y() > pentagon.bottom());
}

/// A path can have all its distances: it becomes straight.
void TestSpringLayout::distancesOfAPath()
{
    const Places places = kamadaKawai(graphOf(5, {{0, 3}, {3, 1}, {1, 4}, {4, 2}}));
    const QVector<int> along{0, 3, 1, 4, 2};
    for (int j = 1; j < along.size(); ++j) {
        for (int i = 0; i < j; ++i) {
            const double length = QLineF(places[along[i]], places[along[j]]).length();
            QVERIFY2(std::abs(length - (j - i)) < 0.01, qPrintable(QString::number(length)));
        }
    }
}

/// A vertex of this graph overshoots for ever. It stays near the others all the same: on average, the
/// length of a spring differs from the distance in the graph by less than half.
void TestSpringLayout::noVertexIsThrownOut()
{
    const Adjacency graph = fromGraph6("Os`ADA?C?O?BC_?e?@?g?");
    const int order = graph.size();
    QVector<QVector<int>> between(order, QVector<int>(order, order));
    for (int i = 0; i < order; ++i) {
        for (int j = 0; j < order; ++j) {
            between[i][j] = i == j ? 0 : graph[i][j] ? 1 : order;
        }
    }
    for (int by = 0; by < order; ++by) {
        for (int i = 0; i < order; ++i) {
            for (int j = 0; j < order; ++j) {
                between[i][j] = std::min(between[i][j], between[i][by] + between[by][j]);
            }
        }
    }
    const Places places = kamadaKawai(graph);
    double sum = 0;
    for (int j = 1; j < order; ++j) {
        for (int i = 0; i < j; ++i) {
            const double stretch = QLineF(places[i], places[j]).length() / between[i][j] - 1;
            sum += stretch * stretch;
        }
    }
    const double average = std::sqrt(2 * sum / (order * (order - 1)));
    QVERIFY2(average < 0.5, qPrintable(QString::number(average)));
}

QTEST_APPLESS_MAIN(TestSpringLayout)
#include "tst_springlayout.moc"
