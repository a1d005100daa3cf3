#include "planaritytest.h"

#include "vertexset.h"

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/boyer_myrvold_planar_test.hpp>

namespace
{
/// Removes what does not change whether @p graph is planar: vertices of degree 0 and 1, and those on a path, whose
/// neighbours become adjacent. Returns what is left, with the numbers that it had.
VertexSet reduce(SmallGraph &graph)
{
    VertexSet rest = allVertices(graph.order);
    VertexSet suspects = rest;
    while (suspects != 0) {
        const int v = firstVertex(suspects);
        suspects &= ~SmallGraph::bit(v);
        const VertexSet around = graph.rows[v];
        if (vertexCount(around) > 2) {
            continue;
        }
        rest &= ~SmallGraph::bit(v);
        for (const int u : VerticesOf(around)) {
            graph.rows[u] = (graph.rows[u] | (around & ~SmallGraph::bit(u))) & ~SmallGraph::bit(v);
        }
        graph.rows[v] = 0;
        suspects |= around;
    }
    return rest;
}
} // namespace

bool isPlanar(const SmallGraph &given)
{
    SmallGraph graph = given;
    const VertexSet rest = reduce(graph);
    const int order = vertexCount(rest);
    const int size = graph.size();
    if (size < 9) { // of K5 and K3,3, one of which is in every graph that is not planar, the smaller has nine edges
        return true;
    }
    if (size > 3 * order - 6) { // the Euler characteristic tells sooner than Boost
        return false;
    }
    using BoostGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS>;
    BoostGraph copy(order);
    std::array<int, SmallGraph::maxOrder> number{}; // among the vertices that are left
    int next = 0;
    for (const int v : VerticesOf(rest)) {
        number[v] = next++;
        for (const int u : VerticesOf(graph.rows[v] & allVertices(v))) {
            boost::add_edge(number[u], number[v], copy);
        }
    }
    return boost::boyer_myrvold_planarity_test(copy);
}
