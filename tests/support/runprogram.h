// Runs a program and collects its output.
#ifndef TAVOLINE_TESTS_RUNPROGRAM_H
#define TAVOLINE_TESTS_RUNPROGRAM_H

#include "patience.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

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

/// What a program writes that must succeed.
inline QByteArray outputOf(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    const ToolResult result = runProgram(program, arguments, input);
    if (result.status != 0) {
        qFatal("%s: %s", qPrintable(program), result.errors.constData());
    }
    return result.output;
}

#endif
