#ifndef TAVOLINE_SMALLGRAPH_H
#define TAVOLINE_SMALLGRAPH_H

#include "graph6.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A simple graph whose adjacency matrix has one machine word a row.
struct SmallGraph {
    /// The largest order that graph6 writes with one character.
    static constexpr int maxOrder = graph6::largestOrder;

    int order = 0;                         ///< the number of vertices
    std::array<uint64_t, maxOrder> rows{}; ///< by vertex: its neighbours, vertex 0 at the highest bit

    static constexpr uint64_t bit(int vertex) { return uint64_t(1) << (63 - vertex); }
    bool adjacent(int u, int v) const { return (rows[u] & bit(v)) != 0; }
    void addEdge(int u, int v);
    void removeEdge(int u, int v);

    /// The number of edges.
    int size() const;
    /// Whether it has a vertex, and a path between any two.
    bool isConnected() const;
    /// The graph without the vertex @p vertex; the numbers of those behind it decrease by 1.
    SmallGraph withoutVertex(int vertex) const;
};

/// Reads a graph6 string (B. D. McKay, "Description of graph6, sparse6 and digraph6 encodings") of at most maxOrder
/// vertices into @p graph. Returns an empty text, or what is wrong with the string, @p graph then being undefined.
QString parseGraph6(std::string_view text, SmallGraph &graph);

/// The upper triangle of the adjacency matrix, column by column, with eight entries in a byte. For graphs of the same
/// order equal strings mean equal matrices.
std::string adjacencyKey(const SmallGraph &graph);

#endif
