/// The time from the start of the process to the first paint of the window. Each round is a process of its own: this
/// program again, which paints its window once and leaves.

#include "TAVmainwindow.h"

#include <QApplication>
#include <QEvent>
#include <QProcess>

#include <benchmark/benchmark.h>

namespace
{
constexpr char paintOnce[] = "--paint-once";

/// Ends the program when the window that it watches has been painted.
class FirstPaint : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }
};

int runUntilFirstPaint(int argc, char *argv[])
{
    QApplication application(argc, argv);
    FirstPaint firstPaint;
    auto *window = new TAVMainWindow;
    window->installEventFilter(&firstPaint);
    window->show();
    const int status = QApplication::exec();
    delete window;
    return status;
}

void startUp(benchmark::State &state)
{
    while (state.KeepRunning()) {
        if (QProcess::execute(QCoreApplication::applicationFilePath(), {QLatin1String(paintOnce)}) != 0) {
            state.SkipWithError("the window was not painted");
        }
    }
}
BENCHMARK(startUp)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3.0);
} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (argc > 1 && qstrcmp(argv[1], paintOnce) == 0) {
        return runUntilFirstPaint(argc, argv);
    }
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
