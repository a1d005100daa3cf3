// The planar layout: straight edges that do not cross.

#include "planarlayout.h"
#include "support/adjacency.h"

#include <QtTest>

class TestPlanarLayout : public QObject
{
    Q_OBJECT

private slots:
    void everyPlanarGraph_data();
    void everyPlanarGraph();
    void largerGraphs();
    void alwaysTheSamePlaces();
};

namespace
{
/// Twice the signed area of a triangle.
long long turn(QPoint a, QPoint b, QPoint c)
{
    const auto wide = [](int number) { return static_cast<long long>(number); };
    return wide(b.x() - a.x()) * (c.y() - a.y()) - wide(b.y() - a.y()) * (c.x() - a.x());
}

int sign(long long number)
{
    return number > 0 ? 1 : number < 0 ? -1 : 0;
}

/// Whether @p point is on the segment from @p a to @p b, its ends included.
bool isOn(QPoint point, QPoint a, QPoint b)
{
    return turn(a, b, point) == 0 && qMin(a.x(), b.x()) <= point.x() && point.x() <= qMax(a.x(), b.x()) &&
           qMin(a.y(), b.y()) <= point.y() && point.y() <= qMax(a.y(), b.y());
}

bool cross(QPoint a, QPoint b, QPoint c, QPoint d)
{
    return sign(turn(a, b, c)) * sign(turn(a, b, d)) < 0 && sign(turn(c, d, a)) * sign(turn(c, d, b)) < 0;
}

/// What is wrong with the drawing, in integers and therefore exact; empty when no two edges cross or touch.
QString fault(const Adjacency &graph, const Places &places)
{
    QVector<QPoint> points;
    for (const QPointF &place : places) {
        points.append(place.toPoint());
        if (points.last() != place) {
            return QStringLiteral("not on the grid");
        }
    }
    QVector<std::pair<int, int>> edges;
    for (int j = 1; j < graph.size(); ++j) {
        for (int i = 0; i < j; ++i) {
            if (points[i] == points[j]) {
                return QStringLiteral("%1 and %2 on one point").arg(i).arg(j);
            }
            if (graph[i][j]) {
                edges.append({i, j});
            }
        }
    }
    for (const auto &[a, b] : qAsConst(edges)) {
        for (int vertex = 0; vertex < graph.size(); ++vertex) {
            if (vertex != a && vertex != b && isOn(points[vertex], points[a], points[b])) {
                return QStringLiteral("%1 on the edge %2-%3").arg(vertex).arg(a).arg(b);
            }
        }
        for (const auto &[c, d] : qAsConst(edges)) {
            if (cross(points[a], points[b], points[c], points[d])) {
                return QStringLiteral("%1-%2 crosses %3-%4").arg(a).arg(b).arg(c).arg(d);
            }
        }
    }
    return {};
}
} // namespace

void TestPlanarLayout::everyPlanarGraph_data()
{
    // The numbers of planar graphs: sequence A005470 of the On-Line Encyclopedia of Integer Sequences.
    QTest::addColumn<int>("planar");
    const QVector<int> counts{1, 2, 4, 11, 33, 142, 822, 6966};
    for (int order = 1; order <= counts.size(); ++order) {
        QTest::addRow("%d", order) << counts[order - 1];
    }
}

/// Connected or not: no edge crosses another, and runs through a vertex.
void TestPlanarLayout::everyPlanarGraph()
{
    const QList<QByteArray> names = allGraphs(QByteArray(QTest::currentDataTag()).toInt());
    int planar = 0;
    for (const QByteArray &name : names) {
        const Adjacency graph = fromGraph6(name);
        const std::optional<Places> places = planarLayout(graph);
        if (places) {
            ++planar;
            QCOMPARE(places->size(), graph.size());
            const QString what = fault(graph, *places);
            QVERIFY2(what.isEmpty(), qPrintable(QString::fromLatin1(name) + QLatin1Char(' ') + what));
        }
    }
    QTEST(planar, "planar");
}

/// Random subgraphs of a triangulated square of 32 vertices; and the same with two disjoint K5, or K3,3.
void TestPlanarLayout::largerGraphs()
{
    std::mt19937 random(3);
    for (int round = 0; round < 50; ++round) {
        Adjacency graph = emptyGraph(32);
        for (int i = 0; i < 32; ++i) {
            for (const int step : {1, 8, 9}) { // to the right, down, and both at once
                const int other = i + step;
                const bool inGrid = other < 32 && (step == 8 || i % 8 != 7);
                const bool joined = inGrid && random() % 100 >= unsigned(round);
                if (joined) {
                    graph[i][other] = graph[other][i] = true;
                }
            }
        }
        const std::optional<Places> places = planarLayout(graph);
        QVERIFY(places.has_value());
        const QString what = fault(graph, *places);
        QVERIFY2(what.isEmpty(), qPrintable(what));

        Adjacency complete = graph;
        for (int j = 20; j < 25; ++j) {
            for (int i = 20; i < 25; ++i) {
                complete[i][j] = i != j;
            }
        }
        QVERIFY(!planarLayout(complete).has_value());
        Adjacency bipartite = graph;
        for (int i = 20; i < 23; ++i) {
            for (int j = 23; j < 26; ++j) {
                bipartite[i][j] = bipartite[j][i] = true;
            }
        }
        QVERIFY(!planarLayout(bipartite).has_value());
    }
}

void TestPlanarLayout::alwaysTheSamePlaces()
{
    const Adjacency graph = fromGraph6("G?zTb_");
    const std::optional<Places> first = planarLayout(graph);
    QVERIFY(first.has_value());
    QCOMPARE(*planarLayout(graph), *first);
    QVERIFY(planarLayout(emptyGraph(0))->isEmpty());
}

QTEST_APPLESS_MAIN(TestPlanarLayout)
#include "tst_planarlayout.moc"
