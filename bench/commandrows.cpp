#include "commandrows.h"

#include <QFile>
#include <QProcess>

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
} // namespace

void writeConnectedGraphs(const QString &path, int order)
{
    for (int n = 1; n <= order; ++n) {
        QProcess generator;
        generator.setStandardOutputFile(path, QIODevice::Append);
        generator.start(QStringLiteral("nauty-geng"), {QStringLiteral("-cq"), QString::number(n)});
        if (!generator.waitForFinished(-1) || generator.exitCode() != 0) {
            qFatal("nauty-geng failed");
        }
    }
}

double runCommand(benchmark::State &state, const QByteArrayList &command, const QString &input, const QString &output)
{
    std::vector<const char *> arguments;
    for (const QByteArray &argument : command) {
        arguments.push_back(argument.constData());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, QFile::encodeName(input).constData(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, QFile::encodeName(output).constData(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int status = -1;
    struct rusage usage = {};
    if (posix_spawn(&child, arguments[0], &files, nullptr, const_cast<char **>(arguments.data()), environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || status != 0) {
        qFatal("%s failed", command.join(' ').constData());
    }
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    posix_spawn_file_actions_destroy(&files);
    state.SetIterationTime(wall);
    state.counters["cpu"] = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    state.counters["peakMB"] = usage.ru_maxrss * 1024 / 1e6;
    return wall;
}
