#include "planaritytest.h"

#include "vertexset.h"

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/boyer_myrvold_planar_test.hpp>

bool isPlanar(const SmallGraph &graph)
{
    const int size = graph.size();
    if (graph.order > 2 && size > 3 * graph.order - 6) { // the Euler characteristic tells sooner than Boost
        return false;
    }
    using BoostGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS>;
    BoostGraph copy(graph.order);
    for (int v = 1; v < graph.order; ++v) {
        for (const int u : VerticesOf(graph.rows[v] & allVertices(v))) {
            boost::add_edge(u, v, copy);
        }
    }
    return boost::boyer_myrvold_planarity_test(copy);
}
