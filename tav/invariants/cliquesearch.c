#include "cliquesearch.h"

#include <cliquer/cliquer.h>

int findLargestClique(int order, const uint64_t *rows)
{
    if (order == 0) {
        return 0; // cliquer takes no graph without vertices
    }
    graph_t *graph = graph_new(order);
    for (int v = 1; v < order; ++v) {
        for (int u = 0; u < v; ++u) {
            if ((rows[v] << u >> 63) != 0) {
                GRAPH_ADD_EDGE(graph, u, v);
            }
        }
    }
    // With cliquer's default options it would report long searches on standard output.
    clique_options options = {.reorder_function = reorder_by_default};
    const int size = clique_unweighted_max_weight(graph, &options);
    graph_free(graph);
    return size;
}
