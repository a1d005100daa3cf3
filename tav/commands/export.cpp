#include "export.h"

#include "commandline.h"
#include "counted.h"
#include "evaluation.h"
#include "expression.h"
#include "graphpass.h"
#include "outputfolder.h"
#include "tableexport.h"

#include <QSet>

#include <utility>
#include <vector>

namespace
{
constexpr int mostParts = 9999;

int partCount(const QCommandLineParser &parser, const QCommandLineOption &option)
{
    bool isNumber = false;
    const int count = parser.value(option).toInt(&isNumber);
    if (!isNumber || count < 1 || count > mostParts) {
        throw CommandError(QStringLiteral("Not a number of parts from 1 to %1: %2.")
                               .arg(QString::number(mostParts), quoted(parser.value(option))),
                           WrongUsage);
    }
    return count;
}

/// Throws CommandError (WrongUsage) when two files have the same name, by which the questions will know them.
void expectDifferentNames(const QStringList &paths)
{
    QSet<QString> names;
    for (const QString &path : paths) {
        const QString name = fileNameOf(path);
        if (names.contains(name)) {
            throw CommandError(QStringLiteral("Two files are named %1.").arg(quoted(name)), WrongUsage);
        }
        names.insert(name);
    }
}

/// Computes an expression for all graphs of the databases, in their order.
void computeValues(const QString &text, const QStringList &databases, int jobs, const TableExport::Take &take)
{
    std::vector<Expression> expressions;
    expressions.emplace_back(text);
    Evaluation evaluation(std::move(expressions), jobs);
    for (const QString &database : databases) {
        passGraphs(database, evaluation, [&](const GraphNames &names) {
            for (size_t graph = 0; graph < names.count(); ++graph) {
                take(evaluation.value(graph, 0));
            }
            return true;
        });
    }
}
} // namespace

void runExport(const QStringList &arguments)
{
    const QCommandLineOption folder(
        {QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write into the new folder <DIR>, which is there only when it is complete."),
        QStringLiteral("DIR"));
    const QCommandLineOption parts(QStringLiteral("parts"),
                                   QStringLiteral("Write each table as <N> files; by default 1."), QStringLiteral("N"),
                                   QStringLiteral("1"));
    const QCommandLineOption values(
        QStringLiteral("values"),
        QStringLiteral("Add the values of the invariant file <FILE>, for 'load-i1' and 'load-i2'; may be repeated."),
        QStringLiteral("FILE"));
    const QCommandLineOption compute(
        QStringLiteral("compute"),
        QStringLiteral(
            "Add the values of an expression, for 'compute-i1' and 'compute-i2' with the same text; may be repeated."),
        QStringLiteral("EXPRESSION"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes a database as tables that SQL engines read, for the questions that 'tav sql' makes of a "
                       "script. Several databases one behind the other are one, as a base and its parts."));
    parser.addPositionalArgument(QStringLiteral("DATABASE"), QStringLiteral("The file, no pipe."),
                                 QStringLiteral("DATABASE.tav..."));
    parser.addOptions({folder, parts, values, compute, jobsOption()});
    if (!parseArguments(parser, arguments)) {
        return;
    }
    const QStringList databases = parser.positionalArguments();
    if (databases.isEmpty()) {
        throw CommandError(QStringLiteral("No database file given."), WrongUsage);
    }
    if (parser.value(folder).isEmpty()) {
        throw CommandError(QStringLiteral("No folder given; '-o DIR' names it."), WrongUsage);
    }
    if (parser.value(folder) == QLatin1String("-")) {
        throw CommandError(QStringLiteral("Tables are no text for standard output; '-o DIR' names a folder."),
                           WrongUsage);
    }
    const QStringList valueFiles = parser.values(values);
    expectDifferentNames(databases);
    expectDifferentNames(valueFiles);
    const int jobs = jobCount(parser);
    const int count = partCount(parser, parts);
    QStringList expressions;
    for (const QString &expression : parser.values(compute)) {
        const Expression checked(expression);
        expressions.append(expression.simplified());
    }
    expressions.removeDuplicates();

    OutputFolder output(parser.value(folder));
    TableExport tables(databases, count, output);
    tables.writeGraphs();
    for (const QString &file : valueFiles) {
        tables.writeValueFile(file);
    }
    for (const QString &expression : expressions) {
        tables.writeValues(expression,
                           [&](const TableExport::Take &take) { computeValues(expression, databases, jobs, take); });
    }
    const Manifest manifest = tables.finish();
    output.commit();
    tell(QStringLiteral("%1, %2, %3")
             .arg(counted(manifest.graphs, "graph", "graphs"), counted(manifest.links, "link", "links"),
                  counted(qint64(manifest.levels.size()), "level", "levels")));
}
