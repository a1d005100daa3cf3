/// Whether the window stays alive while a database loads: the longest time between two turns of its event loop, and how
/// often it repainted its progress bar meanwhile.
///
///     bench_loading [DATABASE.tav] [BENCHMARK_OPTION...]

#include "TAVmainwidget.h"
#include "TAVmainwindow.h"
#include "TAVmanager.h"
#include "largedatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

namespace
{
/// How often the event loop is asked whether it turns, in milliseconds.
constexpr int turnInterval = 2;

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

void load(benchmark::State &state, const QString &database)
{
    TAVMainWindow window;
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    PaintCounter paintings;
    window.findChild<QProgressBar *>()->installEventFilter(&paintings);
    TAVManager *manager = qobject_cast<TAVMainWidget *>(window.centralWidget())->getManager();
    QCoreApplication::processEvents();

    double longestGap = 0;
    QElapsedTimer sinceTurn;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&] {
        longestGap = qMax(longestGap, double(sinceTurn.nsecsElapsed()) * 1e-6);
        sinceTurn.start();
    });
    QEventLoop loop;
    QObject::connect(manager, &TAVManager::signal_database_loaded, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QObject::connect(manager, &TAVManager::signal_database_empty, &loop, [] { qFatal("the load failed"); });
    for (auto _ : state) {
        manager->loadDatabase(database);
        sinceTurn.start();
        turn.start(turnInterval);
        loop.exec();
    }
    turn.stop();
    manager->disconnect(&loop);
    state.counters["longestGap_ms"] = longestGap;
    state.counters["barPaintings"] = paintings.count;
}
} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qFatal("no temporary folder");
    }
    const QString database = largeDatabase(argc, argv, folder.path());
    benchmark::RegisterBenchmark("load", [&](benchmark::State &state) { load(state, database); })
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
