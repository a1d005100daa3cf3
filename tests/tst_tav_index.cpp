// tav index: the file of the canonical forms of a database.

#include "support/endingsignals.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <csignal>
#include <sys/stat.h>

namespace
{
QStringList index(const QStringList &arguments)
{
    return QStringList{QStringLiteral("index")} + arguments;
}

/// The graph on 62 vertices without edges again and again, which takes a processor many seconds.
const QByteArray longWork = ('}' + QByteArray(316, '?') + '\n').repeated(100000);
} // namespace

class TestTavIndex : public QObject
{
    Q_OBJECT

private slots:
    void itStandsBesideTheDatabase()
    {
        const TestFolder folder;
        folder.write("base.tav", "@\nA_\t0\nBW\t1\nBw\t1\n");
        const ToolResult result = runTav(index(words({"base.tav"})), {}, folder.path());
        QCOMPARE(result.errors, QByteArray("4 graphs.\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 0);
        QCOMPARE(folder.files(), words({"base.tav", "base.tav.index"}));
        QVERIFY(contents(folder.path("base.tav.index")).startsWith("tavforms"));
    }

    void orWhereItIsTold()
    {
        const TestFolder folder;
        folder.write("base.tav", "@\n");
        QCOMPARE(runTav(index(words({"base.tav", "-o", "other"})), {}, folder.path()).errors, QByteArray("1 graph.\n"));
        QCOMPARE(folder.files(), words({"base.tav", "other"}));
        const ToolResult printed = runTav(index(words({"--output", "-", "base.tav"})), {}, folder.path());
        QCOMPARE(printed.output, contents(folder.path("other")));
        QCOMPARE(folder.files(), words({"base.tav", "other"}));
    }

    void theNumberOfProcessorsDoesNotMatter()
    {
        const QString database = example("connected-8.tav");
        const ToolResult one =
            runTav(index({QStringLiteral("-o"), QStringLiteral("-"), QStringLiteral("-j1"), database}));
        QCOMPARE(one.errors, QByteArray("12113 graphs.\n"));
        for (const char *jobs : {"-j2", "-j3", "-j16"}) {
            QCOMPARE(runTav(index({QStringLiteral("-o"), QStringLiteral("-"), latin1(jobs), database})).output,
                     one.output);
        }
    }

    void aDatabaseWithoutGraphs()
    {
        const TestFolder folder;
        folder.write("base.tav", "");
        const ToolResult result = runTav(index(words({"base.tav"})), {}, folder.path());
        QCOMPARE(result.errors, QByteArray("0 graphs.\n"));
        QCOMPARE(result.status, 0);
        QCOMPARE(contents(folder.path("base.tav.index")).size(), 556);
    }

    /// What the loader takes for a number, and lines that it passes over.
    void numbersAsTheLoaderReadsThem()
    {
        const TestFolder folder;
        folder.write("base.tav", "\n@\r\n\t7\n\nA_\t0\r\nB\rW\t 1\nBw\t+1\t001\t1\r0\r\n\r\n");
        QCOMPARE(runTav(index(words({"base.tav"})), {}, folder.path()).errors,
                 QByteArray("tav: base.tav:7: '10' is not the number of an earlier graph; a part alone is no base, but "
                            "base and part one behind the other are\n"));
        folder.write("base.tav", "\n@\r\n\t7\n\nA_\t0\r\nB\rW\t 1\nBw\t+1\t001\t\r0\r\n\r\n");
        QCOMPARE(runTav(index(words({"base.tav"})), {}, folder.path()).errors, QByteArray("4 graphs.\n"));
    }

    void badDatabases_data()
    {
        QTest::addColumn<QByteArray>("database");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no graph") << QByteArray("@\nA_\t0\nA_?\t0\n")
                                  << QByteArray("3: not graph6: 3 bytes where a graph on 2 vertices has 2");
        QTest::newRow("no graph behind empty lines")
            << QByteArray("@\n\n\t0\r\nA \t0\n") << QByteArray("4: not graph6: byte 32 at column 2");
        QTest::newRow("a header") << QByteArray(">>graph6<<@\n") << QByteArray("1: not graph6: byte 62 at column 1");
        QTest::newRow("63 vertices") << QByteArray("~??~?????\n") << QByteArray("1: more than 62 vertices");
        QTest::newRow("an index") << QByteArray("tavforms\x04\x03\x02\x01")
                                  << QByteArray("1: not graph6: byte 4 at column 9");
        const auto badNumber = [](const char *name, const QByteArray &database, const QByteArray &fault) {
            QTest::newRow(name) << database
                                << fault + " is not the number of an earlier graph; a part alone is no base, but base "
                                           "and part one behind the other are";
        };
        badNumber("a part", "CF\t2\nCx\t2\t3\n", "1: '2'");
        badNumber("the second number", "@\nA_\t0\nBW\t1\t7\n", "3: '7'");
        badNumber("its own number", "@\nA_\t1\n", "2: '1'");
        badNumber("below zero", "@\nA_\t-1\n", "2: '-1'");
        badNumber("beyond 32 bits", "@\nA_\t4294967296\n", "2: '4294967296'");
        badNumber("no number", "@\nA_\t0x\n", "2: '0x'");
        badNumber("an empty field", "@\nA_\t0\t\r\n", "2: ''");
        badNumber("empty lines have no number", "@\n" + QByteArray(3000000, '\n') + "A_\t0\nA_\t2\n", "3000003: '2'");
        QTest::newRow("no graph before a bad number")
            << QByteArray("@\nA\t9\n") << QByteArray("2: not graph6: 1 byte where a graph on 2 vertices has 2");
        const QByteArray noNewline = " no newline at its end: a part behind it would begin on the same line";
        QTest::newRow("no newline") << QByteArray("@\nA_\t0") << "2:" + noNewline;
        QTest::newRow("no newline behind empty lines") << QByteArray("@\n\n\n\t") << "4:" + noNewline;
    }

    void badDatabases()
    {
        QFETCH(QByteArray, database);
        QFETCH(QByteArray, message);
        const TestFolder folder;
        folder.write("base.tav", database);
        folder.write("base.tav.index", "old");
        const ToolResult result = runTav(index(words({"base.tav"})), {}, folder.path());
        QCOMPARE(result.errors, "tav: base.tav:" + message + "\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(folder.path("base.tav.index")), QByteArray("old"));
        QCOMPARE(folder.files(), words({"base.tav", "base.tav.index"}));
    }

    /// The first fault is told, and nothing of later ones, however many processors find them.
    void theFirstFaultIsTold()
    {
        const TestFolder folder;
        folder.write("base.tav", QByteArray("@\n").repeated(1000) + QByteArray("A\n").repeated(1000));
        QCOMPARE(runTav(index(words({"base.tav", "-j", "8"})), {}, folder.path()).errors,
                 QByteArray("tav: base.tav:1001: not graph6: 1 byte where a graph on 2 vertices has 2\n"));
    }

    void aFaultFarBehind()
    {
        const TestFolder folder;
        folder.write("base.tav", QByteArray("\n").repeated(3000000) + "A\n");
        QCOMPARE(runTav(index(words({"base.tav"})), {}, folder.path()).errors,
                 QByteArray("tav: base.tav:3000001: not graph6: 1 byte where a graph on 2 vertices has 2\n"));
    }

    void filesThatCannotBeUsed_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("missing") << words({"missing"})
                                 << QByteArray("missing: cannot be opened: No such file or directory");
        QTest::newRow("folder") << words({"folder"}) << QByteArray("folder: cannot be opened: Is a directory");
        QTest::newRow("a file as a folder")
            << words({"base.tav/x"}) << QByteArray("base.tav/x: cannot be opened: Not a directory");
        QTest::newRow("pipe") << words({"pipe"}) << QByteArray("pipe: cannot be opened: Not a regular file");
        QTest::newRow("output") << words({"base.tav", "-o", "no/such"})
                                << QByteArray("no/such: cannot be written: No such file or directory");
        QTest::newRow("full") << words({"base.tav", "-o", "/dev/full"})
                              << QByteArray("/dev/full: cannot be written: No space left on device");
    }

    void filesThatCannotBeUsed()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const TestFolder folder;
        folder.write("base.tav", "@\n");
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder")));
        QCOMPARE(::mkfifo(QFile::encodeName(folder.path("pipe")).constData(), 0600), 0);
        const QStringList before = folder.files();
        const ToolResult result = runTav(index(arguments), {}, folder.path());
        QCOMPARE(result.errors, "tav: " + message + "\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(folder.files(), before);
    }

    void aDiskThatFillsUp()
    {
        const TestFolder folder;
        folder.write("base.tav", contents(example("connected-8.tav")));
        folder.write("base.tav.index", "old");
        // No file of the process grows beyond 16 blocks of 512 bytes: the index would have 100 000 bytes.
        const ToolResult result =
            runProgram(QStringLiteral("sh"),
                       {QStringLiteral("-c"),
                        QStringLiteral("ulimit -f 16; exec '%1' index base.tav").arg(QStringLiteral(TAVOLINE_TAV))},
                       {}, folder.path());
        QCOMPARE(result.errors, QByteArray("tav: base.tav.index: cannot be written: File too large\n"));
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(folder.path("base.tav.index")), QByteArray("old"));
        QCOMPARE(folder.files(), words({"base.tav", "base.tav.index"}));
    }

    void aSignalEndsLongWorkAtOnce_data() { addEndingSignals(); }

    /// Of the long work no file is left.
    void aSignalEndsLongWorkAtOnce()
    {
        QFETCH(int, number);
        const TestFolder folder;
        folder.write("base.tav", longWork);
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start(QStringLiteral(TAVOLINE_TAV), index(words({"base.tav", "-j", "2"})));
        QTRY_VERIFY_WITH_TIMEOUT(openFilesIn(process.processId(), folder.path()).size() == 2, patience);
        ::kill(pid_t(process.processId()), number);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), number);
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(folder.files(), words({"base.tav"}));
    }

    void killedItLeavesNothing()
    {
        const TestFolder folder;
        folder.write("base.tav", longWork);
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start(QStringLiteral(TAVOLINE_TAV), index(words({"base.tav"})));
        QTRY_VERIFY_WITH_TIMEOUT(openFilesIn(process.processId(), folder.path()).size() == 2, patience);
        process.kill();
        QVERIFY(process.waitForFinished(patience));
        QVERIFY(!QFile::exists(folder.path("base.tav.index")));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no database") << QStringList() << QByteArray("Exactly one database file expected, 0 given.");
        QTest::newRow("two") << words({"a", "b"}) << QByteArray("Exactly one database file expected, 2 given.");
        QTest::newRow("onto the database")
            << words({"a", "-o", "./a"}) << QByteArray("a would be read and written at once.");
        QTest::newRow("standard input") << words({"-"})
                                        << QByteArray(
                                               "The database is read twice and cannot come from standard input.");
        QTest::newRow("no name") << words({""}) << QByteArray("The name of the database file is empty.");
        QTest::newRow("no output") << words({"a", "-o", ""}) << QByteArray("The name of the output file is empty.");
        QTest::newRow("no processors") << words({"a", "-j", "0"})
                                       << QByteArray("Not a number of processors from 1 to 1024: '0'.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(index(arguments));
        QCOMPARE(result.errors, "tav: " + message + "\nTry 'tav index --help'.\n");
        QCOMPARE(result.status, 2);
    }
};

QTEST_GUILESS_MAIN(TestTavIndex)
#include "tst_tav_index.moc"
