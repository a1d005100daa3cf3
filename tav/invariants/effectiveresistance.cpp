#include "effectiveresistance.h"

#include <array>

double sumOfResistances(const SmallGraph &graph)
{
    const int order = graph.order;
    const int ground = order - 1;
    std::array<std::array<double, SmallGraph::maxOrder>, SmallGraph::maxOrder> conductance; // as far as used
    for (int u = 0; u < order; ++u) {
        for (int v = 0; v < order; ++v) {
            conductance[u][v] = graph.adjacent(u, v) ? 1.0 : 0.0;
        }
    }
    // Each vertex in turn gives way to edges between its neighbours that leave the resistances between those as they
    // are; the conductances in its row become parts of their sum.
    std::array<double, SmallGraph::maxOrder> total{};
    for (int v = 0; v < ground; ++v) {
        auto &row = conductance[v];
        for (int u = v + 1; u < order; ++u) {
            total[v] += row[u];
        }
        for (int u = v + 1; u < order; ++u) {
            const double part = row[u] / total[v];
            for (int w = u + 1; w < order; ++w) {
                conductance[u][w] += part * row[w];
            }
            row[u] = part;
        }
    }
    // The inverse, from the last row to the first.
    std::array<std::array<double, SmallGraph::maxOrder>, SmallGraph::maxOrder> inverse; // as far as used
    double trace = 0.0;
    double sum = 0.0;
    for (int v = ground - 1; v >= 0; --v) {
        for (int w = ground - 1; w >= v; --w) {
            double entry = w == v ? 1.0 / total[v] : 0.0;
            for (int u = v + 1; u < ground; ++u) {
                entry += conductance[v][u] * inverse[u][w];
            }
            inverse[v][w] = entry;
            inverse[w][v] = entry;
            sum += w == v ? entry : 2.0 * entry;
        }
        trace += inverse[v][v];
    }
    return order * trace - sum;
}
