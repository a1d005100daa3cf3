/// How many graphs a second the window paints when the user steps through a list.

#include "TAVmainwidget.h"
#include "TAVmainwindow.h"
#include "TAVmanager.h"
#include "graph.h"
#include "node.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <random>

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

template<typename Joined> QString graph6(int order, Joined joined)
{
    QByteArray bits;
    for (int j = 1; j < order; ++j) {
        for (int i = 0; i < j; ++i) {
            bits.append(joined(i, j) ? 1 : 0);
        }
    }
    QString text(1, QChar(order + 63));
    for (int start = 0; start < bits.size(); start += 6) {
        int six = 0;
        for (int bit = start; bit < start + 6; ++bit) {
            six = 2 * six + (bit < bits.size() ? bits.at(bit) : 0);
        }
        text += QChar(six + 63);
    }
    return text;
}

/// Graphs that differ in what they cost a layout: dense and sparse, planar and not, connected and not.
QStringList graphsOfOrder(int order)
{
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same graphs in every run
    const auto oneIn = [&](unsigned n) { return random() % n == 0; };
    QStringList graphs{
        graph6(order, [](int, int) { return true; }),
        graph6(order, [=](int i, int j) { return j == i + 1 || (i == 0 && j == order - 1); }), // a cycle
        graph6(order, [](int i, int j) { return i == (j - 1) / 2; }),                          // a binary tree
        graph6(order, [](int i, int j) { return j - i <= 2; }),                                // planar, with triangles
        graph6(order, [](int i, int j) { return i % 4 == j % 4; }),
        graph6(order, [](int, int) { return false; }),
    };
    for (const unsigned sparseness : {2U, 3U, 4U, 6U}) {
        for (int number = 0; number < 4; ++number) {
            graphs.append(graph6(order, [&](int, int) { return oneIn(sparseness); }));
        }
    }
    return graphs;
}

/// Steps through the list; reports the processor time of the slowest step, too, which other programs hardly disturb.
void step(benchmark::State &state, BrowsingWindow &window)
{
    double slowest = 0;
    while (state.KeepRunning()) {
        const std::clock_t start = std::clock();
        window.showNext();
        slowest = std::max(slowest, 1e3 * double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["slowest_ms"] = slowest;
}

void browse(benchmark::State &state)
{
    BrowsingWindow window(graphsOfOrder(int(state.range(0))));
    step(state, window);
}

/// The same while a layout is in force.
template<void (Graph::*Layout)()> void browseWith(benchmark::State &state)
{
    BrowsingWindow window(graphsOfOrder(int(state.range(0))));
    window.showNext();
    window.view()->node(0)->setSelected(true);
    (window.view()->*Layout)();
    step(state, window);
}

void ofEveryOrder(benchmark::internal::Benchmark *rows)
{
    // 31 vertices are the most that the viewer reads.
    rows->Arg(8)->Arg(16)->Arg(31)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(browse)->Apply(ofEveryOrder);
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_kamada_kawai)->Apply(ofEveryOrder);
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_fruchterman_reingold)->Apply(ofEveryOrder);
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_planar)->Apply(ofEveryOrder);
BENCHMARK_TEMPLATE(browseWith, &Graph::slot_layout_levels)->Apply(ofEveryOrder);
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
