#ifndef TAVOLINE_TESTS_TOOLPROCESS_H
#define TAVOLINE_TESTS_TOOLPROCESS_H

#include "runprogram.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

/// Runs tav, as runProgram() does.
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
