// Where the vertices stand, how the view moves, and the relabelling that shortens the drawing.

#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/closeto.h"
#include "support/graphtext.h"
#include "support/literals.h"

#include <QAbstractEventDispatcher>
#include <QColor>
#include <QSignalSpy>
#include <QtTest>

#include <array>
#include <cmath>
#include <random>

namespace
{
const double step = 0.04908738515625;

using Point = std::array<double, 3>;
using Points = QVector<Point>;

/// A published graph without edges whose vertices are at @p points.
void build(Graph &graph, const Points &points)
{
    graphtext::build(graph, points.size(), {});
    for (int i = 0; i < points.size(); ++i) {
        graph.setPos(i, points[i][0], points[i][1], points[i][2]);
    }
}

Points placesOf(const Graph &graph, int n)
{
    Points points;
    for (int i = 0; i < n; ++i) {
        points.append({graph.node(i)->pos().x(), graph.node(i)->pos().y(), graph.node(i)->getCoordZ()});
    }
    return points;
}

/// Whether the scene can draw the first @p n vertices: where they stand, and in which order.
bool isDrawable(const Graph &graph, int n)
{
    for (int i = 0; i < n; ++i) {
        const QPointF place = graph.node(i)->pos();
        if (!std::isfinite(place.x()) || !std::isfinite(place.y()) || !std::isfinite(graph.node(i)->zValue())) {
            return false;
        }
    }
    return true;
}

/// The first places that differ, as text; empty when all agree.
QByteArray difference(const Points &actual, const Points &expected)
{
    if (actual.size() != expected.size()) {
        return "different numbers of places";
    }
    for (int i = 0; i < actual.size(); ++i) {
        for (size_t axis = 0; axis < 3; ++axis) {
            if (!isClose(actual[i][axis], expected[i][axis])) {
                return qPrintable(QStringLiteral("place %1, axis %2: %3 instead of %4")
                                      .arg(i)
                                      .arg(axis)
                                      .arg(actual[i][axis])
                                      .arg(expected[i][axis]));
            }
        }
    }
    return QByteArray();
}

Points randomPoints(int n, std::mt19937 &random)
{
    std::uniform_real_distribution<double> coordinate(-150.0, 250.0);
    Points points(n);
    for (Point &point : points) {
        point = {coordinate(random), coordinate(random), coordinate(random)};
    }
    return points;
}

Points centred(Points points)
{
    if (points.size() > 1) {
        for (size_t axis = 0; axis < 3; ++axis) {
            double sum = 0;
            for (const Point &point : points) {
                sum += point[axis];
            }
            for (Point &point : points) {
                point[axis] -= sum / points.size();
            }
        }
    }
    return points;
}

Points rotated(const Points &points, double ax, double ay, double az)
{
    Points result;
    for (const Point &p : centred(points)) {
        const double y1 = p[1] * cos(ax) - p[2] * sin(ax);
        const double z1 = p[1] * sin(ax) + p[2] * cos(ax);
        const double x2 = p[0] * cos(ay) + z1 * sin(ay);
        const double z2 = -p[0] * sin(ay) + z1 * cos(ay);
        result.append({x2 * cos(az) - y1 * sin(az), x2 * sin(az) + y1 * cos(az), z2});
    }
    return result;
}

struct Limits {
    double xmin = 1e12, xmax = -1e12, ymin = 1e12, ymax = -1e12, zmin = 1e12, zmax = -1e12;

