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

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = InputBytes(data, size).restAsBytes();
    const QString text = QString::fromLatin1(bytes.constData(), bytes.size());
    Graph graph(QStringLiteral("graph"), false);
    const bool inPlace = graph.loadg6(text, false);
    const QString edges = graph.currentGraphData();
    if (inPlace) {
        requireCount(graph);
        checkWritten(graph);
    }

    require(graph.loadg6(text, true) == inPlace, "new vertices or not, the result is the same");
    requireCount(graph);
    require(!inPlace || graph.currentGraphData() == edges, "new vertices or not, the graph is the same");

    std::istringstream line(bytes.toStdString());
    const bool streamed = graph.loadg6(line);
    requireCount(graph);
    require(streamed == inPlace, "a stream is read like a string");
    if (streamed && !bytes.contains('\n') && !bytes.contains('\r')) {
        require(graph.currentGraphData() == edges, "a stream is read like a string");
    }
    graph.loadg6(line);
    exercise(graph);
    return 0;
}
