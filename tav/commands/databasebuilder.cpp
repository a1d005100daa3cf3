#include "databasebuilder.h"

#include "canonicalform.h"
#include "commandline.h"
#include "graphinput.h"
#include "interruption.h"
#include "isomorphismtable.h"
#include "output.h"
#include "parallel.h"
#include "progress.h"
#include "smallgraph.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace
{
/// When a batch has this weight its lines are written. The weight of a graph is the number of its edges, each of which
/// may become a link, and 1 more.
constexpr int batchWeight = 1 << 20;

/// How many graphs a thread takes at a time: few, so that all threads finish a batch at about the same time.
constexpr int pieceLength = 16;

/// What the graphs of one level have in common: no links lead from one to another. Their direct sub-graphs are all on
/// the level below.
struct Level {
    int order = 0;
    int size = 0; ///< 0 for the relation Vertex, where a level has graphs of all sizes

    bool operator==(const Level &other) const { return order == other.order && size == other.size; }
};

class Builder
{
public:
    explicit Builder(const BuildOptions &buildOptions)
        : options(buildOptions)
        , input(options.inputs, options.connectedOnly, options.strict)
    {
    }

    BuildSummary run()
    {
        input.read();
        summary.disconnected = input.disconnectedCount();
        writeOutput(options.output, [this](const Write &write) { writeGroups(write); });
        return summary;
    }

private:
    /// A graph, and what a thread finds out about it without the other graphs of its level.
    struct Finding {
        const GraphGroup *group;
        std::string_view name;
        std::string key;
        std::vector<quint32> subGraphs;
    };

    Level levelOf(const GraphGroup &group) const
    {
        return {group.order, options.relation == Relation::Edge ? group.size : 0};
    }

    Level levelBelow(const Level &level) const
    {
        return options.relation == Relation::Edge ? Level{level.order, level.size - 1} : Level{level.order - 1, 0};
    }

    void writeGroups(const Write &write)
    {
        Progress progress(QStringLiteral("Building"), input.count());
        std::vector<Finding> batch;
        int weight = 0;
        const auto finishBatch = [&] {
            examine(batch, progress);
            write(linesOf(batch));
            batch.clear();
            weight = 0;
        };
        for (const auto &[kind, group] : input.groups()) {
            if (!(levelOf(group) == currentLevel)) {
                finishBatch();
                enter(levelOf(group));
            }
            for (size_t i = 0; i < group.count(); ++i) {
                batch.push_back({&group, group.string(i), {}, {}});
                weight += 1 + group.size;
                if (weight >= batchWeight) {
                    finishBatch();
                }
            }
        }
        finishBatch();
    }

    void enter(const Level &level)
    {
        lower = currentLevel == levelBelow(level) ? std::move(current) : IsomorphismTable();
        current = IsomorphismTable();
        currentLevel = level;
    }

    /// Fills in the findings, in several threads. Throws Interrupted soon after a signal that ends the program.
    void examine(std::vector<Finding> &batch, Progress &progress)
    {
        const std::thread::id caller = std::this_thread::get_id();
        std::atomic<qint64> done = examined;
        forEachRange(int(batch.size()), pieceLength, options.jobs, [&](int begin, int end) {
            for (int i = begin; i < end && !InterruptionScope::isRequested(); ++i) {
                examine(batch[i]);
            }
            done += end - begin;
            if (std::this_thread::get_id() == caller) {
                progress.report(done);
            }
        });
        InterruptionScope::check();
        examined = done;
    }

    void examine(Finding &finding) const
    {
        SmallGraph graph;
        parseGraph6(finding.name, graph);
        const CanonicalForm form = canonicalForm(graph);
        finding.key = IsomorphismTable::keyOf(form);
        if (!lower.isEmpty()) {
            std::vector<quint32> &found = finding.subGraphs;
            found = options.relation == Relation::Edge ? edgeDeleted(graph) : vertexDeleted(graph, form.orbits);
            std::sort(found.begin(), found.end());
            found.erase(std::unique(found.begin(), found.end()), found.end());
        }
    }

    /// Deletes one vertex of each orbit of the automorphisms: the others leave isomorphic graphs.
    std::vector<quint32> vertexDeleted(const SmallGraph &graph,
                                       const std::array<int, SmallGraph::maxOrder> &orbits) const
    {
        std::vector<quint32> found;
        for (int v = 0; v < graph.order; ++v) {
            if (orbits[v] == v) {
                lookUp(graph.withoutVertex(v), found);
            }
        }
        return found;
    }

    std::vector<quint32> edgeDeleted(const SmallGraph &graph) const
    {
        std::vector<quint32> found;
        SmallGraph subGraph = graph;
        for (int v = 1; v < graph.order; ++v) {
            for (int u = 0; u < v; ++u) {
                if (graph.adjacent(u, v)) {
                    subGraph.removeEdge(u, v);
                    lookUp(subGraph, found);
                    subGraph.addEdge(u, v);
                }
            }
        }
        return found;
    }

    void lookUp(const SmallGraph &subGraph, std::vector<quint32> &found) const
    {
        if (const std::optional<quint32> number = lower.numberOf(subGraph)) {
            found.push_back(*number);
        }
    }

    QByteArray linesOf(std::vector<Finding> &batch)
    {
        QByteArray lines;
        for (Finding &finding : batch) {
            if (isNew(finding)) {
                appendLine(lines, finding);
            } else {
                ++summary.repetitions;
            }
        }
        return lines;
    }

    bool isNew(Finding &finding)
    {
        // In the relation Vertex, a graph of the largest order is no other's sub-graph: it is only compared with those
        // of its own group, as isomorphic graphs have the same size. Forgetting the other groups saves memory.
        if (finding.group != currentGroup && finding.group->order == input.largestOrder()) {
            current.clear();
        }
        currentGroup = finding.group;
        const IsomorphismTable::Entry entry = current.add(std::move(finding.key), quint32(summary.graphs));
        if (!entry.isNew && options.strict) {
            // Nothing was dropped so far: a graph has the same number in the database and in the input.
            throw CommandError(QStringLiteral("%1: isomorphic to the graph of %2")
                                   .arg(input.locate(summary.graphs), input.locate(entry.number)));
        }
        return entry.isNew;
    }

    void appendLine(QByteArray &lines, const Finding &finding)
    {
        lines.append(finding.name.data(), int(finding.name.size()));
        for (const quint32 subGraph : finding.subGraphs) {
            lines.append('\t').append(QByteArray::number(subGraph));
        }
        lines.append('\n');
        ++summary.graphs;
        summary.links += finding.subGraphs.size();
    }

    const BuildOptions &options;
    GraphInput input;
    BuildSummary summary;
    IsomorphismTable lower;   // the numbers in the database of the graphs of the level below
    IsomorphismTable current; // the same of the current level, so far
    Level currentLevel{-1, 0};
    const GraphGroup *currentGroup = nullptr;
    qint64 examined = 0;
};
} // namespace

BuildSummary buildDatabase(const BuildOptions &options)
{
    return Builder(options).run();
}