    Limits(const Points &points, bool inSpace)
    {
        for (const Point &p : points) {
            xmin = qMin(xmin, p[0]);
            xmax = qMax(xmax, p[0]);
            ymin = qMin(ymin, p[1]);
            ymax = qMax(ymax, p[1]);
            zmin = qMin(zmin, p[2]);
            zmax = qMax(zmax, p[2]);
        }
        if (xmax - xmin < 0.1) {
            xmax = xmin + 10;
        }
        if (ymax - ymin < 0.1) {
            ymax = ymin + 10;
        }
        if (inSpace && zmax - zmin < 0.1) {
            ymax = zmin + 10;
        }
    }
};

Points fitted(Points points, double w, double h)
{
    const Limits l(points, false);
    for (Point &p : points) {
        p = {w * (p[0] - l.xmin) / (l.xmax - l.xmin) - w / 2, h * (p[1] - l.ymin) / (l.ymax - l.ymin) - h / 2, 0.0};
    }
    return points;
}

Points fitted(Points points, double w, double h, double d)
{
    const Limits l(points, true);
    for (Point &p : points) {
        p = {w * (p[0] - l.xmin) / (l.xmax - l.xmin) - w / 2, h * (p[1] - l.ymin) / (l.ymax - l.ymin) - h / 2,
             d * (p[2] - l.zmin) / (l.zmax - l.zmin) - d / 2};
    }
    return points;
}

Points fitted(Points points, double s)
{
    const Limits l(points, true);
    double range = l.xmax - l.xmin;
    if (l.ymax - l.ymin > range) {
        range = l.ymax - l.ymin;
    }
    if (l.zmax - l.zmin > range) {
        range = l.zmax - l.zmin;
    }
    for (Point &p : points) {
        p = {s * (p[0] - l.xmin) / range - s / 2, s * (p[1] - l.ymin) / range - s / 2,
             s * (p[2] - l.zmin) / range - s / 2};
    }
    return points;
}

using Matrix = QVector<QVector<bool>>;

Matrix matrixOf(const Graph &graph)
{
    const int n = graph.getNbNodes();
    Matrix matrix(n, QVector<bool>(n));
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            matrix[i][j] = graph.edge(i, j);
        }
    }
    return matrix;
}

double lengthOf(const Matrix &matrix, const Points &points)
{
    double sum = 0;
    for (int i = 0; i < matrix.size(); ++i) {
        for (int j = i + 1; j < matrix.size(); ++j) {
            if (matrix[i][j]) {
                sum += std::hypot(points[i][0] - points[j][0], points[i][1] - points[j][1]);
            }
        }
    }
    return sum;
}

void exchange(Matrix &matrix, int i, int j)
{
    std::swap(matrix[i], matrix[j]);
    for (QVector<bool> &row : matrix) {
        std::swap(row[i], row[j]);
    }
}

double reorganized(Matrix &matrix, const Points &points)
{
    double best = lengthOf(matrix, points);
    for (bool again = true; again;) {
        again = false;
        for (int i = 0; i < matrix.size(); ++i) {
            for (int j = i + 1; j < matrix.size(); ++j) {
                Matrix changed = matrix;
                exchange(changed, i, j);
                const double length = lengthOf(changed, points);
                if (best - 1e-6 > length) {
                    best = length;
                    matrix = changed;
                    again = true;
                }
            }
        }
    }
    return best;
}

QList<QAbstractEventDispatcher::TimerInfo> timersOf(Graph &graph)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(&graph);
}

/// What the only timer of the graph does after its interval, done now.
void letTimerRunOut(Graph &graph)
{
    QCOMPARE(timersOf(graph).size(), 1);
    QTimerEvent event(timersOf(graph).constFirst().timerId);
    QCoreApplication::sendEvent(&graph, &event);
}

QVariantList consoleLine(const QString &text, bool flag, int number, const QColor &colour)
{
    return {text, flag, number, colour};
}
} // namespace

Q_DECLARE_METATYPE(Point)

class TestGraphLayout : public QObject
{
    Q_OBJECT

private slots:
    void circle();
    void circleOfFewVertices();
    void randomPositions();
    void centring();
    void scatteredVerticesAreCentredAndTurned();
    void oneVertexIsNotCentred();
    void rotationsAboutOneAxis_data();
    void rotationsAboutOneAxis();
    void rotationsAgreeWithTheFormulas();
    void geometryWalksTheBestGraph();
    void circleWalksTheCurrentGraph();

