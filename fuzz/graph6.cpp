// graph6, as a string and as a line of a stream.

#include "fuzztarget.h"
#include "viewerchecks.h"

#include <sstream>

namespace
{
void checkWritten(Graph &graph)
{
    const QString edges = graph.currentGraphData();
    const QString text = graph.g6currentGraphData();
    require(graph.loadg6(text, true), "what is written can be read");
    require(graph.currentGraphData() == edges && graph.g6currentGraphData() == text, "it is read as it was written");
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startViewerTarget(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = InputBytes(data, size).restAsBytes();
    const QString text = QString::fromLatin1(bytes.constData(), bytes.size());
    const int count = (bytes.isEmpty() ? 0 : uchar(bytes[0])) - 63;
    const int room = qBound(0, count, Graph::MAX_NODES);
    Graph graph(QStringLiteral("graph"), false);
    const bool inPlace = graph.loadg6(text, false);
    require(inPlace == (count >= 2 && count <= 31), "graphs of 2 to 31 vertices are read");
    require(graph.getNbNodes() == count, "without new vertices, the count is that of the text");
    requireItemsInStep(graph);
    const QString edges = graph.currentGraphData();
    if (inPlace) {
        checkWritten(graph);
    }

    require(graph.loadg6(text, true) == inPlace, "new vertices or not, the result is the same");
    require(graph.getNbNodes() == room, "as many vertices as there are slots for");
    requireItemsInStep(graph);
    require(!inPlace || graph.currentGraphData() == edges, "new vertices or not, the graph is the same");

    std::istringstream line(bytes.toStdString());
    require(graph.loadg6(line) == inPlace, "a stream is read like a string");
    require(graph.getNbNodes() == room, "as many vertices as there are slots for");
    requireItemsInStep(graph);
    if (inPlace && !bytes.contains('\n') && !bytes.contains('\r')) {
        require(graph.currentGraphData() == edges, "a stream is read like a string");
    }
    graph.loadg6(line);
    requireCount(graph);
    requireItemsInStep(graph);
    exercise(graph);
    return 0;
}
