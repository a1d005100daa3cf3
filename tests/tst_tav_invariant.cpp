// tav invariant: its files, messages and signals.

#include "support/endingsignals.h"
#include "support/literals.h"
#include "support/loadedengine.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <csignal>

namespace
{
const QString standardInput = QStringLiteral("-");

QStringList invariant(const char *name, const QStringList &more = {})
{
    return QStringList{QStringLiteral("invariant"), QLatin1String(name)} + more;
}
} // namespace

class TestTavInvariant : public QObject
{
    Q_OBJECT

private slots:
    void anInvariantOfADatabase()
    {
        const ToolResult result =
            runTav(invariant("average-distance", {standardInput}), "@\nA_\t0\nB?\t0\t7\nBW\t1\nBw\t1\n");
        QCOMPARE(result.output, QByteArray("GRAPH\tINV1\n@\tNA\nA_\t1\nB?\tNA\nBW\t1.33333333333\nBw\t1\n"));
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    /// The names are those that the program gives the graphs.
    void namesAsTheProgramReadsThem()
    {
        const ToolResult result =
            runTav(invariant("size", {standardInput}), "\xEF\xBB\xBF@\r\n\n\r\nA\r_\t\r0\r\n\t0\nBw\t\xC3\xA9\nBW\t");
        QCOMPARE(result.output, QByteArray("GRAPH\tINV1\n@\t0\nA_\t1\nBw\t3\nBW\t2\n"));
        QCOMPARE(result.errors, QByteArray());
    }

    void theProgramLoadsTheFile()
    {
        LoadedEngine loaded("@\nA_\t0\nBW\t1\nBw\t1\n");
        const QString file = loaded.path("girth.txt");
        const ToolResult result = runTav(invariant("girth", {QStringLiteral("-o"), file, loaded.path("database.tav")}));
        QCOMPARE(result.output + result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        QVERIFY(loaded.engine.loadInv1(file));
        QCOMPARE(loaded.inv1(), QStringLiteral("NA NA NA 3"));
    }

    void anExpressionOfADatabase()
    {
        const QByteArray graphs = "@\nA_\t0\nBW\t1\nBw\t1\nB?\n";
        QCOMPARE(runTav(invariant("radius - order/2", {standardInput}), graphs).output,
                 QByteArray("GRAPH\tINV1\n@\t-0.5\nA_\t0\nBW\t-0.5\nBw\t-0.5\nB?\tNA\n"));
        QCOMPARE(runTav(invariant("average_distance", {standardInput}), graphs).output,
                 runTav(invariant("average-distance", {standardInput}), graphs).output);
        QCOMPARE(runTav(invariant("2*algebraic_connectivity", {standardInput}), "Bw\nD~{\n").output,
                 QByteArray("GRAPH\tINV1\nBw\t6\nD~{\t10\n"));
    }

    void severalExpressions()
    {
        const QTemporaryDir folder;
        const auto path = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
        const QByteArray graphs = "@\nBW\nBw\n";
        ToolResult result =
            runTav(invariant("girth", {QStringLiteral("order + size"), QStringLiteral("-o"), path("girth.txt"),
                                       QStringLiteral("order"), QStringLiteral("-o"), path("sum.txt"),
                                       QStringLiteral("-o"), standardInput, standardInput}),
                   graphs);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.output, QByteArray("GRAPH\tINV1\n@\t1\nBW\t3\nBw\t3\n"));
        QCOMPARE(contents(path("girth.txt")), QByteArray("GRAPH\tINV1\n@\tNA\nBW\tNA\nBw\t3\n"));
        QCOMPARE(contents(path("sum.txt")), QByteArray("GRAPH\tINV1\n@\t1\nBW\t5\nBw\t6\n"));
        result = runTav(invariant("girth", {QStringLiteral(" order +\tsize "), QStringLiteral("--table"),
                                            path("table.tsv"), standardInput}),
                        graphs);
        QCOMPARE(result.errors + result.output, QByteArray());
        QCOMPARE(contents(path("table.tsv")),
                 QByteArray("graph\tgirth\torder + size\n@\tNA\t1\nBW\tNA\t5\nBw\t3\t6\n"));
        result = runTav(invariant("order", {QStringLiteral("--table"), standardInput, standardInput}), graphs);
        QCOMPARE(result.output, QByteArray("graph\torder\n@\t1\nBW\t3\nBw\t3\n"));
    }

    void anExpressionThatBeginsWithASign()
    {
        const QByteArray graphs = "BW\nBw\n";
        QCOMPARE(runTav(words({"invariant", "-j", "1", "--", "-order + size", "-"}), graphs).output,
                 QByteArray("GRAPH\tINV1\nBW\t-1\nBw\t0\n"));
        // Here '-1' is a value of an option.
        QCOMPARE(runTav(words({"invariant", "-j", "-1", "order", "-"}), graphs).errors.split('\n').first(),
                 QByteArray("tav: Not a number of processors from 1 to 1024: '-1'."));
    }

    /// However the names are written.
    void noFileIsReadAndWritten()
    {
        const TestFolder folder;
        const QByteArray lines = "@\nBw\n";
        folder.write("x.tav", lines);
        QVERIFY(QFile::link(folder.path("x.tav"), folder.path("link")));
        const auto errorsOf = [&](const QStringList &arguments) {
            const ToolResult result = runTav(words({"invariant", "order"}) + arguments, {}, folder.path());
            [&] { QCOMPARE(result.status, 2); }();
            [&] { QCOMPARE(contents(folder.path("x.tav")), lines); }();
            return result.errors.split('\n').first();
        };
        for (const char *name : {"x.tav", "./x.tav", "link"}) {
            QCOMPARE(errorsOf(words({"-o", name, "x.tav"})),
                     QByteArray("tav: x.tav would be read and written at once."));
        }
        QCOMPARE(errorsOf({QStringLiteral("--table"), folder.path("x.tav"), QStringLiteral("x.tav")}),
                 QByteArray("tav: x.tav would be read and written at once."));
        QCOMPARE(errorsOf(words({"-o", "link", "./x.tav"})),
                 QByteArray("tav: ./x.tav would be read and written at once."));
        const QByteArray same = "tav: Two outputs are the same file.";
        QCOMPARE(errorsOf(words({"size", "-o", "new", "-o", "./new", "x.tav"})), same);
        QVERIFY(!QFile::exists(folder.path("new")));
        folder.write("old", "old");
        QVERIFY(QFile::link(folder.path("old"), folder.path("link of old")));
        QCOMPARE(errorsOf(words({"size", "-o", "old", "-o", "link of old", "x.tav"})), same);
        QCOMPARE(contents(folder.path("old")), QByteArray("old"));
        // Through the shell, too: it could go on for ever.
        const ToolResult shell = runProgram(
            QStringLiteral("bash"),
            {QStringLiteral("-c"), QStringLiteral("\"$0\" filter order x.tav >> x.tav"), QStringLiteral(TAVOLINE_TAV)},
            {}, folder.path());
        QCOMPARE(shell.errors.split('\n').first(), QByteArray("tav: x.tav would be read and written at once."));
        QCOMPARE(contents(folder.path("x.tav")), lines);
        QCOMPARE(runTav(words({"names", "-o", "link", "x.tav"}), "@\n", folder.path()).errors.split('\n').first(),
                 QByteArray("tav: x.tav would be read and written at once."));
    }

    /// A device is not replaced: it may be named twice, once as input.
    void aDeviceIsReadAndWritten()
    {
        const ToolResult result =
            runTav(words({"invariant", "order", "size", "-o", "/dev/null", "-o", "/dev/../dev/null", "-"}), "@\n");
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void allOutputsOrNone()
    {
        const QTemporaryDir folder;
        const auto path = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
        const QStringList outputs = {
            QStringLiteral("order"), QStringLiteral("-o"), path("a"), QStringLiteral("-o"), path("b"), standardInput};
        ToolResult result = runTav(invariant("size", outputs), "@\nBw\nB\n");
        QCOMPARE(result.errors,
                 QByteArray("tav: standard input:3: not graph6: 1 byte where a graph on 3 vertices has 2\n"));
        QVERIFY(QDir(folder.path()).isEmpty());
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("b")));
        result = runTav(invariant("size", outputs), "@\nBw\n");
        QVERIFY2(result.errors.startsWith("tav: " + QFile::encodeName(path("b")) + ": cannot be written: "),
                 result.errors.constData());
        QVERIFY(!QFile::exists(path("a")));
    }