    void fitIntoARectangle();
    void fitOfAVerticalLine();
    void fitOfAFlatCloud();
    void fitIntoABoxOfAFlatCloud();
    void repeatedFitsOfAFlatColumn();
    void noPlaceFollowsFromAFlatCloudInABox();
    void fitsAgreeWithTheFormulas();
    void fitMovesWhatIsShown();
    void usualBox();
    void zoomIsBounded();

    void spinning();
    void optimizationTimer();
    void optimizationTimerRepublishes();

    void edgesLength();
    void reorganizeUntanglesAPath();
    void reorganizeWithoutEdges();
    void reorganizeAgreesWithTheDescentWrittenOut();
    void reorganizeSlotReports();
    void relabelFollowsTheRandomNumbers();
    void perturbFollowsTheRandomNumbers();
    void fewVerticesAreLeftAlone();
};

void TestGraphLayout::circle()
{
    Graph graph(latin1("circle"), true);
    build(graph, Points(4, {7, 7, 7}));
    graph.place_circle(200.0);
    // Pi is cut after eight decimals: the places are off by less than a millionth.
    const double expected[4][2] = {{100, 0}, {0, 100}, {-100, 0}, {0, -100}};
    for (int i = 0; i < 4; ++i) {
        QVERIFY(std::abs(graph.node(i)->pos().x() - expected[i][0]) < 1e-6);
        QVERIFY(std::abs(graph.node(i)->pos().y() - expected[i][1]) < 1e-6);
        QCOMPARE(graph.node(i)->getCoordZ(), 0.0);
    }
    QVERIFY2(graph.node(1)->pos().x() > 1e-7, "pi is 3.14159265");
}

void TestGraphLayout::circleOfFewVertices()
{
    Graph graph(latin1("circle"), true);
    build(graph, {});
    const Points before = placesOf(graph, 32);
    graph.place_circle(100.0);
    QCOMPARE(difference(placesOf(graph, 32), before), QByteArray());
    build(graph, {{3, 4, 5}});
    graph.place_circle(100.0);
    QCOMPARE(graph.node(0)->pos(), QPointF(50.0, 0.0));
}

void TestGraphLayout::randomPositions()
{
    Graph graph(latin1("scatter"), true);
    build(graph, {{1, 2, 3}, {4, 5, 6}});
    qsrand(5);
    graph.slot_randomPosition();
    qsrand(5);
    for (int k = 0; k < 32; ++k) {
        const double radius = 5 * (qrand() * 30.0 / 2147483647.0);
        QVERIFY(radius >= 0 && radius <= 150);
        const double angle = k * 6.2831853 / 32;
        QVERIFY(isClose(graph.node(k)->pos().x(), radius * std::sin(angle)));
        QVERIFY(isClose(graph.node(k)->pos().y(), radius * std::cos(angle)));
    }
    QCOMPARE(graph.node(0)->getCoordZ(), 3.0);
    QCOMPARE(graph.node(1)->getCoordZ(), 6.0);
}

void TestGraphLayout::centring()
{
    Graph graph(latin1("centre"), true);
    build(graph, {{0, 0, 0}, {10, 0, 3}, {2, 6, 3}});
    graph.center();
    QCOMPARE(difference(placesOf(graph, 3), {{-4, -2, -2}, {6, -2, 1}, {-2, 4, 1}}), QByteArray());
}

void TestGraphLayout::scatteredVerticesAreCentredAndTurned()
{
    Graph graph(latin1("scatter"), true);
    build(graph, {{0, 0, 0}, {10, 0, 3}, {2, 6, 3}});
    qsrand(6);
    graph.slot_randomPosition();
    const Points scattered = placesOf(graph, 3);
    QVERIFY(difference(scattered, {{0, 0, 0}, {10, 0, 3}, {2, 6, 3}}) != QByteArray());
    graph.center();
    QCOMPARE(difference(placesOf(graph, 3), centred(scattered)), QByteArray());
    graph.slot_randomPosition();
    const Points again = placesOf(graph, 3);
    graph.rotate(0.5, 1.5, -2.5);
    QCOMPARE(difference(placesOf(graph, 3), rotated(again, 0.5, 1.5, -2.5)), QByteArray());
}

