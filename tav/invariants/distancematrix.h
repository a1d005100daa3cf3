#ifndef TAVOLINE_DISTANCEMATRIX_H
#define TAVOLINE_DISTANCEMATRIX_H

#include "smallgraph.h"

#include <array>
#include <vector>

/// The distances of all pairs of vertices of a connected graph: the number of edges of a shortest path.
class DistanceMatrix
{
public:
    /// Searches from every vertex, level by level (E. F. Moore, "The shortest path through a maze", 1959).
    explicit DistanceMatrix(const SmallGraph &graph);

    int at(int u, int v) const { return table[u * vertices + v]; }
    /// By vertex: the largest distance from it.
    const std::vector<int> &eccentricities() const { return largest; }
    /// By vertex: the sum of the distances from it.
    const std::vector<int> &transmissions() const { return sums; }

private:
    void findFrom(int source, const SmallGraph &graph);

    const int vertices;
    std::array<unsigned char, size_t(SmallGraph::maxOrder) * SmallGraph::maxOrder>
        table; // by pair of vertices, as far as used
    std::vector<int> largest;
    std::vector<int> sums;
};

#endif
