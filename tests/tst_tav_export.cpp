// tav export: the rows of the tables, their manifest, and that they are complete or absent.

#include "manifest.h"
#include "outputfolder.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"
#include "support/watchedcalls.h"

#include <QDir>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <sys/types.h>

namespace
{
/// A link twice, a link to itself, links inside an order and over two levels, a line without a name.
const QByteArray oddDatabase = "@\r\n"
                               "\t0\n"
                               "A_\t0\t0\n"
                               "A?\t1\t2\n"
                               "n\xc3\xa4me\t2\tx\t1";
} // namespace

class TestTavExport : public QObject
{
    Q_OBJECT

private slots:
    void init() { folder = std::make_unique<TestFolder>(); }

    void everyRow()
    {
        folder->write("odd.tav", oddDatabase);
        const ToolResult result = exportTables({QStringLiteral("odd.tav")});
        QCOMPARE(result.errors, QByteArray("tav: 4 graphs, 7 links, 4 levels\n"));
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 0);
        QCOMPARE(table("graphs/part-0001.tsv"), QByteArray("0\t0\t0\t@\t\n"
                                                           "1\t1\t0\tA_\t0,0\n"
                                                           "2\t2\t1\tA?\t1,2\n"
                                                           "3\t3\t0\tn\xc3\xa4me\t2,0,1\n"));
        QCOMPARE(filesIn(folder->path("tables")), words({"graphs", "manifest.json"}));
        const Manifest manifest = readManifest(folder->path("tables"));
        QCOMPARE(manifest.databases, words({"odd.tav"}));
        QCOMPARE(manifest.parts, 1);
        QCOMPARE(manifest.graphs, 4);
        QCOMPARE(manifest.links, 7);
        QVERIFY(!manifest.isRegular);
        QVERIFY(manifest.hasLoops);
        QVERIFY(manifest.isPlain16);
        const std::vector<LevelSummary> levels = {{1, 0, 0}, {1, 1, 1}, {1, 2, 2}, {1, 3, 3}};
        QVERIFY(manifest.levels == levels);
        QVERIFY(manifest.values.empty());
    }

    void whatTheManifestTells()
    {
        folder->write("regular.tav", "@\nA_\t0\nA?\t0\t0\nBw\t1\n");
        QCOMPARE(exportTables({QStringLiteral("regular.tav")}).status, 0);
        Manifest manifest = readManifest(folder->path("tables"));
        QVERIFY(manifest.isRegular);
        QVERIFY(!manifest.hasLoops);
        const std::vector<LevelSummary> levels = {{1, 0, 0}, {2, 1, 2}, {1, 3, 3}};
        QVERIFY(manifest.levels == levels);

        folder->write("wide.tav", "@\n\xf0\x9f\x98\x80\t0\nA_\t0\n");
        QCOMPARE(exportTables({QStringLiteral("wide.tav")}, QStringLiteral("wide")).status, 0);
        manifest = readManifest(folder->path("wide"));
        QVERIFY(manifest.isRegular);
        QVERIFY(!manifest.isPlain16);

        // A link over two levels, none of a graph to itself.
        folder->write("skipping.tav", "@\nA_\t0\nBw\t1\t0\n");
        QCOMPARE(exportTables({QStringLiteral("skipping.tav")}, QStringLiteral("skipping")).status, 0);
        manifest = readManifest(folder->path("skipping"));
        QVERIFY(!manifest.isRegular);
        QVERIFY(!manifest.hasLoops);
    }

    void valuesAsTheWindowReadsThem()
    {
        folder->write("odd.tav", oddDatabase);
        folder->write("a.txt", "GRAPH\tINV1\n@\t0.1\textra\nA_\tNA\r\nA?\t1e3\nn\xc3\xa4me\t-inf\nbehind\t1\n");
        folder->write("b.txt", "\n@\tnan\nA_\t1e-8\nA?\t \nn\xc3\xa4me\t0.30000000000000004\n");
        const ToolResult result =
            exportTables({QStringLiteral("--values"), QStringLiteral("a.txt"), QStringLiteral("--values"),
                          QStringLiteral("./b.txt"), QStringLiteral("odd.tav")});
        QCOMPARE(result.status, 0);
        QCOMPARE(table("values-1/part-0001.tsv"), QByteArray("0\t0\t0.1\n2\t2\t1000\n3\t3\t-inf\n"));
        QCOMPARE(table("values-2/part-0001.tsv"), QByteArray("0\t0\tnan\n1\t1\t1e-08\n3\t3\t0.30000000000000004\n"));
        const Manifest manifest = readManifest(folder->path("tables"));
        QCOMPARE(int(manifest.values.size()), 2);
        QCOMPARE(manifest.values[0].file, QStringLiteral("a.txt"));
        QVERIFY(!manifest.values[0].areOrdinary);
        QVERIFY(!manifest.values[0].hasTiny);
        QCOMPARE(manifest.values[1].file, QStringLiteral("b.txt"));
        QVERIFY(!manifest.values[1].areOrdinary);
        QVERIFY(manifest.values[1].hasTiny);
    }

    void computedValues()
    {
        folder->write("small.tav", "@\nA_\t0\nBw\t1\n");
        const ToolResult result = exportTables(
            {QStringLiteral("--compute"), QStringLiteral("size  / (order - 1)"), QStringLiteral("small.tav")});
        QCOMPARE(result.status, 0);
        QCOMPARE(table("values-1/part-0001.tsv"), QByteArray("1\t1\t1\n2\t2\t1.5\n"));
        const Manifest manifest = readManifest(folder->path("tables"));
        QCOMPARE(manifest.values[0].expression, QStringLiteral("size / (order - 1)"));
        QVERIFY(manifest.values[0].areOrdinary);
        QVERIFY(!manifest.values[0].hasTiny);
    }

    void sameExpressionTwice()
    {
        folder->write("small.tav", "@\nA_\t0\n");
        QCOMPARE(exportTables(words({"--compute", "size + order", "--compute", "order", "--compute", " size +  order",
                                     "small.tav"}))
                     .status,
                 0);
        const Manifest manifest = readManifest(folder->path("tables"));
        QCOMPARE(int(manifest.values.size()), 2);
        QCOMPARE(manifest.values[1].expression, QStringLiteral("order"));
        QCOMPARE(table("values-2/part-0001.tsv"), QByteArray("0\t0\t1\n1\t1\t2\n"));
    }

    void partsAreTheWhole()
    {
        const QStringList files = {QStringLiteral("--values"), example("connected-8.girth.txt"),
                                   example("connected-8.tav")};
        QCOMPARE(exportTables(files).status, 0);
        QCOMPARE(
            exportTables(QStringList{QStringLiteral("--parts"), QStringLiteral("3")} + files, QStringLiteral("parted"))
                .status,
            0);
        QCOMPARE(readManifest(folder->path("parted")).parts, 3);
        for (const char *name : {"graphs", "values-1"}) {
            QByteArray joined;
            QByteArrayList firstRows;
            for (int part = 1; part <= 3; ++part) {
                const QByteArray rows = contents(
                    folder->path(QStringLiteral("parted/%1/part-000%2.tsv").arg(QLatin1String(name)).arg(part)));
                QVERIFY2(rows.size() > 20000, name);
                joined += rows;
            }
            QCOMPARE(joined, table(QByteArray(name) + "/part-0001.tsv"));
        }
        // The graphs are the same in a part of both tables.
        const auto firstId = [&](const char *name) { return contents(folder->path(name)).split('\t').first().toInt(); };
        QVERIFY(firstId("parted/values-1/part-0002.tsv") >= firstId("parted/graphs/part-0002.tsv"));
    }

    void morePartsThanGraphs()
    {
        folder->write("small.tav", "@\nA_\t0\n");
        folder->write("v.txt", "\n@\tNA\nA_\t7\n");
        QCOMPARE(exportTables({QStringLiteral("--parts"), QStringLiteral("5"), QStringLiteral("--values"),
                               QStringLiteral("v.txt"), QStringLiteral("small.tav")})
                     .status,
                 0);
        QByteArray graphs;
        QByteArray values;
        for (int part = 1; part <= 5; ++part) {
            graphs += table(QByteArray("graphs/part-000") + QByteArray::number(part) + ".tsv");
            values += table(QByteArray("values-1/part-000") + QByteArray::number(part) + ".tsv");
        }
        QCOMPARE(graphs, QByteArray("0\t0\t0\t@\t\n1\t1\t0\tA_\t0\n"));
        QCOMPARE(values, QByteArray("1\t1\t7\n"));
        readManifest(folder->path("tables")); // throws when it does not fit
    }

    void filesOneBehindTheOther()
    {
        folder->write("base.tav", "@\nA_\t0\n");
        folder->write("part.tav", "Bw\t1\nBo\t1\t1\n");
        folder->write("whole.tav", "@\nA_\t0\nBw\t1\nBo\t1\t1\n");
        QCOMPARE(exportTables({QStringLiteral("base.tav"), QStringLiteral("part.tav")}).status, 0);
        QCOMPARE(exportTables({QStringLiteral("whole.tav")}, QStringLiteral("whole")).status, 0);
        QCOMPARE(table("graphs/part-0001.tsv"), contents(folder->path("whole/graphs/part-0001.tsv")));
        QCOMPARE(readManifest(folder->path("tables")).databases, words({"base.tav", "part.tav"}));
    }

    void longChain()
    {
        constexpr int mostLinks = 32767;
        QByteArray chain = "g\n";
        for (int position = 1; position <= mostLinks; ++position) {
            chain += "g\t" + QByteArray::number(position - 1) + '\n';
        }
        folder->write("chain.tav", chain);
        QCOMPARE(exportTables({QStringLiteral("chain.tav")}).status, 0);
        QCOMPARE(int(readManifest(folder->path("tables")).levels.size()), mostLinks + 1);
        folder->write("chain.tav", chain + "g\t" + QByteArray::number(mostLinks) + '\n');
        QCOMPARE(exportTables({QStringLiteral("chain.tav")}, QStringLiteral("more")).errors,
                 QByteArray("tav: chain.tav:32769: a chain of more than 32767 links ends here\n"));
    }

    /// Questions take a detour where a table has such values, and only there.
    void kindsOfValues_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<bool>("isOrdinary");
        QTest::addColumn<bool>("isTiny");
        QTest::newRow("zero") << QByteArray("0") << QByteArray("0") << true << false;
        QTest::newRow("zero below") << QByteArray("-0") << QByteArray("-0") << true << false;
        QTest::newRow("NaN") << QByteArray("nan") << QByteArray("nan") << false << false;
        QTest::newRow("infinite") << QByteArray("inf") << QByteArray("inf") << false << false;
        QTest::newRow("sums are finite") << QByteArray("9e289") << QByteArray("9e+289") << true << false;
        QTest::newRow("sums may be infinite") << QByteArray("-1e290") << QByteArray("-1e+290") << false << false;
        QTest::newRow("tiny") << QByteArray("-1.19e-7") << QByteArray("-1.19e-07") << true << true;
        QTest::newRow("not tiny") << QByteArray("1.2e-7") << QByteArray("1.2e-07") << true << false;
    }

    void kindsOfValues()
    {
        QFETCH(QByteArray, value);
        QFETCH(QByteArray, written);
        QFETCH(bool, isOrdinary);
        QFETCH(bool, isTiny);
        folder->write("d.tav", "@\nA_\t0\n");
        folder->write("v.txt", "\n@\t1\nA_\t" + value + '\n');
        QCOMPARE(exportTables(words({"--values", "v.txt", "d.tav"})).status, 0);
        QCOMPARE(table("values-1/part-0001.tsv"), "0\t0\t1\n1\t1\t" + written + '\n');
        const ValueSource values = readManifest(folder->path("tables")).values.front();
        QCOMPARE(values.areOrdinary, isOrdinary);
        QCOMPARE(values.hasTiny, isTiny);
    }

    void badInput_data()
    {
        QTest::addColumn<QByteArray>("database");
        QTest::addColumn<QByteArray>("values");
        QTest::addColumn<QByteArray>("message");
        const QByteArray good = "@\nA_\t0\n";
        QTest::newRow("later graph") << QByteArray("@\nA_\t2\n") << QByteArray()
                                     << QByteArray("d.tav:2: 2 is not the number of an earlier graph");
        QTest::newRow("negative") << QByteArray("@\t-1\n") << QByteArray()
                                  << QByteArray("d.tav:1: -1 is not the number of an earlier graph");
        QTest::newRow("no graph") << QByteArray("\n\t\n") << QByteArray()
                                  << QByteArray("d.tav: the database holds no graph");
        QTest::newRow("empty") << QByteArray() << QByteArray() << QByteArray("d.tav: the database holds no graph");
        QTest::newRow("other graph") << good << QByteArray("\n@\t1\nA?\t2\n")
                                     << QByteArray("v.txt:3: 'A_' is expected, not 'A?'");
        QTest::newRow("no value") << good << QByteArray("\n@\nA_\t2\n")
                                  << QByteArray("v.txt:2: a name, a tab and a value are expected");
        QTest::newRow("too short") << good << QByteArray("\n@\t1\n")
                                   << QByteArray("v.txt:3: the file ends; the value of 'A_' is expected");
        QTest::newRow("nothing") << good << QByteArray("")
                                 << QByteArray("v.txt:1: the file ends; the value of '@' is expected");
    }

    void badInput()
    {
        QFETCH(QByteArray, database);
        QFETCH(QByteArray, values);
        QFETCH(QByteArray, message);
        folder->write("d.tav", database);
        QStringList arguments = {QStringLiteral("d.tav")};
        if (!values.isNull()) {
            folder->write("v.txt", values);
            arguments += {QStringLiteral("--values"), QStringLiteral("v.txt")};
        }
        const QStringList before = folder->files();
        const ToolResult result = exportTables(arguments);
        QCOMPARE(result.errors, "tav: " + message + '\n');
        QCOMPARE(result.status, 1);
        QCOMPARE(folder->files(), before);
    }

    void filesThatCannotBeRead()
    {
        folder->write("d.tav", "@\n");
        QCOMPARE(exportTables({QStringLiteral("/no/such.tav")}).errors,
                 QByteArray("tav: /no/such.tav: cannot be opened: No such file or directory\n"));
        QCOMPARE(exportTables({QStringLiteral("-")}).errors,
                 QByteArray("tav: -: cannot be opened: No such file or directory\n"));
        QCOMPARE(
            exportTables({QStringLiteral("d.tav"), QStringLiteral("--values"), QStringLiteral("/dev/null")}).errors,
            QByteArray("tav: /dev/null: cannot be opened: Not a regular file\n"));
        QCOMPARE(exportTables({QStringLiteral("d.tav"), QStringLiteral("--compute"), QStringLiteral("order")}).status,
                 0);
        QCOMPARE(folder->files(), words({"d.tav", "tables"}));
    }

    void whatIsThereStays()
    {
        folder->write("d.tav", "@\n");
        for (const char *taken : {"folder", "file", "link"}) {
            const QString path = folder->path(taken);
            if (qstrcmp(taken, "folder") == 0) {
                QVERIFY(QDir().mkdir(path));
            } else if (qstrcmp(taken, "file") == 0) {
                folder->write("file", "old");
            } else {
                QVERIFY(QFile::link(folder->path("nowhere"), path));
            }
            const QStringList before = folder->files();
            const ToolResult result =
                exportTables({QStringLiteral("d.tav")}, QLatin1String(taken) + QStringLiteral("/"));
            QCOMPARE(result.errors, QByteArray("tav: ") + taken + ": cannot be written: File exists\n");
            QCOMPARE(result.status, 1);
            QCOMPARE(folder->files(), before);
        }
        QCOMPARE(contents(folder->path("file")), QByteArray("old"));
    }

    void nameTakenMeanwhile()
    {
        QProcess process;
        startSlowExport(process);
        QVERIFY(QDir().mkdir(folder->path("tables")));
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.readAllStandardError(), QByteArray("tav: tables: cannot be written: File exists\n"));
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(folder->files(), words({"tables"}));
        QCOMPARE(filesIn(folder->path("tables")), QStringList());
    }

    void noPlaceForTheFolder()
    {
        folder->write("d.tav", "@\n");
        QCOMPARE(exportTables({QStringLiteral("d.tav")}, QStringLiteral("no/such/folder")).errors,
                 QByteArray("tav: no/such/folder: cannot be written: No such file or directory\n"));
    }

    void fullDisk()
    {
        // No file may have more than 200 KiB: the table of the graphs has more.
        const QString line = QStringLiteral("ulimit -f 200; exec \"$0\" export -o tables \"$1\"");
        const ToolResult result = runProgram(
            QStringLiteral("bash"),
            {QStringLiteral("-c"), line, QStringLiteral(TAVOLINE_TAV), example("connected-8.tav")}, {}, folder->path());
        QCOMPARE(result.errors, QByteArray("tav: tables: cannot be written: File too large\n"));
        QCOMPARE(result.status, 1);
        QCOMPARE(folder->files(), QStringList());
    }

    void aFileSystemThatCannotSync()
    {
        for (const int error : {EINVAL, ENOSYS}) {
            const QString path = folder->path(QString::number(error));
            const CallWatch watch(folder->path().toStdString(), [&](const SystemCall &call) {
                return std::strcmp(call.kind, "fsync") == 0 ? error : 0;
            });
            OutputFolder output(path);
            FolderFile file(output, QStringLiteral("file"));
            file.write("text");
            file.finish(); // throws when it cannot be written
            output.commit();
            QCOMPARE(contents(path + QStringLiteral("/file")), QByteArray("text"));
        }
    }

    void signalHalfWay_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<bool>("leavesNothing");
        QTest::newRow("ended") << SIGTERM << true;
        QTest::newRow("interrupted") << SIGINT << true;
        QTest::newRow("killed") << SIGKILL << false;
    }

    void signalHalfWay()
    {
        QFETCH(int, signal);
        QFETCH(bool, leavesNothing);
        QProcess process;
        startSlowExport(process);
        QCOMPARE(::kill(pid_t(process.processId()), signal), 0);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), signal);
        QCOMPARE(folder->files().isEmpty(), leavesNothing);
        QVERIFY(!QFileInfo::exists(folder->path("tables")));
        QCOMPARE(exportTables({example("connected-8.tav")}).status, 0);
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        const QString output = QStringLiteral("-o");
        const QString t = QStringLiteral("t");
        const QString d = QStringLiteral("d.tav");
        QTest::newRow("no folder") << QStringList{d} << QByteArray("No folder given; '-o DIR' names it.");
        QTest::newRow("empty folder") << QStringList{output, QString(), d}
                                      << QByteArray("No folder given; '-o DIR' names it.");
        QTest::newRow("standard output") << QStringList{output, QStringLiteral("-"), d}
                                         << QByteArray(
                                                "Tables are no text for standard output; '-o DIR' names a folder.");
        QTest::newRow("no database") << QStringList{output, t} << QByteArray("No database file given.");
        QTest::newRow("no part") << QStringList{output, t, QStringLiteral("--parts"), QStringLiteral("0"), d}
                                 << QByteArray("Not a number of parts from 1 to 9999: '0'.");
        QTest::newRow("too many parts") << QStringList{output, t, QStringLiteral("--parts"), QStringLiteral("10000"), d}
                                        << QByteArray("Not a number of parts from 1 to 9999: '10000'.");
        QTest::newRow("same name") << QStringList{output, t, d, QStringLiteral("a/d.tav")}
                                   << QByteArray("Two files are named 'd.tav'.");
        QTest::newRow("same values") << QStringList{output,
                                                    t,
                                                    QStringLiteral("--values"),
                                                    QStringLiteral("v"),
                                                    QStringLiteral("--values"),
                                                    QStringLiteral("b/v"),
                                                    d}
                                     << QByteArray("Two files are named 'v'.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(QStringList{QStringLiteral("export")} + arguments, {}, folder->path());
        QCOMPARE(result.errors, "tav: " + message + "\nTry 'tav export --help'.\n");
        QCOMPARE(result.status, 2);
        QCOMPARE(folder->files(), QStringList());
    }

