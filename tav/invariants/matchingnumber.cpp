#include "matchingnumber.h"

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/max_cardinality_matching.hpp>
#include <vector>

int matchingNumber(const SmallGraph &graph)
{
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
