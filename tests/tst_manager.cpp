// The list manager: its registry, the operations that build lists, its forwarders to the engine, and what it answers
// during a load.

#include "TAVmanager.h"
#include "support/fulldisk.h"
#include "support/literals.h"
#include "support/loading.h"
#include "support/signalrecorder.h"
#include "support/stderrcapture.h"
#include "support/testfiles.h"

#include <QFile>
#include <QtTest>

#include <functional>

namespace
{
/// All that can be seen of the operations between construction and check.
class Watch
{
public:
    explicit Watch(const TAVManager &manager) : recorder(manager) {}

    void expect(const QStringList &emitted, const QByteArray &standardError)
    {
        QCOMPARE(recorder.recorded(), emitted);
        QCOMPARE(capture.take(), standardError);
    }

private:
    SignalRecorder recorder;
    StderrCapture capture;
};

/// A manager with a small database, and a directory of its own.
class Desk
{
public:
    explicit Desk(const QByteArray &database = "A\nB\t0\nC\t0\t1\n") { load(folder.write("database.tav", database)); }

    void load(const QString &file)
    {
        if (!loadAndWait(manager, file)) {
            qFatal("the database does not load");
        }
    }

    /// Gives every graph an I1 and an I2: the numbers of its line.
    void setInvariants(const QByteArray &inv1, const QByteArray &inv2)
    {
        manager.loadInv1(folder.write("inv1.txt", invariantFile(inv1)));
        manager.loadInv2(folder.write("inv2.txt", invariantFile(inv2)));
    }

    /// I1 as "Save Inv1" writes it, in words.
    QByteArray inv1()
    {
        manager.saveInv1(folder.path("out.txt"));
        QByteArray values;
        for (const QByteArray &line : contents(folder.path("out.txt")).split('\n').mid(1)) {
            values += line.mid(line.indexOf('\t') + 1) + ' ';
        }
        return values.trimmed();
    }

    TestFolder folder;
    TAVManager manager;

private:
    QByteArray invariantFile(const QByteArray &values)
    {
        manager.saveGraphs(folder.path("names.g6"));
        const QList<QByteArray> names = contents(folder.path("names.g6")).split('\n');
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

} // namespace

Q_DECLARE_METATYPE(Builder)

class TestManager : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutLists();
    void declaresItsSignalsAndSlotsInOrder();
    void addList();
    void addEmptyList();
    void addListWithoutName();
    void addListWithATakenName();
    void remList();
    void remUnknownList_data();
    void remUnknownList();
    void indexOfIsCaseSensitive();
    void getList();
    void slotsPassOn();

    void addListFromFile_data();
    void addListFromFile();
    void addListFromEmptyFile();
    void addListFromFileThatCannotBeOpened_data();
    void addListFromFileThatCannotBeOpened();
    void addListFromFileWithoutAFreshName_data();
    void addListFromFileWithoutAFreshName();

    void setOperations();
    void emptyResults();
    void setOperationRefusals();
    void closures();
    void closureRefusals();
    void savedLists();
    void saveListRefusals();
    void failedSaveKeepsTheOldList();
    void roundTrip();
    void roundTripOfManyNames();
    void savesTellTheFile();
    void invariantLoadsTellTheOutcome();
    void valuesThatAreSet();
    void derivations();
    void comparisonLists_data();
    void comparisonLists();
    void comparisonsOfMissingValues();
    void emptyListsThatAreKept();
    void comparisonRefusals();
    void refusalsDuringALoad();
    void listsGoOnDuringALoad();
    void everythingWorksWhenTheOutcomeArrives();

    void loadDatabase();
    void loadDatabaseThatFails();
    void loadingKeepsTheLists();
    void resetDatabase();

    void faultOfAFile_data();
    void faultOfAFile();
    void faultOfAFileIsForgotten_data();
    void faultOfAFileIsForgotten();
    void faultOfAFileIsForgottenWhenALoadRefusesTheNext();
    void faultOfAFileThatCannotBeRead();

private:
    QString write(const QByteArray &content);

