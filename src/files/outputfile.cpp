#include "outputfile.h"

#include "replacement.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// The descriptor of a standard stream that writes to the file @p path, or -1.
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

/// Opens a device or a FIFO. A FIFO that nobody reads is refused: open() without O_NONBLOCK would wait for a reader,
/// and freeze the window. Then the flag is cleared, so that a write waits for a slow reader.
int openWithoutWaiting(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0 && ::fcntl(descriptor, F_SETFL, O_WRONLY) != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

/// Opens what is not replaced. The descriptor of a standard stream is duplicated, since both then write one behind the
/// other.
int openDirectly(const QString &path)
{
    const int stream = standardStreamAt(path);
    return stream >= 0 ? ::fcntl(stream, F_DUPFD_CLOEXEC, 0) : openWithoutWaiting(path);
}

/// Waits until a descriptor with O_NONBLOCK, a standard stream for example, takes bytes again.
void waitForRoom(int descriptor)
{
    pollfd room{descriptor, POLLOUT, 0};
    ::poll(&room, 1, -1);
}

using Writer = std::function<void(OutputFile &)>;

WriteResult writeDirectly(const QString &path, const Writer &write, QString &reason)
{
    const int descriptor = openDirectly(path);
    if (descriptor < 0) {
        reason = qt_error_string(errno);
        return WriteResult::NotOpened;
    }
    OutputFile output(descriptor);
    write(output);
    const bool isClosed = ::close(descriptor) == 0 || errno == EINTR; // Linux closes the file even then
    if (!output.tookEverything() || !isClosed) {
        reason = output.tookEverything() ? qt_error_string(errno) : output.reason();
        return WriteResult::Failed;
    }
    return WriteResult::Written;
}

WriteResult replace(const QString &path, const Writer &write, QString &reason)
{
    Replacement file;
    if (!file.open(QFile::encodeName(path))) {
        reason = qt_error_string(errno);
        return WriteResult::NotOpened;
    }
    OutputFile output(file.descriptor());
    write(output);
    if (!output.tookEverything()) {
        reason = output.reason();
        return WriteResult::Failed;
    }
    if (!file.commit()) {
        reason = qt_error_string(errno);
        return WriteResult::Failed;
    }
    return WriteResult::Written;
}
} // namespace

void OutputFile::write(const QByteArray &bytes)
{
    // A disk that fills up first takes a part of the bytes; only the next write fails and tells why.
    for (int taken = 0; complete && taken < bytes.size();) {
        const ssize_t count = ::write(descriptor, bytes.constData() + taken, bytes.size() - taken);
        if (count >= 0) {
            taken += int(count);
        } else if (errno == EAGAIN) {
            waitForRoom(descriptor);
        } else if (errno != EINTR) {
            fault = errno;
            complete = false;
        }
    }
}

QString OutputFile::reason() const
{
    return qt_error_string(fault);
}

void failBeyondFileSizeLimit()
{
    std::signal(SIGXFSZ, SIG_IGN);
}

bool isReplaced(const QString &path)
{
    const QFileInfo target(path);
    return !target.exists() || (target.isFile() && standardStreamAt(path) < 0);
}

WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write, QString *reason)
{
    QString unread;
    QString &why = reason != nullptr ? *reason : unread;
    if (path.isEmpty()) { // from a cancelled dialog
        why = qt_error_string(ENOENT);
        return WriteResult::NotOpened;
    }
    return isReplaced(path) ? replace(path, write, why) : writeDirectly(path, write, why);
}
