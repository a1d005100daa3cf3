#include "distancematrix.h"

#include "vertexset.h"

DistanceMatrix::DistanceMatrix(const SmallGraph &graph) : vertices(graph.order), largest(graph.order), sums(graph.order)
{
    for (int v = 0; v < vertices; ++v) {
        findFrom(v, graph);
    }
}

void DistanceMatrix::findFrom(int source, const SmallGraph &graph)
{
    unsigned char *const row = &table[size_t(source) * vertices];
    row[source] = 0;
    uint64_t reached = SmallGraph::bit(source);
    uint64_t level = graph.rows[source];
    for (int distance = 1; level != 0; ++distance) {
        reached |= level;
        largest[source] = distance;
        sums[source] += distance * vertexCount(level);
        uint64_t next = 0;
        for (const int v : VerticesOf(level)) {
            row[v] = static_cast<unsigned char>(distance);
            next |= graph.rows[v];
        }
        level = next & ~reached;
    }
}
