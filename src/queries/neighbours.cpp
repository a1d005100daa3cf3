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
    const int count = int(graphs.size());
    names.reserve(count);
    for (int i = 0; i < count; ++i) {
        names.append(QString());
    }
    // To share a name is to write to its count of users, and that is to wait for its memory: several can at a time.
    const QStringList::iterator first = names.begin();
    forEachRange(count, recordsPerPiece, threadCount(), [&](int begin, int end) {
        for (int i = begin; i < end; ++i) {
            first[i] = graphs[i]->getName();
        }
    });
    return names;
}
