// tav run: each command of a script is the manager's operation; failures, and where scripts come from.

#include "TAVmanager.h"
#include "commandline.h"
#include "parallel.h"
#include "run.h"
#include "script.h"
#include "smallgraph.h"
#include "support/literals.h"
#include "support/loading.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
const QByteArray start = "Starting...\n";

/// An operation of the manager, and where its caller prints.
using Operation = std::function<void(TAVManager &manager, QByteArray &output)>;

/// What a command does, said a second time.
struct Meaning {
    const char *line;
    Operation operation;
};

Operation derivation(void (TAVManager::*operation)())
{
    return [operation](TAVManager &manager, QByteArray &) { (manager.*operation)(); };
}

Operation comparison(bool (TAVManager::*operation)(const QString &))
{
    return [operation](TAVManager &manager, QByteArray &) { (manager.*operation)(QStringLiteral("new list")); };
}

Operation withFile(const std::function<void(TAVManager &, const QString &)> &operation, const char *file)
{
    return [operation, file](TAVManager &manager, QByteArray &) { operation(manager, QLatin1String(file)); };
}

Operation combination(bool (TAVManager::*operation)(const QString &, const QString &, const QString &))
{
    return [operation](TAVManager &manager, QByteArray &) {
        (manager.*operation)(QStringLiteral("new list"), QStringLiteral("regular"), QStringLiteral("all"));
    };
}

Operation closure(bool (TAVManager::*operation)(const QString &, const QString &))
{
    return [operation](TAVManager &manager, QByteArray &) {
        (manager.*operation)(QStringLiteral("new list"), QStringLiteral("regular"));
    };
}

std::vector<std::optional<double>> valuesOf(const TAVManager &manager, double (*valueOf)(const SmallGraph &graph))
{
    std::vector<std::optional<double>> values;
    manager.visitNames([&](const QString &name) {
        SmallGraph graph;
        parseGraph6(name.toStdString(), graph);
        values.emplace_back(valueOf(graph));
    });
    return values;
}

const std::vector<Meaning> &meanings()
{
    static const std::vector<Meaning> all = {
        {"load small.tav", withFile(loadAndWait, "small.tav")},
        {"clear", derivation(&TAVManager::resetDatabase)},
        {"save-graphs out", withFile(&TAVManager::saveGraphs, "out")},
        {"load-i1 size", withFile(&TAVManager::loadInv1, "size")},
        {"load-i2 size", withFile(&TAVManager::loadInv2, "size")},
        {"compute-i1 2*size",
         [](TAVManager &manager, QByteArray &) {
             manager.setInv1(QStringLiteral("2*size"),
                             valuesOf(manager, [](const SmallGraph &graph) { return 2.0 * graph.size(); }));
         }},
        {"compute-i2 order - size",
         [](TAVManager &manager, QByteArray &) {
             manager.setInv2(QStringLiteral("order - size"), valuesOf(manager, [](const SmallGraph &graph) {
                                 return double(graph.order - graph.size());
                             }));
         }},
        {"save-i1 out", withFile(&TAVManager::saveInv1, "out")},
        {"i1-gets-i2", derivation(&TAVManager::I1getsI2)},
        {"i2-gets-i1", derivation(&TAVManager::I2getsI1)},
        {"exchange", derivation(&TAVManager::exch_1_2)},
        {"avg-sub", derivation(&TAVManager::avgSub1)},
        {"avg-super", derivation(&TAVManager::avgOver1)},
        {"avg-all", derivation(&TAVManager::avgAll1)},
        {"min-sub", derivation(&TAVManager::minSub1)},
        {"min-super", derivation(&TAVManager::minOver1)},
        {"min-all", derivation(&TAVManager::minAll1)},
        {"max-sub", derivation(&TAVManager::maxSub1)},
        {"max-super", derivation(&TAVManager::maxOver1)},
        {"max-all", derivation(&TAVManager::maxAll1)},
        {"list-ge \"new list\"", comparison(&TAVManager::addI1geI2List)},
        {"list-le \"new list\"", comparison(&TAVManager::addI1leI2List)},
        {"list-eq-subs \"new list\"", comparison(&TAVManager::addI1eqI2subsList)},
        {"list-ge-subs \"new list\"", comparison(&TAVManager::addI1geI2subsList)},
        {"list-le-subs \"new list\"", comparison(&TAVManager::addI1leI2subsList)},
        {"list-eq-supers \"new list\"", comparison(&TAVManager::addI1eqI2overList)},
        {"list-ge-supers \"new list\"", comparison(&TAVManager::addI1geI2overList)},
        {"list-le-supers \"new list\"", comparison(&TAVManager::addI1leI2overList)},
        {"list-gt-subs \"new list\"", comparison(&TAVManager::addI1gtI2subsList)},
        {"list-lt-subs \"new list\"", comparison(&TAVManager::addI1ltI2subsList)},
        {"list-gt-supers \"new list\"", comparison(&TAVManager::addI1gtI2overList)},
        {"list-lt-supers \"new list\"", comparison(&TAVManager::addI1ltI2overList)},
        {"supers \"new list\" regular", closure(&TAVManager::addOverList)},
        {"subs \"new list\" regular", closure(&TAVManager::addSubsList)},
        {"list-from-file \"new list\" examples/regular-8.g6",
         [](TAVManager &manager, QByteArray &) {
             manager.addListFromFile(QStringLiteral("new list"), QStringLiteral("examples/regular-8.g6"));
         }},
        {"list-from-graphs \"new list\" foreign.g6",
         [](TAVManager &manager, QByteArray &) {
             manager.addList(QStringLiteral("new list"), words({"CV", "A_", "CV"}));
         }},
        {"union \"new list\" regular all", combination(&TAVManager::addUnionList)},
        {"intersection \"new list\" regular all", combination(&TAVManager::addInterList)},
        {"difference \"new list\" regular all", combination(&TAVManager::addExceptList)},
        {"remove-list regular", [](TAVManager &manager, QByteArray &) { manager.remList(QStringLiteral("regular")); }},
        {"save-list regular out",
         [](TAVManager &manager, QByteArray &) { manager.saveList(QStringLiteral("regular"), QStringLiteral("out")); }},
        {"lists", [](TAVManager &, QByteArray &output) { output += "regular\t4\nall\t12\n"; }},
        {"show all", [](TAVManager &,
                        QByteArray &output) { output += "@\nA_\nBW\nBw\nCF\nCU\nCV\nC]\nC^\nC~\nG~~~~{\nno graph\n"; }},
    };
    return all;
}

