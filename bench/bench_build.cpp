/// The time of "tav build" for a database, compared with that of plainbuild, the straightforward program for one core.
///
///     bench_build [BENCHMARK_OPTION...] [ORDER]
///
/// The input is the connected graphs on up to ORDER vertices, 9 by default. A row is wall time; "cpu" are seconds of
/// processor time, "peakMB" is the highest memory and "plains" the wall time as a multiple of that of plainbuild. The
/// outputs must be equal byte for byte.

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
double seconds(const timeval &time)
{
    return time.tv_sec + time.tv_usec * 1e-6;
}

class Bench
{
public:
    Bench(int order, const QString &folder) : graphs(folder + QStringLiteral("/graphs.g6"))
    {
        generate(order);
        const QByteArray plainOutput = folder.toLocal8Bit() + "/plain.tav";
        const QByteArray output = folder.toLocal8Bit() + "/tav.tav";
        row("plain", {TAVOLINE_PLAIN_BUILD}, plainOutput, plainOutput);
        row("tav build -j 1", {TAVOLINE_TAV, "build", "-j", "1"}, output, plainOutput);
        row("tav build", {TAVOLINE_TAV, "build"}, output, plainOutput);
    }

private:
    void generate(int order) const
    {
        for (int n = 1; n <= order; ++n) {
            QProcess generator;
            generator.setStandardOutputFile(graphs, QIODevice::Append);
            generator.start(QStringLiteral("nauty-geng"), {QStringLiteral("-cq"), QString::number(n)});
            if (!generator.waitForFinished(-1) || generator.exitCode() != 0) {
                qFatal("nauty-geng failed");
            }
        }
    }

    /// Adds the row of a command, which must write the same bytes to @p output as there are in @p expected.
    void row(const char *name, const std::vector<const char *> &command, const QByteArray &output,
             const QByteArray &expected)
    {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State &state) {
                                         while (state.KeepRunning()) {
                                             run(state, command, output);
                                         }
                                         if (contents(output) != contents(expected)) {
                                             state.SkipWithError("not what the plain way makes");
                                         }
                                     })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }

    void run(benchmark::State &state, std::vector<const char *> command, const QByteArray &output)
    {
        command.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, STDIN_FILENO, QFile::encodeName(graphs).constData(), O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        const auto start = std::chrono::steady_clock::now();
        pid_t child = 0;
        int status = -1;
        struct rusage usage = {};
        if (posix_spawn(&child, command[0], &files, nullptr, const_cast<char **>(command.data()), environ) != 0 ||
            wait4(child, &status, 0, &usage) != child || status != 0) {
            qFatal("%s failed", command[0]);
        }
        const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        posix_spawn_file_actions_destroy(&files);
        plainWall = plainWall > 0 ? plainWall : wall;
        state.SetIterationTime(wall);
        state.counters["cpu"] = seconds(usage.ru_utime) + seconds(usage.ru_stime);
        state.counters["peakMB"] = usage.ru_maxrss * 1024 / 1e6;
        state.counters["plains"] = wall / plainWall;
    }

    static QByteArray contents(const QByteArray &path)
    {
        QFile file(QFile::decodeName(path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString graphs;
    double plainWall = 0; // of the first row
};
} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qFatal("no temporary folder");
    }
    const int order = argc > 1 ? QByteArray(argv[1]).toInt() : 9;
    if (order < 1) {
        qFatal("usage: bench_build [BENCHMARK_OPTION...] [ORDER]");
    }
    const Bench bench(order, folder.path());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
