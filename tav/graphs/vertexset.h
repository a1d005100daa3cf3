#ifndef TAVOLINE_VERTEXSET_H
#define TAVOLINE_VERTEXSET_H

#include "smallgraph.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <iterator>

/// A set of vertices, like a row of a SmallGraph: vertex 0 at the highest bit.
using VertexSet = uint64_t;

inline int vertexCount(VertexSet set)
{
    return int(std::bitset<64>(set).count());
}

/// The smallest vertex of @p set, which must not be empty.
inline int firstVertex(VertexSet set)
{
    return __builtin_clzll(set);
}

/// All vertices below @p order.
inline VertexSet allVertices(int order)
{
    return order == 0 ? 0 : ~VertexSet(0) << (64 - order);
}

/// The vertices of a set, the smallest first, for a loop over them.
class VerticesOf
{
public:
    class Iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = int;
        using difference_type = ptrdiff_t;
        using pointer = const int *;
        using reference = int;

        explicit Iterator(VertexSet set) : rest(set) {}
        int operator*() const { return firstVertex(rest); }
        Iterator &operator++()
        {
            rest &= ~SmallGraph::bit(firstVertex(rest));
            return *this;
        }
        bool operator==(const Iterator &other) const { return rest == other.rest; }
        bool operator!=(const Iterator &other) const { return rest != other.rest; }

    private:
        VertexSet rest;
    };

    explicit VerticesOf(VertexSet given) : set(given) {}
    Iterator begin() const { return Iterator(set); }
    Iterator end() const { return Iterator(0); }

private:
    VertexSet set;
};

/// The vertices outside of @p set that are adjacent to one in it.
inline VertexSet neighbours(const SmallGraph &graph, VertexSet set)
{
    VertexSet around = 0;
    for (const int v : VerticesOf(set)) {
        around |= graph.rows[v];
    }
    return around & ~set;
}

/// The vertices of @p within to which a path leads from @p start that has no vertex outside @p within.
inline VertexSet reachable(const SmallGraph &graph, VertexSet start, VertexSet within)
{
    VertexSet reached = start & within;
    for (VertexSet fresh = reached; fresh != 0;) {
        fresh = neighbours(graph, fresh) & within & ~reached;
        reached |= fresh;
    }
    return reached;
}

#endif
