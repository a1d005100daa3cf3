#include "connectivity.h"

#include "vertexset.h"

#include <algorithm>
#include <array>

namespace
{
using VertexSets = std::array<VertexSet, SmallGraph::maxOrder>;

/// A flow from a vertex to one that is not adjacent to it, which passes through every other vertex at most once. So
/// each vertex has an entry and an exit with one way from the first to the second; an edge leads from the exit of
/// either end to the entry of the other. The flow grows along a way that is not used yet or is used in the other
/// direction (L. R. Ford and D. R. Fulkerson, "Maximal flow through a network", 1956).
class DisjointPaths
{
public:
    DisjointPaths(const SmallGraph &graph, int from, int to) : source(from), target(to)
    {
        for (int v = 0; v < graph.order; ++v) {
            entriesFrom[v] = graph.rows[v];
            exitsFrom[v] = SmallGraph::bit(v);
        }
    }

    /// The number of paths, or @p limit when there are more.
    int count(int limit)
    {
        int paths = 0;
        while (paths < limit && findWay()) {
            useWay();
            ++paths;
        }
        return paths;
    }

private:
    bool findWay()
    {
        VertexSet entered = 0;
        VertexSet left = SmallGraph::bit(source);
        for (VertexSet waiting = left; waiting != 0;) {
            const int u = firstVertex(waiting);
            waiting &= ~SmallGraph::bit(u);
            const VertexSet entries = entriesFrom[u] & ~entered;
            entered |= entries;
            for (const int v : VerticesOf(entries)) {
                exitBefore[v] = u;
                const VertexSet exits = exitsFrom[v] & ~left;
                left |= exits;
                waiting |= exits;
                for (const int w : VerticesOf(exits)) {
                    entryBefore[w] = v;
                }
            }
            if ((entered & SmallGraph::bit(target)) != 0) {
                return true;
            }
        }
        return false;
    }

    /// Turns every step of the way that was found round.
    void useWay()
    {
        for (int v = target;;) {
            const int u = exitBefore[v];
            entriesFrom[u] &= ~SmallGraph::bit(v);
            exitsFrom[v] |= SmallGraph::bit(u);
            if (u == source) {
                return;
            }
            v = entryBefore[u];
            exitsFrom[v] &= ~SmallGraph::bit(u);
            entriesFrom[u] |= SmallGraph::bit(v);
        }
    }

    const int source;
    const int target;
    VertexSets entriesFrom; // by exit
    VertexSets exitsFrom;   // by entry
    std::array<int, SmallGraph::maxOrder> exitBefore;
    std::array<int, SmallGraph::maxOrder> entryBefore;
};

/// The same with paths that may share vertices, but no edges.
class EdgeDisjointPaths
{
public:
    EdgeDisjointPaths(const SmallGraph &given, int from, int to) : graph(given), source(from), target(to) {}

    /// The number of paths, or @p limit when there are more.
    int count(int limit)
    {
        int paths = 0;
        while (paths < limit && findWay()) {
            useWay();
            ++paths;
        }
        return paths;
    }

private:
    bool findWay()
    {
        VertexSet reached = SmallGraph::bit(source);
        for (VertexSet waiting = reached; waiting != 0 && (reached & SmallGraph::bit(target)) == 0;) {
            const int u = firstVertex(waiting);
            const VertexSet next = graph.rows[u] & ~flows[u] & ~reached;
            reached |= next;
            waiting = (waiting & ~SmallGraph::bit(u)) | next;
            for (const int v : VerticesOf(next)) {
                before[v] = u;
            }
        }
        return (reached & SmallGraph::bit(target)) != 0;
    }

    /// A step against the flow takes it back.
    void useWay()
    {
        for (int v = target; v != source; v = before[v]) {
            const int u = before[v];
            if ((flows[v] & SmallGraph::bit(u)) != 0) {
                flows[v] &= ~SmallGraph::bit(u);
            } else {
                flows[u] |= SmallGraph::bit(v);
            }
        }
    }

    const SmallGraph &graph;
    const int source;
    const int target;
    VertexSets flows{}; // by vertex: the neighbours to which a path leads from it
    std::array<int, SmallGraph::maxOrder> before;
};

int vertexOfSmallestDegree(const SmallGraph &graph)
{
    int smallest = 0;
    for (int v = 1; v < graph.order; ++v) {
        if (vertexCount(graph.rows[v]) < vertexCount(graph.rows[smallest])) {
            smallest = v;
        }
    }
    return smallest;
}
} // namespace

int vertexConnectivity(const SmallGraph &graph)
{
    if (graph.order == 0) {
        return 0;
    }
    const int centre = vertexOfSmallestDegree(graph);
    const VertexSet neighbours = graph.rows[centre];
    int fewest = vertexCount(neighbours);
    for (const int v : VerticesOf(allVertices(graph.order) & ~neighbours & ~SmallGraph::bit(centre))) {
        fewest = DisjointPaths(graph, centre, v).count(fewest);
    }
    for (const int u : VerticesOf(neighbours)) {
        for (const int v : VerticesOf(neighbours & ~graph.rows[u])) {
            if (u < v) {
                fewest = DisjointPaths(graph, u, v).count(fewest);
            }
        }
    }
    return fewest;
}

int edgeConnectivity(const SmallGraph &graph)
{
    if (graph.order == 0) {
        return 0;
    }
    const int centre = vertexOfSmallestDegree(graph);
    int fewest = vertexCount(graph.rows[centre]);
    for (int v = 0; v < graph.order; ++v) {
        if (v != centre) {
            fewest = EdgeDisjointPaths(graph, centre, v).count(fewest);
        }
    }
    return fewest;
}
