#include "linereader.h"

#include <QFileInfo>

#include <cstring>

bool openForReading(QFile &file)
{
    return QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly);
}

LineReader::LineReader(QIODevice &source, int blockSize)
    : device(source)
    , buffer(blockSize, Qt::Uninitialized)
    , blockLength(blockSize)
{
}

LineReader::Status LineReader::next(std::string_view &line)
{
    const Status status = take(line, [](std::string_view unread, size_t searched) {
        const void *newline = std::memchr(unread.data() + searched, '\n', unread.size() - searched);
        return newline != nullptr ? size_t(static_cast<const char *>(newline) - unread.data()) + 1 : 0;
    });
    if (status == Status::Line && line.back() == '\n') {
        line.remove_suffix(1);
    }
    return status;
}

LineReader::Status LineReader::nextLines(std::string_view &lines)
{
    return take(lines, [](std::string_view unread, size_t) { return unread.rfind('\n') + 1; });
}

/// Hands out what is read up to where @p findEnd says, reading on as long as that is 0; the first @p searched bytes of
/// what it is given then held no end before.
LineReader::Status LineReader::take(std::string_view &bytes, FindEnd findEnd)
{
    size_t searched = 0;
    for (;;) {
        const std::string_view unread(buffer.constData() + begin, size_t(end - begin));
        if (const size_t length = findEnd(unread, searched); length > 0) {
            bytes = unread.substr(0, length);
            begin += int(length);
            return Status::Line;
        }
        searched = unread.size();
        const Status status = readBlock();
        if (status == Status::End && begin < end) {
            bytes = std::string_view(buffer.constData() + begin, size_t(end - begin));
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
