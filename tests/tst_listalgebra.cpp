#include "TAVmanager.h"
#include "support/fulldisk.h"
#include "support/loading.h"
#include "support/signalrecorder.h"
#include "support/stderrcapture.h"
#include "support/testdata.h"
#include "support/threads.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <random>

/// The manager's operations that build lists from lists, files and comparisons, and its forwarders to the engine.
class TestListAlgebra : public QObject
{
    Q_OBJECT

private slots:
    void setOperations();
    void emptyResults();
    void setOperationRefusals();
    void likeTheLiteralOperations();
    void manyNames_data();
    void manyNames();
    void closures();
    void closureRefusals();
    void savedLists();
    void saveListRefusals();
    void failedSaveKeepsTheOldList();
    void roundTrip();
    void savesTellTheFile();
    void invariantLoadsTellTheOutcome();
    void derivations();
    void comparisonLists_data();
    void comparisonLists();
    void comparisonsOfMissingValues();
    void comparisonRefusals();
    void refusalsDuringALoad();
    void listsGoOnDuringALoad();
    void everythingWorksWhenTheOutcomeArrives();
};

namespace
{
/// A manager with a small database, and a directory of its own.
class Desk
{
public:
    explicit Desk(const QByteArray &database = "A\nB\t0\nC\t0\t1\n") { load(write("database.tav", database)); }

    void load(const QString &file)
    {
        if (!loadAndWait(manager, file)) {
            qFatal("the database does not load");
        }
    }

    QString path(const char *name) const { return directory.filePath(QLatin1String(name)); }

    QString write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", name);
        }
        return file.fileName();
    }

    /// Gives every graph an I1 and an I2: the numbers of its line.
    void setInvariants(const QByteArray &inv1, const QByteArray &inv2)
    {
        manager.loadInv1(write("inv1.txt", invariantFile(inv1)));
        manager.loadInv2(write("inv2.txt", invariantFile(inv2)));
    }

    /// I1 as "Save Inv1" writes it, in words.
    QByteArray inv1()
    {
        manager.saveInv1(path("out.txt"));
        QByteArray values;
        for (const QByteArray &line : contents(path("out.txt")).split('\n').mid(1)) {
            values += line.mid(line.indexOf('\t') + 1) + ' ';
        }
        return values.trimmed();
    }

    QTemporaryDir directory;
    TAVManager manager;

private:
    QByteArray invariantFile(const QByteArray &values)
    {
        manager.saveGraphs(path("names.g6"));
        const QList<QByteArray> names = contents(path("names.g6")).split('\n');
        const QList<QByteArray> words = values.split(' ');
        QByteArray text = "header\n";
        for (int i = 0; i < words.size(); ++i) {
            text += names.at(i) + '\t' + words.at(i) + '\n';
        }
        return text;
    }
};

QStringList added(const char *name, int size)
{
    const QString line = QStringLiteral("console List added : ") + QLatin1String(name);
    return {line + QStringLiteral(" [ %1 element(s)]").arg(size), QStringLiteral("manager_ready"),
            QStringLiteral("lists_changed"), line};
}

QStringList addedEmpty(const char *name)
{
    return {QStringLiteral("console Empty list, not added."), QStringLiteral("manager_ready"),
            QStringLiteral("lists_changed"), QStringLiteral("console List added : ") + QLatin1String(name)};
}

const QString refused = QStringLiteral("manager_ready");
const QString busy = QStringLiteral("console Not possible while a database is being loaded.");

using Combination = bool (TAVManager::*)(const QString &, const QString &, const QString &);
using Builder = bool (TAVManager::*)(const QString &);
using Derivation = void (TAVManager::*)();

const Combination combinations[] = {&TAVManager::addUnionList, &TAVManager::addInterList, &TAVManager::addExceptList};

const Derivation derivationsOfAll[] = {&TAVManager::avgSub1,  &TAVManager::avgOver1, &TAVManager::avgAll1,
                                       &TAVManager::minSub1,  &TAVManager::minOver1, &TAVManager::minAll1,
                                       &TAVManager::maxSub1,  &TAVManager::maxOver1, &TAVManager::maxAll1,
                                       &TAVManager::exch_1_2, &TAVManager::I1getsI2, &TAVManager::I2getsI1};

