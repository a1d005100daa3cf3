#ifndef TAVOLINE_OLM_DISTANCES_H
#define TAVOLINE_OLM_DISTANCES_H

#include <QVector>

#include <functional>
#include <utility>

/// The distances between the vertices of a graph: a row and a column a vertex.
using Distances = QVector<QVector<int>>;

/// The distances between the vertices 0..n-1, by breadth-first search.
///
/// @param n            the number of vertices
/// @param unreachable  the entry of two vertices without a path between them; at least @p n
/// @param joined       whether two vertices are joined, the same in both orders
Distances distances(int n, int unreachable, const std::function<bool(int, int)> &joined);

/// The largest entry, 0 without vertices.
int largestDistance(const Distances &distances);

/// Of the pairs at the largest distance the one whose larger degree is smallest, and of several such pairs the first;
/// (-1, -1) when no two vertices are apart.
std::pair<int, int> diametralPair(const Distances &distances);

#endif
