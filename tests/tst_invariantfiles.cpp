// The engine's invariant files and its file of graph names.

#include "support/fulldisk.h"
#include "support/literals.h"
#include "support/loadedengine.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"
#include "support/threads.h"

#include <QFileInfo>
#include <QtTest>

#include <limits>

class TestInvariantFiles : public QObject
{
    Q_OBJECT

private slots:
    void savedBytes();
    void oneThird();
    void savedGraphs();
    void aHundredThousandGraphs();
    void saveI1LoadI2();
    void numbersComeBack();
    void missingHeaderLosesTheFirstLine();
    void moreLinesThanRecords();
    void fewerLinesThanRecords();
    void lineEndsExtraFieldsAndNA();
    void faults_data();
    void faults();
    void emptyDatabase();
    void unopenedFiles();
    void unreadableFile();
    void failedSaveKeepsTheOldFile();
    void fullDevice();
};

namespace
{
constexpr char threeGraphs[] = "@\nA_\t0\nBw\t1\n";

using Load = bool (TAVSearchEngine::*)(const QString &);
} // namespace

Q_DECLARE_METATYPE(Load)

void TestInvariantFiles::savedBytes()
{
    LoadedEngine database("a\nb\nc\nd\ne\nf\ng\nh\n");
    const double infinity = std::numeric_limits<double>::infinity();
    database.setInv1({std::nullopt, 2.5, 1000000.0, -4.0, 123456789.0, 1e-7, infinity, qQNaN()});
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(database.engine.saveInv1(database.path("i1.txt")));
    QCOMPARE(contents(database.path("i1.txt")),
             QByteArray("GRAPH\tINV1\na\tNA\nb\t2.5\nc\t1e+06\nd\t-4\ne\t1.23457e+08\nf\t1e-07\ng\tinf\nh\tnan\n"));
    QCOMPARE(signalsSeen.recorded(), QStringList());
}

void TestInvariantFiles::oneThird()
{
    LoadedEngine database("Bw\n");
    database.setInv1({1.0 / 3.0});
    QVERIFY(database.engine.saveInv1(database.path("i1.txt")));
    QCOMPARE(contents(database.path("i1.txt")), QByteArray("GRAPH\tINV1\nBw\t0.333333\n"));
}

void TestInvariantFiles::savedGraphs()
{
    LoadedEngine database("b\na\t0\n\xc3\xa9\nb\n");
    QVERIFY(database.engine.saveGraphs(database.path("all.g6")));
    QCOMPARE(contents(database.path("all.g6")), QByteArray("b\na\n\xe9\nb\n"));
}

void TestInvariantFiles::aHundredThousandGraphs()
{
    // More than a thread takes at a time.
    constexpr int count = 100000;
    QByteArray names;
    QByteArray inv1 = "GRAPH\tINV1\n";
    for (int i = 0; i < count; ++i) {
        const QByteArray name = "G" + QByteArray::number(i);
        names += name + '\n';
        inv1 += name + '\t' + (i % 7 == 0 ? QByteArray("NA") : QByteArray::number(i / 8.0)) + '\n';
    }
    LoadedEngine database(names);
    for (const int threads : {1, 2, 3, 8}) {
        const ThreadCount chosen(threads);
        QVERIFY(database.engine.loadInv1(database.write("given.txt", inv1)));
        QVERIFY(database.engine.saveInv1(database.path("saved.txt")));
        QCOMPARE(contents(database.path("saved.txt")), inv1);
        QVERIFY(database.engine.saveGraphs(database.path("names.g6")));
        QCOMPARE(contents(database.path("names.g6")), names);
    }
}

void TestInvariantFiles::saveI1LoadI2()
{
    LoadedEngine database(threeGraphs);
    database.setInv1({std::nullopt, 2.5, -4.0});
    database.setInv2({7.0, 7.0, 7.0});
    QVERIFY(database.engine.saveInv1(database.path("i1.txt")));
    QVERIFY(database.engine.loadInv2(database.path("i1.txt")));
    QCOMPARE(database.inv2(), QStringLiteral("NA 2.5 -4"));
    QCOMPARE(database.inv1(), QStringLiteral("NA 2.5 -4"));
}

