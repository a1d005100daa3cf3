#include "build.h"
#include "commandline.h"
#include "export.h"
#include "filter.h"
#include "heap.h"
#include "index.h"
#include "info.h"
#include "interruption.h"
#include "invariant.h"
#include "names.h"
#include "outputfile.h"
#include "run.h"
#include "sql.h"
#include "standardoutput.h"
#include "textline.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace
{
struct Command {
    const char *name;
    const char *summary;
    /// Runs the command; the first argument is its name.
    void (*run)(const QStringList &arguments);
};

constexpr std::array commands = {
    Command{"build", "makes a database of graphs from graph6 strings", runBuild},
    Command{"export", "writes a database as tables for an SQL engine", runExport},
    Command{"filter", "prints the graphs for which an expression holds", runFilter},
    Command{"index", "makes the index of a database for 'build --base'", runIndex},
    Command{"info", "tells what a database holds and checks it", runInfo},
    Command{"invariant", "computes an invariant of every graph of a database", runInvariant},
    Command{"names", "tells the names that a database has for some graphs", runNames},
    Command{"run", "repeats an investigation without the window", runScript},
    Command{"sql", "turns a script into SQL for exported tables", runSql},
};

/// The command of that name; nullptr when there is none.
const Command *findCommand(const QString &name)
{
    const auto *command = std::find_if(commands.begin(), commands.end(),
                                       [&](const Command &one) { return name == QLatin1String(one.name); });
    return command != commands.end() ? command : nullptr;
}

void printHelp()
{
    print(QStringLiteral("Usage: tav COMMAND [OPTION...] [FILE...]\n"
                         "Makes and examines databases of graphs for Tavoline.\n\n"
                         "Commands:\n"));
    for (const Command &command : commands) {
        print(QStringLiteral("  %1  %2\n").arg(QLatin1String(command.name), -10).arg(QLatin1String(command.summary)));
    }
    print(QStringLiteral("\nOptions:\n"
                         "  -h, --help  displays this help; 'tav COMMAND --help' tells more of a command\n"
                         "  --version   displays the version\n"));
}

void runCommand(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        throw CommandError(QStringLiteral("No command given."), WrongUsage);
    }
    const QString &name = arguments.first();
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        expectNoMore(arguments.mid(1));
        printHelp();
    } else if (name == QLatin1String("--version")) {
        expectNoMore(arguments.mid(1));
        printVersion();
    } else if (const Command *command = findCommand(name)) {
        command->run(arguments);
    } else {
        throw CommandError(QStringLiteral("Unknown command %1.").arg(quoted(name)), WrongUsage);
    }
}

int report(const CommandError &error)
{
    tell(error.text());
    return error.status();
}

/// After a wrong command line: tells how to get the help of the command, or else of the program.
void printHint(const QStringList &arguments)
{
    QString program = QStringLiteral("tav");
    if (findCommand(arguments.value(0)) != nullptr) {
        program += QLatin1Char(' ') + arguments.first();
    }
    std::fprintf(stderr, "Try '%s --help'.\n", qPrintable(program));
}

/// If the program is started with a standard stream closed, the next file that it opens would become that stream. This
/// puts /dev/null in its place, opened the wrong way round, so that reading or writing it fails.
void openClosedStreams()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            // open() takes the lowest free descriptor, which is this one.
            [[maybe_unused]] const int opened = ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

/// What stands behind the name of the program. An argument may be the name of a file: throws CommandError (WrongUsage)
/// for one that would not be the same bytes again.
QStringList argumentsOf(int count, const char *const *values)
{
    QStringList arguments;
    for (int i = 1; i < count; ++i) {
        const QString argument = textOf(values[i]);
        if (QFile::encodeName(argument) != values[i]) {
            throw CommandError(QStringLiteral("Argument %1 is not valid UTF-8: %2.").arg(i).arg(quoted(argument)),
                               WrongUsage);
        }
        arguments.append(argument);
    }
    return arguments;
}

/// Runs the program with the arguments of main() and returns its exit status.
int run(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments;
    try {
        arguments = argumentsOf(argc, argv);
        runCommand(arguments);
        flushStandardOutput();
    } catch (const CommandError &error) {
        const int status = report(error);
        if (status == WrongUsage) {
            printHint(arguments);
        }
        return status;
    }
    return Success;
}
} // namespace

int main(int argc, char *argv[])
{
    useLargeHeapSteps();
    failBeyondFileSizeLimit();
    openClosedStreams();
    // Qt would use the event loop of GLib, which aborts the program when memory is short.
    qputenv("QT_NO_GLIB", "1");
    try {
        return run(argc, argv);
    } catch (const Interrupted &interruption) {
        endBySignal(interruption.signal());
    } catch (const std::bad_alloc &) {
        std::fputs("tav: Out of memory.\n", stderr); // without QString, which would need memory
        return Failure;
    } catch (const std::exception &exception) {
        return report(CommandError(QString::fromLocal8Bit(exception.what())));
    }
}
