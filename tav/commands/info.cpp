#include "info.h"

#include "TAVgraph.h"
#include "commandline.h"
#include "counted.h"
#include "input.h"
#include "smallgraph.h"
#include "standardoutput.h"
#include "textline.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace
{
/// What glibc's malloc takes for a block of memory: 8 bytes more, rounded up to a multiple of 16.
qint64 blockSize(qint64 bytes)
{
    return (bytes + 8 + 15) / 16 * 16;
}

/// The memory of a QList of that many links.
qint64 listSize(qint64 links)
{
    return links > 0 ? blockSize(QListData::DataHeaderSize + links * sizeof(void *)) : 0;
}

/// The memory of a record without its lists: the record, the pointer to it and the name.
qint64 recordSize(qint64 nameLength)
{
    return sizeof(TAVGraph) + sizeof(void *) + blockSize(sizeof(QStringData) + (nameLength + 1) * sizeof(QChar));
}

/// How many faults of a kind are told.
constexpr qint64 mostTold = 100;

enum FaultKind : size_t { NoName, UsedName, NoGraph, NoNumber, NoEarlierGraph, OwnNumber, RepeatedNumber };

/// The kinds in their order.
constexpr std::array faultKinds = {
    "a line without a name",
    "a name that an earlier line has",
    "a name that is no graph6 string of at most 62 vertices",
    "a field that is no number",
    "a number that is not that of an earlier graph",
    "the number of the graph itself",
    "a number that stands more than once on its line",
};

/// Reads a database line by line, by the rules of the loader, and remembers what the checks of later lines need.
class Examiner
{
public:
    explicit Examiner(const std::function<void(qint64, const QString &)> &faultReceiver) : tell(faultReceiver) {}

    void readLine(std::string_view bytes, qint64 number)
    {
        line = number;
        QByteArray memory;
        std::string_view rest = normaliseDroppingReturns(bytes, memory);
        bool more = false;
        const std::string_view name = takeField(rest, more);
        if (name.empty()) {
            if (more) {
                fault(NoName, [] { return QStringLiteral("no name; the line is ignored"); });
            }
            return;
        }
        superGraphs.push_back(0);
        readName(name);
        indices.clear();
        while (more) {
            readIndex(takeField(rest, more));
        }
        readRepetitions();
        summary.subGraphs.include(indices.size());
        summary.memory += recordSize(textOf(name).size()) + listSize(indices.size());
    }

    DatabaseSummary finish()
    {
        summary.graphs = superGraphs.size();
        for (const quint32 count : superGraphs) {
            summary.superGraphs.include(count);
            summary.memory += listSize(count);
        }
        for (size_t kind = 0; kind < faultKinds.size(); ++kind) {
            summary.faults += faults[kind];
            if (faults[kind] > mostTold) {
                summary.untold.push_back({faultKinds[kind], faults[kind] - mostTold});
            }
        }
        return summary;
    }

private:
    /// Counts a fault, which @p describe puts into words if it is told.
    template<typename Describe> void fault(FaultKind kind, Describe describe)
    {
        if (++faults[kind] <= mostTold) {
            tell(line, describe());
        }
    }

    void readName(std::string_view name)
    {
        const auto [earlier, isNew] = lines.try_emplace(std::string(name), line);
        if (!isNew) {
            fault(UsedName, [&, first = earlier->second] {
                return QStringLiteral("%1 stands on line %2 already").arg(quoted(textOf(name))).arg(first);
            });
        }
        SmallGraph graph;
        const QString wrong = parseGraph6(name, graph);
        if (!wrong.isEmpty()) {
            fault(NoGraph, [&] { return QStringLiteral("%1: %2").arg(quoted(textOf(name)), wrong); });
            return;
        }
        const NotableGraph found = {textOf(name), line, graph.order, graph.size()};
        const auto rank = [](const NotableGraph &one) { return std::tie(one.order, one.size); };
        if (summary.smallest.line == 0 || rank(found) < rank(summary.smallest)) {
            summary.smallest = found;
        }
        if (summary.largest.line == 0 || rank(summary.largest) < rank(found)) {
            summary.largest = found;
        }
    }

    void readIndex(std::string_view field)
    {
        bool isNumber = false;
        const int index = textOf(field).toInt(&isNumber);
        if (!isNumber) {
            fault(NoNumber,
                  [&] { return QStringLiteral("%1 is no number and counts as 0").arg(quoted(textOf(field))); });
        }
        const qint64 own = superGraphs.size() - 1;
        if (index < 0 || index > own) {
            fault(NoEarlierGraph, [&] {
                return QStringLiteral("%1 is not the number of an earlier graph; the program refuses the file")
                    .arg(index);
            });
            return;
        }
        if (index == own) {
            fault(OwnNumber, [&] { return QStringLiteral("%1 is the number of the graph itself").arg(index); });
        }
        indices.push_back(index);
        ++superGraphs[index];
    }

    void readRepetitions()
    {
        sorted = indices;
        std::sort(sorted.begin(), sorted.end());
        for (auto next = sorted.begin(); (next = std::adjacent_find(next, sorted.end())) != sorted.end();) {
            fault(RepeatedNumber, [&] { return QStringLiteral("%1 stands there more than once").arg(*next); });
            next = std::upper_bound(next, sorted.end(), *next);
        }
    }

    const std::function<void(qint64, const QString &)> &tell;
    DatabaseSummary summary;
    std::array<qint64, faultKinds.size()> faults{}; // by kind
    std::unordered_map<std::string, qint64> lines;  // by name: where it stands first
    std::vector<quint32> superGraphs;               // by number of the graph: how many lines have it as an index
    std::vector<int> indices;                       // the good ones of the current line
    std::vector<int> sorted;
    qint64 line = 0;
};

QString text(double number, int decimals)
{
    return QString::number(number, 'f', decimals);
}

void printLine(const char *what, const QString &value)
{
    constexpr int width = 16;
    print(QString(QLatin1String(what)).leftJustified(width) + value + QLatin1Char('\n'));
}

void printCounts(const char *what, const CountSummary &counts, qint64 graphs)
{
    printLine(what, QStringLiteral("%1 to %2, %3 on average")
                        .arg(counts.low)
                        .arg(counts.high)
                        .arg(text(double(counts.sum) / graphs, 2)));
}

void printNotable(const char *what, const NotableGraph &graph)
{
    if (graph.line > 0) {
        printLine(what, QStringLiteral("%1, %2: %3 (line %4)")
                            .arg(counted(graph.order, "vertex", "vertices"), counted(graph.size, "edge", "edges"),
                                 graph.name, QString::number(graph.line)));
    }
}

void print(const DatabaseSummary &summary)
{
    printLine("graphs:", QString::number(summary.graphs));
    printLine("links:", QString::number(summary.subGraphs.sum));
    if (summary.graphs > 0) {
        printNotable("smallest graph:", summary.smallest);
        printNotable("largest graph:", summary.largest);
        printCounts("sub-graphs:", summary.subGraphs, summary.graphs);
        printCounts("super-graphs:", summary.superGraphs, summary.graphs);
    }
    printLine("memory:", text(summary.memory / 1e6, 1) + QStringLiteral(" MB for the loaded database"));
    printLine("faults:", QString::number(summary.faults));
}
} // namespace

