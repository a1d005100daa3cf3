#include "independencenumber.h"

#include <algorithm>
#include <bitset>

namespace
{
/// Whether the vertices of the set @p rest next to @p v are mutually adjacent.
bool isSimplicial(const SmallGraph &graph, int v, std::uint64_t rest)
{
    const std::uint64_t neighbours = graph.rows[size_t(v)] & rest;
    for (int u = 0; u < graph.order; ++u) {
        if ((neighbours & SmallGraph::bit(u)) != 0 &&
            (neighbours & ~graph.rows[size_t(u)] & ~SmallGraph::bit(u)) != 0) {
            return false;
        }
    }
    return true;
}

/// The largest number of mutually non-adjacent vertices in the set @p rest.
int largestWithin(const SmallGraph &graph, std::uint64_t rest)
{
    if (rest == 0) {
        return 0;
    }
    int least = -1; // a vertex of smallest degree
    int most = -1;  // and one of largest degree
    int smallestDegree = SmallGraph::MaxOrder;
    int largestDegree = -1;
    for (int v = 0; v < graph.order; ++v) {
        if ((rest & SmallGraph::bit(v)) != 0) {
            const int degree = int(std::bitset<64>(graph.rows[size_t(v)] & rest).count());
            if (degree < smallestDegree) {
                smallestDegree = degree;
                least = v;
            }
            if (degree > largestDegree) {
                largestDegree = degree;
                most = v;
            }
        }
    }
    const auto sizeWith = [&](int v) {
        return 1 + largestWithin(graph, rest & ~graph.rows[size_t(v)] & ~SmallGraph::bit(v));
    };
    // Some largest set has the vertex when its neighbours are mutually adjacent, as each set has at most one of them,
    // and when the graph consists of cycles.
    if (largestDegree == 2 || isSimplicial(graph, least, rest)) {
        return sizeWith(least);
    }
    return std::max(sizeWith(most), largestWithin(graph, rest & ~SmallGraph::bit(most)));
}
} // namespace

int independenceNumber(const SmallGraph &graph)
{
    std::uint64_t all = 0;
    for (int v = 0; v < graph.order; ++v) {
        all |= SmallGraph::bit(v);
    }
    return largestWithin(graph, all);
}
