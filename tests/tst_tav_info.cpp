// tav info: what it tells of a database, and the faults that it finds.

#include "TAVsearchengine.h"
#include "support/toolprocess.h"

#include <QtTest>

namespace
{
QStringList info(const QString &path)
{
    return {QStringLiteral("info"), path};
}

const QString standardInput = QStringLiteral("-");

/// 101 lines, in which %1 is the number of the line, from 0, and %2 another graph each time.
QByteArray lines(const char *form)
{
    QByteArray result;
    for (int number = 0; number < 101; ++number) {
        const QByteArray graph = QByteArray("F??") + char(63 + number % 64) + char(63 + number / 64 * 8);
        result += QByteArray(form).replace("%1", QByteArray::number(number)).replace("%2", graph) + '\n';
    }
    return result;
}
} // namespace

class TestTavInfo : public QObject
{
    Q_OBJECT

private slots:
    void aKnownDatabase()
    {
        const ToolResult result = runTav(info(QStringLiteral(TAVOLINE_EXAMPLES "/connected-8.tav")));
        QCOMPARE(result.output, QByteArray("graphs:         12113\n"
                                           "links:          71258\n"
                                           "smallest graph: 1 vertex, 0 edges: @ (line 1)\n"
                                           "largest graph:  8 vertices, 28 edges: G~~~~{ (line 12113)\n"
                                           "sub-graphs:     0 to 8, 5.88 on average\n"
                                           "super-graphs:   0 to 127, 5.88 on average\n"
                                           "memory:         2.9 MB for the loaded database\n"
                                           "faults:         0\n"));
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void anEmptyDatabase()
    {
        const ToolResult result = runTav(info(standardInput), "\n\r\n");
        QCOMPARE(result.output, QByteArray("graphs:         0\n"
                                           "links:          0\n"
                                           "memory:         0.0 MB for the loaded database\n"
                                           "faults:         0\n"));
        QCOMPARE(result.status, 0);
    }

    void memoryIsThatOfTheProgram()
    {
        // 12 113 records, with their lists as they are in the program: what glibc needs for each block, which is the
        // block and 8 bytes, in units of 16.
        TAVSearchEngine engine;
        engine.setFilename(QStringLiteral(TAVOLINE_EXAMPLES "/connected-8.tav"));
        engine.run();
        qint64 expected = 0;
        const auto block = [](qint64 bytes) { return qMax<qint64>(32, (bytes + 23) / 16 * 16); };
        for (const TAVGraph *graph : engine.records()) {
            expected += sizeof(TAVGraph) + 8 + block(24 + 2 * (graph->getName().size() + 1));
            for (const QList<TAVGraph *> *list : {&graph->subGraphs(), &graph->superGraphs()}) {
                expected += list->isEmpty() ? 0 : block(16 + 8 * list->size());
            }
        }
        engine.eraseDatabase();
        const ToolResult result = runTav(info(QStringLiteral(TAVOLINE_EXAMPLES "/connected-8.tav")));
        const QByteArray line = "memory:         " + QByteArray::number(expected / 1e6, 'f', 1) + " MB";
        QVERIFY2(result.output.contains(line), line.constData());
    }

    void theFirstOfEqualGraphsIsNamed()
    {
        const ToolResult result = runTav(info(standardInput), "\nBG\nBO\nA?\n");
        QVERIFY(result.output.contains("smallest graph: 2 vertices, 0 edges: A? (line 4)\n"));
        QVERIFY(result.output.contains("largest graph:  3 vertices, 1 edge: BG (line 2)\n"));
    }

    void fault_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no graph6") << QByteArray("@\nA\n")
                                   << QByteArray("2: 'A': not graph6: 1 byte where a graph on 2 vertices has 2");
        QTest::newRow("too large") << QByteArray("~??~\n") << QByteArray("1: '~??~': more than 62 vertices");
        QTest::newRow("beyond ASCII") << QByteArray("\xc3\xa9\n")
                                      << QByteArray("1: '\xc3\xa9': not graph6: byte 195 at column 1");
        QTest::newRow("the same name") << QByteArray("@\n\nA_\t0\n@\n")
                                       << QByteArray("4: '@' stands on line 1 already");
        QTest::newRow("later graph") << QByteArray("@\nA_\t2\nBw\n")
                                     << QByteArray(
                                            "2: 2 is not the number of an earlier graph; the program refuses the file");
        QTest::newRow("negative") << QByteArray("@\nA_\t-1\n")
                                  << QByteArray(
                                         "2: -1 is not the number of an earlier graph; the program refuses the file");
        QTest::newRow("itself") << QByteArray("@\nA_\t1\n") << QByteArray("2: 1 is the number of the graph itself");
        QTest::newRow("word") << QByteArray("@\nA_\tx\n") << QByteArray("2: 'x' is no number and counts as 0");
        QTest::newRow("empty field") << QByteArray("@\nA_\t\n") << QByteArray("2: '' is no number and counts as 0");
        QTest::newRow("beyond 32 bits") << QByteArray("@\nA_\t4294967296\n")
                                        << QByteArray("2: '4294967296' is no number and counts as 0");
        QTest::newRow("twice") << QByteArray("@\nA?\nA_\t0\t1\t0\t0\n")
                               << QByteArray("3: 0 stands there more than once");
        QTest::newRow("no name") << QByteArray("@\n\t0\nA_\t0\n") << QByteArray("2: no name; the line is ignored");
    }

