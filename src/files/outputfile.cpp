#include "outputfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// The standard input, output or error that is the file @p path and can be written to, or -1.
int standardStreamAt(const QString &path)
{
    struct stat file = {};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0) {
        return -1;
    }
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        struct stat stream = {};
        const bool isSame =
            ::fstat(descriptor, &stream) == 0 && stream.st_dev == file.st_dev && stream.st_ino == file.st_ino;
        if (isSame && (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY) {
            return descriptor;
        }
    }
    return -1;
}

/// Opens a standard stream a second time, at the place to which it is written.
bool openStandardStream(QFile &file, int stream)
{
    const int descriptor = ::fcntl(stream, F_DUPFD_CLOEXEC, 0);
    return descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
}

/// Opens what is no regular file. A FIFO that nobody reads is refused: a plain open would wait for a reader, and the
/// window with it.
bool openWithoutWaiting(QFile &file)
{
    const int descriptor = ::open(QFile::encodeName(file.fileName()).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    // From here on a slow reader is waited for.
    return descriptor >= 0 && ::fcntl(descriptor, F_SETFL, O_WRONLY) == 0 &&
           file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
}

bool openDirectly(QFile &file)
{
    const int stream = standardStreamAt(file.fileName());
    return stream >= 0 ? openStandardStream(file, stream) : openWithoutWaiting(file);
}

/// Why a file that is to be replaced could not be opened: of one that may not be written the toolkit does not say it.
QString reasonOf(const QSaveFile &file)
{
    const bool isForbidden = ::access(QFile::encodeName(file.fileName()).constData(), W_OK) != 0 && errno != ENOENT;
    return isForbidden ? qt_error_string() : file.errorString();
}

WriteResult writeInto(QFileDevice &file, const std::function<void(OutputFile &)> &write, QString &reason)
{
    OutputFile output(file);
    write(output);
    if (!output.finish()) {
        reason = output.reason();
        return WriteResult::Failed;
    }
    return WriteResult::Written;
}

WriteResult writeDirectly(const QString &path, const std::function<void(OutputFile &)> &write, QString &reason)
{
    QFile file(path);
    if (!openDirectly(file)) {
        reason = qt_error_string();
        return WriteResult::NotOpened;
    }
    return writeInto(file, write, reason);
}

WriteResult replace(const QString &path, const std::function<void(OutputFile &)> &write, QString &reason)
{
    // Without the fallback to writing directly: it would truncate the old file before the new one is complete.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        reason = reasonOf(file);
        return WriteResult::NotOpened;
    }
    const WriteResult result = writeInto(file, write, reason);
    if (result == WriteResult::Written && !file.commit()) {
        reason = file.errorString();
        return WriteResult::Failed;
    }
    return result; // a file that is not committed is taken back
}
} // namespace

void OutputFile::write(const QByteArray &bytes)
{
    // A disk that fills up takes a part first; why it does not take the rest is known when that is offered.
    for (qint64 taken = 0; complete && taken < bytes.size();) {
        const qint64 count = device.write(bytes.constData() + taken, bytes.size() - taken);
        complete = count > 0;
        taken += count;
    }
}

bool OutputFile::finish()
{
    complete = complete && device.flush();
    return complete;
}

QString OutputFile::reason()
{
    device.flush(); // which tells it where only a part of what was kept back was taken
    return device.errorString();
}

bool isReplaced(const QString &path)
{
    const QFileInfo target(path);
    return !target.exists() || (target.isFile() && standardStreamAt(path) < 0);
}

WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write, QString *reason)
{
    if (path.isEmpty()) {
        return WriteResult::NotOpened; // a cancelled dialog; the toolkit would complain on its own account
    }
    QString unread;
    QString &why = reason != nullptr ? *reason : unread;
    return isReplaced(path) ? replace(path, write, why) : writeDirectly(path, write, why);
}
