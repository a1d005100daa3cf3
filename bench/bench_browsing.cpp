/// How many graphs a second the window paints when the user steps through a list.

#include "TAVmainwidget.h"
#include "TAVmainwindow.h"
#include "TAVmanager.h"
#include "graph.h"
#include "node.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>

#include <benchmark/benchmark.h>

namespace
{
/// The window in the mode "Visualization", browsing a list of the graphs @p names.
class BrowsingWindow
{
public:
    explicit BrowsingWindow(const QStringList &names)
    {
        widget = qobject_cast<TAVMainWidget *>(window.centralWidget());
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        QEventLoop loop;
        QObject::connect(widget->getManager(), &TAVManager::signal_database_loaded, &loop, &QEventLoop::quit);
        widget->getManager()->loadDatabase(QStringLiteral(TAVOLINE_EXAMPLES "/connected-8.tav"));
        loop.exec();
        widget->getManager()->addList(QStringLiteral("list"), names);
        const auto buttons = window.findChildren<QAbstractButton *>();
        for (QAbstractButton *button : buttons) {
            if (button->text() == QLatin1String("Visualization")) {
                button->click();
            }
        }
        QApplication::processEvents();
    }

    Graph *view() const { return widget->findChild<Graph *>(); }

    void showNext()
    {
        widget->slot_next_graph();
        QApplication::processEvents(); // the paint events that the step asked for
    }

private:
    TAVMainWindow window;
    TAVMainWidget *widget;
};

QStringList graphsOfOrder(int order)
{
    // The cycle and the complete graph; 31 vertices are the most that the viewer reads.
    const int bits = order * (order - 1) / 2;
    QString complete(1, QChar(order + 63));
    QString cycle = complete;
    QByteArray cycleBits;
    for (int j = 1; j < order; ++j) {
        for (int i = 0; i < j; ++i) {
            cycleBits.append(j == i + 1 || (i == 0 && j == order - 1) ? 1 : 0);
        }
    }
    for (int start = 0; start < bits; start += 6) {
        int all = 0;
        int some = 0;
        for (int bit = start; bit < start + 6; ++bit) {
            all = 2 * all + (bit < bits ? 1 : 0);
            some = 2 * some + (bit < bits ? cycleBits.at(bit) : 0);
        }
        complete += QChar(all + 63);
        cycle += QChar(some + 63);
    }
    return {complete, cycle};
}

void browse(benchmark::State &state)
{
    BrowsingWindow window(graphsOfOrder(int(state.range(0))));
    while (state.KeepRunning()) {
        window.showNext();
    }
    state.SetItemsProcessed(state.iterations());
}
/// The same while a layout is in force. The cycle is planar, the complete graph is not.
template<void (Graph::*Layout)()> void browseWith(benchmark::State &state)
{
    BrowsingWindow window(graphsOfOrder(int(state.range(0))));
    window.showNext();
    window.view()->node(0)->setSelected(true);
    (window.view()->*Layout)();
    while (state.KeepRunning()) {
        window.showNext();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_kamada_kawai)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_fruchterman_reingold)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_planar)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_levels)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(browse)->Arg(8)->Arg(16)->Arg(31)->Unit(benchmark::kMillisecond)->UseRealTime();
} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
