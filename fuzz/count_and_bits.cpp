// A graph as text: its number of vertices, then a bit for each pair of them.

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

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = InputBytes(data, size).restAsBytes();
    const QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    const int count = text.section(QLatin1Char(' '), 0, 0).toInt();
    Graph graph(QStringLiteral("graph"), false);
    graph.loadolm(text, true);
    require(graph.getNbNodes() == qBound(0, count, Graph::MAX_NODES), "as many vertices as there are slots for");
    requirePublished(graph);
    const QString edges = graph.currentGraphData();

    graph.loadolm(text, false);
    require(graph.getNbNodes() == count, "without new vertices, the count is that of the text");
    requireItemsInStep(graph);
    require(graph.graphData() == graph.currentGraphData(), "the best graph is the current one");
    require(graph.currentGraphData() == edges, "new vertices or not, the graph is the same");

    graph.loadCurrentGraph(text);
    require(graph.getNbNodes() == count, "without new vertices, the count is that of the text");
    requireItemsInStep(graph);
    require(graph.currentGraphData() == edges, "published or not, the graph is the same");
    checkWritten(graph);
    exercise(graph);
    return 0;
}
