#include "build.h"

#include "canonicalform.h"
#include "commandline.h"
#include "input.h"
#include "output.h"
#include "parallel.h"
#include "progress.h"
#include "smallgraph.h"

#include <QByteArray>

#include <algorithm>
#include <cstdio>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace
{
/// How many graphs are worked on before their lines are written.
constexpr std::size_t batchLength = 1 << 15;

/// How many of them a thread takes at a time: few, so that none waits long for the last of a batch.
constexpr std::size_t pieceLength = 64;

constexpr std::string_view header = ">>graph6<<";

/// Graphs between which there is no link; the direct sub-graphs of a level are all on the one below.
struct Level {
    int order = 0;
    int size = 0; ///< 0 for all, where the relation takes vertices

    bool operator==(const Level &other) const { return order == other.order && size == other.size; }
};

/// The strings of the input.
class Input
{
public:
    struct Entry {
        std::size_t offset; ///< of the string in the text
        quint32 length;
        quint32 file;
        qint64 line;
        qint16 order;
        qint16 size;
    };

    void add(const std::string_view string, const SmallGraph &graph, std::size_t file, qint64 line)
    {
        entries.push_back(
            {text.size(), quint32(string.size()), quint32(file), line, qint16(graph.order), qint16(graph.size())});
        text.append(string);
    }

    /// Sorts by order, then size, and keeps equal ones in their order.
    void sort()
    {
        std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
            return std::tie(a.order, a.size) < std::tie(b.order, b.size);
        });
    }

    std::size_t count() const { return entries.size(); }
    const Entry &entry(std::size_t index) const { return entries[index]; }
    std::string_view string(const Entry &entry) const
    {
        return std::string_view(text).substr(entry.offset, entry.length);
    }

private:
    std::string text;
    std::vector<Entry> entries;
};

class Builder
{
public:
    explicit Builder(const BuildOptions &buildOptions) : options(buildOptions) {}

    BuildSummary run()
    {
        read();
        input.sort();
        writeOutput(options.output, [this](const Write &write) { writeLevels(write); });
        return summary;
    }

private:
    using Index = std::unordered_map<std::string, quint32>;

    /// What is found out of a graph by itself, whatever else of its level is in the input.
    struct Finding {
        std::string key;
        std::vector<quint32> subGraphs;
    };

    void read()
    {
        for (int file = 0; file < options.inputs.size(); ++file) {
            readLines(options.inputs.at(file), [&](std::string_view line, qint64 number) {
                readLine(line, std::size_t(file), number);
                return true;
            });
        }
        if (input.count() == 0) {
            throw CommandError(options.inputs.constLast(), 1, QStringLiteral("the input holds no graph"));
        }
    }

    void readLine(std::string_view line, std::size_t file, qint64 number)
    {
        if (number == 1 && line.substr(0, header.size()) == header) {
            line.remove_prefix(header.size());
        }
        if (line.empty()) {
            return;
        }
        SmallGraph graph;
        const QString fault = parseGraph6(line, graph);
        if (!fault.isEmpty()) {
            throw CommandError(options.inputs.at(int(file)), number, fault);
        }
        if (options.connectedOnly && !graph.isConnected()) {
            ++summary.disconnected;
            return;
        }
        input.add(line, graph, file, number);
    }

    Level levelOf(const Input::Entry &entry) const
    {
        return {entry.order, options.relation == Relation::Edge ? entry.size : 0};
    }

    Level levelBelow(const Level &level) const
    {
        return options.relation == Relation::Edge ? Level{level.order, level.size - 1} : Level{level.order - 1, 0};
    }

    void writeLevels(const Write &write)
    {
        Progress progress(QStringLiteral("Building"), qint64(input.count()));
        for (std::size_t begin = 0; begin < input.count();) {
            const Level level = levelOf(input.entry(begin));
            std::size_t end = begin;
            while (end < input.count() && levelOf(input.entry(end)) == level) {
                ++end;
            }
            lower = currentLevel == levelBelow(level) ? std::move(current) : Index();
            current = Index();
            currentLevel = level;
            for (; begin < end; begin = std::min(begin + batchLength, end)) {
                writeBatch(begin, std::min(begin + batchLength, end), write);
                progress.report(qint64(begin));
            }
        }
    }

    void writeBatch(std::size_t begin, std::size_t end, const Write &write)
    {
        std::vector<Finding> findings(end - begin);
        forEachRange(findings.size(), pieceLength, options.jobs, [&](std::size_t from, std::size_t to) {
            for (std::size_t i = from; i < to; ++i) {
                findings[i] = examine(input.entry(begin + i));
            }
        });
        QByteArray lines;
        for (std::size_t i = 0; i < findings.size(); ++i) {
            const Input::Entry &entry = input.entry(begin + i);
            const auto [place, isNew] = current.try_emplace(std::move(findings[i].key), quint32(written.size()));
            if (isNew) {
                written.push_back(quint32(begin + i));
                appendLine(lines, entry, findings[i].subGraphs);
            } else {
                countRepetition(entry, input.entry(written[place->second]));
            }
        }
        write(lines);
    }

