#include "longestpaths.h"

#include "hamiltoncycle.h"
#include "pathtable.h"
#include "vertexset.h"

#include <algorithm>
#include <vector>

namespace
{
/// Vertices of which no two are adjacent, those of small degree first.
VertexSet independentSet(const SmallGraph &graph)
{
    VertexSet set = 0;
    for (VertexSet rest = allVertices(graph.order); rest != 0;) {
        const VerticesOf vertices(rest);
        const int next = *std::min_element(vertices.begin(), vertices.end(), [&](int u, int v) {
            return vertexCount(graph.rows[u] & rest) < vertexCount(graph.rows[v] & rest);
        });
        set |= SmallGraph::bit(next);
        rest &= ~graph.rows[next] & ~SmallGraph::bit(next);
    }
    return set;
}

/// Longest paths and cycles by branch and bound, with the neighbours that have the fewest other ways first (H. C. von
/// Warnsdorff, 1823).
class LongestPaths
{
public:
    explicit LongestPaths(const SmallGraph &given) : graph(given), independent(independentSet(given)) {}

    int path()
    {
        for (const int start : VerticesOf(allVertices(graph.order))) {
            extend(start, allVertices(graph.order) & ~SmallGraph::bit(start), 1);
        }
        return best;
    }

    int cycle()
    {
        for (int start = 0; start < graph.order; ++start) {
            // What is below the start has been a start.
            close(start, start, allVertices(graph.order) & ~allVertices(start + 1), 1);
        }
        return best;
    }

private:
    /// Appends some of the vertices @p free to a path of @p length vertices that ends with @p end.
    void extend(int end, VertexSet free, int length)
    {
        best = std::max(best, length);
        const VertexSet usable = reachable(graph, graph.rows[end], free);
        const VertexSet ends = withFewNeighbours(usable, usable | SmallGraph::bit(end));
        const int more = most(usable & ~ends, isOther(end)) + (ends != 0 ? 1 : 0);
        if (length + more <= best) {
            return;
        }
        for (const int next : sorted(graph.rows[end] & free, free)) {
            extend(next, usable & ~SmallGraph::bit(next), length + 1);
        }
    }

    /// Appends some of the vertices @p free to a path of @p length vertices from @p start to @p end so that it can be
    /// closed.
    void close(int start, int end, VertexSet free, int length)
    {
        if (length > 2 && graph.adjacent(start, end)) {
            best = std::max(best, length);
        }
        VertexSet usable = reachable(graph, graph.rows[end], free);
        usable &= ~withFewNeighbours(usable, usable | SmallGraph::bit(end) | SmallGraph::bit(start));
        if ((usable & graph.rows[start]) == 0 || length + most(usable, isOther(start) + isOther(end) - 1) <= best) {
            return;
        }
        for (const int next : sorted(graph.rows[end] & usable, usable)) {
            close(start, next, usable & ~SmallGraph::bit(next), length + 1);
        }
    }

    /// How many of @p usable a path can have at most. It has another vertex between two independent ones, so that it
    /// has @p surplus independent ones more than others at most.
    int most(VertexSet usable, int surplus) const
    {
        const int others = vertexCount(usable & ~independent);
        return others + std::min(vertexCount(usable & independent), others + surplus);
    }

    int isOther(int v) const { return (independent & SmallGraph::bit(v)) == 0 ? 1 : 0; }

    /// The vertices of @p set that have less than two neighbours in @p around, so that no path passes through them.
    VertexSet withFewNeighbours(VertexSet set, VertexSet around) const
    {
        VertexSet result = 0;
        for (const int v : VerticesOf(set)) {
            result |= vertexCount(graph.rows[v] & around) < 2 ? SmallGraph::bit(v) : 0;
        }
        return result;
    }

    std::vector<int> sorted(VertexSet candidates, VertexSet free) const
    {
        const VerticesOf vertices(candidates);
        std::vector<int> result(vertices.begin(), vertices.end());
        std::stable_sort(result.begin(), result.end(), [&](int u, int v) {
            return vertexCount(graph.rows[u] & free) < vertexCount(graph.rows[v] & free);
        });
        return result;
    }

    const SmallGraph &graph;
    const VertexSet independent;
    int best = 0;
};

/// The same for induced paths and cycles: the neighbours of what is behind the end of a path cannot be used any more.
class LongestInducedPaths
{
public:
    explicit LongestInducedPaths(const SmallGraph &given) : graph(given) {}

    int path()
    {
        for (int start = 0; start < graph.order; ++start) {
            extend(start, allVertices(graph.order) & ~SmallGraph::bit(start), 1);
        }
        return best;
    }

    int cycle()
    {
        for (int start = 0; start < graph.order; ++start) {
            const VertexSet later = allVertices(graph.order) & ~allVertices(start + 1);
            for (const int second : VerticesOf(graph.rows[start] & later)) {
                close(start, second, later & ~SmallGraph::bit(second), 2);
            }
        }
        return best;
    }

private:
    void extend(int end, VertexSet free, int length)
    {
        best = std::max(best, length);
        const VertexSet candidates = graph.rows[end] & free;
        const int more = vertexCount(reachable(graph, candidates, free) & ~candidates) + 1; // one of the candidates
        if (length + more <= best) {
            return;
        }
        for (const int next : VerticesOf(candidates)) {
            extend(next, free & ~candidates, length + 1);
        }
    }

    void close(int start, int end, VertexSet free, int length)
    {
        const VertexSet candidates = graph.rows[end] & free;
        const VertexSet last = graph.rows[start];
        if ((candidates & last) != 0) {
            best = std::max(best, length + 1);
        }
        const VertexSet usable = reachable(graph, candidates & ~last, free & ~last);
        const int more = vertexCount(usable & ~candidates) + 2; // one of the candidates, and the last vertex
        if (length + more <= best) {
            return;
        }
        for (const int next : VerticesOf(candidates & ~last)) {
            close(start, next, free & ~candidates, length + 1);
        }
    }

    const SmallGraph &graph;
    int best = 0;
};
} // namespace

int longestPath(const SmallGraph &graph)
{
    if (graph.order <= PathTable::maxOrder) {
        return PathTable(graph).longestPath();
    }
    return hasHamiltonPath(graph) ? graph.order : LongestPaths(graph).path();
}

int longestCycle(const SmallGraph &graph)
{
    if (graph.order <= PathTable::maxOrder) {
        return PathTable(graph).longestCycle();
    }
    if (hasHamiltonCycle(graph)) {
        return graph.order;
    }
    for (int v = 0; v < graph.order; ++v) {
        if (hasHamiltonCycle(graph.withoutVertex(v))) {
            return graph.order - 1;
        }
    }
    return LongestPaths(graph).cycle();
}

int longestInducedPath(const SmallGraph &graph)
{
    return LongestInducedPaths(graph).path();
}

int longestInducedCycle(const SmallGraph &graph)
{
    return LongestInducedPaths(graph).cycle();
}
