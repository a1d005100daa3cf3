/// The time of "tav invariant" for every invariant by itself, and for all in one pass.
///
///     bench_invariants [BENCHMARK_OPTION...] [ORDER]
///
/// The input is the connected graphs on up to ORDER vertices, 9 by default. A row is wall time on all processors; "cpu"
/// are seconds of processor time, "peakMB" is the highest memory of a process, and "graphUs" the microseconds of
/// processor time for a graph.

#include "commandrows.h"
#include "invariantcatalogue.h"

#include <QFile>

namespace
{
class Bench
{
public:
    Bench(int order, const QString &folder)
        : graphs(folder + QStringLiteral("/graphs.g6"))
        , output(folder + QStringLiteral("/values"))
    {
        writeConnectedGraphs(graphs, order);
        QFile file(graphs);
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("no graphs");
        }
        graphCount = file.readAll().count('\n');
        QByteArrayList all;
        for (const Invariant &invariant : invariants()) {
            row(invariant.name, {TAVOLINE_TAV, "invariant", invariant.name, "-"});
            all += invariant.name;
        }
        row("all together", QByteArrayList{TAVOLINE_TAV, "invariant", "--table", "-"} + all + QByteArrayList{"-"});
    }

private:
    void row(const char *name, const QByteArrayList &command)
    {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State &state) {
                                         while (state.KeepRunning()) {
                                             runCommand(state, command, graphs, output);
                                             state.counters["graphUs"] = state.counters["cpu"] * 1e6 / graphCount;
                                         }
                                     })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }

    QString graphs;
    QString output;
    double graphCount = 0;
};
} // namespace

int main(int argc, char *argv[])
{
    return runBenchmarks<Bench>(argc, argv);
}
