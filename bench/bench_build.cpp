/// The time of "tav build" for a database, compared with that of plainbuild, the straightforward program for one core.
///
///     bench_build [BENCHMARK_OPTION...] [ORDER]
///
/// The input is the connected graphs on up to ORDER vertices, 9 by default. A row is wall time; "cpu" are seconds of
/// processor time, "peakMB" is the highest memory and "plains" the wall time as a multiple of that of plainbuild. The
/// outputs must be equal byte for byte.

#include "commandrows.h"

#include <QFile>

namespace
{
class Bench
{
public:
    Bench(int order, const QString &folder) : graphs(folder + QStringLiteral("/graphs.g6"))
    {
        writeConnectedGraphs(graphs, order);
        const QString plainOutput = folder + QStringLiteral("/plain.tav");
        const QString output = folder + QStringLiteral("/tav.tav");
        row("plain", {TAVOLINE_PLAIN_BUILD}, plainOutput, plainOutput);
        row("tav build -j 1", {TAVOLINE_TAV, "build", "-j", "1"}, output, plainOutput);
        row("tav build", {TAVOLINE_TAV, "build"}, output, plainOutput);
    }

private:
    /// Adds the row of a command, which must write the same bytes to @p output as there are in @p expected.
    void row(const char *name, const QByteArrayList &command, const QString &output, const QString &expected)
    {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State &state) {
                                         while (state.KeepRunning()) {
                                             const double wall = runCommand(state, command, graphs, output);
                                             plainWall = plainWall > 0 ? plainWall : wall;
                                             state.counters["plains"] = wall / plainWall;
                                         }
                                         if (contents(output) != contents(expected)) {
                                             state.SkipWithError("not what the plain way makes");
                                         }
                                     })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString graphs;
    double plainWall = 0; // of the first row
};
} // namespace

int main(int argc, char *argv[])
{
    return runBenchmarks<Bench>(argc, argv);
}
