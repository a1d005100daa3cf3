#include "graph.h"
#include "node.h"
#include "numbertext.h"
#include "random.h"

#include <QLineF>
#include <QMutexLocker>
#include <QTimerEvent>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace
{
/// Where the search for the least and the greatest coordinate starts: a fit sees no vertex beyond it.
constexpr double farthest = 1e12;

/// Least and greatest coordinate of a set of vertices along one axis.
struct Range {
    double min = farthest;
    double max = -farthest;

    void add(double value)
    {
        min = std::min(min, value);
        max = std::max(max, value);
    }
    double length() const { return max - min; }
    bool isDegenerate() const { return length() < 0.1; }
    /// Gives a degenerate range a length to divide by.
    void repair()
    {
        if (isDegenerate()) {
            max = min + 10;
        }
    }
};

struct Bounds {
    Range x;
    Range y;
    Range z;
};

/// Maps the range from @p min over @p extent onto the range of length @p size around 0.
double fit(double value, double min, double extent, double size)
{
    return size * (value - min) / extent - size / 2;
}

double fit(double value, const Range &range, double size)
{
    return fit(value, range.min, range.length(), size);
}

/// The bounds of the first @p count vertices, repaired along x and y.
Bounds planeBounds(const QVector<Node *> &nodes, int count)
{
    Bounds bounds;
    for (int i = 0; i < count; ++i) {
        bounds.x.add(nodes[i]->pos().x());
        bounds.y.add(nodes[i]->pos().y());
        bounds.z.add(nodes[i]->getCoordZ());
    }
    bounds.x.repair();
    bounds.y.repair();
    return bounds;
}

/// The bounds for a fit in space. When the drawing is flat, the upper bound of y is changed instead of that of z; this
/// is deliberate.
Bounds spaceBounds(const QVector<Node *> &nodes, int count)
{
    Bounds bounds = planeBounds(nodes, count);
    if (bounds.z.isDegenerate()) {
        bounds.y.max = bounds.z.min + 10;
    }
    return bounds;
}

/// Moves @p vertex to the result of a fit in space. A flat drawing is fitted with the wrong range of y, and may land
/// farther out each time. The vertex stays where it is when the next fit would not see it.
void placeInSpace(Node &vertex, double x, double y, double z)
{
    if (std::abs(y) <= farthest) {
        vertex.setPosition(x, y, z);
    }
}

/// A random vertex of @p n other than @p vertex; @p n is 2 at least.
int otherRandomVertex(int vertex, int n)
{
    const int other = qrand() % (n - 1);
    return other == vertex ? n - 1 : other;
}
} // namespace

// Places.

void Graph::place_circle(double diameter)
{
    const double radius = diameter / 2;
    const int n = usedSlots(nbNodes);
    for (int i = 0; i < n; ++i) {
        const double angle = 2 * i * 3.14159265 / n;
        nodes[i]->setPosition(radius * std::cos(angle), radius * std::sin(angle));
    }
}

void Graph::slot_randomPosition()
{
    for (int k = 0; k < MAX_NODES; ++k) {
        const double t = qrand() * 30.0 / 2147483647.0;
        const double angle = k * 6.2831853 / MAX_NODES;
        nodes[k]->QGraphicsItem::setPos(5 * t * std::sin(angle), 5 * t * std::cos(angle));
    }
}

void Graph::slot_set_node_radius(double radius)
{
    for (Node *vertex : qAsConst(nodes)) {
        vertex->setRadius(radius);
    }
}

// Moves of the whole drawing.

void Graph::center()
{
    const int n = usedSlots(bestNbNodes);
    if (n <= 1) {
        return;
    }
    QPointF mean;
    double meanZ = 0.0;
    for (int i = 0; i < n; ++i) {
        mean += nodes[i]->pos();
        meanZ += nodes[i]->getCoordZ();
    }
    mean /= n;
    meanZ /= n;
    for (int i = 0; i < n; ++i) {
        const QPointF place = nodes[i]->pos() - mean;
        nodes[i]->setPosition(place.x(), place.y(), nodes[i]->getCoordZ() - meanZ);
    }
}

void Graph::rotate(double ax, double ay, double az)
{
    center();
    for (int i = 0; i < usedSlots(bestNbNodes); ++i) {
        const double x = nodes[i]->pos().x();
        const double y = nodes[i]->pos().y();
        const double z = nodes[i]->getCoordZ();
        const double y1 = y * std::cos(ax) - z * std::sin(ax);
        const double z1 = y * std::sin(ax) + z * std::cos(ax);
        const double x2 = x * std::cos(ay) + z1 * std::sin(ay);
        const double z2 = -x * std::sin(ay) + z1 * std::cos(ay);
        const double x3 = x2 * std::cos(az) - y1 * std::sin(az);
        const double y3 = x2 * std::sin(az) + y1 * std::cos(az);
        nodes[i]->setPosition(x3, y3, z2);
    }
}

void Graph::scaleCoords(double w, double h)
{
    uniformScale = false;
    const int n = usedSlots(bestNbNodes);
    const Bounds bounds = planeBounds(nodes, n);
    for (int i = 0; i < n; ++i) {
        const QPointF place = nodes[i]->pos();
        nodes[i]->setPosition(fit(place.x(), bounds.x, w), fit(place.y(), bounds.y, h));
    }
}

