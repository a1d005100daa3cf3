// Requests that meet a load at any moment of it: while it counts lines, while it reads records, while it links them,
// and when it is over but its last signals still wait for delivery. Between the start of the load and the request there
// is other work, in an amount that the seed chooses; what is expected holds wherever the load is then.

#include "TAVgraph.h"
#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "TAVsearchengine.h"
#include "support/literals.h"
#include "support/loading.h"
#include "support/mainwindowfixture.h"
#include "support/otherwork.h"
#include "support/patience.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QCoreApplication>
#include <QFile>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>

namespace
{
// The large database is read in several chunks and linked by several threads.
constexpr int graphCount = 20000;
constexpr int nameLength = 150;

/// How often each test meets a load that is running; TAVOLINE_REPETITIONS says otherwise.
int repetitionCount()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("TAVOLINE_REPETITIONS", &given);
    return given ? count : 5;
}

/// A database file, the signals of the manager that belong to its load, and the names of its graphs, one a line.
struct Database {
    QString path;
    QStringList expected;
    QByteArray names;
};

/// What may be asked for while a database is being loaded, and the signals that answer.
struct Command {
    std::function<void(TAVManager &)> call;
    QStringList whileLoading;
    int meetings = 0; ///< how often it met a load
};

/// The names of the whole database, one a line; an empty database is not saved.
QByteArray namesSaved(TAVManager &manager, const QString &path)
{
    return manager.saveGraphs(path) ? contents(path) : QByteArray();
}
} // namespace

class TestLoadRaces : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void loadDuringLoad();
    void clearDuringLoad();
    void everyCommandDuringLoad();
    void deletionDuringLoad();
    void engineStoppedDuringLoad();
    void windowClosedDuringLoad();

private:
    Database write(const char *name, const QByteArray &content, const QStringList &expected, const QByteArray &names);
    QVector<Command> commands() const;
    int random(int first, int last) { return std::uniform_int_distribution<int>(first, last)(generator); }
    void work(int rounds);
    void passPartOfALoad();

    const int repetitions = repetitionCount();
    std::mt19937 generator{20200229};
    TestFolder folder;
    Database large;
    Database small;
    Database malformed;
    Database missing;
    int roundsOfALoad = 0; // that are done while the large database is loaded
    std::unique_ptr<TAVManager> manager;
    std::unique_ptr<SignalRecorder> recorder;
};

Database TestLoadRaces::write(const char *name, const QByteArray &content, const QStringList &expected,
                              const QByteArray &names)
{
    return {folder.write(name, content),
            QStringList{QStringLiteral("console Loading data ... please wait.")} + expected, names};
}

void TestLoadRaces::initTestCase()
{
    QByteArray chain = QByteArray("G0").leftJustified(nameLength, '_') + '\n';
    QByteArray names = chain;
    for (int i = 1; i < graphCount; ++i) {
        const QByteArray name = ('G' + QByteArray::number(i)).leftJustified(nameLength, '_');
        chain += name + '\t' + QByteArray::number(i - 1) + "\t0\n";
        names += name + '\n';
    }
    large = write("large.tav", chain,
                  words({"console 20000 lines.", "progress 0 20000", "progress 10000 20000",
                         "console Data loaded : 20000 nodes and 39998 links.", "database_loaded"}),
                  names);
    small = write(
        "small.tav", "A\nB\t0\nC\t0\t1\n",
        words({"console 3 lines.", "progress 0 3", "console Data loaded : 3 nodes and 3 links.", "database_loaded"}),
        "A\nB\nC\n");
    malformed =
        write("malformed.tav", "A\nB\t7\n",
              words({"console 2 lines.", "progress 0 2", "console ERROR in database format.", "database_empty"}), "");
    missing = {folder.path("missing.tav"), words({"console Loading data ... please wait.", "database_empty"}), ""};

    init();
    for (int i = 0; i < 2; ++i) { // the first one also warms up
        recorder->take();
        manager->loadDatabase(large.path);
        for (roundsOfALoad = 0; !hasOutcome(recorder->recorded()); ++roundsOfALoad) {
            doOtherWork();
            QCoreApplication::processEvents();
        }
        QVERIFY(waitForOutcome(*manager, *recorder));
        QCOMPARE(recorder->recorded(), large.expected);
    }
    qInfo("a load takes %d rounds; %d repetitions", roundsOfALoad, repetitions);
    cleanup();
}

void TestLoadRaces::init()
{
    manager = std::make_unique<TAVManager>();
    recorder = std::make_unique<SignalRecorder>(*manager);
}

