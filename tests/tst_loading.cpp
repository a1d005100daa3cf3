// Loads that meet other loads, resets and the end of the manager, each at every moment of a load.

#include "TAVmanager.h"
#include "support/loadgate.h"
#include "support/loading.h"
#include "support/patience.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"
#include "support/threads.h"

#include <QCoreApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace
{
/// A database file and the signals of the manager that belong to its load.
struct Database {
    QString path;
    QStringList expected;
};
} // namespace

class TestLoading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void oneAfterTheOther();
    void loadDuringLoad_data();
    void loadDuringLoad();
    void manyLoadsAtOnce();
    void resetDuringLoad_data();
    void resetDuringLoad();
    void deletionDuringLoad_data();
    void deletionDuringLoad();
    void loadInTheSlotOfTheOutcome();
    void loadInTheSlotOfAProgressSignal();
    void resetInTheSlotOfTheOutcome();
    void deletionLaterInTheSlotOfTheOutcome();
    void requestsThatWaitInTheEventQueue();
    void deletionWithRequestsInTheEventQueue();
    void noThreadForTheLoad();

private:
    Database write(const char *name, const QByteArray &content, const QStringList &expected);
    void later(const Database &database);
    void addMoments() const;
    void loadUpToTheMoment();

    TestFolder folder;
    Database large;
    Database small;
    Database malformed;
    Database missing;
    std::unique_ptr<TAVManager> manager;
    std::unique_ptr<SignalRecorder> recorder;
    std::unique_ptr<LoadGate> gate;
};

Database TestLoading::write(const char *name, const QByteArray &content, const QStringList &expected)
{
    return {folder.write(name, content),
            QStringList{QStringLiteral("console Loading data ... please wait.")} + expected};
}

/// Asks for a load as a queued call does.
void TestLoading::later(const Database &database)
{
    TAVManager *receiver = manager.get();
    QMetaObject::invokeMethod(
        receiver, [receiver, path = database.path] { receiver->loadDatabase(path); }, Qt::QueuedConnection);
}

void TestLoading::initTestCase()
{
    QByteArray chain = "G0\n";
    for (int i = 1; i < 30000; ++i) {
        chain += 'G' + QByteArray::number(i) + '\t' + QByteArray::number(i - 1) + "\t0\n";
    }
    large = write("large.tav", chain,
                  {QStringLiteral("console 30000 lines."), QStringLiteral("progress 0 30000"),
                   QStringLiteral("progress 10000 30000"), QStringLiteral("progress 20000 30000"),
                   QStringLiteral("console Data loaded : 30000 nodes and 59998 links."),
                   QStringLiteral("database_loaded")});
    small = write("small.tav", "A\nB\t0\nC\t0\t1\n",
                  {QStringLiteral("console 3 lines."), QStringLiteral("progress 0 3"),
                   QStringLiteral("console Data loaded : 3 nodes and 3 links."), QStringLiteral("database_loaded")});
    malformed = write("malformed.tav", "A\nB\t7\n",
                      {QStringLiteral("console 2 lines."), QStringLiteral("progress 0 2"),
                       QStringLiteral("console ERROR in database format."), QStringLiteral("database_empty")});
    missing = {folder.path("missing.tav"),
               {QStringLiteral("console Loading data ... please wait."), QStringLiteral("database_empty")}};
}

void TestLoading::init()
{
    manager = std::make_unique<TAVManager>();
    recorder = std::make_unique<SignalRecorder>(*manager);
}

void TestLoading::cleanup()
{
    manager.reset();
    recorder.reset();
    gate.reset();
}

void TestLoading::oneAfterTheOther()
{
    for (const Database *database : {&small, &malformed, &large, &missing, &small, &missing, &malformed, &large}) {
        manager->loadDatabase(database->path);
        QVERIFY(waitForOutcome(*manager, *recorder));
        QCOMPARE(recorder->take(), database->expected);
    }
}

/// The moments at which something can meet the load of the large database: each of the engine's signals has just been
/// emitted, and up to that one all are delivered or none is.
void TestLoading::addMoments() const
{
    QTest::addColumn<int>("position");
    QTest::addColumn<bool>("delivered");
    for (int position = 0; position < large.expected.size(); ++position) {
        const QByteArray line = large.expected.at(position).toLatin1();
        QTest::addRow("%s, waiting for delivery", line.constData()) << position << false;
        QTest::addRow("%s, delivered", line.constData()) << position << true;
    }
}

/// Starts to load the large database and lets it come to the moment of the row, where it stays.
void TestLoading::loadUpToTheMoment()
{
    QFETCH(int, position);
    QFETCH(bool, delivered);
    gate = std::make_unique<LoadGate>(*manager, position);
    manager->loadDatabase(large.path);
    QVERIFY(gate->waitForLoad());
    if (delivered) {
        QCoreApplication::sendPostedEvents();
    }
    QCOMPARE(recorder->take(), large.expected.mid(0, delivered ? position + 1 : 0));
}

void TestLoading::loadDuringLoad_data()
{
    addMoments();
}