void TestGraphLayout::oneVertexIsNotCentred()
{
    Graph graph(latin1("centre"), true);
    build(graph, {{10, 0, 0}});
    graph.center();
    QCOMPARE(difference(placesOf(graph, 1), {{10, 0, 0}}), QByteArray());
    graph.rotate(0, 0, M_PI / 2);
    QCOMPARE(difference(placesOf(graph, 1), {{0, 10, 0}}), QByteArray());
}

void TestGraphLayout::rotationsAboutOneAxis_data()
{
    QTest::addColumn<Point>("angles");
    QTest::addColumn<Points>("expected");
    const double quarter = M_PI / 2;
    QTest::newRow("none") << Point{0, 0, 0} << Points{{1, 2, 3}, {-1, -2, -3}};
    QTest::newRow("x") << Point{quarter, 0, 0} << Points{{1, -3, 2}, {-1, 3, -2}};
    QTest::newRow("y") << Point{0, quarter, 0} << Points{{3, 2, -1}, {-3, -2, 1}};
    QTest::newRow("z") << Point{0, 0, quarter} << Points{{-2, 1, 3}, {2, -1, -3}};
    // x turns (1, 2, 3) into (1, -3, 2), y that into (2, -3, -1), z that into (3, 2, -1).
    QTest::newRow("all") << Point{quarter, quarter, quarter} << Points{{3, 2, -1}, {-3, -2, 1}};
}

void TestGraphLayout::rotationsAboutOneAxis()
{
    QFETCH(Point, angles);
    QFETCH(Points, expected);
    Graph graph(latin1("rotate"), true);
    build(graph, {{11, 12, 13}, {9, 8, 7}});
    graph.rotate(angles[0], angles[1], angles[2]);
    QCOMPARE(difference(placesOf(graph, 2), expected), QByteArray());
    QCOMPARE(graph.node(0)->zValue(), graph.node(0)->getCoordZ());
}

void TestGraphLayout::rotationsAgreeWithTheFormulas()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> angle(-7.0, 7.0);
    Graph graph(latin1("rotate"), false);
    for (int n = 0; n <= 32; ++n) {
        const Points points = randomPoints(n, random);
        build(graph, points);
        const double ax = angle(random);
        const double ay = angle(random);
        const double az = angle(random);
        graph.rotate(ax, ay, az);
        QCOMPARE(difference(placesOf(graph, n), rotated(points, ax, ay, az)), QByteArray());
    }
}

void TestGraphLayout::geometryWalksTheBestGraph()
{
    Graph graph(latin1("best"), true);
    build(graph, {{0, 0, 0}, {10, 10, 10}});
    graph.addNode();
    graph.setPos(2, 500, 500, 500);
    graph.center();
    QCOMPARE(difference(placesOf(graph, 3), {{-5, -5, -5}, {5, 5, 5}, {500, 500, 500}}), QByteArray());
    graph.scaleCoords(20.0);
    QCOMPARE(difference(placesOf(graph, 3), {{-10, -10, -10}, {10, 10, 10}, {500, 500, 500}}), QByteArray());
}

void TestGraphLayout::circleWalksTheCurrentGraph()
{
    Graph graph(latin1("current"), true);
    build(graph, {{1, 1, 1}});
    graph.addNode();
    graph.place_circle(20.0);
    QVERIFY(isClose(graph.node(0)->pos().x(), 10));
    QVERIFY(isClose(graph.node(1)->pos().x(), -10));
}

void TestGraphLayout::fitIntoARectangle()
{
    Graph graph(latin1("fit"), true);
    build(graph, {{0, 0, 7}, {10, 4, 8}, {5, 1, 9}});
    graph.scaleCoords(100.0, 40.0);
    QCOMPARE(difference(placesOf(graph, 3), {{-50, -20, 0}, {50, 20, 0}, {0, -10, 0}}), QByteArray());
}

