// The text of a vertex count and a bit for each pair.

#include "fuzztarget.h"
#include "viewerchecks.h"

namespace
{
void checkWritten(Graph &graph)
{
    const QString text = graph.currentGraphData();
    graph.loadCurrentGraph(text);
    require(graph.currentGraphData() == text, "a graph is read as it was written");
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startViewerTarget(argc, argv);
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = InputBytes(data, size).restAsBytes();
    const QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    Graph graph(QStringLiteral("graph"), false);
    graph.loadolm(text, true);
    requireCount(graph);
    requirePublished(graph);
    const QString edges = graph.currentGraphData();

    graph.loadolm(text, false);
    require(graph.graphData() == graph.currentGraphData(), "the best graph is the current one");
    require(graph.currentGraphData() == edges, "new vertices or not, the graph is the same");

    graph.loadCurrentGraph(text);
    require(graph.currentGraphData() == edges, "published or not, the graph is the same");
    checkWritten(graph);
    exercise(graph);
    return 0;
}
