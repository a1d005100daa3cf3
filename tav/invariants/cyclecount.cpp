#include "cyclecount.h"

#include "pathtable.h"
#include "vertexset.h"

namespace
{
/// Finds one cycle after the other, by paths from the smallest vertex that can come back to it (R. C. Read and R. E.
/// Tarjan, "Bounds on backtrack algorithms for listing cycles, paths, and spanning trees", 1975).
class Cycles
{
public:
    explicit Cycles(const SmallGraph &given) : graph(given) {}

    double count()
    {
        for (int start = 0; start < graph.order; ++start) {
            VertexSet free = allVertices(graph.order) & ~allVertices(start + 1);
            VertexSet lasts = graph.rows[start] & free;
            for (const int second : VerticesOf(lasts)) {
                lasts &= ~SmallGraph::bit(second); // of both directions the one with the smaller second vertex
                extend(second, free & ~SmallGraph::bit(second), lasts);
            }
        }
        return found;
    }

private:
    /// Continues a path that ends with @p end by vertices of @p free to those of @p lasts.
    void extend(int end, VertexSet free, VertexSet lasts)
    {
        const VertexSet usable = reachable(graph, graph.rows[end], free);
        if ((usable & lasts) == 0) {
            return;
        }
        for (const int next : VerticesOf(graph.rows[end] & usable)) {
            found += (lasts & SmallGraph::bit(next)) != 0 ? 1.0 : 0.0;
            extend(next, usable & ~SmallGraph::bit(next), lasts);
        }
    }

    const SmallGraph &graph;
    double found = 0.0;
};
} // namespace

double cycleCount(const SmallGraph &graph)
{
    return graph.order <= PathTable::maxOrder ? PathTable(graph).cycles() : Cycles(graph).count();
}
