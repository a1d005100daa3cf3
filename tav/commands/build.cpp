#include "build.h"

#include "commandline.h"
#include "counted.h"
#include "databasebuilder.h"
#include "databaseforms.h"
#include "output.h"
#include "plaintext.h"

#include <cstdio>
#include <optional>

namespace
{
Relation relationOf(const QString &name)
{
    if (name == QLatin1String("vertex")) {
        return Relation::Vertex;
    }
    if (name == QLatin1String("edge")) {
        return Relation::Edge;
    }
    throw CommandError(QStringLiteral("Unknown relation %1: neither 'vertex' nor 'edge'.").arg(quoted(name)),
                       WrongUsage);
}

void report(const BuildSummary &summary)
{
    QString text = QStringLiteral("%1 and %2; %3 dropped")
                       .arg(counted(summary.graphs, "graph", "graphs"), counted(summary.links, "link", "links"),
                            counted(summary.repetitions, "isomorphic repetition", "isomorphic repetitions"));
    if (summary.disconnected > 0) {
        text += QStringLiteral(", %1 left out")
                    .arg(counted(summary.disconnected, "disconnected graph", "disconnected graphs"));
    }
    std::fprintf(stderr, "%s.\n", qPrintable(text));
}

void report(const DatabaseForms &base)
{
    const QString index = indexPath(base.path());
    const QString source =
        base.isFromFile() ? QStringLiteral("read from ") + index : QStringLiteral("made, for there is no ") + index;
    const QString graphs = counted(qint64(base.index().graphCount()), "graph", "graphs");
    const QString text = QStringLiteral("A part of %1: %2, their forms %3.").arg(base.path(), graphs, source);
    std::fprintf(stderr, "%s\n", qPrintable(plainText(text)));
}
} // namespace

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
    const QCommandLineOption baseOption(
        QStringLiteral("base"),
        QStringLiteral("Make a part of the database <BASE>: the lines of the given graphs only, which link to lines of "
                       "<BASE> and follow them in a larger database. The forms of its graphs are read from "
                       "'<BASE>.index' if 'tav index' has made that file."),
        QStringLiteral("BASE"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Makes a database of the graphs whose graph6 or sparse6 strings stand, one a line, in the files "
                       "or on standard input. Isomorphic repetitions are dropped."));
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Files of graph6 or sparse6 strings; '-' is standard input."),
                                 QStringLiteral("[FILE...]"));
    parser.addOptions({relation, connected, strict, baseOption, outputOption(), jobsOption()});
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
    std::optional<DatabaseForms> base;
    if (parser.isSet(baseOption)) {
        const QString path = parser.value(baseOption);
        expectDifferentFiles(path, {options.output});
        expectDifferentFiles(indexPath(path), {options.output});
        base.emplace(path, options.jobs);
        options.base = &*base;
    }
    report(buildDatabase(options));
    if (base) {
        report(*base);
    }
}
