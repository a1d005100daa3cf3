#include "inputfile.h"

#include "linereader.h"

#include <QFile>
#include <QString>

#include <cerrno>
#include <sys/stat.h>

namespace
{
/// Why the file at the path is not to be opened; empty for a regular file.
QString obstacleAt(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return qt_error_string(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return qt_error_string(EISDIR);
    }
    return S_ISREG(status.st_mode) ? QString() : QStringLiteral("Not a regular file");
}
} // namespace

bool openForReading(QFile &file, QString *reason)
{
    const QString obstacle = obstacleAt(file.fileName());
    const bool isOpen = obstacle.isEmpty() && file.open(QIODevice::ReadOnly);
    if (!isOpen && reason != nullptr) {
        *reason = obstacle.isEmpty() ? file.errorString() : obstacle;
    }
    return isOpen;
}

QString readFault(const QFile &file)
{
    return file.error() != QFileDevice::NoError
               ? file.errorString()
               : QStringLiteral("a line of more than %1 MiB").arg(LineReader::maxLineLength >> 20);
}
