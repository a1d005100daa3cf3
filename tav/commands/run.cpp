#include "run.h"

#include "commandline.h"
#include "input.h"
#include "interruption.h"
#include "investigation.h"
#include "outputfile.h"
#include "parallel.h"
#include "partcheck.h"
#include "script.h"
#include "standardoutput.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace
{
/// Why the command cannot succeed with the lists and the database that there are; empty when it can.
QString obstacle(const ScriptStep &step, const TAVManager &manager)
{
    for (int i = 0; i < step.arguments.size(); ++i) {
        const QString &name = step.arguments.at(i);
        const bool exists = manager.indexOf(name) >= 0;
        switch (step.kindOf(i)) {
        case ScriptArgument::NewList:
            if (name.isEmpty()) {
                return QStringLiteral("the name of a list cannot be empty");
            }
            if (exists) {
                return QStringLiteral("there is a list %1 already").arg(quoted(name));
            }
            break;
        case ScriptArgument::List:
            if (!exists) {
                return QStringLiteral("there is no list %1").arg(quoted(name));
            }
            break;
        case ScriptArgument::InputFile:
        case ScriptArgument::MoreInputFiles:
        case ScriptArgument::OutputFile:
        case ScriptArgument::Formula:
            break;
        }
    }
    return step.command->need == Need::Graphs && !manager.hasGraphs() ? QStringLiteral("there is no database")
                                                                      : QString();
}

bool isLastArgument(const ScriptStep &step, ScriptArgument::Kind kind)
{
    const std::vector<ScriptArgument> &arguments = step.command->arguments;
    return !arguments.empty() && arguments.back().kind == kind;
}

/// Whether the command reads or writes a file. Its name is always the last argument.
bool namesFile(const ScriptStep &step)
{
    return isLastArgument(step, ScriptArgument::InputFile) || isLastArgument(step, ScriptArgument::MoreInputFiles) ||
           isLastArgument(step, ScriptArgument::OutputFile);
}

/// Whether the command makes a new file.
bool makesFile(const ScriptStep &step)
{
    return isLastArgument(step, ScriptArgument::OutputFile) && isReplaced(step.arguments.last());
}

/// Runs a command. While it saves a file, signals wait until the file is complete.
bool carryOut(const ScriptStep &step, Investigation &investigation)
{
    std::optional<InterruptionScope> scope;
    if (makesFile(step)) {
        scope.emplace();
    }
    const bool succeeded = step.command->run(investigation, step.arguments);
    if (scope) {
        InterruptionScope::check();
    }
    return succeeded;
}

CommandError failure(const ScriptStep &step, const QString &script, const QString &reason)
{
    QString text = QStringLiteral("%1 failed").arg(QLatin1String(step.command->name));
    if (!reason.isEmpty()) {
        text += QStringLiteral(": ") + reason;
    }
    return CommandError(script, step.line, text);
}

/// Runs a command; throws CommandError when it fails, unless its line begins with '-'.
void runStep(const ScriptStep &step, const QString &script, Investigation &investigation)
{
    QString reason = obstacle(step, investigation.getManager());
    bool succeeded = false;
    try {
        succeeded = carryOut(step, investigation);
    } catch (const CommandError &error) {
        reason = error.text();
    }
    flushStandardOutput();
    if (succeeded) {
        return;
    }
    if (reason.isEmpty() && namesFile(step)) {
        reason = investigation.getManager().fileFault();
    }
    if (!step.mayFail) {
        throw failure(step, script, reason);
    }
    tell(failure(step, script, reason).text() + QStringLiteral(" (ignored)"));
}

struct RunOptions {
    bool isQuiet = false;
    bool isPart = false; ///< some parts of a database are loaded, not all
};

/// Makes the commands of the lines of a script, from the first on.
class StepReader
{
public:
    StepReader(const QString &scriptName, const RunOptions &options) : script(scriptName)
    {
        if (options.isPart) {
            partCheck.emplace();
        }
    }

    /// The command of the next line (see parseScriptLine()). Throws CommandError also for one whose answer would be
    /// wrong.
    std::optional<ScriptStep> next(std::string_view line)
    {
        std::optional<ScriptStep> step = parseScriptLine(line, script, ++number);
        const QString fault = step && partCheck ? partCheck->faultOf(*step) : QString();
        if (!fault.isEmpty()) {
            throw CommandError(
                script, number,
                QStringLiteral("%1 is refused with --part: %2").arg(QLatin1String(step->command->name), fault));
        }
        return step;
    }

private:
    const QString &script;
    std::optional<PartCheck> partCheck;
    qint64 number = 0;
};

/// Runs each command of standard input as soon as its line has arrived.
void runLineByLine(const RunOptions &options)
{
    Investigation investigation(options.isQuiet, options.isPart);
    StepReader reader(standardStream, options);
    const auto runLine = [&](std::string_view line, qint64) {
        if (const auto step = reader.next(line)) {
            runStep(*step, standardStream, investigation);
        }
    };
    readLines(standardStream, runLine, longestScriptLine);
}

/// Checks all lines of the file, then runs its commands.
void runFile(const QString &script, const RunOptions &options)
{
    std::string lines; // which take less memory than their commands
    StepReader check(script, options);
    const auto checkLine = [&](std::string_view line, qint64) {
        check.next(line);
        lines.append(line).push_back('\n');
    };
    readLines(script, checkLine, longestScriptLine);
    Investigation investigation(options.isQuiet, options.isPart);
    StepReader reader(script, options);
    for (std::string_view rest = lines; !rest.empty();) {
        const size_t end = rest.find('\n');
        if (const auto step = reader.next(rest.substr(0, end))) {
            runStep(*step, script, investigation);
        }
        rest.remove_prefix(end + 1);
    }
}

QString commandHelp()
{
    int width = 0;
    for (const ScriptCommand &command : scriptCommands()) {
        width = std::max(width, command.usage().size());
    }
    QString text = QStringLiteral("\nCommands of a script, one a line:\n");
    for (const ScriptCommand &command : scriptCommands()) {
        text += QStringLiteral("  %1 %2\n").arg(command.usage().leftJustified(width), QLatin1String(command.summary));
    }
    return text;
}
} // namespace

void runScript(const QStringList &arguments)
{
    const QCommandLineOption quiet({QStringLiteral("q"), QStringLiteral("quiet")},
                                   QStringLiteral("Print only what 'show' and 'lists' do, no lines of the console."));
    const QCommandLineOption part(
        QStringLiteral("part"),
        QStringLiteral("Refuse the commands whose answers are wrong where only some parts of a database are loaded: "
                       "those that look at the graphs above others, some that combine lists, and a second load. Keep "
                       "lists that are empty."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Repeats an investigation without the window. The lines of the window's console go to standard "
                       "output. A command that fails ends the script, unless its line begins with '-'."));
    parser.addPositionalArgument(QStringLiteral("SCRIPT"),
                                 QStringLiteral("The file of commands; by default, and for '-', standard input, of "
                                                "which each line is carried out as soon as it is there."),
                                 QStringLiteral("[SCRIPT]"));
    parser.addOptions({quiet, part, jobsOption()});
    if (!parseArguments(parser, arguments, commandHelp())) {
        return;
    }
    setThreadCount(jobCount(parser));
    const QString script =
        parser.positionalArguments().isEmpty() ? standardStream : onlyArgument(parser, QStringLiteral("script"));
    const RunOptions options = {parser.isSet(quiet), parser.isSet(part)};
    if (script == standardStream) {
        runLineByLine(options);
    } else {
        runFile(script, options);
    }
}
