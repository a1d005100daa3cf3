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

/// Whether @p argument is one of @p options, with one dash or two.
bool isOption(const QString &argument, const QStringList &options)
{
    return argument.startsWith(QLatin1Char('-')) &&
           options.contains(argument.mid(argument.startsWith(QLatin1String("--")) ? 2 : 1));
}

/// The option called @p name as it was typed, without its value.
QString typedOption(const QStringList &commandLine, const QString &name)
{
    for (const QString &argument : commandLine) {
        QString option = argument.section(QLatin1Char('='), 0, 0);
        if (isOption(option, {name})) {
            return option;
        }
    }
    return name;
}

/// What is wrong with a command line that was read, empty when nothing is.
QString faultOf(const QCommandLineParser &parser, const Arguments &arguments, const QStringList &commandLine,
                bool parsed)
{
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        return QStringLiteral("Unknown option %1.").arg(quoted(typedOption(commandLine, unknown.first())));
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
    arguments.fault = faultOf(parser, arguments, commandLine, parsed);
    return arguments;
}

QStringList withoutOptionsOfQt(const QStringList &commandLine)
{
    const QStringList flags =
        QStringLiteral("reverse testability widgetcount qdebug qdevel nograb dograb").split(QLatin1Char(' '));
    const QStringList withValue =
        QStringLiteral("platform platformpluginpath platformtheme plugin qmljsdebugger qwindowgeometry qwindowicon "
                       "qwindowtitle session style stylesheet display geometry icon name title visual")
            .split(QLatin1Char(' '));
    const QStringList withValueInOne = QStringLiteral("qmljsdebugger style stylesheet").split(QLatin1Char(' '));
    QStringList rest;
    for (int i = 0; i < commandLine.size(); ++i) {
        const QString &argument = commandLine[i];
        if (isOption(argument, withValue) && i + 1 < commandLine.size()) {
            ++i;
        } else if (!isOption(argument, flags) &&
                   !(argument.contains(QLatin1Char('=')) &&
                     isOption(argument.section(QLatin1Char('='), 0, 0), withValueInOne))) {
            rest.append(argument);
        }
    }
    return rest;
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