void TestInvariantFiles::numbersComeBack()
{
    LoadedEngine database(threeGraphs);
    database.setInv1({1000000.0, 7.0, 7.0});
    QVERIFY(database.engine.saveInv1(database.path("i1.txt")));
    database.setInv1({0.0, 0.0, 0.0});
    QVERIFY(database.engine.loadInv1(database.path("i1.txt")));
    QCOMPARE(database.inv1(), QStringLiteral("1000000 7 7"));

    QVERIFY(database.engine.loadInv1(database.write("w.txt", "any header\n@\tword\nA_\t\nBw\t 3.5 \n")));
    QCOMPARE(database.inv1(), QStringLiteral("NA NA 3.5"));
    QCOMPARE(database.graph(0).getInv1(), 0.0);
}

void TestInvariantFiles::missingHeaderLosesTheFirstLine()
{
    LoadedEngine database(threeGraphs);
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!database.engine.loadInv1(database.write("i.txt", "@\t1\nA_\t2\nBw\t3\n")));
    QCOMPARE(signalsSeen.recorded(), words({"console @ != A_"}));
    QCOMPARE(database.inv1(), QStringLiteral("NA NA NA"));
}

void TestInvariantFiles::moreLinesThanRecords()
{
    LoadedEngine database(threeGraphs);
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(database.engine.loadInv1(database.write("i.txt", "\n@\t1\nA_\t2\nBw\t3\n\nnonsense\n")));
    QCOMPARE(database.inv1(), QStringLiteral("1 2 3"));
    QCOMPARE(signalsSeen.recorded(), QStringList());
}

void TestInvariantFiles::fewerLinesThanRecords()
{
    LoadedEngine database(threeGraphs);
    database.setInv1({7.0, 7.0, 7.0});
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!database.engine.loadInv1(database.write("i.txt", "header\n@\t1\nA_\t2")));
    QCOMPARE(database.inv1(), QStringLiteral("1 2 7"));
    QVERIFY(!database.engine.loadInv1(database.write("i.txt", "header")));
    QVERIFY(!database.engine.loadInv1(database.write("i.txt", "")));
    QCOMPARE(database.inv1(), QStringLiteral("1 2 7"));
    QCOMPARE(signalsSeen.recorded(), QStringList());
}

void TestInvariantFiles::lineEndsExtraFieldsAndNA()
{
    LoadedEngine database(threeGraphs);
    QVERIFY(database.engine.loadInv2(database.write("i.txt", "h\r\n@\t1\tmore\tfields\r\nA_\tNA\r\nBw\t1e3\r\n")));
    QCOMPARE(database.inv2(), QStringLiteral("1 NA 1000"));
    QCOMPARE(database.inv1(), QStringLiteral("NA NA NA"));
}

void TestInvariantFiles::faults_data()
{
    QTest::addColumn<Load>("load");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("console");
    const QByteArray oneField = "h\n@\t5\nA_\nBw\t3\n";
    const QByteArray blankLine = "h\n@\t5\n\nA_\t2\nBw\t3\n";
    const QByteArray otherName = "h\n@\t5\na_\t2\nBw\t3\n";
    const QStringList format = words({"console premature end or wrong format of file."});
    const QStringList either = words({"console Data format error"});
    QTest::newRow("I1, one field") << &TAVSearchEngine::loadInv1 << oneField << format;
    QTest::newRow("I1, blank line") << &TAVSearchEngine::loadInv1 << blankLine << format;
    QTest::newRow("I1, other name") << &TAVSearchEngine::loadInv1 << otherName << words({"console A_ != a_"});
    QTest::newRow("I2, one field") << &TAVSearchEngine::loadInv2 << oneField << either;
    QTest::newRow("I2, blank line") << &TAVSearchEngine::loadInv2 << blankLine << either;
    QTest::newRow("I2, other name") << &TAVSearchEngine::loadInv2 << otherName << either;
}

