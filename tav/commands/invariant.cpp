#include "invariant.h"

#include "commandline.h"
#include "graphstring.h"
#include "input.h"
#include "output.h"
#include "progress.h"
#include "standardoutput.h"
#include "textline.h"
#include "workers.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace
{
/// How many lines are written at a time.
constexpr size_t batchLength = 1 << 15;

/// The names of the graphs of a database.
class Names
{
public:
    void add(std::string_view name)
    {
        text.append(name);
        ends.push_back(text.size());
    }

    size_t count() const { return ends.size(); }
    std::string_view at(size_t index) const
    {
        const size_t begin = index > 0 ? ends[index - 1] : 0;
        return std::string_view(text).substr(begin, ends[index] - begin);
    }

private:
    std::string text;
    std::vector<size_t> ends; // by name: where the next one begins
};

Names readNames(const QString &database)
{
    Names names;
    readLines(database, [&](std::string_view line, qint64 number) {
        bool more = false;
        QByteArray memory;
        const std::string_view name = graphOnLine(normaliseDroppingReturns(takeField(line, more), memory), number);
        if (name.empty()) {
            return;
        }
        SmallGraph graph;
        const QString fault = parseGraph(name, graph);
        if (!fault.isEmpty()) {
            throw CommandError(database, number, fault);
        }
        names.add(name);
    });
    if (names.count() == 0) {
        throw CommandError(database, 1, QStringLiteral("the database holds no graph"));
    }
    return names;
}

/// Parses each name a second time. A parsed graph takes half a kilobyte, its name about ten bytes, and parsing is fast
/// compared with most invariants.
void compute(const Names &names, const InvariantOptions &options, SharedValues &values)
{
    const auto valueOf = [&](size_t index) {
        SmallGraph graph;
        parseGraph(names.at(index), graph);
        GraphFacts facts(graph);
        return options.invariant->valueOf(facts);
    };
    Progress progress(QStringLiteral("Computing"), names.count());
    computeInProcesses(values, names.count(), options.jobs, valueOf, [&](size_t done) { progress.report(done); });
}

void writeValues(const Names &names, const SharedValues &values, const Write &write)
{
    write(QByteArrayLiteral("GRAPH\tINV1\n"));
    for (size_t begin = 0; begin < names.count(); begin += batchLength) {
        QByteArray lines;
        for (size_t index = begin; index < std::min(begin + batchLength, names.count()); ++index) {
            const std::string_view name = names.at(index);
            lines.append(name.data(), int(name.size())).append('\t').append(invariantText(values.at(index)));
            lines.append('\n');
        }
        write(lines);
    }
}

/// The value of @p invariant for a graph on @p order vertices without edges.
QString edgelessValue(const Invariant &invariant, int order)
{
    SmallGraph graph;
    graph.order = order;
    GraphFacts facts(graph);
    return QString::fromLatin1(invariantText(invariant.valueOf(facts)));
}

void printRow(const QString &name, const QString &ofNone, const QString &ofOne, const QString &description)
{
    print(QStringLiteral("%1 %2 %3  %4\n").arg(name, -29).arg(ofNone, 5).arg(ofOne, 5).arg(description));
}

void printInvariants()
{
    QLatin1String group("");
    for (const Invariant &invariant : invariants()) {
        if (group != QLatin1String(invariant.group)) {
            print(group.isEmpty() ? QString() : QStringLiteral("\n"));
            group = QLatin1String(invariant.group);
            printRow(group, QStringLiteral("n = 0"), QStringLiteral("n = 1"), QStringLiteral("definition"));
        }
        printRow(QStringLiteral("  ") + QLatin1String(invariant.name), edgelessValue(invariant, 0),
                 edgelessValue(invariant, 1), QString::fromUtf8(invariant.description));
        const QString source = QString::fromUtf8(invariant.source);
        if (!source.isEmpty()) {
            print(QString(43, QLatin1Char(' ')) + QLatin1Char('[') + source + QStringLiteral("]\n"));
        }
    }
}

const Invariant *invariantOf(const QString &name)
{
    const Invariant *invariant = findInvariant(name);
    if (invariant == nullptr) {
        throw CommandError(QStringLiteral("Unknown invariant %1; 'tav invariant --list' names them.").arg(quoted(name)),
                           WrongUsage);
    }
    return invariant;
}
} // namespace

QByteArray invariantText(std::optional<double> value)
{
    constexpr double rounding = 1e-12;
    constexpr int digits = 12;
    if (!value) {
        return QByteArrayLiteral("NA");
    }
    const double integer = std::nearbyint(*value);
    const bool isInteger = std::abs(*value - integer) <= rounding;
    return QByteArray::number(isInteger ? integer : *value, 'g', digits);
}

void writeInvariantFile(const InvariantOptions &options)
{
    const Names names = readNames(options.database);
    writeOutput(options.output, [&](const Write &write) {
        SharedValues values(names.count());
        compute(names, options, values);
        writeValues(names, values, write);
    });
}

void runInvariant(const QStringList &arguments)
{
    const QCommandLineOption list(
        QStringLiteral("list"),
        QStringLiteral("Lists the invariants in groups, with their values for the graphs on no and "
                       "on one vertex, their definitions and sources."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Computes an invariant of every graph of a database and writes the file of it that Tavoline "
                       "loads: a name and a value a line, 'NA' where the invariant is undefined."));
    parser.addPositionalArgument(QStringLiteral("NAME"), QStringLiteral("The name of the invariant."));
    parser.addPositionalArgument(
        QStringLiteral("DATABASE"),
        QStringLiteral("The database, whose names are graph6 strings; '-' is standard input."));
    parser.addOptions({list, outputOption(), jobsOption()});
    if (!parseArguments(parser, arguments)) {
        return;
    }
    const QStringList operands = parser.positionalArguments();
    if (parser.isSet(list)) {
        expectNoMore(operands);
        printInvariants();
        return;
    }
    if (operands.isEmpty()) {
        throw CommandError(QStringLiteral("No invariant given; 'tav invariant --list' names them."), WrongUsage);
    }
    InvariantOptions options;
    options.invariant = invariantOf(operands.first());
    if (operands.size() != 2) {
        throw CommandError(QStringLiteral("Exactly one database file expected, %1 given.").arg(operands.size() - 1),
                           WrongUsage);
    }
    options.jobs = jobCount(parser);
    options.database = operands.last();
    options.output = outputPath(parser);
    writeInvariantFile(options);
}