void TestGraphLayout::fitOfAVerticalLine()
{
    Graph graph(latin1("fit"), true);
    build(graph, {{3, 0, 0}, {3, 10, 0}, {3, 5, 0}});
    graph.scaleCoords(100.0, 40.0);
    QCOMPARE(difference(placesOf(graph, 3), {{-50, -20, 0}, {-50, 20, 0}, {-50, 0, 0}}), QByteArray());
}

void TestGraphLayout::fitOfAFlatCloud()
{
    Graph graph(latin1("fit"), true);
    // All z equal 5: the upper bound of y becomes 15 and the range of y, 15, is the largest.
    build(graph, {{0, 0, 5}, {3, 6, 5}});
    graph.scaleCoords(30.0);
    QCOMPARE(difference(placesOf(graph, 2), {{-15, -15, -15}, {-9, -3, -15}}), QByteArray());
    // Proportions are kept, and z has the largest range here.
    build(graph, {{0, 0, 0}, {3, 6, 12}});
    graph.scaleCoords(24.0);
    QCOMPARE(difference(placesOf(graph, 2), {{-12, -12, -12}, {-6, 0, 12}}), QByteArray());
}

void TestGraphLayout::fitIntoABoxOfAFlatCloud()
{
    Graph graph(latin1("fit"), true);
    build(graph, {{0, 0, 0}, {10, 20, 5}});
    graph.scaleCoords(10.0, 20.0, 30.0);
    QCOMPARE(difference(placesOf(graph, 2), {{-5, -10, -15}, {5, 10, 15}}), QByteArray());
    // All z equal 5: the upper bound of y becomes 15, and z is divided by its range of 0.
    build(graph, {{0, 0, 5}, {10, 30, 5}});
    graph.scaleCoords(10.0, 20.0, 30.0);
    QCOMPARE(difference(placesOf(graph, 2), {{-5, -10, std::nan("")}, {5, 30, std::nan("")}}), QByteArray());
}

void TestGraphLayout::repeatedFitsOfAFlatColumn()
{
    Graph graph(latin1("fit"), true);
    build(graph, {{0, 0, 0}, {0, 1, 0}});
    // The range of y is taken for 10, whatever it is: each fit stretches the column by 300 / 10.
    graph.slot_rescale_graph(300);
    QCOMPARE(difference(placesOf(graph, 2), {{-150, -150, -150}, {-150, -120, -150}}), QByteArray());
    graph.slot_rescale_graph(300);
    QCOMPARE(difference(placesOf(graph, 2), {{-150, -150, -150}, {-150, 750, -150}}), QByteArray());
    for (int tick = 2; tick < 300; ++tick) {
        graph.slot_rescale_graph(300);
    }
    // 30^8 - 150; the next stretch would leave the area in which the fits find a vertex.
    QCOMPARE(difference(placesOf(graph, 2), {{-150, -150, -150}, {-150, 656099999850, -150}}), QByteArray());
    graph.center();
    QCOMPARE(difference(placesOf(graph, 2), {{0, -328050000000, 0}, {0, 328050000000, 0}}), QByteArray());
    graph.rotate(M_PI / 2, 0, 0);
    graph.toggleAnim();
    const Points before = placesOf(graph, 2);
    letTimerRunOut(graph);
    graph.toggleAnim();
    QVERIFY(isDrawable(graph, 2));
    QCOMPARE(difference(placesOf(graph, 2), rotated(before, 0, step, 0)), QByteArray());
}

void TestGraphLayout::noPlaceFollowsFromAFlatCloudInABox()
{
    Graph graph(latin1("fit"), true);
    build(graph, {{0, 0, 5}, {10, 30, 5}});
    graph.scaleCoords(10.0, 20.0, 30.0);
    QVERIFY(isDrawable(graph, 2));
    QCOMPARE(graph.node(0)->zValue(), 5.0);
    graph.center();
    QCOMPARE(difference(placesOf(graph, 2), {{-5, -20, std::nan("")}, {5, 20, std::nan("")}}), QByteArray());
    graph.rotate(1, 1, 1);
    QVERIFY(isDrawable(graph, 2));
    QCOMPARE(difference(placesOf(graph, 2), {{-5, -20, std::nan("")}, {5, 20, std::nan("")}}), QByteArray());
}

