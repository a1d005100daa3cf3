#include "feedbackvertexset.h"

#include "vertexset.h"

#include <algorithm>
#include <array>

namespace
{
/// Branch and bound over the vertices of the largest degree: each is removed or kept (as F. V. Fomin, S. Gaspers, A. V.
/// Pyatkin and I. Razgon, "On the minimum feedback vertex set problem", 2008, who also have the rules of reduce()).
class FeedbackVertexSet
{
public:
    explicit FeedbackVertexSet(const SmallGraph &given) : graph(given), best(given.order) {}

    int fewest()
    {
        extend(allVertices(graph.order), 0, 0);
        return best;
    }

private:
    /// Removes more vertices of @p rest, but none of @p kept, in every way that may be better than the best one so far,
    /// after @p removed have been removed. No cycle has kept vertices alone.
    void extend(VertexSet rest, VertexSet kept, int removed)
    {
        reduce(rest, kept, removed);
        if (rest == 0) {
            best = std::min(best, removed);
            return;
        }
        if (removed + fewestMore(rest, kept) >= best) {
            return;
        }
        int next = -1;
        for (const int v : VerticesOf(rest & ~kept)) {
            if (next < 0 || degree(v, rest) > degree(next, rest)) {
                next = v;
            }
        }
        extend(rest & ~SmallGraph::bit(next), kept, removed + 1);
        extend(rest, kept | SmallGraph::bit(next), removed);
    }

    /// Leaves out what is in no cycle, removes what alone is left of a cycle, and keeps what has two neighbours, one of
    /// which is in all the same cycles and can be removed instead.
    void reduce(VertexSet &rest, VertexSet &kept, int &removed) const
    {
        for (bool isReduced = false; !isReduced;) {
            isReduced = true;
            for (const int v : VerticesOf(rest)) {
                const VertexSet vertex = SmallGraph::bit(v);
                const VertexSet neighbours = graph.rows[v] & rest;
                const bool isOpen = (kept & vertex) == 0;
                if (vertexCount(neighbours) < 2) {
                    rest &= ~vertex;
                    kept &= ~vertex;
                } else if (isOpen && closesCycle(neighbours & kept, kept)) {
                    rest &= ~vertex;
                    ++removed;
                } else if (isOpen && vertexCount(neighbours) == 2 && (neighbours & ~kept) != 0) {
                    kept |= vertex;
                } else {
                    continue;
                }
                isReduced = false;
            }
        }
    }

    /// Whether a path of kept vertices joins two of @p neighbours.
    bool closesCycle(VertexSet neighbours, VertexSet kept) const
    {
        while (vertexCount(neighbours) > 1) {
            const VertexSet first = SmallGraph::bit(firstVertex(neighbours));
            neighbours &= ~first;
            if ((reachable(graph, first, kept) & neighbours) != 0) {
                return true;
            }
        }
        return false;
    }

    /// How many vertices must go at least: one with d neighbours lowers the cyclomatic number by d - 1 at most.
    int fewestMore(VertexSet rest, VertexSet kept) const
    {
        std::array<int, SmallGraph::maxOrder> vertices{}; // by degree
        int degrees = 0;
        for (const int v : VerticesOf(rest)) {
            const int d = degree(v, rest);
            degrees += d;
            vertices[d] += (kept & SmallGraph::bit(v)) == 0 ? 1 : 0;
        }
        int excess = degrees / 2 - vertexCount(rest) + 1; // with one component, the cyclomatic number; else less
        int count = 0;
        for (int d = SmallGraph::maxOrder - 1; d > 1 && excess > 0; --d) {
            const int some = std::min(vertices[d], (excess + d - 2) / (d - 1));
            count += some;
            excess -= some * (d - 1);
        }
        return excess > 0 ? SmallGraph::maxOrder : count;
    }

    int degree(int v, VertexSet rest) const { return vertexCount(graph.rows[v] & rest); }

    const SmallGraph &graph;
    int best;
};
} // namespace

int feedbackVertexSetNumber(const SmallGraph &graph)
{
    return FeedbackVertexSet(graph).fewest();
}
