#include "sql.h"

#include "commandline.h"
#include "input.h"
#include "output.h"
#include "script.h"
#include "textline.h"
#include "translation.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace
{
Engine engineOf(const QCommandLineParser &parser, const QCommandLineOption &dialect)
{
    const QString name = parser.value(dialect);
    if (name == QLatin1String("duckdb")) {
        return Engine::DuckDb;
    }
    if (name == QLatin1String("spark")) {
        return Engine::Spark;
    }
    throw CommandError(name.isEmpty()
                           ? QStringLiteral("No dialect given; '--dialect' names it: 'duckdb' or 'spark'.")
                           : QStringLiteral("Unknown dialect %1; 'duckdb' or 'spark' expected.").arg(quoted(name)),
                       WrongUsage);
}

/// The path stands in the SQL, where both engines look for files whose paths match it.
void expectPlainPath(const QString &path)
{
    const QString special = QStringLiteral("*?[]{}\\");
    const auto *found = std::find_if(path.begin(), path.end(), [&](QChar one) { return special.contains(one); });
    if (path.isEmpty() || found != path.end()) {
        throw CommandError(path.isEmpty()
                               ? QStringLiteral("The name of the folder of the tables is empty.")
                               : QStringLiteral("The path of the tables has %1, which engines take for a pattern: %2.")
                                     .arg(quoted(QString(*found)), quoted(path)),
                           WrongUsage);
    }
}

/// Reads the manifests of the tables in some folders. Throws CommandError when one does not fit, or when a script could
/// not tell two of them from each other.
std::vector<TableFolder> readTables(const QStringList &paths)
{
    std::vector<TableFolder> folders;
    for (const QString &path : paths) {
        expectPlainPath(path);
        const Manifest manifest = readManifest(path);
        for (const TableFolder &other : folders) {
            if (other.manifest.databases == manifest.databases) {
                throw CommandError(
                    QStringLiteral("The tables in %1 and in %2 are both those of %3.")
                        .arg(quoted(other.path), quoted(path), quoted(manifest.databases.join(QLatin1Char(' ')))),
                    WrongUsage);
            }
        }
        folders.push_back({path, manifest});
    }
    return folders;
}

qint64 graphCount(const QCommandLineParser &parser, const QCommandLineOption &option)
{
    bool isNumber = false;
    const qint64 count = parser.value(option).toLongLong(&isNumber);
    if (!isNumber || count < 1) {
        throw CommandError(QStringLiteral("Not a number of graphs: %1.").arg(quoted(parser.value(option))), WrongUsage);
    }
    return count;
}
} // namespace

void runSql(const QStringList &arguments)
{
    const QCommandLineOption dialect(QStringLiteral("dialect"),
                                     QStringLiteral("Write for DuckDB ('duckdb') or for Spark SQL ('spark')."),
                                     QStringLiteral("ENGINE"));
    const QCommandLineOption tables(
        QStringLiteral("tables"),
        QStringLiteral("The folder <DIR>, which 'tav export' wrote, holds the tables of the database that the script "
                       "loads; to be repeated for a script that loads several."),
        QStringLiteral("DIR"));
    const TranslationOptions defaults;
    const QCommandLineOption atOnce(
        QStringLiteral("slice"),
        QStringLiteral("Work on about <N> graphs in one statement at most; by default %1.").arg(defaults.graphsAtOnce),
        QStringLiteral("N"), QString::number(defaults.graphsAtOnce));
    const QCommandLineOption sorted(
        QStringLiteral("sorted"),
        QStringLiteral("List all graphs below or above some in the order of the database, not breadth first."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Turns a script of 'tav run' into SQL, which asks the same of the tables that 'tav export' "
                       "writes. What cannot be said in SQL is told, and nothing is written."));
    parser.addPositionalArgument(QStringLiteral("SCRIPT"),
                                 QStringLiteral("The file of commands; '-' is standard input."),
                                 QStringLiteral("SCRIPT"));
    parser.addOptions({dialect, tables, atOnce, sorted, outputOption()});
    if (!parseArguments(parser, arguments)) {
        return;
    }
    const QString script = onlyArgument(parser, QStringLiteral("script"));
    TranslationOptions options;
    options.engine = engineOf(parser, dialect);
    options.graphsAtOnce = graphCount(parser, atOnce);
    options.sortsClosures = parser.isSet(sorted);
    std::vector<TableFolder> folders = readTables(parser.values(tables));
    const QString output = outputPath(parser);
    expectDifferentFiles(script, {output});

    Translation translation(script, options, std::move(folders));
    const auto readLine = [&](std::string_view line, qint64 number) {
        if (const auto step = parseScriptLine(line, script, number)) {
            translation.addStep(textOf(line), *step);
        } else {
            translation.addRemark(textOf(line));
        }
    };
    readLines(script, readLine, longestScriptLine);
    const QByteArray text = translation.finish();
    writeOutput(output, [&](const Write &write) { write(text); });
}
