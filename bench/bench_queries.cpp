/// Walks, closures and derivations on the 273 193 connected graphs on up to nine vertices, in one run, so that each can
/// be read as a multiple of the cheapest pass over the links, an average.

#include "TAVgraph.h"
#include "TAVsearchengine.h"

#include <QProcess>
#include <QTemporaryFile>

#include <benchmark/benchmark.h>

namespace
{
/// The database, with the same I1 and I2 everywhere, so that every neighbour matches.
TAVSearchEngine &database()
{
    static TAVSearchEngine engine;
    if (engine.records().isEmpty()) {
        QTemporaryFile file;
        QProcess unpack;
        if (!file.open()) {
            qFatal("no temporary file");
        }
        unpack.setStandardOutputFile(file.fileName());
        unpack.start(QStringLiteral("xz"), {QStringLiteral("-dc"), QStringLiteral(TAVOLINE_LARGE_DATABASE)});
        if (!unpack.waitForFinished() || unpack.exitCode() != 0) {
            qFatal("cannot unpack the database");
        }
        engine.setFilename(file.fileName());
        engine.run();
        for (TAVGraph *graph : engine.records()) {
            graph->setInv1(1.0, false);
            graph->setInv2(1.0, false);
        }
    }
    return engine;
}

void average(benchmark::State &state)
{
    TAVSearchEngine &engine = database();
    for (auto _ : state) {
        engine.avgSub1();
    }
}
BENCHMARK(average)->Unit(benchmark::kMillisecond);

using Query = QStringList (TAVSearchEngine::*)();

void walk(benchmark::State &state, Query query)
{
    TAVSearchEngine &engine = database();
    engine.I2getsI1();
    for (auto _ : state) {
        benchmark::DoNotOptimize((engine.*query)());
    }
}
BENCHMARK_CAPTURE(walk, eqSubs, &TAVSearchEngine::I1eqI2subsgraphs)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walk, eqOver, &TAVSearchEngine::I1eqI2overgraphs)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walk, geSubs, &TAVSearchEngine::I1geI2subsgraphs)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walk, geOver, &TAVSearchEngine::I1geI2overgraphs)->Unit(benchmark::kMillisecond);

void closureOfAll(benchmark::State &state)
{
    TAVSearchEngine &engine = database();
    QStringList names;
    for (const TAVGraph *graph : engine.records()) {
        names.append(graph->getName());
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(engine.subgraphs(names));
    }
}
BENCHMARK(closureOfAll)->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
