#include "TAVmanager.h"
#include "support/signalrecorder.h"
#include "support/threads.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{
constexpr int momentCount = 50;
constexpr int timeout = 60000; // milliseconds

/// A database file and the signals of the manager that belong to its load.
struct Database {
    QString path;
    QStringList expected;
};

bool isOutcome(const QString &line)
{
    return line == QLatin1String("database_loaded") || line == QLatin1String("database_empty");
}

/// Runs the event loop until an outcome has arrived, and then whatever is still waiting for delivery.
bool waitForOutcome(const SignalRecorder &recorder)
{
    const auto hasOutcome = [&recorder] {
        return !recorder.recorded().isEmpty() && isOutcome(recorder.recorded().last());
    };
    const bool arrived = QTest::qWaitFor(hasOutcome, timeout);
    QCoreApplication::processEvents();
    return arrived;
}

/// Lets a load run up to a moment between its start and its outcome. The even moments count signals that were
/// delivered; at the odd ones some time has passed and every signal is still waiting for delivery.
void runUntil(int moment, const SignalRecorder &recorder)
{
    if (moment % 2 != 0) {
        QTest::qSleep(moment / 2 + 1);
        return;
    }
    const int signalCount = moment / 4;
    const auto reached = [&recorder, signalCount] {
        return recorder.recorded().size() >= signalCount ||
               (!recorder.recorded().isEmpty() && isOutcome(recorder.recorded().last()));
    };
    QElapsedTimer clock;
    clock.start();
    while (!reached() && clock.elapsed() < timeout) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}
} // namespace

/// Loads that meet other loads, resets and the end of the manager.
class TestLoading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void oneAfterTheOther();
    void loadDuringLoad();
    void manyLoadsAtOnce();
    void resetDuringLoad();
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

    QTemporaryDir directory;
    Database large;
    Database small;
    Database malformed;
    Database missing;
    std::unique_ptr<TAVManager> manager;
    std::unique_ptr<SignalRecorder> recorder;
};

