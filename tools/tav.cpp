#include "build.h"
#include "commandline.h"
#include "info.h"
#include "interruption.h"
#include "invariant.h"
#include "output.h"
#include "run.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <new>

namespace
{
struct Command {
    const char *name;
    const char *summary;
    /// Carries the command out; its own name is the first argument.
    void (*run)(const QStringList &arguments);
};

constexpr std::array commands = {
    Command{"build", "makes a database of graphs from graph6 strings", runBuild},
    Command{"info", "tells what a database holds and checks it", runInfo},
    Command{"invariant", "computes an invariant of every graph of a database", runInvariant},
    Command{"run", "repeats an investigation without the window", runScript},
};

void printHelp()
{
    std::puts("Usage: tav COMMAND [OPTION...] [FILE...]\n"
              "Makes and examines databases of graphs for Tavoline.\n\n"
              "Commands:");
    for (const Command &command : commands) {
        std::printf("  %-10s  %s\n", command.name, command.summary);
    }
    std::puts("\n'tav COMMAND --help' tells more of one; 'tav --version' tells the version.");
}

void runCommand(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        throw CommandError(QStringLiteral("No command given."), WrongUsage);
    }
    const QString &name = arguments.first();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        printHelp();
        return;
    }
    if (name == QLatin1String("--version")) {
        std::puts("tav " TAVOLINE_VERSION);
        return;
    }
    const auto *command = std::find_if(commands.begin(), commands.end(),
                                       [&](const Command &one) { return name == QLatin1String(one.name); });
    if (command == commands.end()) {
        throw CommandError(QStringLiteral("Unknown command %1.").arg(quoted(name)), WrongUsage);
    }
    command->run(arguments);
}

int report(const CommandError &error)
{
    tell(error.text());
    if (error.status() == WrongUsage) {
        std::fputs("Try 'tav --help'.\n", stderr);
    }
    return error.status();
}
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    try {
        runCommand(QCoreApplication::arguments().mid(1));
        flushStandardOutput();
    } catch (const CommandError &error) {
        return report(error);
    } catch (const Interrupted &interruption) {
        endBySignal(interruption.signal());
    } catch (const std::bad_alloc &) {
        return report(CommandError(QStringLiteral("Out of memory.")));
    } catch (const std::exception &exception) {
        return report(CommandError(QString::fromLocal8Bit(exception.what())));
    }
    return Success;
}