/// The first lines of one of the sample files.
QByteArray beginningOf(const QByteArray &name, int lines)
{
    return contents(example(name.constData())).split('\n').mid(0, lines).join('\n') + '\n';
}

QString nameIn(const QString &line)
{
    return line.section(QLatin1Char(' '), 0, 0);
}

/// What a process may take beside a script of 16 MB; with the sanitizers, for which each byte takes several.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int allowedMemory = 900 * 1000 * 1000;
#else
constexpr int allowedMemory = 100 * 1000 * 1000;
#endif

/// The highest memory, in bytes, of the companion program, whose standard error goes to the file @p errors.
qint64 memoryOf(const QStringList &arguments, const QString &errors)
{
    QByteArrayList texts = {QByteArray(TAVOLINE_TAV)};
    for (const QString &argument : arguments) {
        texts.append(argument.toUtf8());
    }
    std::vector<char *> pointers;
    for (QByteArray &text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, QFile::encodeName(errors).constData(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t process = 0;
    const int failure = ::posix_spawn(&process, TAVOLINE_TAV, &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    struct rusage usage = {};
    return failure == 0 && ::wait4(process, nullptr, 0, &usage) == process ? usage.ru_maxrss * 1024 : -1;
}

/// What tells a file from the one that takes its place.
ino_t fileNumber(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        qFatal("%s is not there", qPrintable(path));
    }
    return status.st_ino;
}

QByteArray contentsIfThere(const QString &path)
{
    return QFile::exists(path) ? contents(path) : QByteArray("no file");
}
} // namespace

class TestTavRun : public QObject
{
    Q_OBJECT

private slots:
    // Every test has a folder of its own, in which it runs the program, with the examples in it.
    void init()
    {
        folder = std::make_unique<TestFolder>();
        QVERIFY(QFile::link(QStringLiteral(TAVOLINE_EXAMPLES), folder->path("examples")));
        startFolder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(folder->path()));
    }

    void cleanup() { QVERIFY(QDir::setCurrent(startFolder)); }

    // A whole investigation.

    void everyLineAsInTheWindow()
    {
        const ToolResult result = runFile("load examples/connected-8.tav\n"
                                          "load-i1 examples/connected-8.averagedistance.txt\n"
                                          "i2-gets-i1\n"
                                          "list-ge-subs complete\n"
                                          "list-gt-supers none\n"
                                          "list-from-file \"regular graphs\" examples/regular-8.g6\n"
                                          "intersection both \"regular graphs\" complete\n"
                                          "difference nothing complete complete\n"
                                          "show both\n"
                                          "remove-list both\n"
                                          "lists\n"
                                          "save-list complete complete.g6\n"
                                          "save-graphs graphs.g6\n");
        QCOMPARE(result.output, QByteArray("Loading data ... please wait.\n"
                                           "12113 lines.\n"
                                           "Data loaded : 12113 nodes and 71258 links.\n"
                                           "Read examples/connected-8.averagedistance.txt\n"
                                           "Database cleared.\n"
                                           "List added : complete [ 6 element(s)]\n"
                                           "List added : complete\n"
                                           "Database cleared.\n"
                                           "Empty list\n"
                                           "List added : regular graphs [ 17 element(s)]\n"
                                           "List added : regular graphs\n"
                                           "List added : both [ 1 element(s)]\n"
                                           "List added : both\n"
                                           "Empty list, not added.\n"
                                           "List added : nothing\n"
                                           "G~~~~{\n"
                                           "List both removed.\n"
                                           "complete\t6\n"
                                           "regular graphs\t17\n"
                                           "Wrote graphs.g6\n"));
        QCOMPARE(result.errors, start + "List added : complete\n"
                                        "List added : regular graphs\n"
                                        "List added : both\n"
                                        "List added : nothing\n");
        QCOMPARE(result.status, 0);
        QCOMPARE(contents(folder->path("complete.g6")), QByteArray("Bw\nC~\nD~{\nE~~w\nF~~~w\nG~~~~{"));
        QCOMPARE(contents(folder->path("graphs.g6")).count('\n'), 12113);
    }

    void theGuidesExample()
    {
        const QList<QByteArray> parts = guide().split('\n');
        QByteArray blocks[2];
        int fences = 0;
        for (const QByteArray &line : parts) {
            if (line == "```") {
                ++fences;
            } else if (fences % 2 == 1 && fences < 4) {
                blocks[fences / 2] += line + '\n';
            }
        }
        QCOMPARE(fences, 4);
        const ToolResult result = runFile(blocks[0]);
        QCOMPARE(result.output, blocks[1]);
        QCOMPARE(result.status, 0);
    }

    // The commands.

    void theGuideNamesEveryCommand()
    {
        QByteArrayList expected;
        for (const ScriptCommand &command : scriptCommands()) {
            expected.append("| `" + command.usage().toUtf8() + "` | " + command.summary + " |");
        }
        QByteArrayList found;
        for (const QByteArray &line : guide().split('\n')) {
            if (line.startsWith("| `")) {
                found.append(line);
            }
        }
        QCOMPARE(found, expected);
    }

    void theHelpNamesEveryCommand()
    {
        const ToolResult result = runTav(words({"run", "--help"}));
        QVERIFY(result.output.startsWith("Usage: tav run [options] [SCRIPT]\n"));
        QByteArray expected = "\nCommands of a script, one a line:\n";
        for (const ScriptCommand &command : scriptCommands()) {
            expected += "  " + command.usage().toUtf8().leftJustified(26) + ' ' + command.summary + '\n';
        }
        QVERIFY(result.output.endsWith(expected));
        QCOMPARE(result.status, 0);
    }

    void everyCommandHasAMeaning()
    {
        QStringList commands;
        for (const ScriptCommand &command : scriptCommands()) {
            commands.append(QLatin1String(command.name));
        }
        QStringList tested;
        for (const Meaning &meaning : meanings()) {
            tested.append(nameIn(QLatin1String(meaning.line)));
        }
        QCOMPARE(tested, commands);
    }

    void aCommandIsTheManagersOperation_data()
    {
        QTest::addColumn<int>("index");
        for (size_t i = 0; i < meanings().size(); ++i) {
            QTest::newRow(meanings()[i].line) << int(i);
        }
    }

    // The same is done to a manager; every command leaves something else behind than all others.
    void aCommandIsTheManagersOperation()
    {
        QFETCH(int, index);
        const Meaning &meaning = meanings()[index];
        folder->write("small.tav", "@\nA_\t0\n");
        folder->write("all.g6", "@\nA_\nBW\nBw\nCF\nCU\nCV\nC]\nC^\nC~\nG~~~~{\nno graph\n");
        folder->write("regular.g6", "C]\nC~\nD~{\nE~~w\n");
        folder->write("foreign.g6", ">>sparse6<<:Cp`V\nA_\nCN\n");
        // The connected graphs on up to seven vertices.
        folder->write("database", beginningOf("connected-8.tav", 996));
        for (const char *invariant : {"diameter", "girth", "size"}) {
            folder->write(invariant, beginningOf(QByteArray("connected-8.") + invariant + ".txt", 1 + 996));
        }
        QStringList lists;
        const QByteArray expected = playOnManager(meaning.operation, lists);
        for (const char *file : {"i1", "i2", "out"}) {
            QFile::remove(folder->path(file));
        }

        QByteArray script = "load database\n"
                            "load-i1 diameter\n"
                            "load-i2 girth\n"
                            "list-from-file regular regular.g6\n"
                            "list-from-file all all.g6\n";
        script += QByteArray(meaning.line) + "\n-save-i1 i1\nexchange\n-save-i1 i2\n";
        for (const QString &list : lists) {
            script += "show \"" + list.toUtf8() + "\"\n";
        }
        const ToolResult result = runFile(script);
        QCOMPARE(result.output + written(), expected);
        QCOMPARE(result.status, 0);

        QVERIFY2(!outcomes.contains(expected), qPrintable(outcomes.value(expected)));
        outcomes.insert(expected, QLatin1String(meaning.line));
    }

    // The lines.

    void properLine_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("mayFail");
        const auto row = [](const char *title, const char *line, const char *name, const QStringList &arguments,
                            bool mayFail) {
            QTest::newRow(title) << QByteArray(line) << QString::fromLatin1(name) << arguments << mayFail;
        };
        row("plain", "union u a b", "union", words({"u", "a", "b"}), false);
        row("blanks", "\t union  u\ta   b \t", "union", words({"u", "a", "b"}), false);
        row("quotes", R"(union "u v" "" " ")", "union", words({"u v", "", " "}), false);
        row("escapes", "union\t\"\\\"\"\t\"\\\\\"\t\"a\\\\\\\"b\"", "union", words({"\"", "\\", "a\\\"b"}), false);
        row("a quoted command", "\"clear\"", "clear", {}, false);
        row("comment", "show a # b c \"", "show", words({"a"}), false);
        row("comment behind a quote", "show \"a\" #", "show", words({"a"}), false);
        row("number sign in a word", "union a# b#c \"#\"", "union", words({"a#", "b#c", "#"}), false);
        row("quotes in a word", R"(union a"b c" \)", "union", words({"a\"b", "c\"", "\\"}), false);
        row("graph6", R"(union G?qa`_ C\~ \")", "union", words({"G?qa`_", "C\\~", "\\\""}), false);
        row("expression", "compute-i1 order -  size # c", "compute-i1", words({"order - size"}), false);
        row("quoted expression", "compute-i2 \"order -  size\"", "compute-i2", words({"order -  size"}), false);
        row("may fail", "-clear", "clear", {}, true);
        row("may fail, with blanks", "  -\t clear", "clear", {}, true);
        row("minus in a word", "show -a", "show", words({"-a"}), false);
        QTest::newRow("beyond ASCII") << QByteArray("show \xc3\xa4\xe2\x82\xac") << QStringLiteral("show")
                                      << QStringList{QString::fromUtf8("\xc3\xa4\xe2\x82\xac")} << false;
    }

    void properLine()
    {
        QFETCH(QByteArray, line);
        const auto step = parseScriptLine(std::string_view(line.constData(), line.size()), QStringLiteral("s"), 7);
        QVERIFY(step.has_value());
        QTEST(QString(QLatin1String(step->command->name)), "name");
        QTEST(step->arguments, "arguments");
        QTEST(step->mayFail, "mayFail");
        QCOMPARE(step->line, 7);
    }

    void linesWithoutACommand()
    {
        for (const char *line : {"", " \t", "#", "  # show a", "-", "- # show", "#!/usr/bin/tav"}) {
            QVERIFY2(!parseScriptLine(line, QStringLiteral("s"), 1).has_value(), line);
        }
    }

    void fault_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *line, const char *message) {
            QTest::newRow(line) << QByteArray(line) << QByteArray(message);
        };
        row("Load x", "unknown command 'Load'");
        row("-nothing", "unknown command 'nothing'");
        row("\"\"", "unknown command ''");
        row("load", "wrong number of arguments: 'load FILE [PART...]' expected, 0 given");
        row("clear x", "wrong number of arguments: 'clear' expected, 1 given");
        row("compute-i1", "wrong number of arguments: 'compute-i1 EXPRESSION' expected, 0 given");
        row("-compute-i2 order -", "Expression 'order -', column 8: something is missing at the end");
        row("compute-i1 \"\"", "Expression '', column 1: there is nothing");
        row("compute-i1 2*grith",
            "Unknown invariant 'grith' (did you mean 'girth'?); 'tav invariant --list' names them.");
        row("-union a b # c", "wrong number of arguments: 'union NAME A B' expected, 2 given");
        row("show a b", "wrong number of arguments: 'show A' expected, 2 given");
        row("show \"a", "a quote is not closed");
        row(R"(show "a\")", "a quote is not closed");
        row("show \"a\\", "a quote is not closed");
        row("show \"", "a quote is not closed");
        row("show \"a\"b", "no blank behind a closing quote");
        row("show \"a\"#", "no blank behind a closing quote");
        row(R"(show "a\n")", "between quotes a backslash stands only before a quote or a backslash");
    }

    // A file is checked before anything runs; the line of standard input before it has run.
    void fault()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, message);
        const QByteArray script = "list-from-file a examples/regular-8.g6\n\n" + line + "\nlists\n";
        ToolResult result = runFile(script);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors, "tav: script:3: " + message + '\n');
        QCOMPARE(result.status, 1);

        result = runTav({QStringLiteral("run")}, script);
        QCOMPARE(result.output, QByteArray("List added : a [ 17 element(s)]\nList added : a\n"));
        QCOMPARE(result.errors, start + "List added : a\ntav: standard input:3: " + message + '\n');
        QCOMPARE(result.status, 1);
    }

    /// What is no text in UTF-8, or has a zero byte, is not the name of the file that would be written.
    void wordsThatAreNoNames_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("message");
        const QByteArray wrong = "\xef\xbf\xbd"; // what stands for a byte that is none of a character
        const auto row = [](const char *title, const QByteArray &line, const QByteArray &message) {
            QTest::newRow(title) << line << message;
        };
        row("a byte of Latin-1", "save-list a a\xff", "not valid UTF-8: 'a" + wrong + "'");
        row("between quotes", "save-list a \"a \xff\"", "not valid UTF-8: 'a " + wrong + "'");
        row("half of a pair", "save-list a \xed\xa0\x80", "not valid UTF-8: '" + wrong + wrong + wrong + "'");
        row("an input", "load \xe4.tav", "not valid UTF-8: '" + wrong + ".tav'");
        row("a list", "show \xe4", "not valid UTF-8: '" + wrong + "'");
        row("a command", "\xe4show a", "not valid UTF-8: '" + wrong + "show'");
        row("zero", QByteArray("save-list a b\0c", 15), R"(a byte is zero: 'b\x00c')");
    }

    void wordsThatAreNoNames()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, message);
        const ToolResult result = runFile("list-from-file a examples/regular-8.g6\n" + line + "\n");
        QCOMPARE(result.errors, "tav: script:2: " + message + '\n');
        QCOMPARE(result.status, 1);
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files), QStringList{QStringLiteral("script")});
    }

    void aCommentOfAnyBytes() { QCOMPARE(runFile("lists # sch\xf6n\n#\xff\n").status, 0); }

    void aNameWithAByteOrderMark()
    {
        const QByteArray mark = "\xef\xbb\xbf";
        const ToolResult result = runFile(mark + "list-from-file a examples/regular-8.g6\nsave-list a " + mark + "b\n");
        QCOMPARE(result.status, 0);
        QVERIFY(QFile::exists(folder->path(QString(QChar(QChar::ByteOrderMark)) + QLatin1Char('b'))));
    }

    /// A line of words is not split before it is known that it is no command; only the script itself is kept.
    void scriptsTakeMemoryInProportion_data()
    {
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("a line of words") << QByteArray("a ") << 50000000 << QByteArray("1: a line of more than 1 MiB");
        QTest::newRow("many lines") << QByteArray("show \"b c\"\n") << 1500000
                                    << QByteArray("1500001: unknown command 'x'");
    }

    void scriptsTakeMemoryInProportion()
    {
        QFETCH(QByteArray, piece);
        QFETCH(int, count);
        QFETCH(QByteArray, message);
        {
            QFile script(folder->path("script"));
            QVERIFY(script.open(QIODevice::WriteOnly));
            const QByteArray pieces = piece.repeated(count / 100);
            for (int i = 0; i < 100; ++i) {
                script.write(pieces);
            }
            script.write("x");
        }
        const qint64 memory = memoryOf(words({"run", "script"}), folder->path("errors"));
        QCOMPARE(contents(folder->path("errors")), "tav: script:" + message + '\n');
        QVERIFY2(memory < allowedMemory, QByteArray::number(memory).constData());
    }

    void aLineOfExactlyTheLimit()
    {
        const QByteArray comment(longestScriptLine - 6, '#');
        QCOMPARE(runFile("lists " + comment).status, 0);
        const ToolResult result = runFile("lists\nlists #" + comment);
        QCOMPARE(result.errors, QByteArray("tav: script:2: a line of more than 1 MiB\n"));
        QCOMPARE(result.status, 1);
        QCOMPARE(runTav({QStringLiteral("run")}, "lists #" + comment).errors,
                 start + "tav: standard input:1: a line of more than 1 MiB\n");
    }

    void lineEnds()
    {
        for (const char *end : {"\n", "\r\n", "\r\r\n"}) {
            const ToolResult result =
                runFile(QByteArray("\nlist-from-file a examples/regular-8.g6\n#\nlists").replace("\n", end));
            QCOMPARE(result.output, QByteArray("List added : a [ 17 element(s)]\nList added : a\na\t17\n"));
            QCOMPARE(result.status, 0);
        }
    }

    void namesBeyondLatin1()
    {
        folder->write("euro.g6", "\xe2\x82\xac\n");
        const ToolResult result = runFile("list-from-file \xe2\x82\xac euro.g6\nshow \xe2\x82\xac\n");
        QCOMPARE(result.output, QByteArray("List added : \xe2\x82\xac [ 1 element(s)]\nList added : \xe2\x82\xac\n"
                                           "\xe2\x82\xac\n"));
    }

    // Failures.

    void failure_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("console");
        QTest::addColumn<QByteArray>("diagnosis");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *line, const char *console, const char *diagnosis, const char *message) {
            QTest::newRow(line) << QByteArray(line) << QByteArray(console) << QByteArray(diagnosis)
                                << QByteArray(message);
        };
        const char *noFile = "Unable to open file\n";
        row("load missing.tav", "Loading data ... please wait.\n", noFile, "load failed: No such file or directory");
        row("load \"\"", "Loading data ... please wait.\n", noFile, "load failed: No such file or directory");
        row("load .", "Loading data ... please wait.\n", noFile, "load failed: Is a directory");
        row("load /dev/null", "Loading data ... please wait.\n", noFile, "load failed: Not a regular file");
        row("load /proc/self/mem", "Loading data ... please wait.\nUnable to read file :/proc/self/mem\n",
            "Unable to read file\n", "load failed: Input/output error");
        row("load bad.tav", "Loading data ... please wait.\n1 lines.\nERROR in database format.\n",
            "Error in database format\n", "load failed");
        row("save-graphs /proc/graphs.g6", "", "", "save-graphs failed: No such file or directory");
        row("save-graphs missing/graphs.g6", "", "", "save-graphs failed: No such file or directory");
        row("save-graphs good.tav/x", "", "", "save-graphs failed: Not a directory");
        row("save-graphs \"\"", "", "", "save-graphs failed: No such file or directory");
        row("save-i1 /dev/full", "Unable to write file :/dev/full\n", "", "save-i1 failed: No space left on device");
        row("load-i1 missing.txt", "Unable to open file.\nLoad failed\n", "",
            "load-i1 failed: No such file or directory");
        row("load-i2 /proc/self/mem", "Unable to read file :/proc/self/mem\nLoad failed\n", "",
            "load-i2 failed: Input/output error");
        row("load-i1 bad.txt", "@ != A_\nLoad failed\n", "", "load-i1 failed");
        row("load-i2 bad.txt", "Data format error\nLoad failed\n", "", "load-i2 failed");
        row("load-i2 short.txt", "Load failed\n", "", "load-i2 failed");
        row("list-ge a", "Name already used\n", "", "list-ge failed: there is a list 'a' already");
        row("list-lt-supers \"\"", "Empty name\n", "", "list-lt-supers failed: the name of a list cannot be empty");
        row("list-from-file a missing.g6", "", "", "list-from-file failed: there is a list 'a' already");
        row("list-from-file b missing.g6", "Unable to open file :missing.g6\n", noFile,
            "list-from-file failed: No such file or directory");
        row("list-from-file b /proc/self/mem", "Unable to read file :/proc/self/mem\n", "",
            "list-from-file failed: Input/output error");
        row("list-from-graphs a missing.g6", "", "", "list-from-graphs failed: there is a list 'a' already");
        row("list-from-graphs \"\" good.tav", "", "", "list-from-graphs failed: the name of a list cannot be empty");
        row("list-from-graphs b missing.g6", "", "",
            "list-from-graphs failed: missing.g6: cannot be opened: No such file or directory");
        row("list-from-graphs b -", "", "",
            "list-from-graphs failed: ./-: cannot be opened: No such file or directory");
        row("list-from-graphs b examples", "", "", "list-from-graphs failed: examples: cannot be read: Is a directory");
        row("list-from-graphs b good.tav", "", "",
            "list-from-graphs failed: good.tav:2: not graph6: byte 9 at column 3; this looks like a database, whose "
            "names 'cut -f 1' takes");
        row("union a a a", "", "", "union failed: there is a list 'a' already");
        row("union \"\" a a", "", "", "union failed: the name of a list cannot be empty");
        row("intersection b a x", "", "", "intersection failed: there is no list 'x'");
        row("difference b A a", "", "", "difference failed: there is no list 'A'");
        row("subs a a", "", "", "subs failed: there is a list 'a' already");
        row("supers b \"\"", "", "", "supers failed: there is no list ''");
        row("remove-list b", "Unable to remove list.\n", "", "remove-list failed: there is no list 'b'");
        row("save-list b b.g6", "", "", "save-list failed: there is no list 'b'");
        row("save-list a /proc/a.g6", "Unable to open file :/proc/a.g6\n", noFile,
            "save-list failed: No such file or directory");
        row("save-list a /dev/full", "Unable to write file :/dev/full\n", "",
            "save-list failed: No space left on device");
        row("show b", "", "", "show failed: there is no list 'b'");
    }

    void failure()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, console);
        QFETCH(QByteArray, diagnosis);
        QFETCH(QByteArray, message);
        folder->write("good.tav", "@\nA_\t0\n");
        folder->write("bad.tav", "@\t7\n");
        folder->write("bad.txt", "GRAPH\tINV1\nA_\t1\n");
        folder->write("short.txt", "GRAPH\tINV1\n@\t1\n");
        const QByteArray before = "# failing commands\nload good.tav\nlist-from-file a examples/regular-8.g6\n";
        const QByteArray consoleBefore = "Loading data ... please wait.\n2 lines.\nData loaded : 2 nodes and 1 links.\n"
                                         "List added : a [ 17 element(s)]\nList added : a\n";
        const QByteArray errorsBefore = start + "List added : a\n";

        const ToolResult stopped = runFile(before + line + "\nlists\n");
        QCOMPARE(stopped.output, consoleBefore + console);
        QCOMPARE(stopped.errors, errorsBefore + diagnosis + "tav: script:4: " + message + '\n');
        QCOMPARE(stopped.status, 1);

        const ToolResult goneOn = runFile(before + '-' + line + "\nlists\n");
        QCOMPARE(goneOn.output, consoleBefore + console + "a\t17\n");
        QCOMPARE(goneOn.errors, errorsBefore + diagnosis + "tav: script:4: " + message + " (ignored)\n");
        QCOMPARE(goneOn.status, 0);
        QVERIFY(!QFile::exists(folder->path("b.g6")));
    }

    void anExpression()
    {
        folder->write("some.tav", "@\nA_\t0\nB?\nBW\t1\nBw\t1\n");
        const ToolResult result = runFile("load some.tav\ncompute-i1 diameter / (order - 1)\ncompute-i2 1\n"
                                          "list-ge peaks\nshow peaks\nsave-i1 i1\n");
        QCOMPARE(result.output.mid(result.output.indexOf("Computed")),
                 QByteArray("Computed diameter / (order - 1)\nComputed 1\nList added : peaks [ 2 element(s)]\n"
                            "List added : peaks\nA_\nBW\nWrote i1\n"));
        QCOMPARE(contents(folder->path("i1")), QByteArray("GRAPH\tINV1\n@\tNA\nA_\t1\nB?\tNA\nBW\t1\nBw\t0.5\n"));
        QCOMPARE(result.status, 0);
    }

    /// Of a graph whose name is no graph6 string nothing can be computed; all values stay.
    void anExpressionOfOtherNames()
    {
        folder->write("odd.tav", "@\nA_\t0\nsome graph\n");
        const ToolResult result = runFile("load odd.tav\ncompute-i1 order\n");
        QVERIFY2(
            result.errors.endsWith("tav: script:2: compute-i1 failed: 'some graph': not graph6: byte 32 at column 5\n"),
            result.errors.constData());
        QCOMPARE(result.status, 1);
        const QByteArray values = "GRAPH\tINV1\n@\t7\nA_\tNA\nsome graph\t9\n";
        folder->write("values", values);
        runFile("load odd.tav\nload-i1 values\n-compute-i1 order\nsave-i1 i1\n");
        QCOMPARE(contents(folder->path("i1")), values);
    }

    /// A fault of a file is told of the command that has it only.
    void faultsOfFilesAreNotKept()
    {
        folder->write("bad.txt", "GRAPH\tINV1\nA_\t1\n");
        folder->write("good.tav", "@\n");
        const ToolResult result =
            runFile("load good.tav\n-list-from-graphs a missing\n-load-i1 bad.txt\n-save-list a x\n");
        QCOMPARE(result.errors,
                 start +
                     "tav: script:2: list-from-graphs failed: missing: cannot be opened: No such file or directory "
                     "(ignored)\ntav: script:3: load-i1 failed (ignored)\ntav: script:4: save-list failed: there is "
                     "no list 'a' (ignored)\n");
    }

    /// The others are listed in the order of the file, under the names of the database.
    void graphsThatTheDatabaseDoesNotHold()
    {
        folder->write("odd.tav", "@\nA_\t0\nsome graph\nBW\t1\nanother\nBo\n");
        folder->write("graphs.g6", "Bo\nCs\n@\nA?\nBg\n");
        const ToolResult result =
            runFile("load odd.tav\nlist-from-graphs held graphs.g6\nshow held\nlist-from-graphs none graphs.g6\n");
        QCOMPARE(result.output.mid(result.output.indexOf("Names")),
                 QByteArray("Names that are no graphs : 2, the first is some graph\n"
                            "Not in the database : 2 of 5 graph(s), the first is Cs\n"
                            "List added : held [ 3 element(s)]\n"
                            "List added : held\n"
                            "BW\n@\nBW\n"
                            "Names that are no graphs : 2, the first is some graph\n"
                            "Not in the database : 2 of 5 graph(s), the first is Cs\n"
                            "List added : none [ 3 element(s)]\n"
                            "List added : none\n"));
        QCOMPARE(result.status, 0);
    }

    // What is printed.

    void onlyWhatIsAskedFor()
    {
        const QByteArray script = "load examples/connected-8.tav\nlist-from-file a examples/regular-8.g6\nlists\n"
                                  "-load-i1 missing\nremove-list a\nlist-from-graphs b examples/regular-8.g6\nshow b\n";
        const QByteArray regular = contents(folder->path("examples/regular-8.g6"));
        const QByteArray missing = "tav: script:4: load-i1 failed: No such file or directory (ignored)\n";
        folder->write("script", script);
        for (const char *option : {"-q", "--quiet"}) {
            ToolResult result = runTav(words({"run", option, "script"}));
            QCOMPARE(result.output, "a\t17\n" + regular);
            QCOMPARE(result.errors, start + "List added : a\n" + missing + "List added : b\n");
            QCOMPARE(result.status, 0);
            result = runTav(words({"run", option}), script);
            QCOMPARE(result.output, "a\t17\n" + regular);
        }
    }

    void withoutADatabase_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("console");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("save graphs") << QByteArray("save-graphs g") << QByteArray("No data to save.\n")
                                     << QByteArray("tav: script:1: save-graphs failed: there is no database\n");
        QTest::newRow("save I1") << QByteArray("save-i1 g") << QByteArray("No data to save.\n")
                                 << QByteArray("tav: script:1: save-i1 failed: there is no database\n");
        QTest::newRow("load I1") << QByteArray("load-i1 examples/connected-8.size.txt")
                                 << QByteArray("No data to match.\nLoad failed\n")
                                 << QByteArray("tav: script:1: load-i1 failed: there is no database\n");
        QTest::newRow("compute I1") << QByteArray("compute-i1 size") << QByteArray("No data to match.\n")
                                    << QByteArray("tav: script:1: compute-i1 failed: there is no database\n");
        QTest::newRow("find graphs") << QByteArray("list-from-graphs a examples/regular-8.g6") << QByteArray()
                                     << QByteArray("tav: script:1: list-from-graphs failed: there is no database\n");
        QTest::newRow("derive") << QByteArray("avg-all") << QByteArray() << QByteArray();
        QTest::newRow("compare") << QByteArray("list-ge a") << QByteArray("Empty list\n") << QByteArray();
        QTest::newRow("clear") << QByteArray("clear") << QByteArray() << QByteArray();
        QTest::newRow("lists") << QByteArray("lists") << QByteArray() << QByteArray();
    }

    void withoutADatabase()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, console);
        QFETCH(QByteArray, message);
        const ToolResult result = runFile(line);
        QCOMPARE(result.output, console);
        QCOMPARE(result.errors, start + message);
        QCOMPARE(result.status, message.isEmpty() ? 0 : 1);
        const ToolResult quiet = runTav(words({"run", "-q", "-"}), line);
        QCOMPARE(quiet.errors, start + QByteArray(message).replace("script", "standard input"));
    }

    /// A file without graphs makes a database that is none.
    void anEmptyDatabase()
    {
        folder->write("empty.tav", "\n");
        const ToolResult result = runFile("load empty.tav\ncompute-i1 order\n");
        QVERIFY2(result.errors.endsWith("tav: script:2: compute-i1 failed: there is no database\n"),
                 result.errors.constData());
    }

    void anEmptyListIsNoFailureButIsNotThere()
    {
        folder->write("empty.g6", "\n\n");
        const ToolResult result = runFile("list-from-file a empty.g6\nlists\nshow a\n");
        QCOMPARE(result.output, QByteArray("Empty list, not added.\nList added : a\n"));
        QCOMPARE(result.errors, start + "List added : a\ntav: script:3: show failed: there is no list 'a'\n");
        QCOMPARE(result.status, 1);
    }

    void aFailedSaveKeepsTheFile()
    {
        folder->write("kept", "old");
        QVERIFY(runFile("-save-graphs kept\n-save-list a kept\n").status == 0);
        QCOMPARE(contents(folder->path("kept")), QByteArray("old"));
    }

    void aFailedLoadLeavesNoDatabase()
    {
        const ToolResult result = runFile("load examples/connected-8.tav\n-load missing.tav\nsave-graphs g\n");
        QVERIFY(result.output.endsWith("Loading data ... please wait.\nNo data to save.\n"));
        QCOMPARE(result.status, 1);
    }

    // Where the script comes from and the output goes.

    void anEmptyScript()
    {
        const ToolResult result = runFile("");
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 0);
        QCOMPARE(runTav(words({"run", "-"})).status, 0);
    }

    void standardInput()
    {
        const QByteArray script = "list-from-file a examples/regular-8.g6\nlists";
        for (const QStringList &arguments : {words({"run"}), words({"run", "-"})}) {
            const ToolResult result = runTav(arguments, script);
            QCOMPARE(result.output, QByteArray("List added : a [ 17 element(s)]\nList added : a\na\t17\n"));
            QCOMPARE(result.status, 0);
        }
    }

    void aLineIsCarriedOutWhenItIsThere()
    {
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV), {QStringLiteral("run")});
        process.write("list-from-file a examples/regular-8.g6\nlis");
        QCOMPARE(takeLines(process, 2), QByteArray("List added : a [ 17 element(s)]\nList added : a\n"));
        process.write("ts\n");
        QCOMPARE(takeLines(process, 1), QByteArray("a\t17\n"));
        process.write("show b\n");
        QVERIFY(process.waitForFinished(patience)); // the input is still open
        QCOMPARE(process.exitCode(), 1);
    }

    void theNumberOfProcessorsIsHeeded()
    {
        folder->write("script", "# nothing\n");
        const int wanted = threadCount() + 1;
        runScript({QStringLiteral("run"), QStringLiteral("-j"), QString::number(wanted), QStringLiteral("script")});
        const int chosen = threadCount();
        setThreadCount(0);
        QCOMPARE(chosen, wanted);
    }

    void wrongUsage()
    {
        ToolResult result = runTav(words({"run", "a", "b"}));
        QCOMPARE(result.errors, QByteArray("tav: Exactly one script expected, 2 given.\nTry 'tav run --help'.\n"));
        QCOMPARE(result.status, 2);
        result = runTav(words({"run", "missing"}));
        QCOMPARE(result.errors, QByteArray("tav: missing: cannot be opened: No such file or directory\n"));
        QCOMPARE(result.status, 1);
    }

    void aFullStandardOutput()
    {
        folder->write("script", "list-from-file a examples/regular-8.g6\nlists\n");
        QProcess process;
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(QStringLiteral(TAVOLINE_TAV), words({"run", "script"}));
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.readAllStandardError(),
                 start + "List added : a\ntav: standard output: cannot be written: No space left on device\n");
        QCOMPARE(process.exitCode(), 1);
    }

    void aReaderThatLeavesEndsItQuietly()
    {
        folder->write("script", "list-from-file a graphs.g6\nshow a\nshow a\n");
        folder->write("graphs.g6", QByteArray(1 << 20, '\n').replace("\n", "@\n"));
        const QString command = QStringLiteral("'%1' run script | head -1; echo \"${PIPESTATUS[0]}\"");
        const ToolResult result =
            runProgram(QStringLiteral("bash"), {QStringLiteral("-c"), command.arg(QStringLiteral(TAVOLINE_TAV))});
        QCOMPARE(result.output, QByteArray("List added : a [ 1048576 element(s)]\n141\n"));
        QVERIFY2(!result.errors.contains("tav:"), result.errors.constData());
    }

    /// The saves go on until the signal ends them. It comes while a new file is not yet in the place of the old one.
    void aSignalWaitsForTheEndOfASave()
    {
        folder->write("script", "load \"" TAVOLINE_BUILD_DATA "/connected-9.tav\"\n" +
                                    QByteArray(10000, '\n').replace("\n", "save-graphs saved\n"));
        const QString saved = folder->path("saved");
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV), words({"run", "script"}));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(saved), patience);
        QVERIFY(stopWhile(process, [&] {
            const QStringList open = openFilesIn(process.processId(), folder->path());
            return !open.isEmpty() && !open.contains(saved);
        }));
        const ino_t before = fileNumber(saved);
        ::kill(pid_t(process.processId()), SIGTERM);
        ::kill(pid_t(process.processId()), SIGCONT);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), SIGTERM);
        QVERIFY(fileNumber(saved) != before);
        QCOMPARE(contents(saved).count('\n'), 273193);
        QCOMPARE(folder->files(), words({"examples", "saved", "script"}));
    }

    // 273 193 graphs take a while.
    void aLoadTellsThatItHasBegunAndASignalEndsIt()
    {
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV), {QStringLiteral("run")});
        process.write("load \"" TAVOLINE_BUILD_DATA "/connected-9.tav\"\n");
        QCOMPARE(takeLines(process, 1), QByteArray("Loading data ... please wait.\n"));
        ::kill(pid_t(process.processId()), SIGINT);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), SIGINT);
    }

    /// Every command that opens a file, more often than files may be open at a time.
    void everyFileIsClosed()
    {
        const QByteArray commands = "load examples/connected-8.tav\nload-i1 examples/connected-8.diameter.txt\n"
                                    "-load-i2 examples/regular-8.g6\nlist-from-file a examples/regular-8.g6\n"
                                    "save-list a list\nremove-list a\nsave-graphs names\nsave-i1 i1\n"
                                    "-load missing\n-load-i1 missing\n-list-from-file a missing\n"
                                    "-save-graphs missing/file\n";
        folder->write("script", commands.repeated(20));
        const QString line = QStringLiteral("ulimit -n 16; exec '%1' run script").arg(QStringLiteral(TAVOLINE_TAV));
        const ToolResult result = runProgram(QStringLiteral("bash"), {QStringLiteral("-c"), line});
        QVERIFY2(result.status == 0, result.errors.constData());
        QCOMPARE(contents(folder->path("list")), contents(QStringLiteral("examples/regular-8.g6")).trimmed());
    }

    void aSignalEndsTheWaitForALine()
    {
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV), {QStringLiteral("run")});
        process.write("-save-list a b\nlist-from-file a examples/regular-8.g6\nlists\n");
        QVERIFY(takeLines(process, 3).endsWith("a\t17\n"));
        ::kill(pid_t(process.processId()), SIGTERM);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), SIGTERM);
    }

