// tav build --base: parts of a database, held against the database that is built at once.

#include "support/endingsignals.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QMap>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <memory>
#include <random>
#include <sys/stat.h>

namespace
{
QStringList build(const QStringList &arguments)
{
    return QStringList{QStringLiteral("build")} + arguments;
}

QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    lines.removeLast();
    return lines;
}

/// The graphs on @p order vertices, as the generator of the nauty package writes them.
QByteArray generate(int order, const QString &option)
{
    return outputOf(QStringLiteral("nauty-geng"), {QStringLiteral("-q"), option, QString::number(order)});
}

/// A database without its numbers: the names of the direct sub-graphs of each graph.
QMap<QByteArray, QList<QByteArray>> subGraphsByName(const QByteArray &database)
{
    QMap<QByteArray, QList<QByteArray>> subGraphs;
    QList<QByteArray> names;
    for (const QByteArray &line : linesOf(database)) {
        const QList<QByteArray> fields = line.split('\t');
        names.append(fields.first());
        QList<QByteArray> below;
        for (const QByteArray &number : fields.mid(1)) {
            below.append(names.at(number.toInt()));
        }
        std::sort(below.begin(), below.end());
        subGraphs.insert(fields.first(), below);
    }
    return subGraphs;
}

/// Divides lines at random into @p count files of random length, some of which may be empty.
QList<QByteArray> shareOut(QList<QByteArray> lines, int count, std::mt19937 &random)
{
    std::shuffle(lines.begin(), lines.end(), random);
    QList<QByteArray> shares;
    for (int i = 1; i < count; ++i) {
        const int length = int(random() % unsigned(lines.size() + 1));
        shares.append(QByteArray());
        for (const QByteArray &line : lines.mid(0, length)) {
            shares.last() += line + '\n';
        }
        lines = lines.mid(length);
    }
    shares.append(lines.isEmpty() ? QByteArray() : lines.join('\n') + '\n');
    return shares;
}

const QByteArray smallBase = "@\nA_\t0\nBW\t1\nBw\t1\n";
const QByteArray madeForms = "A part of base.tav: 4 graphs, their forms made, for there is no base.tav.index.\n";
const QByteArray readForms = "A part of base.tav: 4 graphs, their forms read from base.tav.index.\n";
} // namespace

class TestTavPart : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestFolder> folder;

    ToolResult runHere(const QStringList &arguments, const QByteArray &input = {}) const
    {
        return runTav(arguments, input, folder->path());
    }

    /// Builds a part of base.tav from the graphs @p input.
    ToolResult buildPart(const QByteArray &input, const QStringList &options = {}) const
    {
        return runHere(build(words({"--base", "base.tav"}) + options), input);
    }

    void makeIndex() const { QCOMPARE(runHere(words({"index", "base.tav"})).status, 0); }

