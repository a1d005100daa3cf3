#ifndef TAVOLINE_BENCH_COMMANDROWS_H
#define TAVOLINE_BENCH_COMMANDROWS_H

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

// Rows that are one run of a program each.

/// Writes the connected graphs on up to @p order vertices to the file @p path, with nauty-geng. Ends the program when
/// that fails.
void writeConnectedGraphs(const QString &path, int order);

/// Runs @p command between the files @p input and @p output and measures it for @p state: the wall time; as "cpu" the
/// seconds of processor time, and as "peakMB" the highest memory of a process. Returns the seconds of wall time. Ends
/// the program when the command fails.
double runCommand(benchmark::State &state, const QByteArrayList &command, const QString &input, const QString &output);

/// The main() of a program with the command line [BENCHMARK_OPTION...] [ORDER]: runs what a @p Bench registers for the
/// graphs on up to ORDER vertices, 9 by default, with a folder for its files.
template<typename Bench> int runBenchmarks(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qFatal("no temporary folder");
    }
    const int order = argc > 1 ? QByteArray(argv[1]).toInt() : 9;
    if (order < 1) {
        qFatal("usage: %s [BENCHMARK_OPTION...] [ORDER]", argv[0]);
    }
    const Bench bench(order, folder.path());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

#endif