const Builder builders[] = {
    &TAVManager::addI1geI2List,     &TAVManager::addI1leI2List,     &TAVManager::addI1eqI2subsList,
    &TAVManager::addI1eqI2overList, &TAVManager::addI1geI2subsList, &TAVManager::addI1leI2subsList,
    &TAVManager::addI1geI2overList, &TAVManager::addI1leI2overList, &TAVManager::addI1gtI2subsList,
    &TAVManager::addI1ltI2subsList, &TAVManager::addI1gtI2overList, &TAVManager::addI1ltI2overList};

QString name(const char *text)
{
    return QLatin1String(text);
}
} // namespace

Q_DECLARE_METATYPE(Builder)

void TestListAlgebra::setOperations()
{
    Desk desk;
    desk.manager.addList(name("bab"), words({"b", "a", "b"}));
    desk.manager.addList(name("ca"), words({"c", "a"}));
    desk.manager.addList(name("ab"), words({"a", "b"}));
    desk.manager.addList(name("babc"), words({"b", "a", "b", "c"}));
    desk.manager.addList(name("b"), words({"b"}));
    SignalRecorder signalsSeen(desk.manager);

    QVERIFY(desk.manager.addUnionList(name("union"), name("bab"), name("ca")));
    QCOMPARE(signalsSeen.take(), added("union", 3) + words({"manager_ready"}));
    QCOMPARE(desk.manager.getList(name("union")), words({"a", "b", "c"}));

    QVERIFY(desk.manager.addInterList(name("inter"), name("bab"), name("ab")));
    QCOMPARE(signalsSeen.take(), added("inter", 3) + words({"manager_ready"}));
    QCOMPARE(desk.manager.getList(name("inter")), words({"b", "a", "b"}));

    QVERIFY(desk.manager.addExceptList(name("except"), name("babc"), name("b")));
    QCOMPARE(signalsSeen.take(), added("except", 2) + words({"manager_ready"}));
    QCOMPARE(desk.manager.getList(name("except")), words({"a", "c"}));
}