private slots:
    void init()
    {
        folder = std::make_unique<TestFolder>();
        folder->write("base.tav", smallBase);
    }

    void aSmallPartByHand()
    {
        // The complete graph, the star and the triangle with a pendant vertex.
        for (const bool isIndexed : {false, true}) {
            const ToolResult result = buildPart("C~\nCF\nCx\n");
            QCOMPARE(result.output, QByteArray("CF\t2\nCx\t2\t3\nC~\t3\n"));
            QCOMPARE(result.errors,
                     "3 graphs and 4 links; 0 isomorphic repetitions dropped.\n" + (isIndexed ? readForms : madeForms));
            QCOMPARE(result.status, 0);
            makeIndex();
        }
    }

    void theSameByEdges()
    {
        // The base has three vertices without an edge, and the path on them.
        folder->write("base.tav", "B?\nBW\n");
        const ToolResult result = buildPart("Bw\nBG\n", words({"--relation", "edge"}));
        QCOMPARE(result.output, QByteArray("BG\t0\nBw\t1\n"));
    }

    void whatIsBetweenTheLinesOfTheBaseHasNoNumber()
    {
        folder->write("base.tav", "\n@\r\n\t7\n\nA_\t0\nB\rW\t1\n");
        QCOMPARE(buildPart("CF\n").output, QByteArray("CF\t2\n"));
        makeIndex();
        QCOMPARE(buildPart("CF\n").output, QByteArray("CF\t2\n"));
    }

    void ofIsomorphicGraphsOfTheBaseTheFirstIsLinked()
    {
        folder->write("base.tav", "@\nBo\nBW\nBg\n");
        QCOMPARE(buildPart("CF\n").output, QByteArray("CF\t1\n"));
    }

    void aBaseWithoutTheLevelBelow()
    {
        folder->write("base.tav", "@\n");
        QCOMPARE(buildPart("CF\nC~\n").output, QByteArray("CF\nC~\n"));
        folder->write("base.tav", "");
        const ToolResult result = buildPart("@\nCF\n");
        QCOMPARE(result.output, QByteArray("@\nCF\n"));
        QVERIFY(result.errors.contains("A part of base.tav: 0 graphs, "));
    }

    void theGraphWithoutVertices()
    {
        QCOMPARE(buildPart("?\n").output, QByteArray("?\n"));
        QCOMPARE(buildPart("?\n", words({"--relation", "edge"})).output, QByteArray("?\n"));
    }

    void aSparse6NameInTheBase()
    {
        folder->write("base.tav", "@\n:BoN\n"); // the path on three vertices
        QCOMPARE(buildPart("CF\n").output, QByteArray("CF\t1\n"));
        QCOMPARE(buildPart("BW\n").errors,
                 QByteArray("tav: standard input:1: base.tav holds the graph already, with the number 1\n"));
    }

    void repetitionsAreDropped()
    {
        const ToolResult result = buildPart("CF\nC~\nCs\nC~\n");
        QCOMPARE(result.output, QByteArray("CF\t2\nC~\t3\n"));
        QVERIFY2(result.errors.startsWith("2 graphs and 2 links; 2 isomorphic repetitions dropped.\n"),
                 result.errors.constData());
        folder->write("part.g6", "\nC~\nCF\nCs\n");
        const ToolResult strict =
            runHere(build(words({"--base", "base.tav", "--strict", "-o", "part.tav", "part.g6"})));
        QCOMPARE(strict.errors, QByteArray("tav: part.g6:4: isomorphic to the graph of part.g6:3\n"));
        QCOMPARE(strict.status, 1);
        QVERIFY(!QFile::exists(folder->path("part.tav")));
    }

    void disconnectedGraphsAreLeftOut()
    {
        const ToolResult result = buildPart("C?\nCF\n", words({"--connected"}));
        QCOMPARE(result.output, QByteArray("CF\t2\n"));
        QVERIFY(result.errors.startsWith("1 graph and 1 link; 0 isomorphic repetitions dropped, "
                                         "1 disconnected graph left out.\nA part of "));
    }

    void whatABaseRefuses_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("a graph that it holds")
            << QStringList() << QByteArray("CF\n\nBo\n")
            << QByteArray("part.g6:3: base.tav holds the graph already, with the number 2");
        QTest::newRow("the first of several")
            << QStringList() << QByteArray("A_\nA_\n@\n")
            << QByteArray("part.g6:3: base.tav holds the graph already, with the number 0");
        QTest::newRow("a sub-graph in the same part")
            << QStringList() << QByteArray("D?{\nC~\nCF\n")
            << QByteArray("part.g6:1: the graph of part.g6:3 is a sub-graph of it, and base.tav does not hold it");
        QTest::newRow("a sub-graph behind a repetition")
            << QStringList() << QByteArray("C~\nC~\nCF\nCs\nCF\nD~{\n")
            << QByteArray("part.g6:6: the graph of part.g6:1 is a sub-graph of it, and base.tav does not hold it");
        QTest::newRow("a sub-graph without an edge")
            << words({"--relation", "edge"}) << QByteArray("C~\nC^\n")
            << QByteArray("part.g6:1: the graph of part.g6:2 is a sub-graph of it, and base.tav does not hold it");
    }

    void whatABaseRefuses()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, message);
        folder->write("part.g6", input);
        folder->write("part.tav", "old");
        for (const char *jobs : {"1", "2", "5"}) {
            const ToolResult result =
                runHere(build(options + words({"--base", "base.tav", "-o", "part.tav", "-j", jobs, "part.g6"})));
            QCOMPARE(result.errors, "tav: " + message + "\n");
            QCOMPARE(result.status, 1);
            QCOMPARE(contents(folder->path("part.tav")), QByteArray("old"));
        }
    }

    void aSubGraphInTheBaseAndOneInThePart()
    {
        // Above the triangle with a pendant vertex, in the base, and the complete graph on four vertices.
        folder->write("base.tav", smallBase + "Cx\t2\t3\n");
        QCOMPARE(buildPart("D~_\n").output, QByteArray("D~_\t4\n"));
        folder->write("part.g6", "D~_\nC~\n");
        QCOMPARE(runHere(build(words({"--base", "base.tav", "part.g6"}))).errors,
                 QByteArray("tav: part.g6:1: the graph of part.g6:2 is a sub-graph of it, and base.tav does not hold "
                            "it\n"));
    }

    void graphsOfTwoOrdersThatAreNotLinked()
    {
        // The triangle-free graph on five vertices does not have the complete graph on four as a sub-graph.
        QCOMPARE(buildPart("C~\nDhc\n").output, QByteArray("C~\t3\nDhc\n"));
    }

    void badBases_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("missing") << QStringLiteral("missing")
                                 << QByteArray("missing: cannot be opened: No such file or directory");
        QTest::newRow("folder") << QStringLiteral("folder") << QByteArray("folder: cannot be opened: Is a directory");
        QTest::newRow("pipe") << QStringLiteral("pipe") << QByteArray("pipe: cannot be opened: Not a regular file");
        QTest::newRow("no database") << QStringLiteral("bad.tav")
                                     << QByteArray("bad.tav:2: not graph6: 3 bytes where a graph on 2 vertices has 2");
        QTest::newRow("a file as a folder")
            << QStringLiteral("bad.tav/x") << QByteArray("bad.tav/x: cannot be opened: Not a directory");
        QTest::newRow("missing beside its index")
            << QStringLiteral("gone.tav") << QByteArray("gone.tav: cannot be opened: No such file or directory");
    }

    void badBases()
    {
        QFETCH(QString, base);
        QFETCH(QByteArray, message);
        QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("folder")));
        QCOMPARE(::mkfifo(QFile::encodeName(folder->path("pipe")).constData(), 0600), 0);
        folder->write("bad.tav", "@\nA__\n");
        folder->write("gone.tav.index", "tavforms");
        const ToolResult result = runHere(build({QStringLiteral("--base"), base}), "CF\n");
        QCOMPARE(result.errors, "tav: " + message + "\n");
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
    }

    /// The numbers of a part count from the base. Taken for those of a base, they would lead to wrong graphs.
    void aPartIsNoBase()
    {
        folder->write("part.tav", buildPart("CF\nC~\n").output);
        const ToolResult result = runHere(build(words({"--base", "part.tav", "-o", "above.tav"})), "D~{\n");
        QCOMPARE(result.errors,
                 QByteArray("tav: part.tav:1: '2' is not the number of an earlier graph; a part alone is no base, but "
                            "base and part one behind the other are\n"));
        QCOMPARE(result.status, 1);
        QVERIFY(!QFile::exists(folder->path("above.tav")));
        folder->write("base.tav", smallBase + contents(folder->path("part.tav")));
        QCOMPARE(buildPart("D~{\n").output, QByteArray("D~{\t5\n"));
    }

    void basesThatAreNone_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("standard input") << QStringLiteral("-")
                                        << QByteArray(
                                               "The database is read twice and cannot come from standard input.");
        QTest::newRow("no name") << QString() << QByteArray("The name of the database file is empty.");
    }

    void basesThatAreNone()
    {
        QFETCH(QString, base);
        QFETCH(QByteArray, message);
        const ToolResult result = runHere(build({QStringLiteral("--base"), base}), "CF\n");
        QCOMPARE(result.errors, "tav: " + message + "\nTry 'tav build --help'.\n");
        QCOMPARE(result.status, 2);
    }

    void theIndexIsNotTheOutput()
    {
        for (const bool isIndexed : {false, true}) {
            const QStringList before = folder->files();
            const ToolResult result = buildPart("CF\n", words({"-o", "./base.tav.index"}));
            QCOMPARE(result.errors,
                     QByteArray("tav: base.tav.index would be read and written at once.\nTry 'tav build --help'.\n"));
            QCOMPARE(result.status, 2);
            QCOMPARE(folder->files(), before);
            if (!isIndexed) {
                makeIndex();
            }
        }
        QVERIFY(buildPart("CF\n").errors.endsWith(readForms));
    }

    void theBaseIsNotTheOutput()
    {
        const ToolResult result = buildPart("CF\n", words({"-o", "./base.tav"}));
        QCOMPARE(result.errors,
                 QByteArray("tav: base.tav would be read and written at once.\nTry 'tav build --help'.\n"));
        QCOMPARE(result.status, 2);
        QCOMPARE(contents(folder->path("base.tav")), smallBase);
    }

    void badIndexes_data()
    {
        QTest::addColumn<QByteArray>("index");
        QTest::addColumn<QByteArray>("message");
        folder = std::make_unique<TestFolder>();
        folder->write("base.tav", smallBase);
        makeIndex();
        const QByteArray good = contents(folder->path("base.tav.index"));
        const QByteArray damaged = "damaged; 'tav index' makes it anew";
        QTest::newRow("empty") << QByteArray() << damaged;
        QTest::newRow("five bytes") << good.left(5) << damaged;
        QTest::newRow("the database") << smallBase << QByteArray("not the index of a database");
        QTest::newRow("a header only") << good.left(100) << damaged;
        QTest::newRow("half") << good.left(good.size() / 2) << damaged;
        QTest::newRow("one byte less") << good.chopped(1) << damaged;
        QTest::newRow("one byte more") << good + '\0' << damaged;
        QTest::newRow("version 2") << QByteArray(good).replace(12, 1, "\x02")
                                   << QByteArray("an index of version 2, not 1; 'tav index' makes it anew");
        QTest::newRow("another nauty") << QByteArray(good).replace(16, 1, "\x02")
                                       << QByteArray("made with another version of nauty; 'tav index' makes it anew");
        QTest::newRow("turned round") << QByteArray(good).replace(8, 4, "\x01\x02\x03\x04")
                                      << QByteArray("made on a machine with another order of bytes; "
                                                    "'tav index' makes it anew");
        for (int place = 20; place < good.size(); place += 7) {
            QByteArray flipped = good;
            flipped[place] = char(flipped.at(place) ^ (1 << place % 8));
            QTest::newRow(("byte " + QByteArray::number(place)).constData()) << flipped << damaged;
        }
    }

    void badIndexes()
    {
        QFETCH(QByteArray, index);
        QFETCH(QByteArray, message);
        folder->write("base.tav.index", index);
        folder->write("part.tav", "old");
        const ToolResult result = buildPart("CF\n", words({"-o", "part.tav"}));
        QCOMPARE(result.errors, "tav: base.tav.index: " + message + "\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(folder->path("part.tav")), QByteArray("old"));
    }

    void anIndexThatCannotBeRead()
    {
        QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("base.tav.index")));
        QCOMPARE(buildPart("CF\n").errors, QByteArray("tav: base.tav.index: cannot be opened: Is a directory\n"));
    }

    void aBaseThatIsNotThatOfTheIndex_data()
    {
        QTest::addColumn<QByteArray>("base");
        QTest::newRow("longer") << smallBase + "C~\t3\n";
        QTest::newRow("shorter") << QByteArray("@\nA_\t0\n");
        QTest::newRow("as long") << QByteArray("@\nA_\t0\nBW\t1\nB?\t1\n");
        QTest::newRow("in another order") << QByteArray("@\nA_\t0\nBw\t1\nBW\t1\n");
        QTest::newRow("empty") << QByteArray();
    }

    void aBaseThatIsNotThatOfTheIndex()
    {
        QFETCH(QByteArray, base);
        makeIndex();
        folder->write("base.tav", base);
        const ToolResult result = buildPart("CF\n");
        QCOMPARE(
            result.errors,
            QByteArray("tav: base.tav.index: not the index of base.tav as it is now; 'tav index' makes it anew\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
        makeIndex();
        QCOMPARE(buildPart("CF\n").status, 0);
    }

    void anIndexThatIsReplacedMeanwhile()
    {
        // The process has mapped the old file, which stays until it ends.
        makeIndex();
        QProcess process;
        process.setWorkingDirectory(folder->path());
        process.start(QStringLiteral(TAVOLINE_TAV), build(words({"--base", "base.tav"})));
        process.write("CF\n");
        QTRY_VERIFY_WITH_TIMEOUT(
            contents(QStringLiteral("/proc/%1/maps").arg(process.processId())).contains("base.tav.index"), patience);
        folder->write("other", "no index");
        QCOMPARE(::rename(QFile::encodeName(folder->path("other")).constData(),
                          QFile::encodeName(folder->path("base.tav.index")).constData()),
                 0);
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.readAllStandardOutput(), QByteArray("CF\t2\n"));
    }

    void partsAndBaseAreTheWhole_data()
    {
        QTest::addColumn<QString>("relation");
        QTest::addColumn<QString>("option");
        QTest::newRow("connected, one vertex less") << QStringLiteral("vertex") << QStringLiteral("-c");
        QTest::newRow("all, one edge less") << QStringLiteral("edge") << QStringLiteral("-l");
    }

    /// Level by level: the parts of a level are made from the database of those below, and go behind it.
    void partsAndBaseAreTheWhole()
    {
        QFETCH(QString, relation);
        QFETCH(QString, option);
        std::mt19937 random(77);
        const QStringList how = {QStringLiteral("--relation"), relation};
        QByteArray all;
        QMap<QPair<int, int>, QList<QByteArray>> levels;
        for (int order = 1; order <= 7; ++order) {
            const QByteArray graphs = generate(order, option);
            all += graphs;
            for (const QByteArray &graph : linesOf(graphs)) {
                int size = 0;
                for (const char byte : graph.mid(1)) {
                    size += int(qPopulationCount(quint8(byte - 63)));
                }
                levels[{order, relation == QLatin1String("edge") ? size : 0}].append(graph);
            }
        }
        folder->write("base.tav", "");
        for (const QList<QByteArray> &level : qAsConst(levels)) {
            QByteArray parts;
            makeIndex();
            for (const QByteArray &share : shareOut(level, 1 + int(random() % 5), random)) {
                if (!share.isEmpty()) {
                    const ToolResult result = buildPart(share, how);
                    QVERIFY2(result.errors.endsWith(" their forms read from base.tav.index.\n"),
                             result.errors.constData());
                    parts += result.output;
                    QCOMPARE(result.output.count('\n'), share.count('\n'));
                }
            }
            folder->write("base.tav", contents(folder->path("base.tav")) + parts);
        }
        const QByteArray inParts = contents(folder->path("base.tav"));
        const QByteArray whole = runHere(build(how), all).output;
        QCOMPARE(inParts.count('\n'), all.count('\n'));
        QVERIFY(subGraphsByName(inParts) == subGraphsByName(whole));
        const ToolResult info = runHere(words({"info", "base.tav"}));
        QCOMPARE(info.errors, QByteArray());
        QVERIFY(info.output.endsWith("\nfaults:         0\n"));
    }

    void theNumberOfProcessorsAndTheIndexDoNotMatter()
    {
        folder->write("base.tav",
                      runHere(build({}), generate(6, QStringLiteral("-c")) + generate(7, QStringLiteral("-c"))).output);
        const QByteArray input = generate(8, QStringLiteral("-c"));
        const QByteArray expected = buildPart(input, words({"-j", "1"})).output;
        QCOMPARE(expected.count('\n'), 11117);
        makeIndex();
        for (const char *jobs : {"1", "2", "7"}) {
            QVERIFY(buildPart(input, words({"-j", jobs})).output == expected);
        }
    }

    void invariantsOfAPart()
    {
        folder->write("part.tav", buildPart("CF\nC~\n").output);
        QCOMPARE(runHere(words({"invariant", "size", "part.tav"})).output, QByteArray("GRAPH\tINV1\nCF\t3\nC~\t6\n"));
    }

    void aDiskThatFillsUp()
    {
        folder->write("part.tav", "old");
        folder->write("graphs.g6", generate(8, QStringLiteral("-c")));
        const QStringList before = folder->files();
        const ToolResult result = runProgram(
            QStringLiteral("sh"),
            {QStringLiteral("-c"), QStringLiteral("ulimit -f 16; exec '%1' build --base base.tav -o part.tav graphs.g6")
                                       .arg(QStringLiteral(TAVOLINE_TAV))},
            {}, folder->path());
        QCOMPARE(result.errors, QByteArray("tav: part.tav: cannot be written: File too large\n"));
        QCOMPARE(contents(folder->path("part.tav")), QByteArray("old"));
        QCOMPARE(folder->files(), before);
    }

    void aSignalLeavesNothing_data()
    {
        addEndingSignals();
        QTest::newRow("killed") << SIGKILL;
    }

    void aSignalLeavesNothing()
    {
        QFETCH(int, number);
        folder->write("graphs.g6", generate(9, QStringLiteral("-c")));
        QProcess process;
        process.setWorkingDirectory(folder->path());
        process.start(QStringLiteral(TAVOLINE_TAV),
                      build(words({"--base", "base.tav", "-j", "1", "-o", "part.tav", "graphs.g6"})));
        // The only file that is open then is the new one.
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                const QStringList open = openFilesIn(process.processId(), folder->path());
                return open.size() == 1 && !open.first().endsWith(QLatin1String(".g6"));
            }(),
            patience);
        ::kill(pid_t(process.processId()), number);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QVERIFY(!QFile::exists(folder->path("part.tav")));
    }
};

QTEST_GUILESS_MAIN(TestTavPart)
#include "tst_tav_part.moc"
