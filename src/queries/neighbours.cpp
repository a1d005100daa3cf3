#include "neighbours.h"

#include "TAVgraph.h"
#include "parallel.h"

const QList<TAVGraph *> &linksOf(const TAVGraph &graph, Neighbours neighbours)
{
    return neighbours == Neighbours::Sub ? graph.subGraphs() : graph.superGraphs();
}

QStringList namesOf(const std::vector<TAVGraph *> &graphs)
{
    QStringList names;
    names.reserve(int(graphs.size()));
    for (size_t i = 0; i < graphs.size(); ++i) {
        names.append(QString());
    }
    // To share a name is to write to its count of users, and that is to wait for its memory: several can at a time.
    const QStringList::iterator first = names.begin();
    forEachRange(graphs.size(), recordsPerPiece, threadCount(), [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) {
            *(first + int(i)) = graphs[i]->getName();
        }
    });
    return names;
}