    TestFolder folder;
    int files = 0;
};

namespace
{
/// An operation on the file @p path of a manager that has a database of the graph A and a list L.
using FileOperation = std::function<void(TAVManager &manager, const QString &path)>;

void load(TAVManager &manager, const QString &path)
{
    loadAndWait(manager, path);
}

void addListOfFile(TAVManager &manager, const QString &path)
{
    manager.addListFromFile(text("new"), path);
}

void saveListL(TAVManager &manager, const QString &path)
{
    manager.saveList(text("L"), path);
}

const QString isADirectory = QStringLiteral("Is a directory");
} // namespace

Q_DECLARE_METATYPE(FileOperation)

QString TestManager::write(const QByteArray &content)
{
    return folder.write(QStringLiteral("%1.txt").arg(files++), content);
}

void TestManager::startsWithoutLists()
{
    StderrCapture capture;
    const TAVManager manager;
    QCOMPARE(capture.take(), QByteArray("Starting...\n"));
    QCOMPARE(manager.listNames(), QStringList());
    QCOMPARE(manager.indexOf(text("A")), -1);
    QCOMPARE(manager.indexOf(QString()), -1);
}

void TestManager::declaresItsSignalsAndSlotsInOrder()
{
    QStringList declared;
    const QMetaObject &type = TAVManager::staticMetaObject;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        declared.append(QString::fromLatin1(type.method(i).methodSignature()));
    }
    QCOMPARE(
        declared,
        (QStringList{text("signal_database_empty()"), text("signal_database_loaded()"), text("signal_manager_ready()"),
                     text("signal_progress(int,int)"), text("signal_load_succeeded()"), text("signal_load_failed()"),
                     text("signal_lists_changed()"), text("signal_console(QString)"), text("slot_progress(int,int)"),
                     text("slot_load_succeeded()"), text("slot_load_failed()"), text("slot_console(QString)")}));
}

void TestManager::addList()
{
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(manager.addList(text("A"), {text("Bw"), text("BW"), text("Bw")}));
    QVERIFY(manager.addList(text("a list"), {text("@")}));
    watch.expect({text("console List added : A [ 3 element(s)]"), text("manager_ready"), text("lists_changed"),
                  text("console List added : A"), text("console List added : a list [ 1 element(s)]"),
                  text("manager_ready"), text("lists_changed"), text("console List added : a list")},
                 "List added : A\nList added : a list\n");
    QCOMPARE(manager.listNames(), (QStringList{text("A"), text("a list")}));
    QCOMPARE(manager.getList(text("A")), (QStringList{text("Bw"), text("BW"), text("Bw")}));
    QCOMPARE(manager.getList(text("a list")), QStringList{text("@")});
}

void TestManager::addEmptyList()
{
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(manager.addList(text("A"), {}));
    watch.expect({text("console Empty list, not added."), text("manager_ready"), text("lists_changed"),
                  text("console List added : A")},
                 "List added : A\n");
    QCOMPARE(manager.listNames(), QStringList());
}

void TestManager::addListWithoutName()
{
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(!manager.addList(QString(), {text("Bw")}));
    QVERIFY(!manager.addList(text(""), {}));
    watch.expect({text("manager_ready"), text("manager_ready")}, "");
    QCOMPARE(manager.listNames(), QStringList());
}

void TestManager::addListWithATakenName()
{
    TAVManager manager;
    manager.addList(text("A"), {text("Bw")});
    Watch watch(manager);
    QVERIFY(!manager.addList(text("A"), {text("BW")}));
    QVERIFY(!manager.addList(text("A"), {}));
    watch.expect({text("manager_ready"), text("manager_ready")}, "");
    QCOMPARE(manager.listNames(), QStringList{text("A")});
    QCOMPARE(manager.getList(text("A")), QStringList{text("Bw")});
}

void TestManager::remList()
{
    TAVManager manager;
    for (const char *name : {"A", "B", "C", "D"}) {
        manager.addList(text(name), {text(name) + text("1")});
    }
    Watch watch(manager);
    QVERIFY(manager.remList(text("B")));
    watch.expect({text("console List B removed."), text("lists_changed"), text("manager_ready")}, "");
    QCOMPARE(manager.listNames(), (QStringList{text("A"), text("C"), text("D")}));
    QCOMPARE(manager.indexOf(text("B")), -1);
    QCOMPARE(manager.indexOf(text("C")), 1);
    QCOMPARE(manager.indexOf(text("D")), 2);
    QCOMPARE(manager.getList(text("D")), QStringList{text("D1")});

    QVERIFY(manager.addList(text("B"), {text("B2")}));
    QCOMPARE(manager.listNames(), (QStringList{text("A"), text("C"), text("D"), text("B")}));
}

void TestManager::remUnknownList_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("unknown") << text("B");
    QTest::newRow("other case") << text("a");
    QTest::newRow("empty") << text("");
    QTest::newRow("null") << QString();
}

void TestManager::remUnknownList()
{
    QFETCH(QString, name);
    TAVManager manager;
    manager.addList(text("A"), {text("Bw")});
    Watch watch(manager);
    QVERIFY(!manager.remList(name));
    watch.expect({text("manager_ready"), text("console Unable to remove list.")}, "");
    QCOMPARE(manager.listNames(), QStringList{text("A")});
}