void TestGraphLayout::fitsAgreeWithTheFormulas()
{
    std::mt19937 random(2);
    Graph graph(latin1("fit"), false);
    for (int n = 0; n <= 32; ++n) {
        for (int flatAxis = 0; flatAxis < 4; ++flatAxis) {
            Points points = randomPoints(n, random);
            for (Point &point : points) {
                if (flatAxis < 3) {
                    point[flatAxis] = 12.5 + 1e-3 * (random() % 90);
                }
            }
            build(graph, points);
            graph.scaleCoords(70.0, 110.0);
            QCOMPARE(difference(placesOf(graph, n), fitted(points, 70.0, 110.0)), QByteArray());
            build(graph, points);
            graph.scaleCoords(70.0, 110.0, 35.0);
            QCOMPARE(difference(placesOf(graph, n), fitted(points, 70.0, 110.0, 35.0)), QByteArray());
            build(graph, points);
            graph.scaleCoords(300.0);
            QCOMPARE(difference(placesOf(graph, n), fitted(points, 300.0)), QByteArray());
        }
    }
}

void TestGraphLayout::fitMovesWhatIsShown()
{
    Graph graph(latin1("fit"), true);
    build(graph, {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}});
    qsrand(9);
    graph.slot_randomPosition();
    const Points scattered = placesOf(graph, 3);
    graph.scaleCoords(100.0, 100.0);
    QCOMPARE(difference(placesOf(graph, 3), fitted(scattered, 100.0, 100.0)), QByteArray());
}

void TestGraphLayout::usualBox()
{
    const Points points = {{0, 0, 0}, {1, 1, 1}};
    Graph graph(latin1("box"), true);
    build(graph, points);
    graph.slot_rescale(false);
    QCOMPARE(difference(placesOf(graph, 2), {{-150, -150, -150}, {150, 150, 150}}), QByteArray());
    graph.slot_scale_graph(40, false);
    QCOMPARE(difference(placesOf(graph, 2), {{-20, -20, -20}, {20, 20, 20}}), QByteArray());
    graph.slot_rescale_graph(1000);
    QCOMPARE(difference(placesOf(graph, 2), {{-500, -500, -500}, {500, 500, 500}}), QByteArray());
    // The fit in proportion is used whichever fit came last.
    graph.scaleCoords(10.0, 20.0);
    graph.slot_rescale(true);
    QCOMPARE(difference(placesOf(graph, 2), {{-500, -500, -500}, {0, 500, -500}}), QByteArray());
}

void TestGraphLayout::zoomIsBounded()
{
    Graph graph(latin1("zoom"), true);
    graph.scaleView(2.0);
    QCOMPARE(graph.transform().m11(), 2.0);
    QCOMPARE(graph.transform().m22(), 2.0);
    for (int i = 0; i < 100; ++i) {
        graph.scaleView(1.1);
    }
    QVERIFY(graph.transform().m11() <= 100.0);
    QVERIFY(graph.transform().m11() * 1.1 > 100.0);
    for (int i = 0; i < 200; ++i) {
        graph.scaleView(1 / 1.1);
    }
    QVERIFY(graph.transform().m11() >= 0.07);
    QVERIFY(graph.transform().m11() / 1.1 < 0.07);
    const double before = graph.transform().m11();
    graph.scaleView(0.0);
    graph.scaleView(1e9);
    QCOMPARE(graph.transform().m11(), before);
}

void TestGraphLayout::spinning()
{
    const Points points = {{10, 1, 0}, {-10, -1, 0}};
    Graph graph(latin1("spin"), true);
    build(graph, points);
    graph.toggleAnim();
    QCOMPARE(timersOf(graph).size(), 1);
    QCOMPARE(timersOf(graph).constFirst().interval, 500);
    letTimerRunOut(graph);
    QCOMPARE(difference(placesOf(graph, 2), rotated(points, 0, step, 0)), QByteArray());
    graph.toggleAnim();
    QVERIFY2(timersOf(graph).isEmpty(), "a stopped drawing stands still");
}