void Graph::scaleCoords(double w, double h, double d)
{
    uniformScale = true;
    const int n = usedSlots(bestNbNodes);
    const Bounds bounds = spaceBounds(nodes, n);
    for (int i = 0; i < n; ++i) {
        const QPointF place = nodes[i]->pos();
        placeInSpace(*nodes[i], fit(place.x(), bounds.x, w), fit(place.y(), bounds.y, h),
                     fit(nodes[i]->getCoordZ(), bounds.z, d));
    }
}

void Graph::scaleCoords(double s)
{
    uniformScale = true;
    const int n = usedSlots(bestNbNodes);
    const Bounds bounds = spaceBounds(nodes, n);
    const double extent = std::max({bounds.x.length(), bounds.y.length(), bounds.z.length()});
    for (int i = 0; i < n; ++i) {
        const QPointF place = nodes[i]->pos();
        placeInSpace(*nodes[i], fit(place.x(), bounds.x.min, extent, s), fit(place.y(), bounds.y.min, extent, s),
                     fit(nodes[i]->getCoordZ(), bounds.z.min, extent, s));
    }
}

void Graph::slot_rescale(bool)
{
    scaleCoords(rescaleSize);
}

void Graph::slot_rescale_graph(int size)
{
    slot_scale_graph(size, uniformScale);
}

void Graph::slot_scale_graph(int size, bool uniform)
{
    rescaleSize = size;
    slot_rescale(uniform);
}

// The view and the timers.

void Graph::scaleView(double factor)
{
    const double unit = transform().scale(factor, factor).mapRect(QRectF(0, 0, 1, 1)).width();
    if (unit >= 0.07 && unit <= 100) {
        scale(factor, factor);
    }
}

void Graph::toggleAnim()
{
    if (rotationTimerId != 0) {
        killTimer(rotationTimerId);
        rotationTimerId = 0;
    } else {
        rotationTimerId = startTimer(rotationTimerInterval, Qt::CoarseTimer);
    }
}

void Graph::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == rotationTimerId) {
        rotate(0, rotationStep, 0);
    }
    update_display();
}

void Graph::optimizationStarts()
{
    emit signal_console(QStringLiteral("Graph Start timer %1").arg(optTimerId), true, 0, Qt::gray);
    if (optTimerId == 0) {
        optTimerId = startTimer(optTimerInterval, Qt::CoarseTimer);
        emit signal_console(QStringLiteral("Timer %1 started.").arg(optTimerId), true, 0, Qt::gray);
    }
}

void Graph::optimizationStops()
{
    emit signal_console(QStringLiteral("Graph Kill timer %1").arg(optTimerId), true, 0, Qt::gray);
    killTimer(optTimerId);
    optTimerId = 0;
}

// Changes of the current graph that leave the items in place.

double Graph::sum_edges_length() const
{
    const int n = usedSlots(nbNodes);
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (adjacency[i][j]) {
                sum += QLineF(nodes[i]->position(), nodes[j]->position()).length();
            }
        }
    }
    return sum;
}

/// Exchanges the neighbourhoods of vertices @p i and @p j; currentLock is held.
void Graph::swapVertices(int i, int j)
{
    const int n = usedSlots(nbNodes);
    for (int k = 0; k < n; ++k) {
        std::swap(adjacency[i][k], adjacency[j][k]);
    }
    for (int k = 0; k < n; ++k) {
        std::swap(adjacency[k][i], adjacency[k][j]);
    }
}

double Graph::reorganize()
{
    const QMutexLocker locker(&currentLock);
    const int n = usedSlots(nbNodes);
    double best = sum_edges_length();
    bool improved = true;
    while (improved) {
        improved = false;
        for (int i = 0; i < n; ++i) {
            for (int j = i + 1; j < n; ++j) {
                swapVertices(i, j);
                const double length = sum_edges_length();
                if (best - 1e-6 > length) {
                    best = length;
                    improved = true;
                } else {
                    swapVertices(i, j);
                }
            }
        }
    }
    return best;
}

void Graph::relabel()
{
    const QMutexLocker locker(&currentLock);
    const int n = usedSlots(nbNodes);
    if (n < 2) {
        return;
    }
    for (int i = 0; i < n; ++i) {
        swapVertices(i, otherRandomVertex(i, n));
    }
}

void Graph::perturb(int k)
{
    const int n = usedSlots(nbNodes);
    if (n < 2) {
        return;
    }
    for (int move = 0; move < k; ++move) {
        const int u = qrand() % n;
        const int v = otherRandomVertex(u, n);
        const int s = qrand() % n;
        const int t = otherRandomVertex(s, n);
        if (edge(u, v)) {
            remEdge(u, v);
            addEdge(s, t);
        }
    }
}

void Graph::slot_reorganize()
{
    const double length = reorganize();
    emit signal_console(QStringLiteral("Reorganize : length = %1").arg(numberText(length)), false, 2, Qt::blue);
    countChange();
    emit signal_interactive_graph_changed();
}

void Graph::slot_relabel()
{
    relabel();
}
