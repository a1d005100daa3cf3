#include "matchingnumber.h"

#include "vertexset.h"

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/max_cardinality_matching.hpp>
#include <vector>

namespace
{
/// The number of edges that are found when each vertex in turn takes its first neighbour that is free.
int greedyMatching(const SmallGraph &graph)
{
    int edges = 0;
    VertexSet free = allVertices(graph.order);
    for (int v = 0; v < graph.order; ++v) {
        const VertexSet mates = (free & SmallGraph::bit(v)) != 0 ? graph.rows[v] & free : 0;
        if (mates != 0) {
            free &= ~SmallGraph::bit(v) & ~SmallGraph::bit(firstVertex(mates));
            ++edges;
        }
    }
    return edges;
}
} // namespace

int matchingNumber(const SmallGraph &graph)
{
    const int most = graph.order / 2;
    if (greedyMatching(graph) == most) {
        return most;
    }
    using BoostGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS>;
    BoostGraph copy(graph.order);
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (graph.adjacent(u, v)) {
                boost::add_edge(u, v, copy);
            }
        }
    }
    std::vector<BoostGraph::vertex_descriptor> mates(graph.order);
    boost::edmonds_maximum_cardinality_matching(copy, mates.data());
    return int(boost::matching_size(copy, mates.data()));
}
