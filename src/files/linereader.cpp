#include "linereader.h"

#include <cstring>

LineReader::LineReader(QIODevice &source, int blockSize)
    : device(source)
    , buffer(blockSize, Qt::Uninitialized)
    , blockLength(blockSize)
{
}

LineReader::Status LineReader::next(std::string_view &line)
{
    const Status status = take(line, [](std::string_view bytes) { return bytes.find('\n'); });
    if (status == Status::Line && line.back() == '\n') {
        line.remove_suffix(1);
    }
    return status;
}

LineReader::Status LineReader::nextLines(std::string_view &lines)
{
    return take(lines, [](std::string_view bytes) { return bytes.rfind('\n'); });
}

/// Hands out the bytes up to the newline that @p findNewline finds, after reading more blocks while there is none.
LineReader::Status LineReader::take(std::string_view &bytes, FindNewline findNewline)
{
    size_t searched = 0;
    for (;;) {
        const std::string_view unread(buffer.constData() + begin, size_t(end - begin));
        // Only the new bytes are searched: a line of many blocks would take quadratic time otherwise.
        if (const size_t newline = findNewline(unread.substr(searched)); newline != std::string_view::npos) {
            bytes = unread.substr(0, searched + newline + 1);
            begin += int(bytes.size());
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

// Moves the unfinished line to the front and appends a block. The buffer doubles, so that copying takes linear time.
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
