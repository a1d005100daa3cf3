#include "graphmatrix.h"

#include "graphfacts.h"
#include "vertexset.h"

#include <cmath>

namespace
{
/// A matrix with diagonal(v) in the row and the column v, entry(u, v) where u and v are adjacent, and zero elsewhere.
template<typename Diagonal, typename Entry>
std::vector<double> fromEdges(const SmallGraph &graph, Diagonal diagonal, Entry entry)
{
    const int entryCount = graph.order * graph.order;
    std::vector<double> rows(entryCount);
    for (int u = 0; u < graph.order; ++u) {
        rows[u * graph.order + u] = diagonal(u);
        for (const int v : VerticesOf(graph.rows[u])) {
            rows[u * graph.order + v] = entry(u, v);
        }
    }
    return rows;
}

std::vector<double> distanceMatrix(const DistanceMatrix &distances, int order)
{
    std::vector<double> rows;
    for (int u = 0; u < order; ++u) {
        for (int v = 0; v < order; ++v) {
            rows.push_back(distances.at(u, v));
        }
    }
    return rows;
}
} // namespace

std::vector<double> rowsOf(GraphMatrix matrix, GraphFacts &facts)
{
    const SmallGraph &graph = facts.graph();
    const std::vector<int> &degrees = facts.degrees();
    const auto degree = [&](int v) -> double { return degrees[v]; };
    switch (matrix) {
    case GraphMatrix::Adjacency:
        return fromEdges(
            graph, [](int) { return 0.0; }, [](int, int) { return 1.0; });
    case GraphMatrix::Laplacian:
        return fromEdges(graph, degree, [](int, int) { return -1.0; });
    case GraphMatrix::SignlessLaplacian:
        return fromEdges(graph, degree, [](int, int) { return 1.0; });
    case GraphMatrix::NormalizedLaplacian:
        return fromEdges(
            graph, [&](int v) { return degrees[v] > 0 ? 1.0 : 0.0; },
            [&](int u, int v) { return -1.0 / std::sqrt(degree(u) * degree(v)); });
    case GraphMatrix::Distance:
        return distanceMatrix(facts.distances(), graph.order);
    }
    return {};
}
