#include "closure.h"

#include "TAVgraph.h"
#include "nameset.h"

#include <vector>

namespace
{
/// How many links ahead of the one that is followed the memory of a record is asked for.
constexpr int linksAhead = 16;

void prefetch(const TAVGraph *graph)
{
    __builtin_prefetch(graph);
}
} // namespace

QStringList closureOf(const QVector<TAVGraph *> &graphs, const QStringList &names, Neighbours neighbours)
{
    std::vector<TAVGraph *> reached;
    const auto reach = [&reached](TAVGraph *graph) {
        if (!graph->isChecked()) {
            graph->setChecked(true);
            reached.push_back(graph);
        }
    };
    const std::vector<char> isSeed =
        NameSet(names).containsEach(graphs.size(), [&](int i) { return graphs.at(i)->getName(); });
    for (int i = 0; i < graphs.size(); ++i) {
        if (isSeed[i] != 0) {
            reach(graphs.at(i));
        }
    }
    size_t next = 0;
    while (next < reached.size()) {
        const QList<TAVGraph *> &links = linksOf(*reached[next++], neighbours);
        for (int i = 0; i < links.size(); ++i) {
            // The records lie anywhere in memory: the wait for them is most of the time there is.
            prefetch(links.at(qMin(i + linksAhead, links.size() - 1)));
            reach(links.at(i));
        }
    }
    return namesOf(reached);
}
