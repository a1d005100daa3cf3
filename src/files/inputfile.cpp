#include "inputfile.h"

#include "linereader.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <cerrno>
#include <unistd.h>

namespace
{
/// Why what stands at a path is no regular file.
QString faultOf(const QFileInfo &entry)
{
    if (entry.isDir()) {
        return qt_error_string(EISDIR);
    }
    const bool isThere = ::access(QFile::encodeName(entry.filePath()).constData(), F_OK) == 0;
    return isThere ? QStringLiteral("Not a regular file") : qt_error_string(errno);
}
} // namespace

bool openForReading(QFile &file, QString *reason)
{
    const QFileInfo entry(file.fileName());
    const bool isFile = entry.isFile();
    const bool isOpen = isFile && file.open(QIODevice::ReadOnly);
    if (!isOpen && reason != nullptr) {
        *reason = isFile ? file.errorString() : faultOf(entry);
    }
    return isOpen;
}

QString readFault(const QFile &file)
{
    return file.error() != QFileDevice::NoError
               ? file.errorString()
               : QStringLiteral("a line of more than %1 MiB").arg(LineReader::maxLineLength >> 20);
}
