#include "TAVmanager.h"
#include "support/loading.h"
#include "support/signalrecorder.h"
#include "support/stderrcapture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace
{
QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The bytes of a literal, NUL bytes included.
template<size_t size> QByteArray bytes(const char (&literal)[size])
{
    return QByteArray(literal, int(size) - 1);
}

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
} // namespace

/// The manager of the lists.
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
    void addListFromFileWithAnOverlongLine();
    void addListFromFileWithoutAFreshName_data();
    void addListFromFileWithoutAFreshName();

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

    QTemporaryDir directory;
    int files = 0;
};

namespace
{
/// An operation on the file @p path of a manager that has a database of the graph A and a list L.
using FileOperation = std::function<void(TAVManager &manager, const QString &path)>;

void load(TAVManager &manager, const QString &path)
{
    QSignalSpy loaded(&manager, &TAVManager::signal_database_loaded);
    QSignalSpy empty(&manager, &TAVManager::signal_database_empty);
    manager.loadDatabase(path);
    QTRY_COMPARE(loaded.count() + empty.count(), 1);
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
    QString path = directory.filePath(QStringLiteral("%1.txt").arg(files++));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
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
    QTest::newRow("missing file") << directory.filePath(text("missing.g6"));
    QTest::newRow("file in a file") << write("Bw\n") + text("/file.g6");
    QTest::newRow("directory") << directory.path();
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

void TestManager::addListFromFileWithAnOverlongLine()
{
    QFile file(write("Bw\n"));
    QVERIFY(file.resize(qint64(1) << 32)); // takes no room on the disk
    TAVManager manager;
    Watch watch(manager);
    QVERIFY(!manager.addListFromFile(text("A"), file.fileName()));
    watch.expect({text("console Unable to read file :") + file.fileName(), text("manager_ready")}, "");
    QCOMPARE(manager.fileFault(), text("a line of more than 512 MiB"));
    QCOMPARE(manager.listNames(), QStringList());
}

void TestManager::addListFromFileWithoutAFreshName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    QTest::newRow("no name") << QString() << write("BW\n");
    QTest::newRow("taken name") << text("A") << write("BW\n");
    QTest::newRow("the name is checked before the file") << text("A") << directory.filePath(text("missing.g6"));
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
    QVERIFY(!loadAndWait(manager, directory.filePath(text("missing.tav"))));
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

    operation(manager, directory.path());
    QCOMPARE(manager.fileFault(), isADirectory);
    operation(manager, directory.filePath(text("missing/file")));
    QCOMPARE(manager.fileFault(), text("No such file or directory"));
    operation(manager, QString());
    QCOMPARE(manager.fileFault(), text("No such file or directory"));

    load(manager, write("A\n"));
    saveListL(manager, directory.path());
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
    before(manager, directory.path());
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
        QSignalSpy loaded(&manager, &TAVManager::signal_database_loaded);
        manager.loadDatabase(write("A\n"));
        QCOMPARE(manager.fileFault(), QString());
        saveListL(manager, directory.path());
        QCOMPARE(manager.fileFault(), isADirectory);
        operation(manager, write("A\n"));
        QCOMPARE(manager.fileFault(), QString());
        QVERIFY(loaded.wait());
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