private:
    ToolResult runFile(const QByteArray &script) const
    {
        folder->write("script", script);
        return runTav(words({"run", "script"}));
    }

    static QByteArray guide() { return contents(QStringLiteral(TAVOLINE_EXAMPLES "/../docs/tav-run.md")); }

    /// Waits for @p count lines of standard output and returns them.
    static QByteArray takeLines(QProcess &process, int count)
    {
        while (process.peek(1 << 16).count('\n') < count && process.waitForReadyRead(patience)) {
        }
        return process.readAllStandardOutput();
    }

    /// The files that a command may have written, and the invariants after it.
    QByteArray written() const
    {
        return contentsIfThere(folder->path("i1")) + contentsIfThere(folder->path("i2")) +
               contentsIfThere(folder->path("out"));
    }

    /// What the console of a manager shows and the files hold after an operation; @p lists are the lists then.
    QByteArray playOnManager(const Operation &operation, QStringList &lists) const
    {
        QByteArray output;
        TAVManager manager;
        connect(&manager, &TAVManager::signal_console, [&](const QString &text) { output += text.toUtf8() + '\n'; });
        loadAndWait(manager, QStringLiteral("database"));
        manager.loadInv1(QStringLiteral("diameter"));
        manager.loadInv2(QStringLiteral("girth"));
        manager.addListFromFile(QStringLiteral("regular"), QStringLiteral("regular.g6"));
        manager.addListFromFile(QStringLiteral("all"), QStringLiteral("all.g6"));
        operation(manager, output);
        manager.saveInv1(QStringLiteral("i1"));
        manager.exch_1_2();
        manager.saveInv1(QStringLiteral("i2"));
        lists = manager.listNames();
        for (const QString &list : qAsConst(lists)) {
            output += manager.getList(list).join(QLatin1Char('\n')).toUtf8() + '\n';
        }
        return output + written();
    }

    std::unique_ptr<TestFolder> folder;
    QString startFolder;
    QHash<QByteArray, QString> outcomes; // of the commands so far: the line of each
};

QTEST_GUILESS_MAIN(TestTavRun)
#include "tst_tav_run.moc"