void TestInvariantFiles::faults()
{
    QFETCH(Load, load);
    QFETCH(QByteArray, text);
    LoadedEngine database(threeGraphs);
    database.setInv1({7.0, 8.0, std::nullopt});
    database.setInv2({7.0, 8.0, std::nullopt});
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!(database.engine.*load)(database.write("i.txt", text)));
    QTEST(signalsSeen.recorded(), "console");
    const bool first = load == &TAVSearchEngine::loadInv1;
    QCOMPARE(database.inv1(), first ? QStringLiteral("5 8 NA") : QStringLiteral("7 8 NA"));
    QCOMPARE(database.inv2(), first ? QStringLiteral("7 8 NA") : QStringLiteral("5 8 NA"));
}

void TestInvariantFiles::emptyDatabase()
{
    LoadedEngine database("");
    const QString file = database.write("i.txt", "old");
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!database.engine.saveGraphs(file));
    QVERIFY(!database.engine.saveInv1(file));
    QVERIFY(!database.engine.loadInv1(file));
    QVERIFY(!database.engine.loadInv2(file));
    QCOMPARE(signalsSeen.recorded(), words({"console No data to save.", "console No data to save.",
                                            "console No data to match.", "console No data to match."}));
    QCOMPARE(contents(file), QByteArray("old"));
}

void TestInvariantFiles::unopenedFiles()
{
    LoadedEngine database(threeGraphs);
    const SignalRecorder signalsSeen(database.engine);
    for (const QString &file : {QString(), database.path("no/such/directory"), database.path("database.tav/below")}) {
        QVERIFY(!database.engine.saveGraphs(file));
        QVERIFY(!database.engine.saveInv1(file));
    }
    QVERIFY(!database.engine.saveInv1(database.path("")));
    QCOMPARE(signalsSeen.recorded(), QStringList());
    QVERIFY(!database.engine.loadInv1(database.path("missing")));
    QVERIFY(!database.engine.loadInv2(QString()));
    QVERIFY(!database.engine.loadInv2(database.path("")));
    QCOMPARE(signalsSeen.recorded(),
             words({"console Unable to open file.", "console Unable to open file.", "console Unable to open file."}));
}

void TestInvariantFiles::unreadableFile()
{
    LoadedEngine database(threeGraphs);
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!database.engine.loadInv1(QStringLiteral("/proc/self/mem")));
    QCOMPARE(signalsSeen.recorded(), words({"console Unable to read file :/proc/self/mem"}));
}

void TestInvariantFiles::failedSaveKeepsTheOldFile()
{
    LoadedEngine database(contents(example("connected-8.tav")));
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("old.txt"));
    QFile old(path);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("weeks of work\n") > 0);
    old.close();

    SignalRecorder signalsSeen(database.engine);
    bool savedGraphs = true;
    bool savedInvariant = true;
    {
        const FullDisk disk;
        savedGraphs = database.engine.saveGraphs(path);
        savedInvariant = database.engine.saveInv1(path);
    }
    QVERIFY(!savedGraphs);
    QVERIFY(!savedInvariant);
    QCOMPARE(signalsSeen.take(), QStringList({QStringLiteral("console Unable to write file :") + path,
                                              QStringLiteral("console Unable to write file :") + path}));
    QCOMPARE(contents(path), QByteArray("weeks of work\n"));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), words({"old.txt"}));
    QVERIFY(database.engine.saveGraphs(path));
}

void TestInvariantFiles::fullDevice()
{
    LoadedEngine database(threeGraphs);
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!database.engine.saveInv1(QStringLiteral("/dev/full")));
    QCOMPARE(signalsSeen.recorded(), words({"console Unable to write file :/dev/full"}));
    QVERIFY(!QFileInfo(QStringLiteral("/dev/full")).isFile());
}

QTEST_GUILESS_MAIN(TestInvariantFiles)
#include "tst_invariantfiles.moc"