Database TestLoading::write(const char *name, const QByteArray &content, const QStringList &expected)
{
    const QString path = directory.filePath(QString::fromLatin1(name));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return {path, QStringList{QStringLiteral("console Loading data ... please wait.")} + expected};
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
    for (int i = 1; i < 60000; ++i) {
        chain += 'G' + QByteArray::number(i) + '\t' + QByteArray::number(i - 1) + "\t0\n";
    }
    large = write("large.tav", chain,
                  {QStringLiteral("console 60000 lines."), QStringLiteral("progress 0 60000"),
                   QStringLiteral("progress 10000 60000"), QStringLiteral("progress 20000 60000"),
                   QStringLiteral("progress 30000 60000"), QStringLiteral("progress 40000 60000"),
                   QStringLiteral("progress 50000 60000"),
                   QStringLiteral("console Data loaded : 60000 nodes and 119998 links."),
                   QStringLiteral("database_loaded")});
    small = write("small.tav", "A\nB\t0\nC\t0\t1\n",
                  {QStringLiteral("console 3 lines."), QStringLiteral("progress 0 3"),
                   QStringLiteral("console Data loaded : 3 nodes and 3 links."), QStringLiteral("database_loaded")});
    malformed = write("malformed.tav", "A\nB\t7\n",
                      {QStringLiteral("console 2 lines."), QStringLiteral("progress 0 2"),
                       QStringLiteral("console ERROR in database format."), QStringLiteral("database_empty")});
    missing = {directory.filePath(QStringLiteral("missing.tav")),
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
}

void TestLoading::oneAfterTheOther()
{
    for (const Database *database : {&small, &malformed, &large, &missing, &small, &missing, &malformed, &large}) {
        manager->loadDatabase(database->path);
        QVERIFY(waitForOutcome(*recorder));
        QCOMPARE(recorder->take(), database->expected);
    }
}

void TestLoading::loadDuringLoad()
{
    const QVector<const Database *> others{&small, &large, &malformed, &missing};
    for (int moment = 0; moment < momentCount; ++moment) {
        const Database &other = *others.at(moment % others.size());
        manager->loadDatabase(large.path);
        runUntil(moment, *recorder);
        recorder->take();
        manager->loadDatabase(other.path);
        QVERIFY(waitForOutcome(*recorder));
        QCOMPARE(recorder->take(), other.expected);
    }
}

void TestLoading::manyLoadsAtOnce()
{
    for (const Database *database : {&large, &small, &missing, &large, &malformed, &large, &small}) {
        manager->loadDatabase(database->path);
    }
    QVERIFY(waitForOutcome(*recorder));
    QCOMPARE(recorder->take(), small.expected);
}

void TestLoading::resetDuringLoad()
{
    const QStringList empty{QStringLiteral("database_empty")};
    for (int moment = 0; moment < momentCount; ++moment) {
        manager->loadDatabase(large.path);
        runUntil(moment, *recorder);
        recorder->take();
        manager->resetDatabase();
        QCOMPARE(recorder->recorded(), empty);
        QCoreApplication::processEvents();
        QCOMPARE(recorder->take(), empty);
    }
    manager->loadDatabase(small.path);
    QVERIFY(waitForOutcome(*recorder));
    QCOMPARE(recorder->take(), small.expected);
}

void TestLoading::deletionDuringLoad()
{
    for (int moment = 0; moment < momentCount; ++moment) {
        init();
        manager->loadDatabase(large.path);
        runUntil(moment, *recorder);
        recorder->take();
        manager.reset();
        QCoreApplication::processEvents();
        QCOMPARE(recorder->recorded(), QStringList());
    }
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
    QVERIFY(QTest::qWaitFor([this, &expected] { return recorder->recorded().size() >= expected.size(); }, timeout));
    QCoreApplication::processEvents();
    QCOMPARE(recorder->take(), expected);
}

void TestLoading::loadInTheSlotOfAProgressSignal()
{
    connect(manager.get(), &TAVManager::signal_progress, manager.get(), [this](int current) {
        if (current == 20000) {
            manager->loadDatabase(small.path);
        }
    });
    manager->loadDatabase(large.path);
    QVERIFY(waitForOutcome(*recorder));
    const int upToTheSignal = large.expected.indexOf(QStringLiteral("progress 20000 60000")) + 1;
    QCOMPARE(recorder->take(), QStringList(large.expected.mid(0, upToTheSignal) + small.expected));
}

void TestLoading::resetInTheSlotOfTheOutcome()
{
    connect(manager.get(), &TAVManager::signal_database_loaded, manager.get(), &TAVManager::resetDatabase);
    manager->loadDatabase(large.path);
    QVERIFY(waitForOutcome(*recorder));
    QCOMPARE(recorder->take(), QStringList(large.expected + QStringList{QStringLiteral("database_empty")}));
}

void TestLoading::deletionLaterInTheSlotOfTheOutcome()
{
    QPointer<TAVManager> watched = manager.release();
    connect(watched, &TAVManager::signal_database_loaded, watched, &QObject::deleteLater);
    watched->loadDatabase(large.path);
    QVERIFY(QTest::qWaitFor([&watched] { return watched.isNull(); }, timeout));
    QCOMPARE(recorder->take(), large.expected);
}

void TestLoading::requestsThatWaitInTheEventQueue()
{
    manager->loadDatabase(large.path);
    later(small);
    later(large);
    later(malformed);
    QVERIFY(
        QTest::qWaitFor([this] { return recorder->recorded().contains(QStringLiteral("database_empty")); }, timeout));
    QCoreApplication::processEvents();
    QCOMPARE(recorder->take(), malformed.expected);
}

void TestLoading::deletionWithRequestsInTheEventQueue()
{
    manager->loadDatabase(large.path);
    later(small);
    manager.reset();
    QCoreApplication::processEvents();
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
    QVERIFY(waitForOutcome(*recorder));
    QCOMPARE(recorder->take(),
             (QStringList{QStringLiteral("console Unable to start loading."), QStringLiteral("database_empty")}));
    manager->loadDatabase(small.path);
    QVERIFY(waitForOutcome(*recorder));
    QCOMPARE(recorder->take(), small.expected);
}

QTEST_GUILESS_MAIN(TestLoading)
#include "tst_loading.moc"
