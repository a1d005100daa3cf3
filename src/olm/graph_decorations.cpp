#include "edge.h"
#include "graph.h"
#include "node.h"
#include "numbertext.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
/// The colour index that @p value stands for: truncated, at the ends of the int range when beyond them, 0 for NaN.
int colorIndex(double value)
{
    using Int = std::numeric_limits<int>;
    if (std::isnan(value)) {
        return 0;
    }
    return int(std::clamp(value, double{Int::min()}, double{Int::max()}));
}
} // namespace

void Graph::setPos(int i, QPointF position)
{
    if (isVertex(i)) {
        nodes[i]->setPosition(position);
    }
}

void Graph::setPos(int i, double x, double y, double z)
{
    if (isVertex(i)) {
        nodes[i]->setPosition(x, y, z);
    }
}

void Graph::setLabels(const QVector<double> &values)
{
    if (values.isEmpty()) {
        resetLabels();
    }
    for (int i = 0; i < usedSlots(values.size()); ++i) {
        nodes[i]->setLabel(std::abs(values[i]) < 1e-06 ? QStringLiteral("0") : numberText(values[i]));
    }
}

void Graph::resetLabels()
{
    for (Node *vertex : qAsConst(nodes)) {
        vertex->setLabel(QString());
    }
}

/// Calls apply(edge item, i, j) for the edges j < i of the current graph among the displayed vertices.
template<typename Apply> void Graph::forEachDisplayedEdge(Apply apply)
{
    for (int i = 0; i < usedSlots(bestNbNodes); ++i) {
        for (int j = 0; j < i; ++j) {
            if (edge(i, j)) {
                apply(edges[i][j], i, j);
            }
        }
    }
}

void Graph::setELabels(const QVector<QVector<double>> &values, bool on)
{
    forEachDisplayedEdge([&](Edge *item, int i, int j) {
        QString label;
        // A matrix that is too small leaves the edges beyond it without a label.
        if (on && i < values.size() && j < values[i].size()) {
            label = std::abs(values[i][j]) <= 1e-06 ? QStringLiteral("0") : numberText(values[i][j]);
        }
        item->setLabel(label);
    });
}

void Graph::setEHilight(const QVector<QVector<double>> &values, bool on)
{
    forEachDisplayedEdge([&](Edge *item, int i, int j) {
        item->setHilighted(on && i < values.size() && j < values[i].size() && values[i][j] > 0.999999);
    });
}

void Graph::setColors(const QVector<double> &values)
{
    if (values.isEmpty()) {
        resetColors();
    }
    for (int i = 0; i < usedSlots(values.size()); ++i) {
        nodes[i]->setColor(colorIndex(values[i]));
    }
}

void Graph::resetColors()
{
    for (Node *vertex : qAsConst(nodes)) {
        vertex->setColor(0);
    }
}

void Graph::setSizes(const QVector<double> &values)
{
    if (values.isEmpty()) {
        resetSizes();
    }
    double min = 1e12;
    double max = -1e12;
    for (const double value : values) {
        min = std::min(min, value);
        max = std::max(max, value);
    }
    const double range = max - min < 1e-06 ? 1.0 : max - min;
    for (int i = 0; i < usedSlots(values.size()); ++i) {
        const double ratio = (values[i] - min) / range;
        nodes[i]->setSizeRatio(std::isfinite(ratio) ? ratio : 0.0);
    }
}

void Graph::resetSizes()
{
    for (Node *vertex : qAsConst(nodes)) {
        vertex->setSizeRatio(0.0);
    }
}

void Graph::hilight(int k)
{
    for (int i = 0; i < MAX_NODES; ++i) {
        if (i == k) {
            nodes[i]->hilight();
        } else {
            nodes[i]->unhilight();
        }
    }
    emit signal_hilight_node(k);
}