void TestManager::indexOfIsCaseSensitive()
{
    TAVManager manager;
    manager.addList(text("A"), {text("Bw")});
    QCOMPARE(manager.indexOf(text("A")), 0);
    QCOMPARE(manager.indexOf(text("a")), -1);
    QCOMPARE(manager.indexOf(text("A ")), -1);
    QVERIFY(manager.addList(text("a"), {text("Bw")}));
    Watch watch(manager);
    QCOMPARE(manager.indexOf(text("a")), 1);
    watch.expect({}, "");
}

void TestManager::getList()
{
    TAVManager manager;
    manager.addList(text("A"), {text("Bw"), text("BW")});
    Watch watch(manager);
    QCOMPARE(manager.getList(text("A")), (QStringList{text("Bw"), text("BW")}));
    QCOMPARE(manager.getList(text("a")), QStringList());
    QCOMPARE(manager.getList(QString()), QStringList());
    watch.expect({text("manager_ready"), text("manager_ready")}, "");
}

void TestManager::slotsPassOn()
{
    TAVManager manager;
    Watch watch(manager);
    manager.slot_progress(10000, 25000);
    manager.slot_load_succeeded();
    manager.slot_load_failed();
    manager.slot_console(text("any text"));
    watch.expect(
        {text("progress 10000 25000"), text("database_loaded"), text("database_empty"), text("console any text")}, "");
}

void TestManager::addListFromFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("names");
    const auto row = [](const char *title, const QByteArray &content, const QStringList &names) {
        QTest::newRow(title) << content << names;
    };
    row("lines", "Bw\nBW\nBw\n", {text("Bw"), text("BW"), text("Bw")});
    row("no newline at the end", "Bw\nBW", {text("Bw"), text("BW")});
    row("Windows line ends stay", "Bw\r\nBW\r\n\r\n", {text("Bw\r"), text("BW\r"), text("\r")});
    row("a line end of Windows twice over stays", "Bw\r\r\nBW\r\r\n\r\r\n",
        {text("Bw\r\r"), text("BW\r\r"), text("\r\r")});
    row("blank lines", "\n\nBw\n\n\nBW\n\n", {text("Bw"), text("BW")});
    row("blanks and tabs stay", " Bw \nB W\t1\n \n", {text(" Bw "), text("B W\t1"), text(" ")});
    row("byte-order mark",
        "\xEF\xBB\xBF"
        "Bw\n\xEF\xBB\xBF"
        "BW\n",
        {text("Bw"), QString(QChar(0xFEFF) + text("BW"))});
    row("letters", "\xC3\xA9\xF0\x9F\x98\x80\n", {text("\u00E9\U0001F600")});
    row("invalid bytes", "B\xFFw\n\xE2\x82\nBW\n", {text("B\uFFFDw"), text("\uFFFD\uFFFD"), text("BW")});
    row("NUL bytes", bytes("B\0w\n\0\nBW\n"),
        {QString(text("B") + QChar(0) + text("w")), QString(QChar(0)), text("BW")});
}

void TestManager::addListFromFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, names);
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(manager.addListFromFile(text("A"), write(content)));
    watch.expect({QStringLiteral("console List added : A [ %1 element(s)]").arg(names.size()), text("manager_ready"),
                  text("lists_changed"), text("console List added : A")},
                 "List added : A\n");
    QCOMPARE(manager.getList(text("A")), names);
}

void TestManager::addListFromEmptyFile()
{
    for (const char *content : {"", "\n", "\n\n\n", "\xEF\xBB\xBF\n"}) {
        TAVManager manager;
        Watch watch(manager);
        QVERIFY(manager.addListFromFile(text("A"), write(content)));
        watch.expect({text("console Empty list, not added."), text("manager_ready"), text("lists_changed"),
                      text("console List added : A")},
                     "List added : A\n");
        QCOMPARE(manager.listNames(), QStringList());
    }
}

void TestManager::addListFromFileThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing file") << folder.path(text("missing.g6"));
    QTest::newRow("file in a file") << write("Bw\n") + text("/file.g6");
    QTest::newRow("directory") << folder.path();
}

void TestManager::addListFromFileThatCannotBeOpened()
{
    QFETCH(QString, path);
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(!manager.addListFromFile(text("A"), path));
    watch.expect({text("console Unable to open file :") + path, text("manager_ready")}, "Unable to open file\n");
    QCOMPARE(manager.listNames(), QStringList());
}

void TestManager::addListFromFileWithoutAFreshName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    QTest::newRow("no name") << QString() << write("BW\n");
    QTest::newRow("taken name") << text("A") << write("BW\n");
    QTest::newRow("the name is checked before the file") << text("A") << folder.path(text("missing.g6"));
}

