// A graph file: what was read is written and read again without a change.

#include "fuzztarget.h"
#include "viewerchecks.h"

namespace
{
QByteArray saved(const Graph &graph)
{
    const QString path = scratchPath(QStringLiteral("saved.golm3"));
    require(graph.save(path), "a graph can be saved");
    return contentOf(path);
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startViewerTarget(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryFile file(InputBytes(data, size).rest());
    Graph graph(QStringLiteral("graph"), false);
    const bool loaded = graph.open(file.path());
    requireCount(graph);
    if (loaded) {
        requirePublished(graph);
        const QByteArray text = saved(graph);
        require(graph.open(scratchPath(QStringLiteral("saved.golm3"))), "a graph that was saved can be opened");
        require(saved(graph) == text, "a graph is opened as it was saved");
    }
    exercise(graph);
    return 0;
}