void CountSummary::include(qint64 count)
{
    low = std::min(low, count);
    high = std::max(high, count);
    sum += count;
}

DatabaseSummary examineDatabase(const QString &path, const std::function<void(qint64, const QString &)> &fault)
{
    Examiner examiner(fault);
    readLines(path, [&](std::string_view line, qint64 number) { examiner.readLine(line, number); });
    return examiner.finish();
}

void runInfo(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Tells what a database holds and checks its lines; the exit status is 1 when one has a fault."));
    parser.addPositionalArgument(QStringLiteral("DATABASE"), QStringLiteral("The file; '-' is standard input."),
                                 QStringLiteral("DATABASE.tav"));
    if (!parseArguments(parser, arguments)) {
        return;
    }
    const QString path = onlyArgument(parser, QStringLiteral("database file"));
    const DatabaseSummary summary =
        examineDatabase(path, [&](qint64 line, const QString &text) { tell(CommandError(path, line, text).text()); });
    for (const UntoldFaults &faults : summary.untold) {
        tell(QStringLiteral("%1: and %2 more: %3")
                 .arg(inputName(path), QString::number(faults.count), QLatin1String(faults.kind)));
    }
    print(summary);
    if (summary.faults > 0) {
        throw CommandError(QStringLiteral("%1: faults found: %2").arg(inputName(path)).arg(summary.faults));
    }
}