void TestLoading::loadDuringLoad()
{
    for (const Database *other : {&small, &large, &malformed, &missing}) {
        loadUpToTheMoment();
        manager->loadDatabase(other->path);
        QVERIFY(waitForOutcome(*manager, *recorder));
        QCOMPARE(recorder->take(), other->expected);
    }
}

void TestLoading::manyLoadsAtOnce()
{
    for (const Database *database : {&large, &small, &missing, &large, &malformed, &large, &small}) {
        manager->loadDatabase(database->path);
    }
    QVERIFY(waitForOutcome(*manager, *recorder));
    QCOMPARE(recorder->take(), small.expected);
}

void TestLoading::resetDuringLoad_data()
{
    addMoments();
}

void TestLoading::resetDuringLoad()
{
    const QStringList empty{QStringLiteral("database_empty")};
    loadUpToTheMoment();
    manager->resetDatabase();
    QCOMPARE(recorder->recorded(), empty);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder->take(), empty);
    const QString saved = folder.path("saved.g6");
    QVERIFY(!manager->saveGraphs(saved));
    QCOMPARE(recorder->take(),
             (QStringList{QStringLiteral("console No data to save."), QStringLiteral("manager_ready")}));
    QVERIFY(!QFile::exists(saved));
    manager->loadDatabase(small.path);
    QVERIFY(waitForOutcome(*manager, *recorder));
    QCOMPARE(recorder->take(), small.expected);
}

void TestLoading::deletionDuringLoad_data()
{
    addMoments();
}

void TestLoading::deletionDuringLoad()
{
    loadUpToTheMoment();
    manager.reset();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder->recorded(), QStringList());
}

void TestLoading::loadInTheSlotOfTheOutcome()
{
    QVector<const Database *> waiting{&small, &large, &missing, &malformed, &small};
    const auto loadNext = [this, &waiting] {
        if (!waiting.isEmpty()) {
            manager->loadDatabase(waiting.takeFirst()->path);
        }
    };
    connect(manager.get(), &TAVManager::signal_database_loaded, manager.get(), loadNext);
    connect(manager.get(), &TAVManager::signal_database_empty, manager.get(), loadNext);
    QStringList expected = large.expected;
    for (const Database *database : qAsConst(waiting)) {
        expected += database->expected;
    }
    manager->loadDatabase(large.path);
    QVERIFY(QTest::qWaitFor([this, &expected] { return recorder->recorded().size() >= expected.size(); }, patience));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder->take(), expected);
}

void TestLoading::loadInTheSlotOfAProgressSignal()
{
    connect(manager.get(), &TAVManager::signal_progress, manager.get(), [this](int current) {
        if (current == 10000) {
            manager->loadDatabase(small.path);
        }
    });
    manager->loadDatabase(large.path);
    QVERIFY(waitForOutcome(*manager, *recorder));
    const int upToTheSignal = large.expected.indexOf(QStringLiteral("progress 10000 30000")) + 1;
    QCOMPARE(recorder->take(), QStringList(large.expected.mid(0, upToTheSignal) + small.expected));
}

void TestLoading::resetInTheSlotOfTheOutcome()
{
    connect(manager.get(), &TAVManager::signal_database_loaded, manager.get(), &TAVManager::resetDatabase);
    manager->loadDatabase(large.path);
    QVERIFY(waitForOutcome(*manager, *recorder));
    QCOMPARE(recorder->take(), QStringList(large.expected + QStringList{QStringLiteral("database_empty")}));
}

void TestLoading::deletionLaterInTheSlotOfTheOutcome()
{
    QPointer<TAVManager> watched = manager.release();
    connect(watched, &TAVManager::signal_database_loaded, watched, &QObject::deleteLater);
    watched->loadDatabase(large.path);
    QVERIFY(QTest::qWaitFor([&watched] { return watched.isNull(); }, patience));
    QCOMPARE(recorder->take(), large.expected);
}

void TestLoading::requestsThatWaitInTheEventQueue()
{
    manager->loadDatabase(large.path);
    later(small);
    later(large);
    later(malformed);
    QVERIFY(
        QTest::qWaitFor([this] { return recorder->recorded().contains(QStringLiteral("database_empty")); }, patience));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder->take(), malformed.expected);
}

void TestLoading::deletionWithRequestsInTheEventQueue()
{
    manager->loadDatabase(large.path);
    later(small);
    manager.reset();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder->take(), QStringList());
}

void TestLoading::noThreadForTheLoad()
{
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("^QThread::start: Thread creation error")));
    {
        const NoThreads shortage;
        manager->loadDatabase(small.path);
    }
    QCOMPARE(recorder->take(), QStringList()); // told later, as always
    QVERIFY(waitForOutcome(*manager, *recorder));
    QCOMPARE(recorder->take(),
             (QStringList{QStringLiteral("console Unable to start loading."), QStringLiteral("database_empty")}));
    manager->loadDatabase(small.path);
    QVERIFY(waitForOutcome(*manager, *recorder));
    QCOMPARE(recorder->take(), small.expected);
}

QTEST_GUILESS_MAIN(TestLoading)
#include "tst_loading.moc"