    void theResultDoesNotDependOnTheProcessors_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"girth", "energy", "chromatic-number", "radius - randic_index"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }

    void theResultDoesNotDependOnTheProcessors()
    {
        QFETCH(QByteArray, name);
        const auto resultWith = [&](const char *jobs) {
            return runTav(
                invariant(name.constData(), {QStringLiteral("-j"), QLatin1String(jobs), example("connected-8.tav")}));
        };
        const ToolResult one = resultWith("1");
        QCOMPARE(one.output.count('\n'), 12114);
        QCOMPARE(resultWith("2").output, one.output);
        QCOMPARE(resultWith("7").output, one.output);
    }

    void list()
    {
        const ToolResult result = runTav(invariant("--list"));
        const QList<QByteArray> lines = result.output.split('\n');
        QCOMPARE(lines.at(0), QByteArray("Counts                         n = 0 n = 1  definition"));
        QCOMPARE(lines.at(1), QByteArray("  order                            0     1  number of vertices"));
        const int degrees = lines.indexOf("Degrees                        n = 0 n = 1  definition");
        QCOMPARE(lines.at(degrees - 1), QByteArray());
        QCOMPARE(lines.at(degrees + 1),
                 QByteArray("  minimum-degree                  NA     0  smallest degree; NA without vertices"));
        const int randic = lines.indexOf("  randic-index                     0     0  sum of 1/sqrt(d(u)d(v)) over the "
                                         "edges uv");
        QVERIFY(randic > degrees);
        QCOMPARE(lines.at(randic + 1), QByteArray(44, ' ') + "[M. Randić, \"On characterization of molecular "
                                                             "branching\", 1975]");
        // The longest name is in line with the others.
        QVERIFY(result.output.contains("\n  eccentric-connectivity-index    NA     0  sum of degree times "));
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("unknown") << words({"invariant", "gurth", "x.tav"})
                                 << QByteArray("Unknown invariant 'gurth' (did you mean 'girth'?); "
                                               "'tav invariant --list' names them.");
        QTest::newRow("not an expression") << words({"invariant", "girth <", "x.tav"})
                                           << QByteArray("Expression 'girth <', column 8: something is missing at the "
                                                         "end");
        QTest::newRow("a database only") << words({"invariant", "girth.tav"})
                                         << QByteArray("Expression 'girth.tav': the name of a file, where an "
                                                       "expression is expected");
        const QByteArray taken = " is taken for options: an expression that begins with '-' stands behind '--'.";
        for (const char *expression : {"-girth", "-1", "-order", "- (girth)", "-.5*girth", "-sqrt(girth)", "- -1"}) {
            QTest::newRow(expression) << words({"invariant", expression, "x.tav"})
                                      << '\'' + QByteArray(expression) + '\'' + taken;
        }
        QTest::newRow("no expression") << words({"invariant", "-grith", "x.tav"}) << QByteArray("Unknown option 'g'.");
        QTest::newRow("a long option") << words({"invariant", "--order", "x.tav"})
                                       << QByteArray("Unknown option 'order'.");
        QTest::newRow("two expressions") << words({"invariant", "girth", "order", "-o", "a.txt", "x.tav"})
                                         << QByteArray(
                                                "'-o' expected once for each of the 2 expressions, or '--table'.");
        QTest::newRow("two outputs") << words({"invariant", "girth", "-o", "a.txt", "-o", "b.txt", "x.tav"})
                                     << QByteArray("'-o' expected once for the expression.");
        QTest::newRow("output and table") << words({"invariant", "girth", "-o", "a.txt", "--table", "b.txt", "x.tav"})
                                          << QByteArray("Either '-o' or '--table' expected, both given.");
        QTest::newRow("two tables") << words({"invariant", "girth", "--table", "a", "--table", "b", "x.tav"})
                                    << QByteArray("More than one '--table' given.");
        QTest::newRow("one output twice") << words({"invariant", "girth", "order", "-o", "a", "-o", "a", "x.tav"})
                                          << QByteArray("Two outputs have the same name.");
        QTest::newRow("table without a name") << words({"invariant", "girth", "--table", "", "x.tav"})
                                              << QByteArray("The name of the output file is empty.");
        QTest::newRow("nothing") << words({"invariant"})
                                 << QByteArray("No invariant given; 'tav invariant --list' names them.");
        QTest::newRow("no database") << words({"invariant", "girth"})
                                     << QByteArray("Exactly one database file expected, 0 given.");
        QTest::newRow("two databases") << words({"invariant", "girth", "x.tav", "y.tav"})
                                       << QByteArray("Exactly one database file expected, 2 given.");
        QTest::newRow("list of one") << words({"invariant", "--list", "girth"})
                                     << QByteArray("Unexpected argument 'girth'.");
        QTest::newRow("jobs") << words({"invariant", "girth", "-j", "0", "x.tav"})
                              << QByteArray("Not a number of processors from 1 to 1024: '0'.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(arguments);
        QCOMPARE(result.errors, QByteArray("tav: " + message + "\nTry 'tav invariant --help'.\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 2);
    }

    void badFile_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no graph6") << QByteArray("@\n\nA\t0\n")
                                   << QByteArray("3: not graph6: 1 byte where a graph on 2 vertices has 2");
        QTest::newRow("blank") << QByteArray("@\nA_ \t0\n") << QByteArray("2: not graph6: byte 32 at column 3");
        QTest::newRow("too large") << QByteArray("~??~\n") << QByteArray("1: more than 62 vertices");
        QTest::newRow("no graph") << QByteArray("\n\t1\n") << QByteArray("1: the database holds no graph");
    }

    void badFile()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, message);
        const QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("girth.txt"));
        const ToolResult result = runTav(invariant("girth", {QStringLiteral("-o"), file, standardInput}), lines);
        QCOMPARE(result.errors, QByteArray("tav: standard input:" + message + "\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
        QVERIFY(QDir(directory.path()).isEmpty());
    }

    void filesThatCannotBeUsed()
    {
        ToolResult result = runTav(invariant("girth", {QStringLiteral("/no/such.tav")}));
        QCOMPARE(result.errors, QByteArray("tav: /no/such.tav: cannot be opened: No such file or directory\n"));
        QCOMPARE(result.status, 1);
        result =
            runTav(invariant("girth", {QStringLiteral("-o"), QStringLiteral("/no/such.txt"), standardInput}), "@\n");
        QCOMPARE(result.errors, QByteArray("tav: /no/such.txt: cannot be written: No such file or directory\n"));
        QCOMPARE(result.status, 1);
    }

    void aSignalLeavesNothingBehind_data() { addEndingSignals(); }

    void aSignalLeavesNothingBehind()
    {
        QFETCH(int, number);
        // The last graph of Mycielski on 47 vertices: its chromatic number takes a good part of a second. The whole is
        // more work than the test has patience for.
        const QByteArray hard =
            "nkLTAQGK?NiShOQcPa@b?SAA_GAOOCOO?oG?@{???N~iSSghPQ_QcdGPabC@bBE?SAgCA_L?OAOS__COW__?oH_O?@{Bw?Ad??O?Sg?@??"
            "Qc?A??bC?A??EK?@??A_O?O??gA?A??@GG?G??COO?O??@_O?O???Fo?G????@~{???????N~~~_\n";
        const QTemporaryDir directory;
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV),
                      invariant("chromatic-number", {QStringLiteral("-j"), QStringLiteral("2"), QStringLiteral("-o"),
                                                     directory.filePath(QStringLiteral("out.txt")), standardInput}));
        process.write(hard.repeated(20000));
        process.closeWriteChannel();
        QTRY_VERIFY_WITH_TIMEOUT(hasFileOpenIn(process.processId(), directory.path()), patience);
        ::kill(pid_t(process.processId()), number);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), number);
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QVERIFY(QDir(directory.path()).isEmpty());
    }

    void aHangUpThatIsIgnoredDoesNotEndIt()
    {
        const QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("out.txt"));
        QProcess process;
        const auto isWriting = [&] { return hasFileOpenIn(process.processId(), directory.path()); };
        do { // again if the program was faster than the test
            process.start(QStringLiteral("bash"),
                          {QStringLiteral("-c"), QStringLiteral("trap '' HUP; exec '%1' invariant girth -o '%2' '%3'")
                                                     .arg(QStringLiteral(TAVOLINE_TAV), file,
                                                          QStringLiteral(TAVOLINE_BUILD_DATA "/connected-9.tav"))});
            QVERIFY(process.waitForStarted(patience));
        } while (!stopWhile(process, isWriting));
        ::kill(pid_t(process.processId()), SIGHUP);
        ::kill(pid_t(process.processId()), SIGCONT);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(contents(file).count('\n'), 273194);
    }

    void aReaderThatLeavesEndsItQuietly()
    {
        const QString command =
            QStringLiteral("'%1' invariant size '%2' | head -1; echo \"${PIPESTATUS[0]}\"")
                .arg(QStringLiteral(TAVOLINE_TAV), QStringLiteral(TAVOLINE_BUILD_DATA "/connected-9.tav"));
        const ToolResult result = runProgram(QStringLiteral("bash"), {QStringLiteral("-c"), command});
        QCOMPARE(result.output, QByteArray("GRAPH\tINV1\n141\n"));
        QCOMPARE(result.errors, QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestTavInvariant)
#include "tst_tav_invariant.moc"
