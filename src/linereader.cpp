#include "linereader.h"

#include <cstring>

bool openForReading(QFile &file)
{
    return !file.fileName().isEmpty() && file.open(QIODevice::ReadOnly);
}

LineReader::LineReader(QIODevice &source, int blockSize)
    : device(source)
    , buffer(blockSize, Qt::Uninitialized)
    , blockLength(blockSize)
{
}

LineReader::Status LineReader::next(std::string_view &line)
{
    int searched = 0;
    for (;;) {
        const char *start = buffer.constData() + begin;
        const int length = end - begin;
        const void *newline = std::memchr(start + searched, '\n', size_t(length - searched));
        if (newline != nullptr) {
            line = std::string_view(start, size_t(static_cast<const char *>(newline) - start));
            begin += int(line.size()) + 1;
            return Status::Line;
        }
        searched = length;
        const Status status = readBlock();
        if (status == Status::End && begin < end) {
            line = std::string_view(buffer.constData() + begin, size_t(end - begin));
            begin = end;
            return Status::Line;
        }
        if (status != Status::Line) {
            return status;
        }
    }
}

// Moves the unfinished line to the front and appends a block; doubling the buffer keeps long lines linear.
LineReader::Status LineReader::readBlock()
{
    const int kept = end - begin;
    if (kept > MaxLineLength) {
        return Status::TooLong;
    }
    if (begin > 0) {
        std::memmove(buffer.data(), buffer.constData() + begin, size_t(kept));
        begin = 0;
        end = kept;
    }
    if (buffer.size() - end < blockLength) {
        buffer.resize(qMax(end + blockLength, int(qMin<qint64>(qint64(2) * buffer.size(), MaxLineLength))));
    }
    const qint64 count = device.read(buffer.data() + end, blockLength);
    if (count < 0) {
        return Status::Failed;
    }
    end += int(count);
    return count > 0 ? Status::Line : Status::End;
}
