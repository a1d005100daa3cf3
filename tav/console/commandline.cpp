#include "commandline.h"

#include "parallel.h"
#include "plaintext.h"
#include "progress.h"
#include "standardoutput.h"

#include <cstdio>
#include <utility>

namespace
{
constexpr int maximalJobCount = 1024;

/// Breaks a text at blanks so that its lines have at most 79 characters.
QString wrapped(const QString &text)
{
    constexpr int width = 79;
    QString result;
    int column = 0;
    for (const QString &word : text.split(QLatin1Char(' '))) {
        const bool fits = column + 1 + word.size() <= width;
        if (column > 0) {
            result += QLatin1Char(fits ? ' ' : '\n');
        }
        column = column > 0 && fits ? column + 1 + word.size() : word.size();
        result += word;
    }
    return result;
}
} // namespace

CommandError::CommandError(QString text, ExitStatus status)
    : message(std::move(text))
    , bytes(message.toLocal8Bit())
    , exitStatus(status)
{
}

CommandError::CommandError(const QString &file, qint64 line, const QString &text)
    : CommandError(QStringLiteral("%1:%2: %3").arg(inputName(file), QString::number(line), text))
{
}

QString inputName(const QString &path)
{
    return path == standardStream ? QStringLiteral("standard input") : path;
}

CommandError cannotWrite(const QString &path, const QString &reason)
{
    return CommandError(QStringLiteral("%1: cannot be written: %2")
                            .arg(path == standardStream ? QStringLiteral("standard output") : path, reason));
}

QString quoted(const QString &text)
{
    constexpr int longest = 60; // characters
    return QLatin1Char('\'') + (text.size() > longest ? text.left(longest) + QStringLiteral("...") : text) +
           QLatin1Char('\'');
}

void tell(const QString &line)
{
    Progress::clear();
    sendPrinted();
    std::fprintf(stderr, "tav: %s\n", qPrintable(plainText(line)));
}

bool parseArguments(QCommandLineParser &parser, const QStringList &arguments, const QString &moreHelp)
{
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Displays this help."));
    const QCommandLineOption version(QStringLiteral("version"), QStringLiteral("Displays the version."));
    parser.addOptions({help, version});
    if (!parser.parse(arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        throw CommandError(unknown.isEmpty() ? parser.errorText()
                                             : QStringLiteral("Unknown option %1.").arg(quoted(unknown.first())),
                           WrongUsage);
    }
    if (parser.isSet(help)) {
        parser.setApplicationDescription(wrapped(parser.applicationDescription()));
        QString text = parser.helpText();
        text.remove(0, qMax(0, text.indexOf(QLatin1String(" [options]")))); // begins with the path of the program
        print(QStringLiteral("Usage: tav ") + arguments.first() + text + moreHelp);
        return false;
    }
    if (parser.isSet(version)) {
        printVersion();
        return false;
    }
    return true;
}

void printVersion()
{
    print(QStringLiteral("tav " TAVOLINE_VERSION "\n"));
}

void expectNoMore(const QStringList &arguments)
{
    if (!arguments.isEmpty()) {
        throw CommandError(QStringLiteral("Unexpected argument %1.").arg(quoted(arguments.first())), WrongUsage);
    }
}

QString onlyArgument(const QCommandLineParser &parser, const QString &what)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 1) {
        throw CommandError(QStringLiteral("Exactly one %1 expected, %2 given.").arg(what).arg(arguments.size()),
                           WrongUsage);
    }
    return arguments.first();
}

QCommandLineOption jobsOption()
{
    return {{QStringLiteral("j"), QStringLiteral("jobs")},
            QStringLiteral("Use <N> processors; by default all there are. The result is the same."),
            QStringLiteral("N")};
}

int jobCount(const QCommandLineParser &parser)
{
    const QString option = QStringLiteral("jobs");
    if (!parser.isSet(option)) {
        return processorCount();
    }
    bool isNumber = false;
    const int count = parser.value(option).toInt(&isNumber);
    if (!isNumber || count < 1 || count > maximalJobCount) {
        throw CommandError(QStringLiteral("Not a number of processors from 1 to %1: %2.")
                               .arg(QString::number(maximalJobCount), quoted(parser.value(option))),
                           WrongUsage);
    }
    return count;
}

QCommandLineOption outputOption()
{
    return {{QStringLiteral("o"), QStringLiteral("output")},
            QStringLiteral("Write to <FILE>, which is replaced when the new one is complete; by default, and for '-', "
                           "to standard output."),
            QStringLiteral("FILE"),
            standardStream};
}

QString outputPath(const QCommandLineParser &parser)
{
    QString path = parser.value(QStringLiteral("output"));
    if (path.isEmpty()) {
        throw CommandError(QStringLiteral("The name of the output file is empty."), WrongUsage);
    }
    return path;
}
