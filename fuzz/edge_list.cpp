// An edge list.

#include "fuzztarget.h"
#include "viewerchecks.h"

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startViewerTarget(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryFile file(InputBytes(data, size).rest());
    Graph graph(QStringLiteral("graph"), false);
    const bool loaded = graph.import_el(file.path());
    requireCount(graph);
    if (loaded) {
        requirePublished(graph);
        const int vertices = graph.getNbNodes();
        const int edges = graph.getNbEdges();
        const QString path = scratchPath(QStringLiteral("exported.edgelist"));
        require(graph.export_graph(path), "a graph can be exported");
        require(graph.import_el(path), "a graph that was exported can be imported");
        require(graph.getNbEdges() == edges && graph.getNbNodes() <= vertices, "isolated vertices are lost, no edges");
    }
    exercise(graph);
    return 0;
}
