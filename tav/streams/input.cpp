#include "input.h"

#include "commandline.h"
#include "linereader.h"
#include "progress.h"
#include "systemcalls.h"
#include "textline.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// Every so many lines the progress is reported.
constexpr qint64 progressStep = 10000;

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
} // namespace

void readLines(const QString &path, const std::function<void(std::string_view, qint64)> &take, int longestLine)
{
    InputDevice device(openInput(path));
    LineReader reader(device, blockSize, longestLine);
    std::string_view line;
    LineReader::Status status = LineReader::Status::Line;
    const qint64 size = device.fileSize();
    Progress progress(QStringLiteral("Reading ") + inputName(path), size);
    qint64 number = 1;
    qint64 bytes = 0;
    for (; (status = reader.next(line)) == LineReader::Status::Line; ++number) {
        bytes += line.size() + 1;
        if (number % progressStep == 0) {
            progress.report(size > 0 ? bytes : number);
        }
        take(withoutReturnsAtEnd(line), number);
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