    Finding examine(const Input::Entry &entry) const
    {
        SmallGraph graph;
        parseGraph6(input.string(entry), graph);
        const CanonicalForm form = canonicalForm(graph);
        Finding finding;
        finding.key = adjacencyKey(form.graph);
        if (!lower.empty()) {
            finding.subGraphs =
                options.relation == Relation::Edge ? edgeDeleted(graph) : vertexDeleted(graph, form.orbits);
            std::sort(finding.subGraphs.begin(), finding.subGraphs.end());
            finding.subGraphs.erase(std::unique(finding.subGraphs.begin(), finding.subGraphs.end()),
                                    finding.subGraphs.end());
        }
        return finding;
    }

    /// Vertices that an automorphism maps to each other leave the same graph behind: one of them is enough.
    std::vector<quint32> vertexDeleted(const SmallGraph &graph,
                                       const std::array<int, SmallGraph::MaxOrder> &orbits) const
    {
        std::vector<quint32> found;
        for (int v = 0; v < graph.order; ++v) {
            if (orbits[size_t(v)] == v) {
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
        const auto place = lower.find(adjacencyKey(canonicalForm(subGraph).graph));
        if (place != lower.end()) {
            found.push_back(place->second);
        }
    }

    void appendLine(QByteArray &lines, const Input::Entry &entry, const std::vector<quint32> &subGraphs)
    {
        const std::string_view name = input.string(entry);
        lines.append(name.data(), int(name.size()));
        for (const quint32 subGraph : subGraphs) {
            lines.append('\t').append(QByteArray::number(subGraph));
        }
        lines.append('\n');
        ++summary.graphs;
        summary.links += qint64(subGraphs.size());
    }

    void countRepetition(const Input::Entry &entry, const Input::Entry &first)
    {
        ++summary.repetitions;
        if (options.strict) {
            throw CommandError(options.inputs.at(int(entry.file)), entry.line,
                               QStringLiteral("isomorphic to the graph of %1:%2")
                                   .arg(inputName(options.inputs.at(int(first.file))))
                                   .arg(first.line));
        }
    }

    const BuildOptions &options;
    BuildSummary summary;
    Input input;
    std::vector<quint32> written; // by number in the database: the graph's place in the sorted input
    Index lower;                  // the graphs of the level below
    Index current;                // those of the level at hand, so far
    Level currentLevel{-1, 0};
};

Relation relationOf(const QString &name)
{
    if (name == QLatin1String("vertex")) {
        return Relation::Vertex;
    }
    if (name == QLatin1String("edge")) {
        return Relation::Edge;
    }
    throw CommandError(QStringLiteral("Unknown relation '%1': neither 'vertex' nor 'edge'.").arg(name), WrongUsage);
}

void report(const BuildSummary &summary)
{
    std::fprintf(stderr, "%lld graphs and %lld links; %lld isomorphic repetitions dropped", summary.graphs,
                 summary.links, summary.repetitions);
    if (summary.disconnected > 0) {
        std::fprintf(stderr, ", %lld disconnected graphs left out", summary.disconnected);
    }
    std::fputs(".\n", stderr);
}
} // namespace

BuildSummary buildDatabase(const BuildOptions &options)
{
    return Builder(options).run();
}

void runBuild(const QStringList &arguments)
{
    const QCommandLineOption relation(
        QStringLiteral("relation"),
        QStringLiteral("What a direct sub-graph lacks: one vertex, the default, or one edge."),
        QStringLiteral("vertex|edge"), QStringLiteral("vertex"));
    const QCommandLineOption connected(QStringLiteral("connected"),
                                       QStringLiteral("Leave out the disconnected graphs of the input."));
    const QCommandLineOption strict(QStringLiteral("strict"),
                                    QStringLiteral("Fail when two graphs of the input are isomorphic."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Makes a database of the graphs whose graph6 strings stand, one a line, in the files or on "
                       "standard input. Isomorphic repetitions are dropped."));
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Files of graph6 strings; '-' is standard input."),
                                 QStringLiteral("[FILE...]"));
    parser.addOptions({relation, connected, strict, outputOption(), jobsOption()});
    if (!parseArguments(parser, arguments)) {
        return;
    }
    BuildOptions options;
    options.relation = relationOf(parser.value(relation));
    options.connectedOnly = parser.isSet(connected);
    options.strict = parser.isSet(strict);
    options.jobs = jobCount(parser);
    options.inputs = parser.positionalArguments();
    if (options.inputs.isEmpty()) {
        options.inputs.append(standardStream);
    }
    options.output = outputPath(parser);
    report(buildDatabase(options));
}
