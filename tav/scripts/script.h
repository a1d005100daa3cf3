#ifndef TAVOLINE_SCRIPT_H
#define TAVOLINE_SCRIPT_H

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

class Investigation;

/// What the words behind the name of a command stand for.
struct ScriptArgument {
    enum Kind {
        InputFile,
        MoreInputFiles, ///< any number of words, also none; the last argument of its command
        OutputFile,
        List,
        NewList,
        Formula,
    };

    Kind kind;
    const char *name; ///< in texts for the user
};

/// What has to be loaded for an answer.
enum class Need {
    Nothing,
    Graphs,   ///< a database, or else the command fails
    AllParts, ///< all parts of the database: the command looks at the graphs above others
};

/// A command of the scripts that repeat an investigation.
struct ScriptCommand {
    const char *name;
    std::vector<ScriptArgument> arguments;
    const char *summary;
    /// Carries the command out and returns whether it succeeded.
    std::function<bool(Investigation &investigation, const QStringList &arguments)> run;
    Need need = Need::Nothing;

    /// The name and the names of the arguments.
    QString usage() const;
    /// Whether it can have so many arguments.
    bool takes(int count) const;
};

/// Every command there is, in the order of the window's panels.
const std::vector<ScriptCommand> &scriptCommands();

/// How many bytes a line of a script may have.
constexpr int longestScriptLine = 1 << 20;

/// A line of a script that holds a command.
struct ScriptStep {
    qint64 line = 0;
    bool mayFail = false; ///< the script goes on when the command fails
    const ScriptCommand *command = nullptr;
    QStringList arguments; ///< as many as the command takes

    /// What the argument @p index stands for.
    ScriptArgument::Kind kindOf(int index) const;
};

/// The command of the line @p bytes (UTF-8, without line end), which stands in @p script as its line @p number; none
/// when the line is empty or a comment. Throws CommandError when the line is no proper command.
std::optional<ScriptStep> parseScriptLine(std::string_view bytes, const QString &script, qint64 number);

#endif
