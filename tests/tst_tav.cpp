// What all commands of the companion program have in common.

#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// Runs a line of the shell, in which $1 is the companion program and what follows the further arguments.
ToolResult shell(const QByteArray &line, const QStringList &arguments = {})
{
    return runProgram(QStringLiteral("bash"),
                      words({"-c", line.constData(), "bash"}) + QStringList{QStringLiteral(TAVOLINE_TAV)} + arguments);
}

const QByteArray countOfTenThousand("\rReading standard input: 10000");

/// What a terminal shows but for the counts of lines. There is one every 10000 lines, and on a slow machine there are
/// more.
QByteArray withoutCounts(const QByteArray &shown)
{
    static const QRegularExpression count(QStringLiteral("\rReading standard input: [0-9]+"));
    return QString::fromUtf8(shown).remove(count).toUtf8();
}
} // namespace

class TestTav : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("LC_ALL", "C.UTF-8"); }

    void outputThatCannotBeWritten_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("help") << QByteArray("$1 --help >/dev/full");
        QTest::newRow("version") << QByteArray("$1 --version >/dev/full");
        QTest::newRow("help of a command") << QByteArray("$1 build --help >/dev/full");
        QTest::newRow("build") << QByteArray("echo @ | $1 build >/dev/full");
        QTest::newRow("info") << QByteArray("echo @ | $1 info - >/dev/full");
        QTest::newRow("invariants") << QByteArray("$1 invariant --list >/dev/full");
        QTest::newRow("invariant") << QByteArray("echo @ | $1 invariant order - >/dev/full");
        QTest::newRow("names") << QByteArray("echo @ | $1 names <(echo @) >/dev/full");
        QTest::newRow("run") << QByteArray("echo load x | $1 run >/dev/full");
    }

    void outputThatCannotBeWritten()
    {
        QFETCH(QByteArray, line);
        const ToolResult result = shell(line.constData());
        QVERIFY2(result.errors.endsWith("tav: standard output: cannot be written: No space left on device\n"),
                 result.errors.constData());
        QCOMPARE(result.status, 1);
    }

    void noNameForTheOutput()
    {
        for (const QString &command : {QStringLiteral("build -"), QStringLiteral("invariant order -")}) {
            const ToolResult result = shell(qPrintable(QStringLiteral("$1 %1 -o ''").arg(command)));
            QCOMPARE(result.errors, "tav: The name of the output file is empty.\nTry 'tav " +
                                        command.section(QLatin1Char(' '), 0, 0).toUtf8() + " --help'.\n");
            QCOMPARE(result.status, 2);
        }
    }

    void help_data()
    {
        QTest::addColumn<QByteArray>("begin");
        QTest::newRow("") << QByteArray("Usage: tav COMMAND [OPTION...] [FILE...]\nMakes and examines databases");
        QTest::newRow("build") << QByteArray(
            "Usage: tav build [options] [FILE...]\n"
            "Makes a database of the graphs whose graph6 or sparse6 strings stand, one a\n"
            "line, in the files or on standard input. Isomorphic repetitions are dropped.\n\nOptions:\n");
        QTest::newRow("info") << QByteArray("Usage: tav info [options] DATABASE.tav\n"
                                            "Tells what a database holds and checks its lines; the exit status is 1 "
                                            "when one\nhas a fault.\n\nOptions:\n");
        QTest::newRow("invariant") << QByteArray(
            "Usage: tav invariant [options] EXPRESSION... DATABASE\n"
            "Computes an invariant, or an expression such as 'radius - randic_index', of\n"
            "every graph of a database and writes the file of it that Tavoline loads: a name\n"
            "and a value a line, 'NA' where the invariant is undefined.\n\nOptions:\n");
        QTest::newRow("filter") << QByteArray(
            "Usage: tav filter [options] EXPRESSION [FILE]\n"
            "Prints the graphs of a file for which an expression such as 'diameter == 2 and\n"
            "not planar' holds: its value is not 0, and not NA. They stay in their order.\n\nOptions:\n");
        QTest::newRow("names") << QByteArray(
            "Usage: tav names [options] DATABASE [FILE]\n"
            "Prints for each graph of a list the name of the isomorphic graph of the\n"
            "database, '-' when the database holds none. Tavoline compares names as text: a\n"
            "list from elsewhere is translated so.\n\nOptions:\n");
        QTest::newRow("run") << QByteArray(
            "Usage: tav run [options] [SCRIPT]\n"
            "Repeats an investigation without the window. The lines of the window's console\n"
            "go to standard output. A command that fails ends the script, unless its line\n"
            "begins with '-'.\n\nOptions:\n");
    }

    void help()
    {
        QFETCH(QByteArray, begin);
        const QByteArray command = QTest::currentDataTag();
        const ToolResult result = shell("$1 " + command + " --help");
        QCOMPARE(result.output.left(begin.size()), begin);
        QVERIFY(result.output.contains("-h, --help") && result.output.contains("--version"));
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        QCOMPARE(shell("$1 " + command + " -h").output, result.output);
    }

    void version()
    {
        for (const char *line : {"$1 --version", "$1 build --version", "$1 info --version", "$1 invariant --version",
                                 "$1 filter --version", "$1 names --version", "$1 run --version"}) {
            const ToolResult result = shell(line);
            QCOMPARE(result.output, QByteArray("tav 0.2.1\n"));
            QCOMPARE(result.errors, QByteArray());
            QCOMPARE(result.status, 0);
        }
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("") << QByteArray("No command given.");
        QTest::newRow("rebuild") << QByteArray("Unknown command 'rebuild'.");
        QTest::newRow("help") << QByteArray("Unknown command 'help'.");
        QTest::newRow("--fast") << QByteArray("Unknown command '--fast'.");
        QTest::newRow("--help build") << QByteArray("Unexpected argument 'build'.");
        QTest::newRow("--version 1 2") << QByteArray("Unexpected argument '1'.");
    }

    void wrongUsage()
    {
        QFETCH(QByteArray, message);
        const ToolResult result = shell(QByteArray("$1 ") + QTest::currentDataTag());
        QCOMPARE(result.errors, "tav: " + message + "\nTry 'tav --help'.\n");
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 2);
    }

    void aSignalEndsTheWaitForAReader_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("build") << QByteArray(R"($1 build <(cut -f1 "$3") >"$2")");
        QTest::newRow("build, with a name") << QByteArray(R"($1 build -o "$2" <(cut -f1 "$3"))");
        QTest::newRow("invariant") << QByteArray(R"($1 invariant order "$3" >"$2")");
        QTest::newRow("invariant, with a name") << QByteArray(R"($1 invariant order -o "$2" "$3")");
        QTest::newRow("show") << QByteArray(R"($1 run <(printf 'list-from-file a "%s"\nshow a\n' "$3") >"$2")");
        QTest::newRow("save-list") << QByteArray(
            R"($1 run <(printf 'list-from-file a "%s"\nsave-list a "%s"\n' "$3" "$2"))");
    }

    /// A pipe that is open and full: the program waits until somebody reads it.
    void aSignalEndsTheWaitForAReader()
    {
        QFETCH(QByteArray, line);
        const QTemporaryDir place;
        const QString pipe = place.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        const int reader = ::open(pipe.toLocal8Bit().constData(), O_RDONLY | O_NONBLOCK);
        const int writer = ::open(pipe.toLocal8Bit().constData(), O_WRONLY);
        QVERIFY(reader >= 0 && writer >= 0);
        QProcess process;
        process.start(QStringLiteral("bash"),
                      QStringList{QStringLiteral("-c"), QStringLiteral("exec ") + QString::fromUtf8(line),
                                  QStringLiteral("bash"), QStringLiteral(TAVOLINE_TAV), pipe,
                                  example("connected-8.tav")});
        const auto isFull = [&] {
            pollfd end = {writer, POLLOUT, 0};
            return ::poll(&end, 1, 0) == 0;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isFull(), patience);
        ::kill(pid_t(process.processId()), SIGTERM);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), SIGTERM);
        ::close(reader);
        ::close(writer);
    }

    /// By whatever name it is written to, a file that is standard output gets one thing after the other.
    void theFileThatIsStandardOutput()
    {
        const QString file = folder.filePath(QStringLiteral("everything"));
        for (const char *name : {"/dev/stdout", "\"$2\""}) {
            const QByteArray line =
                QByteArray("{ echo before; printf '@\\nA_\\n' | $1 build -o OUT; printf 'list-from-file a \"%s\"\\n"
                           "save-list a \"%s\"\\nlists\\n' $3 OUT | $1 run; echo after; } >\"$2\"")
                    .replace("OUT", name);
            shell(line.constData(), {file, example("regular-8.g6")});
            const QByteArray saved = contents(example("regular-8.g6")).trimmed();
            QCOMPARE(contents(file),
                     "before\n@\nA_\t0\nList added : a [ 17 element(s)]\nList added : a\n" + saved + "a\t17\nafter\n");
        }
    }

    void pipesAreRead()
    {
        QCOMPARE(shell("$1 build <(echo A_) <(echo @)").output, QByteArray("@\nA_\t0\n"));
        QCOMPARE(shell("$1 run <(echo lists)").status, 0);
        const QString pipe = folder.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        const ToolResult result = shell(R"((printf '@\nA_\t0\n' >"$2") & $1 invariant size "$2")", {pipe});
        QCOMPARE(result.output, QByteArray("GRAPH\tINV1\n@\t0\nA_\t1\n"));
        QCOMPARE(result.errors, QByteArray());
    }

    /// Whatever is opened does not take the place of a stream that is closed.
    void closedStreams()
    {
        const char *const noInput = "tav: standard input:1: cannot be read: Bad file descriptor\n";
        QCOMPARE(shell("$1 build <&-").errors, QByteArray(noInput));
        QCOMPARE(shell("$1 run <&-").errors, QByteArray("Starting...\n") + noInput);
        const QString file = folder.filePath(QStringLiteral("closed.g6"));
        QCOMPARE(shell("echo @ >\"$2\"; $1 build \"$2\" >&-", {file}).errors,
                 QByteArray("tav: standard output: cannot be written: Bad file descriptor\n"));
        const ToolResult result = shell(R"($1 build -o "$2" "$2" <&- >&- 2>&-)", {file});
        QCOMPARE(result.status, 0);
        QCOMPARE(contents(file), QByteArray("@\n"));
    }

    void aFolderIsNotRead()
    {
        for (const char *line : {"$1 info /", "$1 build /", "$1 invariant order /", "$1 names / </dev/null",
                                 "$1 run --quiet /", "$1 info - </"}) {
            const ToolResult result = shell(line);
            const QByteArray name = QByteArray(line).endsWith("</") ? "standard input" : "/";
            QVERIFY2(result.errors.endsWith("tav: " + name + ": cannot be read: Is a directory\n"),
                     result.errors.constData());
            QCOMPARE(result.status, 1);
        }
    }

    /// A terminal obeys control characters; those of a file never get there.
    void controlCharactersAreNotPrinted()
    {
        QCOMPARE(shell("printf '@\\033]0;title\\a\\n' | $1 info -").errors,
                 QByteArray("tav: standard input:1: '@\\x1b]0;title\\x07': not graph6: byte 27 at column 2\n"
                            "tav: standard input: faults found: 1\n"));
        QCOMPARE(shell("printf 'b\\302\\233el\\n' | $1 run").errors,
                 QByteArray("Starting...\ntav: standard input:1: unknown command 'b\\x9bel'\n"));
        QCOMPARE(shell("$1 $'\\b'").errors, QByteArray("tav: Unknown command '\\x08'.\nTry 'tav --help'.\n"));
    }

    /// A name that is written from right to left where it stands could make another of what stands around it.
    void directionsOfWritingAreNotPrinted()
    {
        QCOMPARE(shell("$1 info $'\\u202egpj.vat'").errors,
                 QByteArray("tav: \\u202egpj.vat: cannot be opened: No such file or directory\n"));
        QCOMPARE(shell("printf 'a\\u2066b' | $1 run").errors,
                 QByteArray("Starting...\ntav: standard input:1: unknown command 'a\\u2066b'\n"));
        const QString database = folder.filePath(QStringLiteral("a\u202eb.tav"));
        QVERIFY(QFile::copy(example("connected-8.tav"), database));
        const QByteArray shown =
            shell("script -qec \"$1 info '$2' >/dev/null\" /dev/null </dev/null", {database}).output;
        QVERIFY2(shown.contains("/a\\u202eb.tav: "), shown.constData());
    }

    /// The name of a file is the bytes that were given, whatever the locale, or it is refused.
    void namesOfFilesAreNotChanged()
    {
        for (const char *locale : {"C", "POSIX", "C.UTF-8", "en_US.ISO-8859-1"}) {
            const QTemporaryDir place;
            const ToolResult result = shell("cd \"$2\"; export LC_ALL=$3; echo @ >$'\\303\\244\\342\\202\\254'; $1 "
                                            "build $'\\303\\244\\342\\202\\254' "
                                            "-o $'\\303\\266'; printf 'list-from-file a \\303\\266\nsave-list a "
                                            "\\303\\274' | $1 run; printf '%s ' *",
                                            {place.path(), QLatin1String(locale)});
            QVERIFY2(result.output.endsWith("List added : a\n\303\244\342\202\254 \303\266 \303\274 "),
                     result.output.constData());
        }
    }

    void argumentsThatAreNoText_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("message");
        const QByteArray wrong = "\xef\xbf\xbd"; // what stands for a byte that is none of a character
        const auto row = [](const char *title, const char *line, const QByteArray &message) {
            QTest::newRow(title) << QByteArray(line) << message;
        };
        row("output", R"(echo @ | $1 build -o $'a\xff')", "Argument 3 is not valid UTF-8: 'a" + wrong + "'.");
        row("input", R"($1 info $'\xe4.tav')", "Argument 2 is not valid UTF-8: '" + wrong + ".tav'.");
        row("half of a pair", R"($1 invariant order -o $'\xed\xa0\x80' -)",
            "Argument 4 is not valid UTF-8: '" + wrong + wrong + wrong + "'.");
        row("command", R"($1 $'\xff')", "Argument 1 is not valid UTF-8: '" + wrong + "'.");
    }

    void argumentsThatAreNoText()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, message);
        const QTemporaryDir place;
        for (const char *locale : {"C", "C.UTF-8"}) {
            const ToolResult result =
                shell("cd \"$2\"; export LC_ALL=$3; " + line, {place.path(), QLatin1String(locale)});
            QCOMPARE(result.errors, "tav: " + message + "\nTry 'tav --help'.\n");
            QCOMPARE(result.status, 2);
        }
        QCOMPARE(QDir(place.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
    }

    void longNamesAreCut()
    {
        const ToolResult result = shell("(head -c 10000000 /dev/zero | tr '\\0' A) | $1 info -");
        QCOMPARE(result.errors, "tav: standard input:1: '" + QByteArray(60, 'A') +
                                    "...': not graph6: 10000000 bytes where a graph on 2 vertices has 2\n"
                                    "tav: standard input: faults found: 1\n");
    }

    void bitsBehindTheLastPair()
    {
        // Two vertices have one pair, and the byte has five bits more.
        const ToolResult result = shell("printf 'A`\\n' | $1 build");
        QCOMPARE(result.errors,
                 QByteArray("tav: standard input:1: not graph6: bits are set behind the last pair of vertices\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
        // Four vertices have six pairs, which fill their byte.
        QCOMPARE(shell("echo C~ | $1 build").output, QByteArray("C~\n"));
    }

    /// Progress is shown on a terminal only, and nothing of it stays.
    void progress()
    {
        const QStringList database = {example("connected-8.tav")};
        QCOMPARE(shell("$1 info \"$2\" 2>&1 >/dev/null", database).output, QByteArray());
        const QByteArray shown = shell("script -qec \"$1 info '$2' >/dev/null\" /dev/null </dev/null", database).output;
        QVERIFY2(shown.contains("\rReading ") && shown.contains(" %") && shown.endsWith("\r\033[K"), shown.constData());
        // Nobody knows beforehand how much will come through a pipe.
        const QByteArray counted =
            shell("script -qec \"cat '$2' | $1 info - >/dev/null\" /dev/null </dev/null", database).output;
        QVERIFY2(counted.contains(countOfTenThousand), counted.constData());
        QCOMPARE(withoutCounts(counted), QByteArray("\r\033[K"));
        // A fault gets a line of its own.
        const QByteArray faults =
            shell("script -qec \"(cat '$2'; echo x) | $1 info - >/dev/null\" /dev/null </dev/null", database).output;
        QVERIFY2(faults.contains(countOfTenThousand), faults.constData());
        QCOMPARE(
            withoutCounts(faults),
            QByteArray("\r\033[K"
                       "tav: standard input:12114: 'x': not graph6: 1 byte where a graph on 57 vertices has 267\r\n"
                       "tav: standard input: faults found: 1\r\n"));
        // 10000 of 12113 lines are 82 %.
        const QByteArray loading = "script -qec \"echo 'load $2' | $1 run >/dev/null\" /dev/null </dev/null";
        QCOMPARE(shell(loading, database).output, QByteArray("Starting...\r\n\rLoading: 0 %\rLoading: 82 %\r\033[K"));
    }

    /// The signal of Ctrl+C while the program, on a terminal, waits for the rest of its input.
    void nothingOfTheProgressStaysAfterASignal()
    {
        const QTemporaryDir place;
        const QString rest = place.filePath(QStringLiteral("rest"));
        const QString id = place.filePath(QStringLiteral("id"));
        QCOMPARE(::mkfifo(rest.toLocal8Bit().constData(), 0600), 0);
        const int writer = ::open(rest.toLocal8Bit().constData(), O_RDWR | O_CLOEXEC);
        QVERIFY(writer >= 0);
        QProcess terminal;
        terminal.setStandardInputFile(QProcess::nullDevice());
        terminal.start(QStringLiteral("script"),
                       {QStringLiteral("-qec"),
                        QStringLiteral("cat '%1' '%2' | sh -c 'echo $$ >%3; exec %4 info -'")
                            .arg(example("connected-8.tav"), rest, id, QStringLiteral(TAVOLINE_TAV)),
                        QStringLiteral("/dev/null")});
        while (!terminal.peek(1 << 16).contains(countOfTenThousand) && terminal.waitForReadyRead(patience)) {
        }
        ::kill(contents(id).trimmed().toInt(), SIGINT);
        ::close(writer);
        QVERIFY(terminal.waitForFinished(patience));
        const QByteArray shown = terminal.readAll();
        QVERIFY2(shown.contains(countOfTenThousand), shown.constData());
        QCOMPARE(withoutCounts(shown), QByteArray("\r\033[K"));
    }

private:
    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(TestTav)
#include "tst_tav.moc"
