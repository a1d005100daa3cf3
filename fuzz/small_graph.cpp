// A line with a graph6 or sparse6 string, as tav reads it.

#include "fuzztarget.h"
#include "graphstring.h"

#include <QCoreApplication>

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SmallGraph graph;
    const std::string_view text = graphOnLine(InputBytes(data, size).rest(), 1);
    if (!parseGraph(text, graph).isEmpty()) {
        return 0;
    }
    require(graph.order >= 0 && graph.order <= SmallGraph::maxOrder, "the order is within its bounds");
    int edges = 0;
    for (int u = 0; u < graph.order; ++u) {
        require(!graph.adjacent(u, u), "there are no loops");
        for (int v = 0; v < u; ++v) {
            require(graph.adjacent(u, v) == graph.adjacent(v, u), "adjacency is symmetric");
            edges += graph.adjacent(u, v) ? 1 : 0;
        }
    }
    require(graph.size() == edges, "the size is the number of edges");
    const std::string written = graph6Of(graph);
    require(text.front() == ':' || written == text, "graph6 is written as it is read");
    SmallGraph again;
    require(parseGraph(written, again).isEmpty() && again.order == graph.order && again.rows == graph.rows,
            "what is written is read again");
    graph.isConnected();
    for (int v = 0; v < graph.order; ++v) {
        const SmallGraph rest = graph.withoutVertex(v);
        require(rest.order == graph.order - 1 && rest.size() <= edges, "a vertex is removed");
    }
    adjacencyKey(graph);
    return 0;
}
