#include "names.h"

#include "commandline.h"
#include "counted.h"
#include "graphinput.h"
#include "graphstring.h"
#include "input.h"
#include "namesearch.h"
#include "output.h"
#include "textline.h"

#include <QByteArray>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace
{
/// How many bytes are written at a time.
constexpr int batchSize = 1 << 18;

struct NamesOptions {
    QString database;
    QString list;
    bool strict = false; // a graph that the database does not hold is an error
    int jobs = 1;
    QString output;
};

/// The graphs of the list, and where they stand.
struct SoughtGraphs {
    std::vector<std::string> graphs;
    std::vector<qint64> lines;
};

SoughtGraphs readList(const QString &path)
{
    SoughtGraphs list;
    readGraphs(path, [&](const GraphLine &line) {
        list.graphs.emplace_back(line.text);
        list.lines.push_back(line.number);
    });
    return list;
}

void readDatabase(const QString &database, NameSearch &search)
{
    bool isEmpty = true;
    readLines(database, [&](std::string_view line, qint64 number) {
        bool more = false;
        QByteArray memory;
        const std::string_view name = graphOnLine(normaliseDroppingReturns(takeField(line, more), memory), number);
        if (!name.empty()) {
            isEmpty = false;
            search.offer(name, number);
        }
    });
    search.finish();
    if (isEmpty) {
        throw CommandError(database, 1, QStringLiteral("the database holds no graph"));
    }
}

/// Throws CommandError when the database does not hold all graphs of the list and the options are strict, and else
/// tells how many.
void tellMissing(const SoughtGraphs &list, const NameSearch &search, const NamesOptions &options)
{
    qint64 missing = 0;
    size_t first = 0;
    for (size_t i = list.graphs.size(); i-- > 0;) {
        if (search.nameOf(i).empty()) {
            ++missing;
            first = i;
        }
    }
    if (missing == 0) {
        return;
    }
    QString text = QStringLiteral("the database does not hold %1").arg(quoted(textOf(list.graphs[first])));
    if (options.strict) {
        throw CommandError(options.list, list.lines[first], text);
    }
    if (missing > 1) {
        text += QStringLiteral(", nor %1 of the list").arg(counted(missing - 1, "other", "others"));
    }
    tell(CommandError(options.list, list.lines[first], text).text());
}

void writeNames(const SoughtGraphs &list, const NameSearch &search, const Write &write)
{
    QByteArray lines;
    for (size_t i = 0; i < list.graphs.size(); ++i) {
        const std::string_view name = search.nameOf(i);
        lines.append(name.empty() ? "-" : name.data(), name.empty() ? 1 : int(name.size())).append('\n');
        if (lines.size() >= batchSize) {
            write(lines);
            lines.clear();
        }
    }
    write(lines);
}

void findNames(const NamesOptions &options)
{
    const SoughtGraphs list = readList(options.list);
    NameSearch search(list.graphs, options.jobs, [&](std::string_view name, qint64 number, const QString &fault) {
        throw CommandError(options.database, number,
                           QStringLiteral("the name %1 is no graph: %2").arg(quoted(textOf(name)), fault));
    });
    readDatabase(options.database, search);
    tellMissing(list, search, options);
    writeOutput(options.output, [&](const Write &write) { writeNames(list, search, write); });
}
} // namespace

void runNames(const QStringList &arguments)
{
    const QCommandLineOption strict(QStringLiteral("strict"),
                                    QStringLiteral("Fail when the database does not hold one of the graphs."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Prints for each graph of a list the name of the isomorphic graph of the database, '-' when the "
        "database holds none. Tavoline compares names as text: a list from elsewhere is translated so."));
    parser.addPositionalArgument(
        QStringLiteral("DATABASE"),
        QStringLiteral("The database, whose names are graph6 strings; '-' is standard input."));
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("The list, a graph6 or sparse6 string a line; by default, and for '-', "
                                                "standard input."),
                                 QStringLiteral("[FILE]"));
    parser.addOptions({strict, outputOption(), jobsOption()});
    if (!parseArguments(parser, arguments)) {
        return;
    }
    const QStringList operands = parser.positionalArguments();
    if (operands.isEmpty()) {
        throw CommandError(QStringLiteral("No database given."), WrongUsage);
    }
    expectNoMore(operands.mid(2));
    NamesOptions options;
    options.database = operands.first();
    options.list = operands.value(1, standardStream);
    if (options.database == standardStream && options.list == standardStream) {
        throw CommandError(QStringLiteral("Standard input cannot be both the database and the list."), WrongUsage);
    }
    options.strict = parser.isSet(strict);
    options.jobs = jobCount(parser);
    options.output = outputPath(parser);
    expectDifferentFiles(options.database, {options.output});
    findNames(options);
}
