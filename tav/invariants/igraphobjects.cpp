#include "igraphobjects.h"

#include "commandline.h"

#include <array>

void checkIgraph(igraph_error_t code)
{
    if (code != IGRAPH_SUCCESS) {
        throw CommandError(QStringLiteral("igraph: %1").arg(QString::fromLatin1(igraph_strerror(code))));
    }
}

IgraphGraph::IgraphGraph(const SmallGraph &given)
{
    [[maybe_unused]] static igraph_error_handler_t *const previousHandler =
        igraph_set_error_handler(igraph_error_handler_ignore);
    constexpr int mostEnds = SmallGraph::maxOrder * (SmallGraph::maxOrder - 1);
    std::array<igraph_integer_t, mostEnds> ends;
    igraph_integer_t count = 0;
    for (int v = 1; v < given.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (given.adjacent(u, v)) {
                ends[count++] = u;
                ends[count++] = v;
            }
        }
    }
    igraph_vector_int_t edges;
    checkIgraph(
        igraph_create(&graph, igraph_vector_int_view(&edges, ends.data(), count), given.order, IGRAPH_UNDIRECTED));
}