void TestListAlgebra::emptyResults()
{
    Desk desk;
    desk.manager.addList(name("a"), words({"a"}));
    desk.manager.addList(name("A"), words({"A"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.addInterList(name("none"), name("a"), name("A")));
    QCOMPARE(signalsSeen.take(), addedEmpty("none") + words({"manager_ready"}));
    QVERIFY(desk.manager.addExceptList(name("none"), name("a"), name("a")));
    QCOMPARE(signalsSeen.take(), addedEmpty("none") + words({"manager_ready"}));
    QCOMPARE(desk.manager.listNames(), words({"a", "A"}));
}

void TestListAlgebra::setOperationRefusals()
{
    Desk desk;
    desk.manager.addList(name("a"), words({"a"}));
    const SignalRecorder signalsSeen(desk.manager);
    for (const Combination combine : combinations) {
        QVERIFY(!(desk.manager.*combine)(QString(), name("a"), name("a")));
        QVERIFY(!(desk.manager.*combine)(name("a"), name("a"), name("a")));
        QVERIFY(!(desk.manager.*combine)(name("new"), name("missing"), name("a")));
        QVERIFY(!(desk.manager.*combine)(name("new"), name("a"), QString()));
    }
    QCOMPARE(signalsSeen.recorded(), QStringList(QVector<QString>(12, refused).toList()));
    QCOMPARE(desk.manager.listNames(), words({"a"}));
}

/// The set operations name by name, as one would by hand.
void TestListAlgebra::likeTheLiteralOperations()
{
    constexpr unsigned seed = 5;
    std::mt19937 random(seed);
    const QStringList letters = words({"a", "B", "b", "aa", "?", "~", "A_", "Bw\r"});
    const auto randomList = [&] {
        QStringList list;
        for (int length = 1 + int(random() % 12); length > 0; --length) {
            list.append(letters.at(int(random() % 8)));
        }
        return list;
    };
    Desk desk;
    for (int round = 0; round < 500; ++round) {
        const QStringList a = randomList();
        const QStringList b = randomList();
        QStringList all;
        for (const QString &graph : a + b) {
            if (!all.contains(graph)) {
                all.append(graph);
            }
        }
        std::sort(all.begin(), all.end());
        QStringList both;
        QStringList onlyA;
        for (const QString &graph : a) {
            (b.contains(graph) ? both : onlyA).append(graph);
        }
        desk.manager.addList(name("a"), a);
        desk.manager.addList(name("b"), b);
        desk.manager.addUnionList(name("all"), name("a"), name("b"));
        desk.manager.addInterList(name("both"), name("a"), name("b"));
        desk.manager.addExceptList(name("onlyA"), name("a"), name("b"));
        QCOMPARE(desk.manager.getList(name("all")), all);
        QCOMPARE(desk.manager.getList(name("both")), both);
        QCOMPARE(desk.manager.getList(name("onlyA")), onlyA);
        for (const QString &list : desk.manager.listNames()) {
            desk.manager.remList(list);
        }
    }
}

void TestListAlgebra::manyNames_data()
{
    QTest::addColumn<int>("threads");
    for (const int threads : {1, 2, 3, 8}) {
        QTest::addRow("%d threads", threads) << threads;
    }
}

void TestListAlgebra::manyNames()
{
    QFETCH(int, threads);
    const ThreadCount count(threads);
    constexpr int many = 300000;
    QStringList even;
    QStringList thirds;
    for (int i = 0; i < many; ++i) {
        even.append(QString::number(2 * i));
        thirds.append(QString::number(3 * i));
    }
    Desk desk;
    desk.manager.addList(name("even"), even);
    desk.manager.addList(name("thirds"), thirds);
    desk.manager.addInterList(name("both"), name("even"), name("thirds"));
    desk.manager.addExceptList(name("onlyEven"), name("even"), name("thirds"));
    desk.manager.addUnionList(name("all"), name("even"), name("thirds"));
    QStringList both;
    QStringList onlyEven;
    for (int number = 0; number < 2 * many; number += 2) {
        (number % 3 == 0 ? both : onlyEven).append(QString::number(number));
    }
    QStringList all = onlyEven + thirds;
    all.sort();
    QCOMPARE(desk.manager.getList(name("both")), both);
    QCOMPARE(desk.manager.getList(name("onlyEven")), onlyEven);
    QCOMPARE(desk.manager.getList(name("all")), all);

    QVERIFY(desk.manager.saveList(name("both"), desk.path("both.g6")));
    QCOMPARE(contents(desk.path("both.g6")), both.join(QLatin1Char('\n')).toLatin1());
    QVERIFY(desk.manager.addListFromFile(name("again"), desk.path("both.g6")));
    QCOMPARE(desk.manager.getList(name("again")), both);
}

void TestListAlgebra::closures()
{
    Desk desk;
    desk.manager.addList(name("source"), words({"unknown", "B"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.addSubsList(name("below"), name("source")));
    QCOMPARE(signalsSeen.take(),
             words({"console Database cleared."}) + added("below", 2) + words({"lists_changed", "manager_ready"}));
    QCOMPARE(desk.manager.getList(name("below")), words({"B", "A"}));
    QVERIFY(desk.manager.addOverList(name("above"), name("source")));
    QCOMPARE(signalsSeen.take(),
             words({"console Database cleared."}) + added("above", 2) + words({"lists_changed", "manager_ready"}));
    QCOMPARE(desk.manager.getList(name("above")), words({"B", "C"}));

    desk.manager.addList(name("strangers"), words({"unknown"}));
    signalsSeen.take();
    QVERIFY(desk.manager.addSubsList(name("none"), name("strangers")));
    QCOMPARE(signalsSeen.take(),
             words({"console Database cleared."}) + addedEmpty("none") + words({"lists_changed", "manager_ready"}));
}

void TestListAlgebra::closureRefusals()
{
    Desk desk;
    desk.manager.addList(name("a"), words({"A"}));
    const SignalRecorder signalsSeen(desk.manager);
    for (const auto closure : {&TAVManager::addSubsList, &TAVManager::addOverList}) {
        QVERIFY(!(desk.manager.*closure)(QString(), name("a")));
        QVERIFY(!(desk.manager.*closure)(name("new"), QString()));
        QVERIFY(!(desk.manager.*closure)(name("a"), name("a")));
        QVERIFY(!(desk.manager.*closure)(name("new"), name("missing")));
    }
    QCOMPARE(signalsSeen.recorded(), QStringList(QVector<QString>(8, refused).toList()));
}

void TestListAlgebra::savedLists()
{
    Desk desk;
    desk.manager.addList(name("one"), words({"Bw"}));
    desk.manager.addList(name("three"), words({"Bw", "@", "\xe9"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.saveList(name("one"), desk.path("one.g6")));
    QVERIFY(desk.manager.saveList(name("three"), desk.path("three.g6")));
    QCOMPARE(contents(desk.path("one.g6")), QByteArray("Bw"));
    QCOMPARE(contents(desk.path("three.g6")), QByteArray("Bw\n@\n\xe9"));
    QCOMPARE(signalsSeen.take(), words({"manager_ready", "manager_ready"}));
    QVERIFY(desk.manager.saveList(name("one"), desk.path("three.g6"))); // replaces a longer file
    QCOMPARE(contents(desk.path("three.g6")), QByteArray("Bw"));
}

void TestListAlgebra::saveListRefusals()
{
    Desk desk;
    desk.manager.addList(name("one"), words({"Bw"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(!desk.manager.saveList(QString(), desk.path("out.g6")));
    QVERIFY(!desk.manager.saveList(name("missing"), desk.path("out.g6")));
    QCOMPARE(signalsSeen.take(), words({"manager_ready", "manager_ready"}));
    QVERIFY(!QFile::exists(desk.path("out.g6")));

    StderrCapture diagnostics;
    const QString file = desk.path("no/such/directory.g6");
    QVERIFY(!desk.manager.saveList(name("one"), file));
    QVERIFY(!desk.manager.saveList(name("one"), QString()));
    QCOMPARE(diagnostics.take(), QByteArray("Unable to open file\nUnable to open file\n"));
    QCOMPARE(signalsSeen.take(),
             QStringList({QStringLiteral("console Unable to open file :") + file, QStringLiteral("manager_ready"),
                          QStringLiteral("console Unable to open file :"), QStringLiteral("manager_ready")}));
}

void TestListAlgebra::failedSaveKeepsTheOldList()
{
    Desk desk;
    desk.manager.addList(name("long"), QVector<QString>(5000, name("G~~~~{")).toList());
    const QString file = desk.write("old.g6", "Bw\n");
    const SignalRecorder signalsSeen(desk.manager);
    bool saved = true;
    {
        const FullDisk disk;
        saved = desk.manager.saveList(name("long"), file);
    }
    QVERIFY(!saved);
    QCOMPARE(signalsSeen.recorded(),
             QStringList({QStringLiteral("console Unable to write file :") + file, QStringLiteral("manager_ready")}));
    QCOMPARE(contents(file), QByteArray("Bw\n"));
}

void TestListAlgebra::roundTrip()
{
    Desk desk;
    desk.manager.addList(name("list"), words({"Bw", "@", "Bw", "G?zTb_"}));
    QVERIFY(desk.manager.saveList(name("list"), desk.path("list.g6")));
    QVERIFY(desk.manager.addListFromFile(name("again"), desk.path("list.g6")));
    QCOMPARE(desk.manager.getList(name("again")), words({"Bw", "@", "Bw", "G?zTb_"}));
    QVERIFY(desk.manager.saveGraphs(desk.path("all.g6")));
    QVERIFY(desk.manager.addListFromFile(name("all"), desk.path("all.g6")));
    QCOMPARE(desk.manager.getList(name("all")), words({"A", "B", "C"}));
}

void TestListAlgebra::savesTellTheFile()
{
    Desk desk;
    SignalRecorder signalsSeen(desk.manager);
    const QString graphs = desk.path("all.g6");
    const QString invariant = desk.path("i1.txt");
    QVERIFY(desk.manager.saveGraphs(graphs));
    QVERIFY(desk.manager.saveInv1(invariant));
    QVERIFY(!desk.manager.saveInv1(QString()));
    QCOMPARE(signalsSeen.take(),
             QStringList({QStringLiteral("console Wrote ") + graphs, QStringLiteral("manager_ready"),
                          QStringLiteral("console Wrote ") + invariant, QStringLiteral("manager_ready"),
                          QStringLiteral("manager_ready")}));
    desk.manager.resetDatabase();
    signalsSeen.take();
    QVERIFY(!desk.manager.saveGraphs(graphs));
    QCOMPARE(signalsSeen.take(), words({"console No data to save.", "manager_ready"}));
}

void TestListAlgebra::invariantLoadsTellTheOutcome()
{
    Desk desk;
    const QString good = desk.write("good.txt", "h\nA\t1\nB\t2\nC\t3\n");
    const QString bad = desk.write("bad.txt", "h\nA\t1\nX\t2\nC\t3\n");
    SignalRecorder signalsSeen(desk.manager);
    desk.manager.loadInv1(good);
    desk.manager.loadInv2(good);
    QCOMPARE(signalsSeen.take(),
             QStringList({QStringLiteral("console Read ") + good, QStringLiteral("manager_ready"),
                          QStringLiteral("console Read ") + good, QStringLiteral("manager_ready")}));
    desk.manager.loadInv1(bad);
    desk.manager.loadInv2(bad);
    QCOMPARE(signalsSeen.take(), words({"console B != X", "console Load failed", "manager_ready",
                                        "console Data format error", "console Load failed", "manager_ready"}));
}

void TestListAlgebra::derivations()
{
    const struct {
        Derivation derive;
        const char *inv2; // afterwards, when I1 is 1 3 7 and I2 is NA 9 NA
    } rows[] = {
        {&TAVManager::avgSub1, "NA 1 2"}, {&TAVManager::avgOver1, "5 7 NA"}, {&TAVManager::avgAll1, "5 4 2"},
        {&TAVManager::minSub1, "NA 1 1"}, {&TAVManager::minOver1, "3 7 NA"}, {&TAVManager::minAll1, "3 1 1"},
        {&TAVManager::maxSub1, "NA 1 3"}, {&TAVManager::maxOver1, "7 7 NA"}, {&TAVManager::maxAll1, "7 7 3"},
        {&TAVManager::exch_1_2, "1 3 7"}, {&TAVManager::I2getsI1, "1 3 7"},  {&TAVManager::I1getsI2, "NA 9 NA"},
    };
    for (const auto &row : rows) {
        Desk desk;
        desk.setInvariants("1 3 7", "NA 9 NA");
        SignalRecorder signalsSeen(desk.manager);
        (desk.manager.*row.derive)();
        QCOMPARE(signalsSeen.take(), words({"manager_ready"}));
        const QByteArray inv1 = desk.inv1();
        desk.manager.exch_1_2();
        QCOMPARE(desk.inv1(), QByteArray(row.inv2));
        const bool setsInv1 = row.derive == &TAVManager::exch_1_2 || row.derive == &TAVManager::I1getsI2;
        QCOMPARE(inv1, QByteArray(setsInv1 ? "NA 9 NA" : "1 3 7"));
    }
}

void TestListAlgebra::comparisonLists_data()
{
    // A chain low - mid - high with I1 = 1, 2, 3, and I2 = 2, 2, 1 for the walks, 1, 1, 1 for the graph's own.
    QTest::addColumn<Builder>("build");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<bool>("walks");
    QTest::newRow("ge") << &TAVManager::addI1geI2List << words({"low", "mid", "high"}) << false;
    QTest::newRow("le") << &TAVManager::addI1leI2List << words({"low"}) << false;
    QTest::newRow("eq subs") << &TAVManager::addI1eqI2subsList << words({"mid"}) << true;
    QTest::newRow("ge subs") << &TAVManager::addI1geI2subsList << words({"mid"}) << true;
    QTest::newRow("le subs") << &TAVManager::addI1leI2subsList << words({"mid", "high"}) << true;
    QTest::newRow("gt subs") << &TAVManager::addI1gtI2subsList << words({"high"}) << true;
    QTest::newRow("lt subs") << &TAVManager::addI1ltI2subsList << QStringList() << true;
    QTest::newRow("eq over") << &TAVManager::addI1eqI2overList << QStringList() << true;
    QTest::newRow("ge over") << &TAVManager::addI1geI2overList << words({"low"}) << true;
    QTest::newRow("le over") << &TAVManager::addI1leI2overList << words({"mid"}) << true;
    QTest::newRow("gt over") << &TAVManager::addI1gtI2overList << words({"mid"}) << true;
    QTest::newRow("lt over") << &TAVManager::addI1ltI2overList << QStringList() << true;
}

void TestListAlgebra::comparisonLists()
{
    QFETCH(Builder, build);
    QFETCH(QStringList, listed);
    QFETCH(bool, walks);
    Desk desk("low\nmid\t0\nhigh\t1\n");
    desk.setInvariants("1 2 3", walks ? "2 2 1" : "1 1 1");
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY((desk.manager.*build)(name("found")));
    QStringList expected = walks ? words({"console Database cleared."}) : QStringList();
    expected += listed.isEmpty() ? words({"console Empty list"}) : added("found", listed.size());
    QCOMPARE(signalsSeen.take(), expected + words({"lists_changed", "manager_ready"}));
    QCOMPARE(desk.manager.getList(name("found")), listed);
}

void TestListAlgebra::comparisonsOfMissingValues()
{
    Desk desk("low\nmid\t0\nhigh\t1\n");
    desk.setInvariants("NA NA NA", "NA NA NA");
    SignalRecorder signalsSeen(desk.manager);
    for (const Builder build : {&TAVManager::addI1geI2List, &TAVManager::addI1leI2List}) {
        QVERIFY((desk.manager.*build)(name("found")));
        QCOMPARE(signalsSeen.take(), words({"console Empty list", "lists_changed", "manager_ready"}));
        QCOMPARE(desk.manager.listNames(), QStringList());
    }
}

void TestListAlgebra::comparisonRefusals()
{
    Desk desk;
    desk.manager.addList(name("taken"), words({"A"}));
    SignalRecorder signalsSeen(desk.manager);
    for (const Builder build : builders) {
        QVERIFY(!(desk.manager.*build)(QString()));
        QVERIFY(!(desk.manager.*build)(name("taken")));
        QCOMPARE(signalsSeen.take(),
                 words({"console Empty name", "manager_ready", "console Name already used", "manager_ready"}));
    }
    QCOMPARE(desk.manager.listNames(), words({"taken"}));
}

void TestListAlgebra::refusalsDuringALoad()
{
    Desk desk;
    desk.manager.addList(name("list"), words({"A"}));
    const QString invariant = desk.write("i.txt", "h\nA\t1\nB\t2\nC\t3\n");
    const QString out = desk.path("out");
    desk.manager.loadDatabase(desk.path("database.tav"));
    SignalRecorder signalsSeen(desk.manager);

    std::vector<std::function<bool()>> operations;
    for (const Derivation derive : derivationsOfAll) {
        operations.emplace_back([&, derive] { return (desk.manager.*derive)(), false; });
    }
    for (const Builder build : builders) {
        operations.emplace_back([&, build] { return (desk.manager.*build)(name("new")); });
    }
    operations.emplace_back([&] { return desk.manager.addSubsList(name("new"), name("list")); });
    operations.emplace_back([&] { return desk.manager.addOverList(name("new"), name("list")); });
    operations.emplace_back([&] { return desk.manager.saveGraphs(out); });
    operations.emplace_back([&] { return desk.manager.saveInv1(out); });
    operations.emplace_back([&] { return desk.manager.loadInv1(invariant), false; });
    operations.emplace_back([&] { return desk.manager.loadInv2(invariant), false; });
    for (const auto &operation : operations) {
        QVERIFY(!operation());
        QCOMPARE(signalsSeen.take(), QStringList({busy, refused}));
    }
    QVERIFY(!QFile::exists(out));
    QCOMPARE(desk.manager.listNames(), words({"list"}));
    QVERIFY(waitForOutcome(desk.manager, signalsSeen));
    QCOMPARE(desk.inv1(), QByteArray("NA NA NA"));
}

void TestListAlgebra::listsGoOnDuringALoad()
{
    Desk desk;
    desk.manager.addList(name("a"), words({"b", "a"}));
    desk.manager.loadDatabase(desk.path("database.tav"));
    QVERIFY(desk.manager.addUnionList(name("sorted"), name("a"), name("a")));
    QVERIFY(desk.manager.saveList(name("sorted"), desk.path("sorted.g6")));
    QVERIFY(desk.manager.addListFromFile(name("again"), desk.path("sorted.g6")));
    QVERIFY(desk.manager.remList(name("a")));
    QCOMPARE(desk.manager.listNames(), words({"sorted", "again"}));
}

void TestListAlgebra::everythingWorksWhenTheOutcomeArrives()
{
    Desk desk;
    bool saved = false;
    bool compared = false;
    connect(&desk.manager, &TAVManager::signal_database_loaded, &desk.manager, [&] {
        saved = desk.manager.saveGraphs(desk.path("all.g6"));
        desk.manager.I2getsI1();
        compared = desk.manager.addI1geI2List(name("none"));
    });
    desk.load(desk.path("database.tav"));
    QVERIFY(saved);
    QVERIFY(compared);

    bool refusedAfterAFailure = true;
    connect(&desk.manager, &TAVManager::signal_database_empty, &desk.manager, [&] {
        SignalRecorder signalsSeen(desk.manager);
        desk.manager.saveGraphs(desk.path("none.g6"));
        refusedAfterAFailure = signalsSeen.take() != words({"console No data to save.", "manager_ready"});
    });
    QVERIFY(!loadAndWait(desk.manager, desk.path("missing.tav")));
    QVERIFY(!refusedAfterAFailure);
}

QTEST_GUILESS_MAIN(TestListAlgebra)
#include "tst_listalgebra.moc"
