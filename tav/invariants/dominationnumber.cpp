#include "dominationnumber.h"

#include "vertexset.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{
/// The smallest number of vertices that dominate all, by branch and bound: the next one dominates a vertex that has the
/// fewest possible dominators left. The bound gives every vertex that is not dominated yet the share 1/k of a
/// dominator, where k is the most that one of its possible dominators adds; so the shares of what one adds are 1 at
/// most (V. Chvátal, "A greedy heuristic for the set-covering problem", 1979).
class Domination
{
public:
    /// @p dominated has by vertex the vertices that it dominates, which are those that dominate it.
    Domination(int order, const std::array<VertexSet, SmallGraph::maxOrder> &dominated)
        : sets(dominated)
        , all(allVertices(order))
        , best(order)
    {
    }

    int fewest()
    {
        extend(all, all, 0);
        return best;
    }

private:
    /// Dominates the vertices @p rest by some of @p candidates in every way that may take fewer than the best one so
    /// far, after @p taken have been taken.
    void extend(VertexSet rest, VertexSet candidates, int taken)
    {
        if (rest == 0) {
            best = std::min(best, taken);
            return;
        }
        std::array<int, SmallGraph::maxOrder> gains;
        for (const int v : VerticesOf(candidates)) {
            gains[v] = vertexCount(sets[v] & rest);
        }
        constexpr double rounding = 1e-9;
        double shares = -rounding;
        int fewestOptions = SmallGraph::maxOrder + 1;
        VertexSet options = 0;
        for (const int u : VerticesOf(rest)) {
            const VertexSet dominators = sets[u] & candidates;
            if (dominators == 0) {
                return;
            }
            int most = 0;
            for (const int v : VerticesOf(dominators)) {
                most = std::max(most, gains[v]);
            }
            shares += 1.0 / most;
            const int count = vertexCount(dominators);
            if (count < fewestOptions) {
                fewestOptions = count;
                options = dominators;
            }
        }
        if (taken + int(std::ceil(shares)) >= best) {
            return;
        }
        while (options != 0) {
            const VerticesOf left(options);
            const int v =
                *std::max_element(left.begin(), left.end(), [&](int a, int b) { return gains[a] < gains[b]; });
            extend(rest & ~sets[v], candidates & ~SmallGraph::bit(v), taken + 1);
            // What dominates no more than v did is of no use instead of it.
            for (const int w : left) {
                if ((sets[w] & rest & ~sets[v]) == 0) {
                    options &= ~SmallGraph::bit(w);
                    candidates &= ~SmallGraph::bit(w);
                }
            }
        }
    }

    const std::array<VertexSet, SmallGraph::maxOrder> &sets;
    const VertexSet all;
    int best; // the fewest dominators found so far
};
} // namespace

int dominationNumber(const SmallGraph &graph)
{
    std::array<VertexSet, SmallGraph::maxOrder> dominated = graph.rows;
    for (int v = 0; v < graph.order; ++v) {
        dominated[v] |= SmallGraph::bit(v);
    }
    return Domination(graph.order, dominated).fewest();
}

int totalDominationNumber(const SmallGraph &graph)
{
    return Domination(graph.order, graph.rows).fewest();
}
