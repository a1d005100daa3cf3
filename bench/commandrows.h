#ifndef TAVOLINE_BENCH_COMMANDROWS_H
#define TAVOLINE_BENCH_COMMANDROWS_H

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <benchmark/benchmark.h>

// Rows that are one run of a program each.

/// Writes the connected graphs on up to @p order vertices to the file @p path, with nauty-geng. Ends the program when
/// that fails.
void writeConnectedGraphs(const QString &path, int order);

/// Runs @p command between the files @p input and @p output and measures it for @p state: the wall time; as "cpu" the
/// seconds of processor time, and as "peakMB" the highest memory of a process. Returns the seconds of wall time. Ends
/// the program when the command fails.
double runCommand(benchmark::State &state, const QByteArrayList &command, const QString &input, const QString &output);

#endif
