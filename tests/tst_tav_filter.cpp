// tav filter: which graphs it prints and when, its messages, and its life in a pipe.

#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QProcess>
#include <QtTest>

#include <algorithm>

namespace
{
/// The graph on one vertex, that on three vertices with one edge, path, triangle, and the complete one on four.
const QByteArray graphs = "@\nBO\nBW\nBw\nC~\n";

QStringList filter(const char *expression, const QStringList &more = {})
{
    return QStringList{QStringLiteral("filter"), QLatin1String(expression)} + more;
}

/// What a process that waits for input has printed.
QByteArray printedOf(QProcess &process, int bytes)
{
    QByteArray printed;
    while (printed.size() < bytes && process.waitForReadyRead(patience)) {
        printed += process.readAllStandardOutput();
    }
    return printed;
}

/// The most memory that a process has had, in KiB.
qint64 mostMemoryOf(const QProcess &process)
{
    const QByteArray status = contents(QStringLiteral("/proc/%1/status").arg(process.processId()));
    const QByteArray name = "VmHWM:";
    return status.mid(status.indexOf(name) + name.size()).simplified().split(' ').first().toLongLong();
}
} // namespace

class TestTavFilter : public QObject
{
    Q_OBJECT

private slots:
    void graphsThatPass_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("output");
        const auto row = [](const QStringList &arguments, const char *output) {
            QTest::newRow(qPrintable(arguments.join(QLatin1Char(' ')))) << arguments << QByteArray(output);
        };
        row(filter("1"), "@\nBO\nBW\nBw\nC~\n");
        row(filter("girth == 3 and not order == 4"), "Bw\n");
        row(filter("size"), "BO\nBW\nBw\nC~\n");
        row(filter("order > 7"), "");
        row(filter("order == 3", words({"--count"})), "3\n");
        row(filter("order > 7", words({"--count"})), "0\n");
        row(filter("order == 3", words({"--first", "2"})), "BO\nBW\n");
        row(filter("order == 3", words({"--first", "3"})), "BO\nBW\nBw\n");
        row(filter("order == 3", words({"--first", "9"})), "BO\nBW\nBw\n");
        row(filter("order == 3", words({"--first", "2", "--count"})), "2\n");
        row(filter("order == 3", words({"--invert"})), "@\nC~\n");
        // One is disconnected: its diameter is undefined.
        row(filter("diameter == 1"), "Bw\nC~\n");
        row(filter("diameter == 1", words({"--invert"})), "@\nBW\n");
        row(filter("diameter == 1", words({"--invert", "--count"})), "2\n");
        row(filter("not (diameter == 1)"), "@\nBW\n");
    }

    void graphsThatPass()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, output);
        const ToolResult result = runTav(arguments, graphs);
        QCOMPARE(result.output, output);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void whatItReads()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("some"));
        const auto outputOf = [&](const QByteArray &bytes) {
            write(file, bytes);
            const ToolResult result = runTav(filter("size > 0", {file}));
            return result.errors + result.output;
        };
        QCOMPARE(outputOf(">>graph6<<@\nBw\r\n\nC~"), QByteArray("Bw\nC~\n"));
        QCOMPARE(outputOf("\xEF\xBB\xBF@\n:An\n"), QByteArray(":An\n"));
        QCOMPARE(outputOf("@\nA_\t0\nB?\t0\t7\nBW\t1\n"), QByteArray("A_\nBW\n"));
        QCOMPARE(outputOf(""), QByteArray());
        QCOMPARE(runTav(filter("size > 2", words({"-"})), graphs).output, QByteArray("Bw\nC~\n"));
    }

    void theResultDoesNotDependOnTheProcessors()
    {
        const auto resultWith = [&](const char *jobs) {
            return runTav(filter("girth > 3", {QStringLiteral("-j"), QLatin1String(jobs), example("connected-8.tav")}));
        };
        const ToolResult one = resultWith("1");
        QVERIFY(one.output.count('\n') > 20);
        QCOMPARE(resultWith("2").output, one.output);
        QCOMPARE(resultWith("7").output, one.output);
        QList<QByteArray> names;
        for (const QByteArray &line : contents(example("connected-8.tav")).split('\n')) {
            names.append(line.split('\t').first());
        }
        int place = 0;
        for (const QByteArray &name : one.output.trimmed().split('\n')) {
            place = names.indexOf(name, place);
            QVERIFY2(place >= 0, name.constData()); // in the order of the file
        }
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("nothing") << words({"filter"}) << QByteArray("No expression given.");
        QTest::newRow("two files") << filter("order", words({"a", "b"})) << QByteArray("Unexpected argument 'b'.");
        QTest::newRow("unknown") << filter("grith == 3", words({"a"}))
                                 << QByteArray("Unknown invariant 'grith' (did you mean 'girth'?); 'tav invariant "
                                               "--list' names them.");
        QTest::newRow("mistake") << filter("girth = 3") << QByteArray("Expression 'girth = 3', column 7: write '=='");
        QTest::newRow("none") << filter("order", words({"--first", "0"}))
                              << QByteArray("Not a number of graphs from 1: '0'.");
        QTest::newRow("no number") << filter("order", words({"--first", "few"}))
                                   << QByteArray("Not a number of graphs from 1: 'few'.");
        QTest::newRow("jobs") << filter("order", words({"-j", "0"}))
                              << QByteArray("Not a number of processors from 1 to 1024: '0'.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(arguments);
        QCOMPARE(result.errors, QByteArray("tav: " + message + "\nTry 'tav filter --help'.\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 2);
    }

    /// The graphs before the fault are printed.
    void badFile()
    {
        const ToolResult result = runTav(filter("size"), "A_\nBw\nB\nC~\n");
        QCOMPARE(result.output, QByteArray("A_\nBw\n"));
        QCOMPARE(result.errors,
                 QByteArray("tav: standard input:3: not graph6: 1 byte where a graph on 3 vertices has 2\n"));
        QCOMPARE(result.status, 1);
        const ToolResult enough = runTav(filter("size", words({"--first", "2"})), "A_\nBw\nB\nC~\n");
        QCOMPARE(enough.output, QByteArray("A_\nBw\n"));
        QCOMPARE(enough.errors, QByteArray());
        QCOMPARE(enough.status, 0);
        QCOMPARE(runTav(filter("size", words({"/no/such.g6"}))).errors,
                 QByteArray("tav: /no/such.g6: cannot be opened: No such file or directory\n"));
    }

    void graphsOfAPipeArePrintedBeforeMoreAreWaitedFor()
    {
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV), filter("order == 3", words({"--first", "4"})));
        process.write("@\nBW\n");
        QCOMPARE(printedOf(process, 3), QByteArray("BW\n"));
        process.write("Bw\nBO\n@\n");
        QCOMPARE(printedOf(process, 6), QByteArray("Bw\nBO\n"));
        process.write("Bw\n");
        QVERIFY(process.waitForFinished(patience)); // without the end of its input
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAllStandardOutput() + process.readAllStandardError(), QByteArray("Bw\n"));
    }

    void betweenAGeneratorAndADatabase()
    {
        const ToolResult result = runProgram(
            QStringLiteral("bash"),
            {QStringLiteral("-c"),
             QStringLiteral(
                 "set -o pipefail; nauty-geng -q 4 | '%1' filter 'components == 1 and size >= 4' | '%1' build")
                 .arg(QStringLiteral(TAVOLINE_TAV))});
        QCOMPARE(result.output, QByteArray("CV\nC]\nC^\nC~\n"));
        QCOMPARE(result.status, 0);
    }

    void aReaderThatLeavesEndsItQuietly()
    {
        const QString command =
            QStringLiteral("'%1' filter 'order > 0' '%2' | head -1; echo \"${PIPESTATUS[0]}\"")
                .arg(QStringLiteral(TAVOLINE_TAV), QStringLiteral(TAVOLINE_BUILD_DATA "/connected-9.tav"));
        const ToolResult result = runProgram(QStringLiteral("bash"), {QStringLiteral("-c"), command});
        QCOMPARE(result.output, QByteArray("@\n141\n"));
        QCOMPARE(result.errors, QByteArray());
    }

    void theMemoryDoesNotGrowWithTheNumberOfGraphs()
    {
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_TAV), filter("order == 3"));
        const auto mostMemoryAfter = [&](int count) {
            process.write(QByteArray("C~\n").repeated(count) + "Bw\n");
            [&] { QCOMPARE(printedOf(process, 3), QByteArray("Bw\n")); }();
            return mostMemoryOf(process);
        };
        const qint64 before = mostMemoryAfter(100000);
        QVERIFY(before > 0);
        const qint64 after = mostMemoryAfter(1500000);
        QVERIFY2(after - before < 10000, qPrintable(QStringLiteral("%1 %2").arg(before).arg(after)));
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(patience));
    }
};

QTEST_GUILESS_MAIN(TestTavFilter)
#include "tst_tav_filter.moc"
