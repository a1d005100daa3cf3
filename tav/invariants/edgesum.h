#ifndef TAVOLINE_EDGESUM_H
#define TAVOLINE_EDGESUM_H

#include "vertexset.h"

/// The sum of @p term(u, v) over the edges uv of @p graph, u < v.
template<typename Term> double sumOverEdges(const SmallGraph &graph, Term term)
{
    double sum = 0.0;
    for (int v = 1; v < graph.order; ++v) {
        for (const int u : VerticesOf(graph.rows[v] & allVertices(v))) {
            sum += term(u, v);
        }
    }
    return sum;
}

#endif