private:
    ToolResult exportTables(const QStringList &arguments, const QString &name = QStringLiteral("tables"))
    {
        return runTav(QStringList{QStringLiteral("export"), QStringLiteral("-o"), name} + arguments, {},
                      folder->path());
    }

    /// Starts an export of the folder "tables", and returns when it computes values.
    void startSlowExport(QProcess &process)
    {
        process.setWorkingDirectory(folder->path());
        process.start(QStringLiteral(TAVOLINE_TAV),
                      {QStringLiteral("export"), QStringLiteral("-o"), QStringLiteral("tables"),
                       QStringLiteral("--compute"), QStringLiteral("treewidth + longest_induced_cycle + cycles"),
                       QStringLiteral("-j"), QStringLiteral("1"), example("connected-8.tav")});
        const auto isComputing = [&] {
            const QStringList files = folder->files();
            return files.size() == 1 && filesIn(folder->path(files.first())).contains(QStringLiteral("values-1"));
        };
        QTRY_VERIFY_WITH_TIMEOUT(isComputing(), patience);
    }

    /// The bytes of a file of the exported tables.
    QByteArray table(const QByteArray &name)
    {
        return contents(folder->path(QStringLiteral("tables/") + QLatin1String(name)));
    }

    std::unique_ptr<TestFolder> folder;
};

QTEST_GUILESS_MAIN(TestTavExport)
#include "tst_tav_export.moc"