void TestManager::addListFromFileWithoutAFreshName()
{
    QFETCH(QString, name);
    QFETCH(QString, path);
    TAVManager manager;
    manager.addList(text("A"), {text("Bw")});
    Watch watch(manager);
    QVERIFY(!manager.addListFromFile(name, path));
    watch.expect({text("manager_ready")}, "");
    QCOMPARE(manager.getList(text("A")), QStringList{text("Bw")});
    QCOMPARE(manager.listNames(), QStringList{text("A")});
}

void TestManager::setOperations()
{
    Desk desk;
    desk.manager.addList(text("bab"), words({"b", "a", "b"}));
    desk.manager.addList(text("ca"), words({"c", "a"}));
    desk.manager.addList(text("ab"), words({"a", "b"}));
    desk.manager.addList(text("babc"), words({"b", "a", "b", "c"}));
    desk.manager.addList(text("b"), words({"b"}));
    SignalRecorder signalsSeen(desk.manager);

    QVERIFY(desk.manager.addUnionList(text("union"), text("bab"), text("ca")));
    QCOMPARE(signalsSeen.take(), added("union", 3) + words({"manager_ready"}));
    QCOMPARE(desk.manager.getList(text("union")), words({"a", "b", "c"}));

    QVERIFY(desk.manager.addInterList(text("inter"), text("bab"), text("ab")));
    QCOMPARE(signalsSeen.take(), added("inter", 3) + words({"manager_ready"}));
    QCOMPARE(desk.manager.getList(text("inter")), words({"b", "a", "b"}));

    QVERIFY(desk.manager.addExceptList(text("except"), text("babc"), text("b")));
    QCOMPARE(signalsSeen.take(), added("except", 2) + words({"manager_ready"}));
    QCOMPARE(desk.manager.getList(text("except")), words({"a", "c"}));
}

