#include "script.h"

#include "TAVmanager.h"
#include "commandline.h"
#include "expression.h"
#include "investigation.h"
#include "textline.h"

#include <QByteArray>

#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>

namespace
{
using Run = decltype(ScriptCommand::run);

template<typename Result, typename... Texts, int... Positions>
Run callOf(Result (TAVManager::*operation)(Texts...), std::integer_sequence<int, Positions...>)
{
    return [operation](Investigation &investigation, [[maybe_unused]] const QStringList &arguments) {
        const auto call = [&] { return (investigation.getManager().*operation)(arguments.at(Positions)...); };
        if constexpr (std::is_void_v<Result>) {
            call();
            return true;
        } else {
            return call();
        }
    };
}

/// Calls an operation of the manager with the arguments of the command; one that returns nothing always succeeds.
template<typename Result, typename... Texts> Run manager(Result (TAVManager::*operation)(Texts...))
{
    return callOf(operation, std::make_integer_sequence<int, sizeof...(Texts)>());
}

Run invariantLoader(void (TAVManager::*operation)(const QString &))
{
    return [operation](Investigation &investigation, const QStringList &arguments) {
        return investigation.loadInvariant(operation, arguments.first());
    };
}

Run invariantComputer(Investigation::SetInvariant set)
{
    return [set](Investigation &investigation, const QStringList &arguments) {
        return investigation.computeInvariant(set, arguments.first());
    };
}

bool load(Investigation &investigation, const QStringList &arguments)
{
    return investigation.load(arguments);
}

bool printLists(Investigation &investigation, const QStringList &)
{
    investigation.printLists();
    return true;
}

bool printList(Investigation &investigation, const QStringList &arguments)
{
    return investigation.printList(arguments.first());
}

bool listFromGraphs(Investigation &investigation, const QStringList &arguments)
{
    return investigation.addListFromGraphs(arguments.first(), arguments.last());
}

std::vector<ScriptCommand> makeCommands()
{
    const ScriptArgument in{ScriptArgument::InputFile, "FILE"};
    const ScriptArgument parts{ScriptArgument::MoreInputFiles, "[PART...]"};
    const ScriptArgument out{ScriptArgument::OutputFile, "FILE"};
    const ScriptArgument name{ScriptArgument::NewList, "NAME"};
    const ScriptArgument a{ScriptArgument::List, "A"};
    const ScriptArgument b{ScriptArgument::List, "B"};
    const ScriptArgument formula{ScriptArgument::Formula, "EXPRESSION"};
    // clang-format off
    return {
        {"load", {in, parts}, "loads a database and parts of it, in place of the one at hand", load},
        {"clear", {}, "empties the database; lists stay", manager(&TAVManager::resetDatabase)},
        {"save-graphs", {out}, "writes the names of all graphs of the database", manager(&TAVManager::saveGraphs), Need::Graphs},

        {"load-i1", {in}, "loads I1 of every graph", invariantLoader(&TAVManager::loadInv1), Need::Graphs},
        {"load-i2", {in}, "loads I2 of every graph", invariantLoader(&TAVManager::loadInv2), Need::Graphs},
        {"compute-i1", {formula}, "computes I1 of every graph", invariantComputer(&TAVManager::setInv1), Need::Graphs},
        {"compute-i2", {formula}, "computes I2 of every graph", invariantComputer(&TAVManager::setInv2), Need::Graphs},
        {"save-i1", {out}, "writes I1 of every graph", manager(&TAVManager::saveInv1), Need::Graphs},
        {"i1-gets-i2", {}, "I1 <- I2", manager(&TAVManager::I1getsI2)},
        {"i2-gets-i1", {}, "I2 <- I1", manager(&TAVManager::I2getsI1)},
        {"exchange", {}, "I1 <-> I2", manager(&TAVManager::exch_1_2)},
        {"avg-sub", {}, "I2 = average of I1 over the direct sub-graphs", manager(&TAVManager::avgSub1)},
        {"avg-super", {}, "I2 = average of I1 over the direct super-graphs", manager(&TAVManager::avgOver1), Need::AllParts},
        {"avg-all", {}, "I2 = average of I1 over both", manager(&TAVManager::avgAll1), Need::AllParts},
        {"min-sub", {}, "I2 = minimum of I1 over the direct sub-graphs", manager(&TAVManager::minSub1)},
        {"min-super", {}, "I2 = minimum of I1 over the direct super-graphs", manager(&TAVManager::minOver1), Need::AllParts},
        {"min-all", {}, "I2 = minimum of I1 over both", manager(&TAVManager::minAll1), Need::AllParts},
        {"max-sub", {}, "I2 = maximum of I1 over the direct sub-graphs", manager(&TAVManager::maxSub1)},
        {"max-super", {}, "I2 = maximum of I1 over the direct super-graphs", manager(&TAVManager::maxOver1), Need::AllParts},
        {"max-all", {}, "I2 = maximum of I1 over both", manager(&TAVManager::maxAll1), Need::AllParts},

        {"list-ge", {name}, "List I1 >= I2", manager(&TAVManager::addI1geI2List)},
        {"list-le", {name}, "List I1 <= I2", manager(&TAVManager::addI1leI2List)},
        {"list-eq-subs", {name}, "List I1 == I2 (all subs)", manager(&TAVManager::addI1eqI2subsList)},
        {"list-ge-subs", {name}, "List I1 >= I2 (all subs)", manager(&TAVManager::addI1geI2subsList)},
        {"list-le-subs", {name}, "List I1 <= I2 (all subs)", manager(&TAVManager::addI1leI2subsList)},
        {"list-eq-supers", {name}, "List I1 == I2 (all super)", manager(&TAVManager::addI1eqI2overList), Need::AllParts},
        {"list-ge-supers", {name}, "List I1 >= I2 (all super)", manager(&TAVManager::addI1geI2overList), Need::AllParts},
        {"list-le-supers", {name}, "List I1 <= I2 (all super)", manager(&TAVManager::addI1leI2overList), Need::AllParts},
        {"list-gt-subs", {name}, "List I1 > I2 (all subs)", manager(&TAVManager::addI1gtI2subsList)},
        {"list-lt-subs", {name}, "List I1 < I2 (all subs)", manager(&TAVManager::addI1ltI2subsList)},
        {"list-gt-supers", {name}, "List I1 > I2 (all super)", manager(&TAVManager::addI1gtI2overList), Need::AllParts},
        {"list-lt-supers", {name}, "List I1 < I2 (all super)", manager(&TAVManager::addI1ltI2overList), Need::AllParts},

        {"supers", {name, a}, "the graphs of A that are in the database, and all above them", manager(&TAVManager::addOverList), Need::AllParts},
        {"subs", {name, a}, "the graphs of A that are in the database, and all below them", manager(&TAVManager::addSubsList)},
        {"list-from-file", {name, in}, "the graphs that a file names, one a line", manager(&TAVManager::addListFromFile)},
        {"list-from-graphs", {name, in}, "the graphs of the database that are isomorphic to those of a file", listFromGraphs, Need::Graphs},
        {"union", {name, a, b}, "the graphs of A and of B, sorted, each once", manager(&TAVManager::addUnionList)},
        {"intersection", {name, a, b}, "the graphs of A that are in B", manager(&TAVManager::addInterList)},
        {"difference", {name, a, b}, "the graphs of A that are not in B", manager(&TAVManager::addExceptList)},
        {"remove-list", {a}, "removes the list A", manager(&TAVManager::remList)},
        {"save-list", {a, out}, "writes the graphs of A, one a line", manager(&TAVManager::saveList)},
        {"lists", {}, "prints the name and the length of every list", printLists},
        {"show", {a}, "prints the graphs of A, one a line", printList},
    };
    // clang-format on
}

/// An expression that does not stand between quotes is several words: makes them one, and checks it.
void takeExpression(QStringList &words)
{
    if (words.isEmpty()) {
        return;
    }
    words = QStringList(words.join(QLatin1Char(' ')));
    const Expression checked(words.first());
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

/// Takes the words of a line one by one.
class WordReader
{
public:
    /// @p line, in UTF-8, stands in @p scriptName as the line @p lineNumber, which messages name.
    WordReader(std::string_view line, const QString &scriptName, qint64 lineNumber)
        : text(line)
        , script(scriptName)
        , number(lineNumber)
    {
    }

    /// Skips blanks, then @p byte, and returns whether it was there.
    bool take(char byte)
    {
        skipBlanks();
        const bool found = !atEnd() && current() == byte;
        position += found ? 1 : 0;
        return found;
    }

    QStringList takeAll()
    {
        QStringList words;
        for (skipBlanks(); !atEnd() && current() != '#'; skipBlanks()) {
            words.append(current() == '"' ? quotedWord() : plainWord());
        }
        return words;
    }

    [[noreturn]] void fail(const QString &fault) const { throw CommandError(script, number, fault); }

private:
    bool atEnd() const { return position >= text.size(); }
    char current() const { return text[position]; }

    void skipBlanks()
    {
        while (!atEnd() && isBlank(current())) {
            ++position;
        }
    }

    QString plainWord()
    {
        const size_t begin = position;
        while (!atEnd() && !isBlank(current())) {
            ++position;
        }
        return textOfWord(text.substr(begin, position - begin));
    }

    QString quotedWord()
    {
        std::string word;
        for (++position; !atEnd() && current() != '"'; ++position) {
            if (current() == '\\') {
                ++position;
                if (!atEnd() && current() != '"' && current() != '\\') {
                    fail(QStringLiteral("between quotes a backslash stands only before a quote or a backslash"));
                }
            }
            if (!atEnd()) {
                word += current();
            }
        }
        if (atEnd()) {
            fail(QStringLiteral("a quote is not closed"));
        }
        ++position;
        if (!atEnd() && !isBlank(current())) {
            fail(QStringLiteral("no blank behind a closing quote"));
        }
        return textOfWord(word);
    }

    /// A word that would not be the same bytes again is refused: it may be the name of a file.
    QString textOfWord(std::string_view bytes) const
    {
        QString word = textOf(bytes);
        if (word.toUtf8() != QByteArray::fromRawData(bytes.data(), int(bytes.size()))) {
            fail(QStringLiteral("not valid UTF-8: %1").arg(quoted(word)));
        }
        if (bytes.find('\0') != std::string_view::npos) {
            fail(QStringLiteral("a byte is zero: %1").arg(quoted(word)));
        }
        return word;
    }

    std::string_view text;
    const QString &script;
    qint64 number;
    size_t position = 0;
};
} // namespace

QString ScriptCommand::usage() const
{
    QString text = QLatin1String(name);
    for (const ScriptArgument &argument : arguments) {
        text += QLatin1Char(' ') + QLatin1String(argument.name);
    }
    return text;
}

bool ScriptCommand::takes(int count) const
{
    const int most = int(arguments.size());
    const bool takesMore = most > 0 && arguments.back().kind == ScriptArgument::MoreInputFiles;
    return takesMore ? count >= most - 1 : count == most;
}

ScriptArgument::Kind ScriptStep::kindOf(int index) const
{
    return command->arguments[std::min(index, int(command->arguments.size()) - 1)].kind;
}

const std::vector<ScriptCommand> &scriptCommands()
{
    static const std::vector<ScriptCommand> commands = makeCommands();
    return commands;
}

std::optional<ScriptStep> parseScriptLine(std::string_view bytes, const QString &script, qint64 number)
{
    WordReader reader(withoutByteOrderMark(bytes), script, number);
    ScriptStep step;
    step.line = number;
    step.mayFail = reader.take('-');
    step.arguments = reader.takeAll();
    if (step.arguments.isEmpty()) {
        return {};
    }
    const QString name = step.arguments.takeFirst();
    const std::vector<ScriptCommand> &commands = scriptCommands();
    const auto command = std::find_if(commands.begin(), commands.end(),
                                      [&](const ScriptCommand &one) { return name == QLatin1String(one.name); });
    if (command == commands.end()) {
        reader.fail(QStringLiteral("unknown command %1").arg(quoted(name)));
    }
    if (!command->arguments.empty() && command->arguments.front().kind == ScriptArgument::Formula) {
        try {
            takeExpression(step.arguments);
        } catch (const CommandError &error) {
            reader.fail(error.text());
        }
    }
    if (!command->takes(step.arguments.size())) {
        reader.fail(QStringLiteral("wrong number of arguments: '%1' expected, %2 given")
                        .arg(command->usage())
                        .arg(step.arguments.size()));
    }
    step.command = &*command;
    return step;
}
