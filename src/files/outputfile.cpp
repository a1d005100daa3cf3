#include "outputfile.h"

#include "replacement.h"
#include "systemcalls.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// The descriptor of a standard stream that writes to the file with the status @p file, or -1.
int standardStreamInto(const struct stat &file)
{
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

/// Whether a new file replaces the one with the status @p old.
bool isReplaceable(const struct stat &old)
{
    return S_ISREG(old.st_mode) && standardStreamInto(old) < 0;
}

/// Opens what is not replaced. The descriptor of a standard stream is duplicated, since both then write one behind the
/// other. A FIFO that nobody reads is refused: open() without O_NONBLOCK would wait for a reader, and freeze the
/// window.
FileDescriptor openDirectly(const QByteArray &path, const struct stat &file)
{
    const int stream = standardStreamInto(file);
    return FileDescriptor(uninterrupted([&] {
        return stream >= 0 ? ::fcntl(stream, F_DUPFD_CLOEXEC, 0)
                           : ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    }));
}

/// Waits until a descriptor with O_NONBLOCK, that of a FIFO for example, takes bytes again.
void waitForRoom(int descriptor)
{
    pollfd room{descriptor, POLLOUT, 0};
    ::poll(&room, 1, -1);
}

using Writer = std::function<void(OutputFile &)>;

/// Writes to an open file; @p finish closes it, or sets errno.
WriteResult writeTo(int descriptor, const Writer &write, QString &reason, const std::function<bool()> &finish)
{
    OutputFile output(descriptor);
    write(output);
    if (!output.tookEverything()) {
        reason = output.reason();
        return WriteResult::Failed;
    }
    if (!finish()) {
        reason = qt_error_string(errno);
        return WriteResult::Failed;
    }
    return WriteResult::Written;
}

WriteResult writeInto(FileDescriptor file, const Writer &write, QString &reason)
{
    if (!file.isOpen()) {
        reason = qt_error_string(errno);
        return WriteResult::NotOpened;
    }
    return writeTo(file.number(), write, reason, [&file] { return file.close(); });
}

WriteResult replace(const QByteArray &path, const Writer &write, QString &reason)
{
    Replacement file;
    if (!file.open(path)) {
        reason = qt_error_string(errno);
        return WriteResult::NotOpened;
    }
    return writeTo(file.descriptor(), write, reason, [&file] { return file.commit(); });
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
    struct stat file = {};
    return ::stat(QFile::encodeName(path).constData(), &file) != 0 || isReplaceable(file);
}

WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write, QString *reason)
{
    QString unread;
    QString &why = reason != nullptr ? *reason : unread;
    if (path.contains(QChar::Null)) { // where the name would end for the kernel
        why = qt_error_string(EINVAL);
        return WriteResult::NotOpened;
    }
    const QByteArray name = QFile::encodeName(path);
    struct stat file = {};
    if (::stat(name.constData(), &file) != 0 || isReplaceable(file)) {
        return replace(name, write, why); // which finds out what is wrong with the path
    }
    return writeInto(openDirectly(name, file), write, why);
}