void TestManager::emptyResults()
{
    Desk desk;
    desk.manager.addList(text("a"), words({"a"}));
    desk.manager.addList(text("A"), words({"A"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.addInterList(text("none"), text("a"), text("A")));
    QCOMPARE(signalsSeen.take(), addedEmpty("none") + words({"manager_ready"}));
    QVERIFY(desk.manager.addExceptList(text("none"), text("a"), text("a")));
    QCOMPARE(signalsSeen.take(), addedEmpty("none") + words({"manager_ready"}));
    QCOMPARE(desk.manager.listNames(), words({"a", "A"}));
}

void TestManager::setOperationRefusals()
{
    Desk desk;
    desk.manager.addList(text("a"), words({"a"}));
    const SignalRecorder signalsSeen(desk.manager);
    for (const Combination combine : combinations) {
        QVERIFY(!(desk.manager.*combine)(QString(), text("a"), text("a")));
        QVERIFY(!(desk.manager.*combine)(text("a"), text("a"), text("a")));
        QVERIFY(!(desk.manager.*combine)(text("new"), text("missing"), text("a")));
        QVERIFY(!(desk.manager.*combine)(text("new"), text("a"), QString()));
    }
    QCOMPARE(signalsSeen.recorded(), QStringList(QVector<QString>(12, refused).toList()));
    QCOMPARE(desk.manager.listNames(), words({"a"}));
}

void TestManager::closures()
{
    Desk desk;
    desk.manager.addList(text("source"), words({"unknown", "B"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.addSubsList(text("below"), text("source")));
    QCOMPARE(signalsSeen.take(),
             words({"console Database cleared."}) + added("below", 2) + words({"lists_changed", "manager_ready"}));
    QCOMPARE(desk.manager.getList(text("below")), words({"B", "A"}));
    QVERIFY(desk.manager.addOverList(text("above"), text("source")));
    QCOMPARE(signalsSeen.take(),
             words({"console Database cleared."}) + added("above", 2) + words({"lists_changed", "manager_ready"}));
    QCOMPARE(desk.manager.getList(text("above")), words({"B", "C"}));

    desk.manager.addList(text("strangers"), words({"unknown"}));
    signalsSeen.take();
    QVERIFY(desk.manager.addSubsList(text("none"), text("strangers")));
    QCOMPARE(signalsSeen.take(),
             words({"console Database cleared."}) + addedEmpty("none") + words({"lists_changed", "manager_ready"}));
}

void TestManager::closureRefusals()
{
    Desk desk;
    desk.manager.addList(text("a"), words({"A"}));
    const SignalRecorder signalsSeen(desk.manager);
    for (const auto closure : {&TAVManager::addSubsList, &TAVManager::addOverList}) {
        QVERIFY(!(desk.manager.*closure)(QString(), text("a")));
        QVERIFY(!(desk.manager.*closure)(text("new"), QString()));
        QVERIFY(!(desk.manager.*closure)(text("a"), text("a")));
        QVERIFY(!(desk.manager.*closure)(text("new"), text("missing")));
    }
    QCOMPARE(signalsSeen.recorded(), QStringList(QVector<QString>(8, refused).toList()));
}

void TestManager::savedLists()
{
    Desk desk;
    desk.manager.addList(text("one"), words({"Bw"}));
    desk.manager.addList(text("three"), words({"Bw", "@", "\xe9"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.saveList(text("one"), desk.folder.path("one.g6")));
    QVERIFY(desk.manager.saveList(text("three"), desk.folder.path("three.g6")));
    QCOMPARE(contents(desk.folder.path("one.g6")), QByteArray("Bw"));
    QCOMPARE(contents(desk.folder.path("three.g6")), QByteArray("Bw\n@\n\xe9"));
    QCOMPARE(signalsSeen.take(), words({"manager_ready", "manager_ready"}));
    QVERIFY(desk.manager.saveList(text("one"), desk.folder.path("three.g6"))); // replaces a longer file
    QCOMPARE(contents(desk.folder.path("three.g6")), QByteArray("Bw"));
}

void TestManager::saveListRefusals()
{
    Desk desk;
    desk.manager.addList(text("one"), words({"Bw"}));
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(!desk.manager.saveList(QString(), desk.folder.path("out.g6")));
    QVERIFY(!desk.manager.saveList(text("missing"), desk.folder.path("out.g6")));
    QCOMPARE(signalsSeen.take(), words({"manager_ready", "manager_ready"}));
    QVERIFY(!QFile::exists(desk.folder.path("out.g6")));

    StderrCapture diagnostics;
    const QString file = desk.folder.path("no/such/directory.g6");
    QVERIFY(!desk.manager.saveList(text("one"), file));
    QVERIFY(!desk.manager.saveList(text("one"), QString()));
    QCOMPARE(diagnostics.take(), QByteArray("Unable to open file\nUnable to open file\n"));
    QCOMPARE(signalsSeen.take(),
             QStringList({QStringLiteral("console Unable to open file :") + file, QStringLiteral("manager_ready"),
                          QStringLiteral("console Unable to open file :"), QStringLiteral("manager_ready")}));
}

void TestManager::failedSaveKeepsTheOldList()
{
    Desk desk;
    desk.manager.addList(text("long"), QVector<QString>(5000, text("G~~~~{")).toList());
    const QString file = desk.folder.write("old.g6", "Bw\n");
    const SignalRecorder signalsSeen(desk.manager);
    bool saved = true;
    {
        const FullDisk disk;
        saved = desk.manager.saveList(text("long"), file);
    }
    QVERIFY(!saved);
    QCOMPARE(signalsSeen.recorded(),
             QStringList({QStringLiteral("console Unable to write file :") + file, QStringLiteral("manager_ready")}));
    QCOMPARE(contents(file), QByteArray("Bw\n"));
}

void TestManager::roundTrip()
{
    Desk desk;
    desk.manager.addList(text("list"), words({"Bw", "@", "Bw", "G?zTb_"}));
    QVERIFY(desk.manager.saveList(text("list"), desk.folder.path("list.g6")));
    QVERIFY(desk.manager.addListFromFile(text("again"), desk.folder.path("list.g6")));
    QCOMPARE(desk.manager.getList(text("again")), words({"Bw", "@", "Bw", "G?zTb_"}));
    QVERIFY(desk.manager.saveGraphs(desk.folder.path("all.g6")));
    QVERIFY(desk.manager.addListFromFile(text("all"), desk.folder.path("all.g6")));
    QCOMPARE(desk.manager.getList(text("all")), words({"A", "B", "C"}));
}

void TestManager::roundTripOfManyNames()
{
    QStringList names;
    for (int i = 0; i < 100000; ++i) {
        names.append(QString::number(6 * i));
    }
    Desk desk;
    desk.manager.addList(text("list"), names);
    QVERIFY(desk.manager.saveList(text("list"), desk.folder.path("list.g6")));
    QCOMPARE(contents(desk.folder.path("list.g6")), names.join(QLatin1Char('\n')).toLatin1());
    QVERIFY(desk.manager.addListFromFile(text("again"), desk.folder.path("list.g6")));
    QCOMPARE(desk.manager.getList(text("again")), names);
}

void TestManager::savesTellTheFile()
{
    Desk desk;
    SignalRecorder signalsSeen(desk.manager);
    const QString graphs = desk.folder.path("all.g6");
    const QString invariant = desk.folder.path("i1.txt");
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

void TestManager::invariantLoadsTellTheOutcome()
{
    Desk desk;
    const QString good = desk.folder.write("good.txt", "h\nA\t1\nB\t2\nC\t3\n");
    const QString bad = desk.folder.write("bad.txt", "h\nA\t1\nX\t2\nC\t3\n");
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

void TestManager::valuesThatAreSet()
{
    Desk desk;
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.setInv1(text("this"), {1.5, std::nullopt, 3.0}));
    QVERIFY(desk.manager.setInv2(text("that"), {std::nullopt, 2.0, 4.0}));
    QCOMPARE(signalsSeen.take(),
             words({"console Computed this", "manager_ready", "console Computed that", "manager_ready"}));
    QCOMPARE(desk.inv1(), QByteArray("1.5 NA 3"));
    desk.manager.exch_1_2();
    QCOMPARE(desk.inv1(), QByteArray("NA 2 4"));
    desk.manager.resetDatabase();
    signalsSeen.take();
    QVERIFY(!desk.manager.setInv1(text("this"), {}));
    QCOMPARE(signalsSeen.take(), words({"console No data to match.", "manager_ready"}));
}

void TestManager::derivations()
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

void TestManager::comparisonLists_data()
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

void TestManager::comparisonLists()
{
    QFETCH(Builder, build);
    QFETCH(QStringList, listed);
    QFETCH(bool, walks);
    Desk desk("low\nmid\t0\nhigh\t1\n");
    desk.setInvariants("1 2 3", walks ? "2 2 1" : "1 1 1");
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY((desk.manager.*build)(text("found")));
    QStringList expected = walks ? words({"console Database cleared."}) : QStringList();
    expected += listed.isEmpty() ? words({"console Empty list"}) : added("found", listed.size());
    QCOMPARE(signalsSeen.take(), expected + words({"lists_changed", "manager_ready"}));
    QCOMPARE(desk.manager.getList(text("found")), listed);
}

void TestManager::comparisonsOfMissingValues()
{
    Desk desk("low\nmid\t0\nhigh\t1\n");
    desk.setInvariants("NA NA NA", "NA NA NA");
    SignalRecorder signalsSeen(desk.manager);
    for (const Builder build : {&TAVManager::addI1geI2List, &TAVManager::addI1leI2List}) {
        QVERIFY((desk.manager.*build)(text("found")));
        QCOMPARE(signalsSeen.take(), words({"console Empty list", "lists_changed", "manager_ready"}));
        QCOMPARE(desk.manager.listNames(), QStringList());
    }
}

void TestManager::emptyListsThatAreKept()
{
    Desk desk("low\nmid\t0\nhigh\t1\n");
    desk.setInvariants("NA NA NA", "NA NA NA");
    desk.manager.addList(text("dropped"), {});
    desk.manager.keepEmptyLists();
    SignalRecorder signalsSeen(desk.manager);
    QVERIFY(desk.manager.addI1geI2List(text("a")));
    QCOMPARE(signalsSeen.take(), added("a", 0) + words({"lists_changed", "manager_ready"}));
    QVERIFY(desk.manager.addList(text("b"), {}));
    QCOMPARE(signalsSeen.take(), added("b", 0));
    QVERIFY(desk.manager.addUnionList(text("c"), text("a"), text("b")));
    QCOMPARE(signalsSeen.take(), added("c", 0) + words({"manager_ready"}));
    QVERIFY(!desk.manager.addList(text("a"), words({"low"})));
    QCOMPARE(desk.manager.listNames(), words({"a", "b", "c"}));
    QCOMPARE(desk.manager.getList(text("a")), QStringList());
    const QString file = desk.folder.write("list.g6", "old");
    QVERIFY(desk.manager.saveList(text("a"), file));
    QCOMPARE(contents(file), QByteArray());
    QVERIFY(desk.manager.remList(text("a")));
    QCOMPARE(desk.manager.listNames(), words({"b", "c"}));
}

void TestManager::comparisonRefusals()
{
    Desk desk;
    desk.manager.addList(text("taken"), words({"A"}));
    SignalRecorder signalsSeen(desk.manager);
    for (const Builder build : builders) {
        QVERIFY(!(desk.manager.*build)(QString()));
        QVERIFY(!(desk.manager.*build)(text("taken")));
        QCOMPARE(signalsSeen.take(),
                 words({"console Empty name", "manager_ready", "console Name already used", "manager_ready"}));
    }
    QCOMPARE(desk.manager.listNames(), words({"taken"}));
}

void TestManager::refusalsDuringALoad()
{
    Desk desk;
    desk.manager.addList(text("list"), words({"A"}));
    const QString invariant = desk.folder.write("i.txt", "h\nA\t1\nB\t2\nC\t3\n");
    const QString out = desk.folder.path("out");
    desk.manager.loadDatabase(desk.folder.path("database.tav"));
    SignalRecorder signalsSeen(desk.manager);

    std::vector<std::function<bool()>> operations;
    for (const Derivation derive : derivationsOfAll) {
        operations.emplace_back([&, derive] { return (desk.manager.*derive)(), false; });
    }
    for (const Builder build : builders) {
        operations.emplace_back([&, build] { return (desk.manager.*build)(text("new")); });
    }
    operations.emplace_back([&] { return desk.manager.addSubsList(text("new"), text("list")); });
    operations.emplace_back([&] { return desk.manager.addOverList(text("new"), text("list")); });
    operations.emplace_back([&] { return desk.manager.saveGraphs(out); });
    operations.emplace_back([&] { return desk.manager.saveInv1(out); });
    operations.emplace_back([&] { return desk.manager.loadInv1(invariant), false; });
    operations.emplace_back([&] { return desk.manager.loadInv2(invariant), false; });
    operations.emplace_back([&] { return desk.manager.setInv1(text("one"), {1.0, 1.0, 1.0}); });
    operations.emplace_back([&] { return desk.manager.setInv2(text("one"), {1.0, 1.0, 1.0}); });
    for (const auto &operation : operations) {
        QVERIFY(!operation());
        QCOMPARE(signalsSeen.take(), QStringList({busy, refused}));
    }
    QVERIFY(!QFile::exists(out));
    QCOMPARE(desk.manager.listNames(), words({"list"}));
    QVERIFY(waitForOutcome(desk.manager, signalsSeen));
    QCOMPARE(desk.inv1(), QByteArray("NA NA NA"));
}

void TestManager::listsGoOnDuringALoad()
{
    Desk desk;
    desk.manager.addList(text("a"), words({"b", "a"}));
    desk.manager.loadDatabase(desk.folder.path("database.tav"));
    QVERIFY(desk.manager.addUnionList(text("sorted"), text("a"), text("a")));
    QVERIFY(desk.manager.saveList(text("sorted"), desk.folder.path("sorted.g6")));
    QVERIFY(desk.manager.addListFromFile(text("again"), desk.folder.path("sorted.g6")));
    QVERIFY(desk.manager.remList(text("a")));
    QCOMPARE(desk.manager.listNames(), words({"sorted", "again"}));
}

void TestManager::everythingWorksWhenTheOutcomeArrives()
{
    Desk desk;
    bool saved = false;
    bool compared = false;
    connect(&desk.manager, &TAVManager::signal_database_loaded, &desk.manager, [&] {
        saved = desk.manager.saveGraphs(desk.folder.path("all.g6"));
        desk.manager.I2getsI1();
        compared = desk.manager.addI1geI2List(text("none"));
    });
    desk.load(desk.folder.path("database.tav"));
    QVERIFY(saved);
    QVERIFY(compared);

    bool refusedAfterAFailure = true;
    connect(&desk.manager, &TAVManager::signal_database_empty, &desk.manager, [&] {
        SignalRecorder signalsSeen(desk.manager);
        desk.manager.saveGraphs(desk.folder.path("none.g6"));
        refusedAfterAFailure = signalsSeen.take() != words({"console No data to save.", "manager_ready"});
    });
    QVERIFY(!loadAndWait(desk.manager, desk.folder.path("missing.tav")));
    QVERIFY(!refusedAfterAFailure);
}

void TestManager::loadDatabase()
{
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(loadAndWait(manager, write("A\nB\t0\nC\t1\t0\n")));
    watch.expect({text("console Loading data ... please wait."), text("console 3 lines."), text("progress 0 3"),
                  text("console Data loaded : 3 nodes and 3 links."), text("database_loaded")},
                 "");
}

void TestManager::loadDatabaseThatFails()
{
    TAVManager manager;
    {
        Watch watch(manager);
        QVERIFY(!loadAndWait(manager, write("A\nB\t2\n")));
        watch.expect({text("console Loading data ... please wait."), text("console 2 lines."), text("progress 0 2"),
                      text("console ERROR in database format."), text("database_empty")},
                     "Error in database format\n");
    }
    Watch watch(manager);
    QVERIFY(!loadAndWait(manager, folder.path(text("missing.tav"))));
    watch.expect({text("console Loading data ... please wait."), text("database_empty")}, "Unable to open file\n");
}

void TestManager::loadingKeepsTheLists()
{
    TAVManager manager;
    manager.addList(text("A"), {text("Bw"), text("BW")});
    manager.addList(text("B"), {text("@")});
    for (const char *content : {"Bw\n", "@\nA_\t0\n"}) {
        QVERIFY(loadAndWait(manager, write(content)));
        QCOMPARE(manager.listNames(), (QStringList{text("A"), text("B")}));
        QCOMPARE(manager.getList(text("A")), (QStringList{text("Bw"), text("BW")}));
        QCOMPARE(manager.getList(text("B")), QStringList{text("@")});
    }
}

void TestManager::resetDatabase()
{
    TAVManager manager;
    manager.addList(text("A"), {text("Bw")});
    Watch watch(manager);
    manager.resetDatabase();
    watch.expect({text("database_empty")}, "");
    QCOMPARE(manager.listNames(), QStringList{text("A")});
}

void TestManager::faultOfAFile_data()
{
    QTest::addColumn<FileOperation>("operation");
    QTest::addColumn<QByteArray>("content"); // of a file with which it succeeds
    QTest::newRow("load a database") << FileOperation(load) << QByteArray("A\n");
    QTest::newRow("load a list") << FileOperation(addListOfFile) << QByteArray("A\n");
    QTest::newRow("load I1") << FileOperation(&TAVManager::loadInv1) << QByteArray("GRAPH\tINV1\nA\t1\n");
    QTest::newRow("load I2") << FileOperation(&TAVManager::loadInv2) << QByteArray("GRAPH\tINV1\nA\t1\n");
    QTest::newRow("save a list") << FileOperation(saveListL) << QByteArray();
    QTest::newRow("save the names") << FileOperation(&TAVManager::saveGraphs) << QByteArray();
    QTest::newRow("save I1") << FileOperation(&TAVManager::saveInv1) << QByteArray();
}

void TestManager::faultOfAFile()
{
    QFETCH(FileOperation, operation);
    QFETCH(QByteArray, content);
    TAVManager manager;
    QCOMPARE(manager.fileFault(), QString());
    load(manager, write("A\n"));
    manager.addList(text("L"), {text("A")});

    operation(manager, folder.path());
    QCOMPARE(manager.fileFault(), isADirectory);
    operation(manager, folder.path("missing/file"));
    QCOMPARE(manager.fileFault(), text("No such file or directory"));
    operation(manager, QString());
    QCOMPARE(manager.fileFault(), text("No such file or directory"));

    load(manager, write("A\n"));
    saveListL(manager, folder.path());
    operation(manager, write(content));
    QCOMPARE(manager.fileFault(), QString());
}

void TestManager::faultOfAFileIsForgotten_data()
{
    QTest::addColumn<FileOperation>("before");
    QTest::addColumn<FileOperation>("operation"); // fails for another reason than that of a file
    const auto row = [](const char *title, const FileOperation &before, const FileOperation &operation) {
        QTest::newRow(title) << before << operation;
    };
    row("load a database", load, load);
    row("load a list", addListOfFile,
        [](TAVManager &manager, const QString &path) { manager.addListFromFile(text("L"), path); });
    row("load I1", &TAVManager::loadInv1, &TAVManager::loadInv1);
    row("load I2", &TAVManager::loadInv2, &TAVManager::loadInv2);
    row("save a list", saveListL, [](TAVManager &manager, const QString &path) { manager.saveList(text("M"), path); });
    const auto saveNone = [](TAVManager &manager, const QString &path) {
        manager.resetDatabase();
        manager.saveInv1(path);
    };
    row("save I1", &TAVManager::saveInv1, saveNone);
}

void TestManager::faultOfAFileIsForgotten()
{
    QFETCH(FileOperation, before);
    QFETCH(FileOperation, operation);
    TAVManager manager;
    load(manager, write("A\n"));
    manager.addList(text("L"), {text("A")});
    before(manager, folder.path());
    QCOMPARE(manager.fileFault(), isADirectory);
    operation(manager, write("A\t7\n"));
    QCOMPARE(manager.fileFault(), QString());
}

void TestManager::faultOfAFileIsForgottenWhenALoadRefusesTheNext()
{
    for (const FileOperation &operation :
         {FileOperation(&TAVManager::saveInv1), FileOperation(&TAVManager::loadInv1)}) {
        TAVManager manager;
        manager.addList(text("L"), {text("A")});
        const SignalRecorder recorder(manager);
        manager.loadDatabase(write("A\n"));
        QCOMPARE(manager.fileFault(), QString());
        saveListL(manager, folder.path());
        QCOMPARE(manager.fileFault(), isADirectory);
        operation(manager, write("A\n"));
        QCOMPARE(manager.fileFault(), QString());
        QVERIFY(waitForOutcome(manager, recorder));
    }
}

void TestManager::faultOfAFileThatCannotBeRead()
{
    for (const FileOperation &operation :
         {FileOperation(load), FileOperation(addListOfFile), FileOperation(&TAVManager::loadInv1),
          FileOperation(&TAVManager::loadInv2)}) {
        TAVManager manager;
        load(manager, write("A\n"));
        operation(manager, text("/proc/self/mem"));
        QCOMPARE(manager.fileFault(), text("Input/output error"));
    }
}

QTEST_GUILESS_MAIN(TestManager)
#include "tst_manager.moc"