void TestLoadRaces::cleanup()
{
    manager.reset();
    recorder.reset();
}

/// Other work while a load goes on: half of the times with the event loop running, else with all signals waiting for
/// delivery.
void TestLoadRaces::work(int rounds)
{
    const bool deliver = random(0, 1) == 1;
    for (int i = 0; i < rounds; ++i) {
        doOtherWork();
        if (deliver) {
            QCoreApplication::processEvents();
        }
    }
}

/// Lets a load run up to a moment between its start and a little after its end.
void TestLoadRaces::passPartOfALoad()
{
    work(random(0, roundsOfALoad + roundsOfALoad / 5));
}

void TestLoadRaces::loadDuringLoad()
{
    const Database *const others[] = {&small, &large, &malformed, &missing};
    for (int i = 0; i < repetitions; ++i) {
        const Database &other = *others[i % 4];
        manager->loadDatabase(large.path);
        passPartOfALoad();
        recorder->take();
        manager->loadDatabase(other.path);
        QVERIFY(waitForOutcome(*manager, *recorder));
        QCOMPARE(recorder->take(), other.expected);
        QCOMPARE(namesSaved(*manager, folder.path("names.g6")), other.names);
        recorder->take();
    }
}

void TestLoadRaces::clearDuringLoad()
{
    const QStringList empty = words({"database_empty"});
    for (int i = 0; i < repetitions; ++i) {
        manager->loadDatabase(large.path);
        passPartOfALoad();
        recorder->take();
        manager->resetDatabase();
        QCOMPARE(recorder->recorded(), empty);
        passPartOfALoad();
        QCoreApplication::processEvents();
        QCOMPARE(recorder->take(), empty);
        QCOMPARE(namesSaved(*manager, folder.path("names.g6")), QByteArray());
        recorder->take();
        manager->loadDatabase(small.path);
        QVERIFY(waitForOutcome(*manager, *recorder));
        QCOMPARE(recorder->take(), small.expected);
    }
}

/// Every operation of the manager but loading and clearing. Each one makes or changes what no other one uses.
QVector<Command> TestLoadRaces::commands() const
{
    const QStringList refusal = words({"console Not possible while a database is being loaded.", "manager_ready"});
    QVector<Command> all;
    for (void (TAVManager::*derivation)() :
         {&TAVManager::avgSub1, &TAVManager::avgOver1, &TAVManager::avgAll1, &TAVManager::minSub1,
          &TAVManager::minOver1, &TAVManager::minAll1, &TAVManager::maxSub1, &TAVManager::maxOver1,
          &TAVManager::maxAll1, &TAVManager::exch_1_2, &TAVManager::I1getsI2, &TAVManager::I2getsI1}) {
        all.append({[derivation](TAVManager &m) { (m.*derivation)(); }, refusal});
    }
    for (bool (TAVManager::*comparison)(const QString &) :
         {&TAVManager::addI1geI2List, &TAVManager::addI1leI2List, &TAVManager::addI1eqI2subsList,
          &TAVManager::addI1eqI2overList, &TAVManager::addI1geI2subsList, &TAVManager::addI1leI2subsList,
          &TAVManager::addI1geI2overList, &TAVManager::addI1leI2overList, &TAVManager::addI1gtI2subsList,
          &TAVManager::addI1ltI2subsList, &TAVManager::addI1gtI2overList, &TAVManager::addI1ltI2overList}) {
        const QString name = QStringLiteral("comparison %1").arg(all.size());
        all.append({[comparison, name](TAVManager &m) { (m.*comparison)(name); }, refusal});
    }
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString written = folder.path("written.txt");
    const QString saved = folder.path("saved.g6");
    const QString listFile = folder.path("list.g6");
    all += {
        {[a](TAVManager &m) { m.addSubsList(QStringLiteral("subs"), a); }, refusal},
        {[a](TAVManager &m) { m.addOverList(QStringLiteral("over"), a); }, refusal},
        {[written](TAVManager &m) { m.saveGraphs(written); }, refusal},
        {[written](TAVManager &m) { m.saveInv1(written); }, refusal},
        {[listFile](TAVManager &m) { m.loadInv1(listFile); }, refusal},
        {[listFile](TAVManager &m) { m.loadInv2(listFile); }, refusal},
        {[a, b](TAVManager &m) { m.addUnionList(QStringLiteral("union"), a, b); },
         words({"console List added : union [ 3 element(s)]", "manager_ready", "lists_changed",
                "console List added : union", "manager_ready"})},
        {[a, b](TAVManager &m) { m.addInterList(QStringLiteral("inter"), a, b); },
         words({"console List added : inter [ 1 element(s)]", "manager_ready", "lists_changed",
                "console List added : inter", "manager_ready"})},
        {[a, b](TAVManager &m) { m.addExceptList(QStringLiteral("except"), a, b); },
         words({"console List added : except [ 1 element(s)]", "manager_ready", "lists_changed",
                "console List added : except", "manager_ready"})},
        {[listFile](TAVManager &m) { m.addListFromFile(QStringLiteral("file"), listFile); },
         words({"console List added : file [ 2 element(s)]", "manager_ready", "lists_changed",
                "console List added : file"})},
        {[](TAVManager &m) { m.addList(QStringLiteral("given"), words({"G1"})); },
         words({"console List added : given [ 1 element(s)]", "manager_ready", "lists_changed",
                "console List added : given"})},
        {[a, saved](TAVManager &m) { m.saveList(a, saved); }, words({"manager_ready"})},
        {[](TAVManager &m) { m.remList(QStringLiteral("removed")); },
         words({"console List removed removed.", "lists_changed", "manager_ready"})},
        {[a](TAVManager &m) {
             QCOMPARE(m.getList(a), words({"G7", "G8"}));
         },
         {}},
    };
    return all;
}

