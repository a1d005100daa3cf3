#include "databasebuilder.h"

#include "canonicalform.h"
#include "commandline.h"
#include "databaseforms.h"
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
        , input(options.inputs, options.connectedOnly, options.strict || options.base != nullptr)
        , base(options.base != nullptr ? &options.base->index() : nullptr)
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
        quint32 place; // in the input, as GraphInput counts
        std::string key{};
        std::vector<quint32> subGraphs{};
        std::optional<quint32> numberInBase{};
        std::optional<quint32> subGraphOfInput{}; // its place, if it should be in the base
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
        quint32 place = 0;
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
                batch.push_back({&group, group.string(i), place++});
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
        if (base != nullptr) {
            finding.numberInBase = base->numberOf(graph.order, finding.key);
        }
        if (hasGraphsOn(levelBelow(currentLevel))) {
            if (options.relation == Relation::Edge) {
                deleteEdges(graph, finding);
            } else {
                deleteVertices(graph, form.orbits, finding);
            }
            std::vector<quint32> &found = finding.subGraphs;
            std::sort(found.begin(), found.end());
            found.erase(std::unique(found.begin(), found.end()), found.end());
        }
    }

    /// Whether a graph of the current level can have a sub-graph on the level @p below.
    bool hasGraphsOn(const Level &below) const
    {
        return !lower.isEmpty() || (base != nullptr && below.order >= 0 && base->hasGraphsOf(below.order));
    }

    /// Deletes one vertex of each orbit of the automorphisms: the others leave isomorphic graphs.
    void deleteVertices(const SmallGraph &graph, const std::array<int, SmallGraph::maxOrder> &orbits,
                        Finding &finding) const
    {
        for (int v = 0; v < graph.order; ++v) {
            if (orbits[v] == v) {
                lookUp(graph.withoutVertex(v), finding);
            }
        }
    }

    void deleteEdges(const SmallGraph &graph, Finding &finding) const
    {
        SmallGraph subGraph = graph;
        for (int v = 1; v < graph.order; ++v) {
            for (int u = 0; u < v; ++u) {
                if (graph.adjacent(u, v)) {
                    subGraph.removeEdge(u, v);
                    lookUp(subGraph, finding);
                    subGraph.addEdge(u, v);
                }
            }
        }
    }

    void lookUp(const SmallGraph &subGraph, Finding &finding) const
    {
        const std::string key = IsomorphismTable::keyOf(canonicalForm(subGraph));
        const std::optional<quint32> here = lower.numberOf(key);
        const std::optional<quint32> number = base != nullptr ? base->numberOf(subGraph.order, key) : here;
        if (number) {
            finding.subGraphs.push_back(*number);
        } else if (here) {
            finding.subGraphOfInput = here;
        }
    }

    QByteArray linesOf(std::vector<Finding> &batch)
    {
        QByteArray lines;
        for (Finding &finding : batch) {
            if (isNew(finding)) {
                checkAgainstBase(finding);
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
        // To those of a part nothing is linked. Their numbers are for the messages.
        const quint32 number = base != nullptr ? finding.place : quint32(summary.graphs);
        const IsomorphismTable::Entry entry = current.add(std::move(finding.key), number);
        if (!entry.isNew && options.strict) {
            // Nothing was dropped so far: a graph has the same number in the database and in the input.
            throw CommandError(QStringLiteral("%1: isomorphic to the graph of %2")
                                   .arg(input.locate(finding.place), input.locate(entry.number)));
        }
        return entry.isNew;
    }

    void checkAgainstBase(const Finding &finding) const
    {
        if (finding.numberInBase) {
            throw CommandError(
                QStringLiteral("%1: %2 holds the graph already, with the number %3")
                    .arg(input.locate(finding.place), options.base->path(), QString::number(*finding.numberInBase)));
        }
        if (finding.subGraphOfInput) {
            throw CommandError(
                QStringLiteral("%1: the graph of %2 is a sub-graph of it, and %3 does not hold it")
                    .arg(input.locate(finding.place), input.locate(*finding.subGraphOfInput), options.base->path()));
        }
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
    const FormIndex *base; // none for a database of its own
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
