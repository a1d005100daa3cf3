#include "independencenumber.h"

#include <algorithm>
#include <bitset>

namespace
{
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
    // Some largest set has the vertex when it has at most one neighbour, and when the graph consists of cycles.
    if (smallestDegree <= 1 || largestDegree == 2) {
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