void TestLoadRaces::everyCommandDuringLoad()
{
    folder.write("list.g6", "G1\nG2\n");
    QVector<Command> all = commands();
    const auto isRare = [this](const Command &command) { return command.meetings < repetitions; };
    while (std::any_of(all.begin(), all.end(), isRare)) {
        init();
        manager->addList(QStringLiteral("a"), words({"G7", "G8"}));
        manager->addList(QStringLiteral("b"), words({"G8", "G9"}));
        manager->addList(QStringLiteral("removed"), words({"G0"}));
        recorder->take();
        std::shuffle(all.begin(), all.end(), generator);
        QStringList ofTheLoad;
        manager->loadDatabase(large.path);
        for (Command &command : all) {
            work(random(0, roundsOfALoad) / all.size());
            ofTheLoad += recorder->take();
            if (hasOutcome(ofTheLoad)) {
                break;
            }
            command.call(*manager);
            QCOMPARE(recorder->take(), command.whileLoading);
            ++command.meetings;
        }
        if (!hasOutcome(ofTheLoad)) {
            QVERIFY(waitForOutcome(*manager, *recorder));
            ofTheLoad += recorder->take();
        }
        QCOMPARE(ofTheLoad, large.expected);
        QVERIFY(!QFile::exists(folder.path("written.txt")));
        QCOMPARE(namesSaved(*manager, folder.path("names.g6")), large.names);
    }
}

void TestLoadRaces::deletionDuringLoad()
{
    for (int i = 0; i < repetitions; ++i) {
        init();
        manager->loadDatabase(large.path);
        passPartOfALoad();
        recorder->take();
        manager.reset();
        QCoreApplication::processEvents();
        QCOMPARE(recorder->recorded(), QStringList());
    }
}

void TestLoadRaces::engineStoppedDuringLoad()
{
    TAVSearchEngine engine;
    for (int i = 0; i < repetitions; ++i) {
        engine.setFilename(large.path);
        engine.start();
        passPartOfALoad();
        engine.requestInterruption();
        engine.wait();
        engine.eraseDatabase();
        QCOMPARE(engine.records().size(), 0);

        engine.setFilename(small.path);
        engine.start();
        engine.wait();
        QCOMPARE(engine.records().size(), 3);
        QCOMPARE(engine.records().at(0)->getName(), QStringLiteral("A"));
        QCOMPARE(engine.records().at(2)->getName(), QStringLiteral("C"));
        engine.eraseDatabase();
    }
}

void TestLoadRaces::windowClosedDuringLoad()
{
    for (int i = 0; i < repetitions; ++i) {
        MainWindowFixture fixture;
        const SignalRecorder ofTheWindow(*fixture.widget()->getManager());
        fixture.pressAndChoose(QStringLiteral("Load database"), large.path);
        passPartOfALoad();
        const int before = ofTheWindow.recorded().size();
        fixture.window->close();
        QTRY_VERIFY_WITH_TIMEOUT(fixture.window.isNull(), patience);
        const QStringList delivered = large.expected.mid(0, ofTheWindow.recorded().size());
        QCOMPARE(ofTheWindow.recorded(), delivered);
        QVERIFY(delivered.size() >= before);
        passPartOfALoad();
        QCOMPARE(ofTheWindow.recorded(), delivered);
    }
}

QTEST_MAIN(TestLoadRaces)
#include "tst_loadraces.moc"
