#ifndef TAVOLINE_TESTS_TOOLPROCESS_H
#define TAVOLINE_TESTS_TOOLPROCESS_H

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <algorithm>

/// The exit status of a program (-1 after a crash, and when it did not end in time) and its output.
struct ToolResult {
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

/// Runs @p program with @p input on its standard input, in the folder @p folder unless that is empty.
inline ToolResult runProgram(const QString &program, const QStringList &arguments, const QByteArray &input = {},
                             const QString &folder = {})
{
    constexpr int patience = 280000; // milliseconds
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(patience);
    ToolResult result;
    result.status = ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

/// The same with tav.
inline ToolResult runTav(const QStringList &arguments, const QByteArray &input = {}, const QString &folder = {})
{
    return runProgram(QStringLiteral(TAVOLINE_TAV), arguments, input, folder);
}

/// Whether a process has opened a file in the folder, even one without a name.
inline bool hasFileOpenIn(qint64 process, const QString &folder)
{
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(process));
    const QFileInfoList links = descriptors.entryInfoList(QDir::System | QDir::Files);
    return std::any_of(links.begin(), links.end(), [&](const QFileInfo &link) {
        return link.symLinkTarget().startsWith(folder + QLatin1Char('/'));
    });
}

#endif
