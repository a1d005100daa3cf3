#include "outputfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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

WriteResult writeDirectly(const QString &path, const std::function<void(OutputFile &)> &write)
{
    QFile file(path);
    const int stream = standardStreamAt(path);
    if (!(stream >= 0 ? openStandardStream(file, stream) : openWithoutWaiting(file))) {
        return WriteResult::NotOpened;
    }
    OutputFile output(file);
    write(output);
    return output.tookEverything() && file.flush() ? WriteResult::Written : WriteResult::Failed;
}
} // namespace

void OutputFile::write(const QByteArray &bytes)
{
    complete = complete && device.write(bytes) == bytes.size();
}

bool isReplaced(const QString &path)
{
    const QFileInfo target(path);
    return !target.exists() || (target.isFile() && standardStreamAt(path) < 0);
}

WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write)
{
    if (path.isEmpty()) {
        return WriteResult::NotOpened; // a cancelled dialog; the toolkit would complain on its own account
    }
    if (!isReplaced(path)) {
        return writeDirectly(path, write);
    }
    // Without the fallback to writing directly: it would truncate the old file before the new one is complete.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return WriteResult::NotOpened;
    }
    OutputFile output(file);
    write(output);
    if (!output.tookEverything() || !file.flush()) {
        file.cancelWriting();
    }
    return file.commit() ? WriteResult::Written : WriteResult::Failed;
}
