#include "arguments.h"

#include "shortened.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace
{
/// Text of the command line in a message of one line.
QString quoted(const QString &text)
{
    return QLatin1Char('\'') + shortened(text.simplified()) + QLatin1Char('\'');
}

/// What is wrong with a command line that was read, empty when nothing is.
QString faultOf(const QCommandLineParser &parser, const Arguments &arguments, bool parsed)
{
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        return QStringLiteral("Unknown option %1.").arg(quoted(unknown.first()));
    }
    if (!parsed) {
        return parser.errorText();
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() > 1) {
        return QStringLiteral("Only one file can be loaded, not %1, too.").arg(quoted(files.at(1)));
    }
    if (arguments.workDir && !QFileInfo(*arguments.workDir).isDir()) {
        return QStringLiteral("Not a directory: %1.").arg(quoted(*arguments.workDir));
    }
    return {};
}
} // namespace

Arguments readArguments(const QStringList &commandLine)
{
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringLiteral("version"));
    const QCommandLineOption workDir(QStringLiteral("work-dir"), {}, QStringLiteral("DIR"));
    QCommandLineParser parser;
    // The options of Qt have one dash, or two.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({help, version, workDir});
    const bool parsed = parser.parse(commandLine);

    Arguments arguments;
    arguments.help = parser.isSet(help);
    arguments.version = parser.isSet(version);
    if (parser.isSet(workDir)) {
        arguments.workDir = parser.value(workDir);
    }
    if (!parser.positionalArguments().isEmpty()) {
        arguments.database = parser.positionalArguments().first();
    }
    arguments.fault = faultOf(parser, arguments, parsed);
    return arguments;
}

QString helpText()
{
    return QStringLiteral("Usage: tavoline [OPTION...] [FILE.tav]\n"
                          "Examines numeric invariants of graphs in a database of small graphs.\n\n"
                          "  FILE.tav        loads this database at once\n\n"
                          "Options:\n"
                          "  --work-dir DIR  starts the file dialogs in DIR, this time only\n"
                          "  -h, --help      displays a summary of the options\n"
                          "  --version       displays the version of the program\n\n"
                          "The options of Qt are understood, too, for example -style fusion.\n");
}