    void fault()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(info(standardInput), lines);
        QCOMPARE(result.errors,
                 QByteArray("tav: standard input:" + message + "\ntav: standard input: faults found: 1\n"));
        QVERIFY(result.output.endsWith("faults:         1\n"));
        QCOMPARE(result.status, 1);
    }

    void everyFaultIsTold()
    {
        const ToolResult result = runTav(info(standardInput), "@\nA_\t7\tx\nA_\t0\t2\n");
        QCOMPARE(
            result.errors,
            QByteArray("tav: standard input:2: 7 is not the number of an earlier graph; the program refuses the file\n"
                       "tav: standard input:2: 'x' is no number and counts as 0\n"
                       "tav: standard input:3: 'A_' stands on line 2 already\n"
                       "tav: standard input:3: 2 is the number of the graph itself\n"
                       "tav: standard input: faults found: 4\n"));
    }

    void aHundredFaultsOfEachKindAreTold_data()
    {
        QTest::addColumn<QByteArray>("lines"); // with 101 faults
        QTest::addColumn<QByteArray>("kind");
        QTest::newRow("no name") << QByteArray("\t0\n").repeated(101) << QByteArray("a line without a name");
        QTest::newRow("the same name") << QByteArray("@\n").repeated(102)
                                       << QByteArray("a name that an earlier line has");
        QTest::newRow("no graph6") << lines("x%1")
                                   << QByteArray("a name that is no graph6 string of at most 62 vertices");
        QTest::newRow("word") << "@\n" + lines("%2\tx") << QByteArray("a field that is no number");
        QTest::newRow("later graph") << lines("%2\t1000")
                                     << QByteArray("a number that is not that of an earlier graph");
        QTest::newRow("itself") << lines("%2\t%1") << QByteArray("the number of the graph itself");
        QTest::newRow("twice") << "@\n" + lines("%2\t0\t0\t0")
                               << QByteArray("a number that stands more than once on its line");
    }

    void aHundredFaultsOfEachKindAreTold()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, kind);
        const ToolResult result = runTav(info(standardInput), lines);
        QCOMPARE(result.errors.count('\n'), 102);
        QVERIFY2(result.errors.endsWith("\ntav: standard input: and 1 more: " + kind +
                                        "\ntav: standard input: faults found: 101\n"),
                 result.errors.constData());
        QVERIFY(result.output.endsWith("faults:         101\n"));
        QCOMPARE(result.status, 1);
    }

    void eachKindIsCountedByItself()
    {
        const QByteArray text = "@\n" + QByteArray("\t\n").repeated(100) + "A_" + QByteArray("\t7").repeated(250000) +
                                '\n' + QByteArray("\t\n").repeated(200000);
        const ToolResult result = runTav(info(standardInput), text);
        QCOMPARE(result.errors.count('\n'), 203);
        QVERIFY(result.errors.endsWith(
            "\ntav: standard input:102: 7 is not the number of an earlier graph; the program refuses the file\n"
            "tav: standard input: and 200000 more: a line without a name\n"
            "tav: standard input: and 249900 more: a number that is not that of an earlier graph\n"
            "tav: standard input: faults found: 450100\n"));
        QCOMPARE(result.status, 1);
    }

    void carriageReturnsAreNothing()
    {
        const ToolResult result = runTav(info(standardInput), "@\r\nA\r_\t\r0\r\n");
        QCOMPARE(result.errors, QByteArray());
        QVERIFY(result.output.startsWith("graphs:         2\nlinks:          1\n"));
    }

    void filesThatCannotBeRead()
    {
        ToolResult result = runTav(info(QStringLiteral("/no/such.tav")));
        QCOMPARE(result.errors, QByteArray("tav: /no/such.tav: cannot be opened: No such file or directory\n"));
        QCOMPARE(result.status, 1);
        result = runTav({QStringLiteral("info")});
        QCOMPARE(result.errors,
                 QByteArray("tav: Exactly one database file expected, 0 given.\nTry 'tav info --help'.\n"));
        QCOMPARE(result.status, 2);
    }
};

QTEST_GUILESS_MAIN(TestTavInfo)
#include "tst_tav_info.moc"
