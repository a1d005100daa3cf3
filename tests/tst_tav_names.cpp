// tav names: the names that a database has for graphs which are written otherwise.

#include "support/literals.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

namespace
{
QStringList names(const QStringList &arguments)
{
    return QStringList{QStringLiteral("names")} + arguments;
}

/// The same graphs in the same order, with their vertices in a random order.
QByteArray relabelled(const QByteArray &graphs)
{
    return outputOf(QStringLiteral("nauty-ranlabg"), words({"-q", "-S16"}), graphs);
}

/// The names of a database.
QByteArray namesIn(const QString &database)
{
    QByteArray lines;
    for (const QByteArray &line : contents(database).split('\n')) {
        if (!line.isEmpty()) {
            lines += line.split('\t').first() + '\n';
        }
    }
    return lines;
}

const QByteArray usage = "Try 'tav names --help'.\n";
} // namespace

class TestTavNames : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(QFile::remove(database) || !QFile::exists(database)); }

    void byHand()
    {
        write(database, "@\nA_\t0\nBW\t1\nBw\t1\nCF\t2\n");
        // A star with its centre first, a path, no edge, the star again, the cycle on four vertices, the path again.
        const ToolResult result = runTav(names({database}), "Cs\nBg\nA?\nCs\nCl\nBo\n");
        QCOMPARE(result.output, QByteArray("CF\nBW\n-\nCF\n-\nBW\n"));
        QCOMPARE(result.errors, QByteArray("tav: standard input:3: the database does not hold 'A?', nor 1 other of the "
                                           "list\n"));
        QCOMPARE(result.status, 0);
    }

    void oneThatIsMissing()
    {
        write(database, "@\nA_\t0\n");
        const QString list = folder.write("list.g6", "A_\n\nBw\n");
        const ToolResult result = runTav(names({database, list}));
        QCOMPARE(result.output, QByteArray("A_\n-\n"));
        QCOMPARE(result.errors, "tav: " + list.toUtf8() + ":3: the database does not hold 'Bw'\n");
        QCOMPARE(result.status, 0);
        write(list, "Bw\nA_\nBw\nA?\n");
        QVERIFY(runTav(names({database, list}))
                    .errors.endsWith(":1: the database does not hold 'Bw', nor 2 others of "
                                     "the list\n"));
    }

    void strict()
    {
        write(database, "@\nA_\t0\n");
        const QString output = folder.write("output", "old");
        const ToolResult result =
            runTav(names({QStringLiteral("--strict"), QStringLiteral("-o"), output, database}), "A_\nBw\n@\nA?\n");
        QCOMPARE(result.errors, QByteArray("tav: standard input:2: the database does not hold 'Bw'\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(output), QByteArray("old"));
        const ToolResult held =
            runTav(names({QStringLiteral("--strict"), QStringLiteral("-o"), output, database}), "A_\n@\n");
        QCOMPARE(held.errors, QByteArray());
        QCOMPARE(held.status, 0);
        QCOMPARE(contents(output), QByteArray("A_\n@\n"));
    }

    /// Every graph of a database, its vertices in another order.
    void aWholeDatabase()
    {
        const QString large = example("connected-8.tav");
        const QByteArray expected = namesIn(large);
        const QByteArray foreign = relabelled(expected);
        QCOMPARE(foreign.count('\n'), 12113);
        QVERIFY(foreign != expected);
        for (const char *jobs : {"1", "2", "5"}) {
            const ToolResult result =
                runTav(names({QStringLiteral("-j"), QLatin1String(jobs), QStringLiteral("--strict"), large}), foreign);
            QVERIFY(result.output == expected);
            QCOMPARE(result.errors, QByteArray());
        }
    }

    /// More names than are compared at a time, the graph in question last.
    void aLargeDatabase()
    {
        const QString large = QStringLiteral(TAVOLINE_BUILD_DATA "/connected-9.tav");
        QCOMPARE(runTav(names({large}), "H~~~~~~\nH~~~~~z\n@\n").output, QByteArray("H~~~~~~\nH^~~~~~\n@\n"));
    }

    /// In these graphs all vertices look alike: only their canonical forms tell them apart.
    void regularGraphs()
    {
        write(database, "EUxo\nEEh_\n"); // the prism and the cycle on six vertices
        // Two triangles, the cycle otherwise, the complete bipartite graph, the prism otherwise.
        const QByteArray cycle = relabelled("EEh_\n");
        const QByteArray prism = relabelled("EUxo\n");
        QCOMPARE(runTav(names({database}), "EwCW\n" + cycle + "EFz_\n" + prism).output,
                 QByteArray("-\nEEh_\n-\nEUxo\n"));
    }

    void theFirstOfSeveralNames()
    {
        write(database, "Bg\nBW\nBo\n");
        QCOMPARE(runTav(names({database}), "BW\nBo\n").output, QByteArray("Bg\nBg\n"));
    }

    void bothFormats()
    {
        write(database, ":An\t0\r\nBw\n");
        QCOMPARE(runTav(names({database}), ">>sparse6<<:BcN\nA_\n").output, QByteArray("Bw\n:An\n"));
        write(database, ">>graph6<<A_\n>>graph6<<\n>>sparse6<<:BcN\t0\n");
        QCOMPARE(runTav(names({database}), "Bw\nA_\n").output, QByteArray(":BcN\nA_\n"));
        QCOMPARE(runTav(names({QStringLiteral("-"), folder.write("list", "A_\n")}), "@\nA_\t0\n").output,
                 QByteArray("A_\n"));
    }

    void anEmptyList()
    {
        write(database, "@\n");
        const ToolResult result = runTav(names({QStringLiteral("--strict"), database}), "\n");
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void faults_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *title, const char *lines, const char *list, const char *message) {
            QTest::newRow(title) << QByteArray(lines) << QByteArray(list) << QByteArray(message);
        };
        row("a name", "@\nPetersen graph\t0\nx\n", "@\n",
            "DATABASE:2: the name 'Petersen graph' is no graph: not graph6: byte 32 at column 9");
        row("no names", "\n\t1\n", "@\n", "DATABASE:1: the database holds no graph");
        row("a line of the list", "@\n", "@\nx\n",
            "standard input:2: not graph6: 1 byte where a graph on 57 vertices has 267");
        row("another format", "@\n", "0 1\n",
            "standard input:1: not graph6: byte 48 at column 1; this looks like an edge list, which Python's networkx "
            "converts (read_edgelist, write_graph6)");
    }

    void faults()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, list);
        QFETCH(QByteArray, message);
        write(database, lines);
        const ToolResult result = runTav(names({database}), list);
        QCOMPARE(result.errors, "tav: " + message.replace("DATABASE", database.toUtf8()) + '\n');
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no database") << QStringList() << QByteArray("No database given.");
        QTest::newRow("two lists") << words({"a", "b", "c"}) << QByteArray("Unexpected argument 'c'.");
        QTest::newRow("standard input twice")
            << words({"-"}) << QByteArray("Standard input cannot be both the database and the list.");
        QTest::newRow("the same said") << words({"-", "-"})
                                       << QByteArray("Standard input cannot be both the database and the list.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(names(arguments), "@\n");
        QCOMPARE(result.errors, "tav: " + message + '\n' + usage);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 2);
    }

private:
    TestFolder folder;
    const QString database = folder.path("graphs.tav");
};

QTEST_GUILESS_MAIN(TestTavNames)
#include "tst_tav_names.moc"
