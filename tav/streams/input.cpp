#include "input.h"

#include "commandline.h"
#include "linereader.h"
#include "progress.h"
#include "systemcalls.h"
#include "textline.h"

#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// Every so many lines the progress is reported, and sooner where a line takes long.
constexpr qint64 progressStep = 10000;
constexpr int millisecondsBetweenReports = 500;

/// How many bytes are read at a time.
constexpr int blockSize = 1 << 18;

/// A file that is read without waiting: a read from a pipe or a terminal returns what has arrived, where QFile would
/// wait until the block is full. The destructor closes the file.
class InputDevice : public QIODevice
{
public:
    explicit InputDevice(int openDescriptor) : descriptor(openDescriptor)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    ~InputDevice() override
    {
        if (descriptor != STDIN_FILENO) {
            ::close(descriptor);
        }
    }
    bool isSequential() const override { return true; }

    /// Whether a read returns at once.
    bool isReady() const
    {
        pollfd state{descriptor, POLLIN, 0};
        return ::poll(&state, 1, 0) != 0;
    }

    /// How many bytes a regular file has; 0 for anything else.
    qint64 fileSize() const
    {
        struct stat status = {};
        return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
    }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        return uninterrupted([&] { return ::read(descriptor, data, maximum); });
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    int descriptor;
};

int openInput(const QString &path)
{
    if (path == standardStream) {
        return STDIN_FILENO;
    }
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = uninterrupted([&] { return ::open(name.constData(), O_RDONLY | O_CLOEXEC); });
    if (descriptor < 0) {
        throw CommandError(QStringLiteral("%1: cannot be opened: %2").arg(path, qt_error_string()));
    }
    return descriptor;
}

void readLines(const QString &path, const QString &work, const std::function<bool(std::string_view, qint64)> &take,
               const std::function<bool()> &pause, int longestLine)
{
    InputDevice device(openInput(path));
    LineReader reader(device, blockSize, longestLine);
    std::string_view line;
    LineReader::Status status = LineReader::Status::Line;
    const qint64 size = device.fileSize();
    Progress progress(work, size);
    QElapsedTimer sinceReport;
    sinceReport.start();
    qint64 number = 1;
    qint64 bytes = 0;
    const auto isWanted = [&] { return reader.hasLine() || device.isReady() || pause(); };
    for (; isWanted() && (status = reader.next(line)) == LineReader::Status::Line; ++number) {
        bytes += line.size() + 1;
        if (number % progressStep == 0 || sinceReport.hasExpired(millisecondsBetweenReports)) {
            progress.report(size > 0 ? bytes : number);
            sinceReport.start();
        }
        if (!take(withoutReturnsAtEnd(line), number)) {
            return;
        }
    }
    if (status == LineReader::Status::TooLong) {
        throw CommandError(path, number, QStringLiteral("a line of more than %1 MiB").arg(longestLine >> 20));
    }
    if (status == LineReader::Status::Failed && errno == EISDIR) {
        throw CommandError(QStringLiteral("%1: cannot be read: %2").arg(inputName(path), qt_error_string()));
    }
    if (status == LineReader::Status::Failed) {
        throw CommandError(path, number, QStringLiteral("cannot be read: ") + qt_error_string());
    }
}
} // namespace

void readLines(const QString &path, const std::function<void(std::string_view, qint64)> &take, int longestLine)
{
    const auto takeAll = [&](std::string_view line, qint64 number) {
        take(line, number);
        return true;
    };
    readLines(
        path, QStringLiteral("Reading ") + inputName(path), takeAll, [] { return true; }, longestLine);
}

void readLinesWhile(const QString &path, const QString &work, const std::function<bool(std::string_view, qint64)> &take,
                    const std::function<bool()> &pause)
{
    readLines(path, work, take, pause, LineReader::maxLineLength);
}
