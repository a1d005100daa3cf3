#include "input.h"

#include "commandline.h"
#include "linereader.h"
#include "textline.h"

#include <QFile>

#include <cerrno>
#include <unistd.h>

namespace
{
/// Hands out what a pipe or a terminal has as soon as it has something; QFile waits until its block is full.
class StandardInput : public QIODevice
{
public:
    StandardInput() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        ssize_t count = 0;
        do {
            count = ::read(STDIN_FILENO, data, size_t(maximum));
        } while (count < 0 && errno == EINTR);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }
};

void readLinesOf(QIODevice &device, const QString &path, const std::function<bool(std::string_view, qint64)> &take)
{
    LineReader reader(device);
    std::string_view line;
    LineReader::Status status = LineReader::Status::Line;
    qint64 number = 1;
    for (; (status = reader.next(line)) == LineReader::Status::Line; ++number) {
        if (!take(withoutLineEnd(line), number)) {
            return;
        }
    }
    if (status == LineReader::Status::TooLong) {
        throw CommandError(path, number, QStringLiteral("a line of more than 1 GiB"));
    }
    if (status == LineReader::Status::Failed) {
        throw CommandError(path, number, QStringLiteral("cannot be read"));
    }
}
} // namespace

void readLines(const QString &path, const std::function<bool(std::string_view, qint64)> &take)
{
    if (path == standardStream) {
        StandardInput input;
        readLinesOf(input, path, take);
        return;
    }
    QFile file(path);
    if (!openForReading(file)) {
        throw CommandError(QStringLiteral("%1: cannot be opened").arg(inputName(path)));
    }
    readLinesOf(file, path, take);
}