void TestGraphLayout::optimizationTimer()
{
    Graph graph(latin1("optimization"), true);
    QSignalSpy console(&graph, &Graph::signal_console);
    graph.optimizationStarts();
    QCOMPARE(console.size(), 2);
    QCOMPARE(console[0], consoleLine(latin1("Graph Start timer 0"), true, 0, Qt::gray));
    const QString started = console[1][0].toString();
    QVERIFY2(started.startsWith(latin1("Timer ")) && started.endsWith(latin1(" started.")), qPrintable(started));
    const QString id = started.mid(6, started.size() - 6 - 9);
    QVERIFY(id.toInt() > 0);
    QCOMPARE(console[1], consoleLine(QStringLiteral("Timer %1 started.").arg(id), true, 0, Qt::gray));

    console.clear();
    graph.optimizationStarts();
    graph.optimizationStops();
    graph.optimizationStops();
    QCOMPARE(console, (QList<QVariantList>{
                          consoleLine(QStringLiteral("Graph Start timer %1").arg(id), true, 0, Qt::gray),
                          consoleLine(QStringLiteral("Graph Kill timer %1").arg(id), true, 0, Qt::gray),
                          consoleLine(latin1("Graph Kill timer 0"), true, 0, Qt::gray),
                      }));
}

void TestGraphLayout::optimizationTimerRepublishes()
{
    Graph graph(latin1("optimization"), true);
    build(graph, {{0, 0, 0}, {100, 0, 0}});
    graph.optimizationStarts();
    graph.addEdge(0, 1);
    graph.best_backup();
    QVERIFY(!graph.edgeItem(0, 1)->isVisible());
    QCOMPARE(timersOf(graph).size(), 1);
    QCOMPARE(timersOf(graph).constFirst().interval, 200);
    letTimerRunOut(graph);
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
    graph.optimizationStops();
    QVERIFY2(timersOf(graph).isEmpty(), "a stopped run shows nothing new");
    graph.remEdge(0, 1);
    graph.best_backup();
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
    QCOMPARE(difference(placesOf(graph, 2), {{0, 0, 0}, {100, 0, 0}}), QByteArray());
}

void TestGraphLayout::edgesLength()
{
    Graph graph(latin1("length"), true);
    build(graph, {{0, 0, 0}, {3, 4, 100}, {3, 0, -7}});
    QCOMPARE(graph.sum_edges_length(), 0.0);
    graph.addEdge(0, 1);
    QCOMPARE(graph.sum_edges_length(), 5.0);
    graph.addEdge(1, 2);
    graph.addEdge(0, 2);
    QCOMPARE(graph.sum_edges_length(), 12.0);
    graph.toggleEdge(2, 0); // The entry below the diagonal does not count.
    QCOMPARE(graph.sum_edges_length(), 12.0);
    graph.toggleEdge(0, 2);
    QCOMPARE(graph.sum_edges_length(), 9.0);
}

