// Runs the companion program, and watches and stops it while it runs.
#ifndef TAVOLINE_TESTS_TOOLPROCESS_H
#define TAVOLINE_TESTS_TOOLPROCESS_H

#include "runprogram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <unistd.h>

/// Runs tav, as runProgram() does.
inline ToolResult runTav(const QStringList &arguments, const QByteArray &input = {}, const QString &folder = {})
{
    return runProgram(QStringLiteral(TAVOLINE_TAV), arguments, input, folder);
}

/// The files in the folder that a process has open, even those that have no name yet.
inline QStringList openFilesIn(qint64 process, const QString &folder)
{
    QStringList files;
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(process));
    const QFileInfoList links = descriptors.entryInfoList(QDir::System | QDir::Files);
    for (const QFileInfo &link : links) {
        if (link.symLinkTarget().startsWith(folder + QLatin1Char('/'))) {
            files.append(link.symLinkTarget());
        }
    }
    return files;
}

inline bool hasFileOpenIn(qint64 process, const QString &folder)
{
    return !openFilesIn(process, folder).isEmpty();
}

/// What the kernel tells of a process in /proc/PID/stat, from its state on.
inline QList<QByteArray> processStatus(qint64 process)
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(process));
    if (!status.open(QIODevice::ReadOnly)) {
        qFatal("cannot read %s", qPrintable(status.fileName()));
    }
    // Before it stands the name of the program in brackets, which may hold anything.
    const QByteArray text = status.readAll();
    return text.mid(text.lastIndexOf(')') + 2).split(' ');
}

/// Stops a process at a moment at which @p condition holds, which stays so until the process gets SIGCONT. Returns
/// false when the process ends without such a moment.
inline bool stopWhile(QProcess &process, const std::function<bool()> &condition)
{
    const auto id = pid_t(process.processId());
    while (!process.waitForFinished(1) && process.state() == QProcess::Running) {
        if (!condition()) {
            continue;
        }
        ::kill(id, SIGSTOP);
        while (!QByteArray("TZ").contains(processStatus(id).first())) { // not yet stopped, and no zombie
        }
        if (condition()) {
            return true;
        }
        ::kill(id, SIGCONT);
    }
    return false;
}

/// The processor time that a process has used, in milliseconds.
inline qint64 processorTime(qint64 process)
{
    const QList<QByteArray> status = processStatus(process);
    return (status.value(11).toLongLong() + status.value(12).toLongLong()) * 1000 / ::sysconf(_SC_CLK_TCK);
}

/// The processor time that the children of this process used that have ended, in milliseconds.
inline qint64 processorTimeOfChildren()
{
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * qint64(1000) +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000;
}

#endif
