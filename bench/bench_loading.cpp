/// Whether the window stays alive while a database loads, into an empty database and into one that is full.
///
///     bench_loading [DATABASE.tav] [BENCHMARK_OPTION...]
///
/// "longestGap_ms" is the longest time between two turns of the event loop, from the start of the load to the first
/// turn after its end. Meanwhile the window is moved and resized again and again, as by a window manager.
/// "longestAnswer_ms" is the longest time until it has handled both and painted itself, "answers" the number of times
/// that it did, and "barPaintings" the number of times that the progress bar was painted. "call_ms" is the time of the
/// call that starts the load. It counts as a gap, except in a full database, which the call empties first.
///
/// Both may take at most 100 ms; a row that takes longer is labelled, and the program ends with an error.

#include "TAVmainwidget.h"
#include "TAVmainwindow.h"
#include "TAVmanager.h"
#include "heap.h"
#include "largedatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <benchmark/benchmark.h>
#include <utility>

namespace
{
/// How often a timer notes that the event loop turns, in milliseconds.
constexpr int turnInterval = 2;
/// How long the window is left alone between two moves, in milliseconds.
constexpr int moveInterval = 20;
/// The longest time that a gap or an answer may take, in milliseconds.
constexpr double bar = 100;

double milliseconds(const QElapsedTimer &timer)
{
    return timer.nsecsElapsed() * 1e-6;
}

/// Counts the paintings of a widget.
class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;
};

/// The longest time between two turns of the event loop, from now on.
class Turns : public QObject
{
public:
    Turns()
    {
        connect(&timer, &QTimer::timeout, this, &Turns::note);
        sinceTurn.start();
        timer.start(turnInterval);
    }

    void note()
    {
        longestGap = qMax(longestGap, milliseconds(sinceTurn));
        sinceTurn.start();
    }

    double longestGap = 0; // in milliseconds

private:
    QTimer timer;
    QElapsedTimer sinceTurn;
};

/// Moves and resizes a window through the window system, whose events arrive in the event loop, and measures the time
/// until the window has handled them.
class Mover : public QObject
{
public:
    explicit Mover(QWidget &movedWindow) : window(movedWindow)
    {
        window.installEventFilter(this);
        connect(&timer, &QTimer::timeout, this, &Mover::move);
        timer.start(moveInterval);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        moved = moved || event->type() == QEvent::Move;
        resized = resized || event->type() == QEvent::Resize;
        painted = painted || (resized && event->type() == QEvent::Paint);
        if (isWaiting && moved && painted) {
            isWaiting = false;
            ++answers;
            longestAnswer = qMax(longestAnswer, milliseconds(sinceMove));
        }
        return QObject::eventFilter(watched, event);
    }

    /// Ends the measurement. A move that is not handled yet counts as if it were handled now.
    void finish()
    {
        timer.stop();
        longestAnswer = isWaiting ? qMax(longestAnswer, milliseconds(sinceMove)) : longestAnswer;
    }

    int answers = 0;
    double longestAnswer = 0; // in milliseconds

private:
    void move()
    {
        if (isWaiting) {
            return;
        }
        isWaiting = true;
        moved = false;
        resized = false;
        painted = false;
        sinceMove.start();
        const int step = answers % 2 == 0 ? 10 : -10;
        const QRect place = window.windowHandle()->geometry();
        window.windowHandle()->setGeometry(place.adjusted(step, step, 2 * step, 2 * step));
    }

    QWidget &window;
    QTimer timer;
    QElapsedTimer sinceMove;
    bool isWaiting = false;
    bool moved = false;
    bool resized = false;
    bool painted = false; // in its new size
};

class Bench
{
public:
    explicit Bench(QString databasePath) : database(std::move(databasePath))
    {
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        manager = qobject_cast<TAVMainWidget *>(window.centralWidget())->getManager();
        QObject::connect(manager, &TAVManager::signal_database_loaded, [this] { isLoaded = true; });
        add("load", false);
        add("load into a full database", true);
    }

    /// Returns whether no row took longer than it may.
    bool run()
    {
        benchmark::RunSpecifiedBenchmarks();
        return !failed;
    }

private:
    void add(const char *name, bool full)
    {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State &state) {
                                         while (state.KeepRunning()) {
                                             provide(full);
                                             measure(state, full);
                                         }
                                     })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }

    /// Loads the database, or empties it, and handles the events of that.
    void provide(bool full)
    {
        if (full && !isLoaded) {
            manager->loadDatabase(database);
            waitForOutcome();
        } else if (!full) {
            manager->resetDatabase();
        }
        QCoreApplication::processEvents();
    }

    void measure(benchmark::State &state, bool full)
    {
        PaintCounter paintings;
        window.findChild<QProgressBar *>()->installEventFilter(&paintings);
        isLoaded = false;
        QElapsedTimer whole;
        whole.start();
        manager->loadDatabase(database);
        const double call = milliseconds(whole);
        Turns turns;
        Mover mover(window);
        waitForOutcome();
        state.SetIterationTime(milliseconds(whole) * 1e-3);
        QCoreApplication::processEvents();
        turns.note();
        mover.finish();
        const double longestGap = full ? turns.longestGap : qMax(call, turns.longestGap);
        state.counters["call_ms"] = call;
        state.counters["longestGap_ms"] = longestGap;
        state.counters["longestAnswer_ms"] = mover.longestAnswer;
        state.counters["answers"] = mover.answers;
        state.counters["barPaintings"] = paintings.count;
        if (!isLoaded) {
            fail(state, "the load failed");
        } else if (mover.answers == 0 || paintings.count == 0) {
            fail(state, "the window did not move or repaint");
        } else if (longestGap > bar || mover.longestAnswer > bar) {
            failed = true; // without SkipWithError(), which would hide the counters
            state.SetLabel("over 100 ms");
        }
    }

    void waitForOutcome()
    {
        QEventLoop loop;
        QObject::connect(manager, &TAVManager::signal_database_loaded, &loop, &QEventLoop::quit, Qt::QueuedConnection);
        QObject::connect(manager, &TAVManager::signal_database_empty, &loop, &QEventLoop::quit, Qt::QueuedConnection);
        loop.exec();
    }

    void fail(benchmark::State &state, const char *message)
    {
        failed = true;
        state.SkipWithError(message);
    }

    QString database;
    TAVMainWindow window;
    TAVManager *manager;
    bool isLoaded = false;
    bool failed = false;
};
} // namespace

int main(int argc, char *argv[])
{
    useLargeHeapSteps();
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qFatal("no temporary folder");
    }
    Bench bench(largeDatabase(argc, argv, folder.path()));
    const bool succeeded = bench.run();
    benchmark::Shutdown();
    return succeeded ? 0 : 1;
}