void TestGraphLayout::reorganizeUntanglesAPath()
{
    Graph graph(latin1("path"), true);
    // On a line at 0, 1, 2, 3, joined 0-2, 2-1, 1-3: length 5, and 3 is best.
    build(graph, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    graph.addEdge(0, 2);
    graph.addEdge(2, 1);
    graph.addEdge(1, 3);
    const Points before = placesOf(graph, 4);
    const int id = graph.getID();
    QCOMPARE(graph.reorganize(), 3.0);
    QCOMPARE(graph.getID(), id);
    QCOMPARE(graph.getNbEdges(), 3);
    QVERIFY(graph.edge(0, 1) && graph.edge(1, 2) && graph.edge(2, 3));
    QVERIFY(placesOf(graph, 4) == before);
}

void TestGraphLayout::reorganizeWithoutEdges()
{
    Graph graph(latin1("empty"), true);
    build(graph, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    QCOMPARE(graph.reorganize(), 0.0);
    QCOMPARE(graph.getNbEdges(), 0);
    build(graph, {});
    QCOMPARE(graph.reorganize(), 0.0);
}

void TestGraphLayout::reorganizeAgreesWithTheDescentWrittenOut()
{
    std::mt19937 random(3);
    Graph graph(latin1("descent"), false);
    for (int n = 2; n <= 14; ++n) {
        const Points points = randomPoints(n, random);
        build(graph, points);
        for (int i = 0; i < n; ++i) {
            for (int j = i + 1; j < n; ++j) {
                if (random() % 3 == 0) {
                    graph.addEdge(i, j);
                }
            }
        }
        Matrix expected = matrixOf(graph);
        QVERIFY(isClose(graph.sum_edges_length(), lengthOf(expected, points)));
        const double length = reorganized(expected, points);
        QVERIFY(isClose(graph.reorganize(), length));
        QCOMPARE(matrixOf(graph), expected);
    }
}

void TestGraphLayout::reorganizeSlotReports()
{
    Graph graph(latin1("report"), true);
    build(graph, {{0, 0, 0}, {1234.5678, 0, 0}});
    graph.addEdge(0, 1);
    const int id = graph.getID();
    QStringList order;
    connect(&graph, &Graph::signal_console, this, [&] { order.append(latin1("console")); });
    connect(&graph, &Graph::signal_interactive_graph_changed, this, [&] {
        order.append(latin1("changed"));
        QCOMPARE(graph.getID(), id + 1);
    });
    QSignalSpy console(&graph, &Graph::signal_console);
    graph.slot_reorganize();
    QCOMPARE(console, (QList<QVariantList>{consoleLine(latin1("Reorganize : length = 1234.57"), false, 2, Qt::blue)}));
    QCOMPARE(order, (QStringList{latin1("console"), latin1("changed")}));
}

void TestGraphLayout::relabelFollowsTheRandomNumbers()
{
    for (int n = 2; n <= 32; ++n) {
        qsrand(n);
        Graph graph(latin1("relabel"), false);
        graph.randomGraph(n);
        Matrix expected = matrixOf(graph);
        const int id = graph.getID();
        QSignalSpy edited(&graph, &Graph::signal_interactive_graph_changed);
        qsrand(100 + n);
        graph.slot_relabel();
        qsrand(100 + n);
        for (int i = 0; i < n; ++i) {
            int j = qrand() % (n - 1);
            if (j == i) {
                j = n - 1;
            }
            exchange(expected, i, j);
        }
        QCOMPARE(matrixOf(graph), expected);
        QCOMPARE(graph.getID(), id);
        QCOMPARE(edited.size(), 0);
    }
}

void TestGraphLayout::perturbFollowsTheRandomNumbers()
{
    for (int n = 2; n <= 32; ++n) {
        qsrand(n);
        Graph graph(latin1("perturb"), false);
        graph.randomGraph(n);
        Matrix expected = matrixOf(graph);
        qsrand(200 + n);
        graph.perturb(40);
        graph.perturb(0);
        graph.perturb(-1);
        const int next = qrand();
        qsrand(200 + n);
        for (int move = 0; move < 40; ++move) {
            const int u = qrand() % n;
            int v = qrand() % (n - 1);
            v = v == u ? n - 1 : v;
            const int s = qrand() % n;
            int t = qrand() % (n - 1);
            t = t == s ? n - 1 : t;
            if (expected[u][v]) {
                expected[u][v] = expected[v][u] = false;
                expected[s][t] = expected[t][s] = true;
            }
        }
        QCOMPARE(matrixOf(graph), expected);
        QCOMPARE(next, qrand());
    }
}

void TestGraphLayout::fewVerticesAreLeftAlone()
{
    Graph graph(latin1("few"), false);
    for (int n = 0; n < 2; ++n) {
        graph.randomGraph(n);
        const int id = graph.getID();
        graph.relabel();
        graph.perturb(10);
        QCOMPARE(graph.reorganize(), 0.0);
        QCOMPARE(graph.getNbNodes(), n);
        QCOMPARE(graph.getID(), id);
    }
}

QTEST_MAIN(TestGraphLayout)
#include "tst_graph_layout.moc"
