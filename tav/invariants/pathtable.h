#ifndef TAVOLINE_PATHTABLE_H
#define TAVOLINE_PATHTABLE_H

#include "smallgraph.h"

#include <array>
#include <cstdint>

/// Paths and cycles of a graph on few vertices by the sets of their vertices: a path through a set that ends with v is
/// one through the set without v that ends with a neighbour of v (M. Held and R. M. Karp, "A dynamic programming
/// approach to sequencing problems", 1962). The time is that for all sets of vertices.
class PathTable
{
public:
    static constexpr int maxOrder = 16;

    /// @p graph has at most maxOrder vertices.
    explicit PathTable(const SmallGraph &graph);

    /// The number of vertices of a longest path; 0 without vertices.
    int longestPath() const;
    /// The number of vertices of a longest cycle; 0 for a forest.
    int longestCycle() const;
    /// The number of cycles.
    double cycles() const;

private:
    using Set = uint32_t; // v is bit v

    int order;
    std::array<Set, maxOrder> neighbours{};
};

#endif
