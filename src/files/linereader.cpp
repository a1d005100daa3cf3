#include "linereader.h"

#include <algorithm>
#include <cstring>

LineReader::LineReader(QIODevice &source, int blockSize, int longestLine)
    : device(source)
    , buffer(blockSize, Qt::Uninitialized)
    , blockLength(blockSize)
    , mostBytes(longestLine)
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

bool LineReader::hasLine() const
{
    return std::string_view(buffer.constData() + begin, end - begin).find('\n') != std::string_view::npos;
}

/// Whether one of @p lines is longer than a line may be.
bool LineReader::isTooLong(std::string_view lines) const
{
    const size_t limit = mostBytes;
    while (lines.size() > limit) {
        const size_t length = std::min(lines.find('\n'), lines.size());
        if (length > limit) {
            return true;
        }
        lines.remove_prefix(std::min(length + 1, lines.size()));
    }
    return false;
}

/// Hands out the bytes up to the newline that @p findNewline finds, after reading more blocks while there is none.
LineReader::Status LineReader::take(std::string_view &bytes, FindNewline findNewline)
{
    size_t searched = 0;
    for (;;) {
        std::string_view unread(buffer.constData() + begin, end - begin);
        // Only the new bytes are searched: a line of many blocks would take quadratic time otherwise.
        const size_t newline = findNewline(unread.substr(searched));
        if (newline == std::string_view::npos) {
            searched = unread.size();
            const Status status = readBlock();
            if (status == Status::Line) {
                continue;
            }
            if (status != Status::End || unread.empty()) {
                return status;
            }
            unread = std::string_view(buffer.constData() + begin, end - begin); // readBlock() may have moved it
        } else {
            unread = unread.substr(0, searched + newline + 1);
        }
        if (isTooLong(unread)) {
            return Status::TooLong;
        }
        bytes = unread;
        begin += int(bytes.size());
        return Status::Line;
    }
}

// Moves the unfinished line to the front and appends a block. The buffer doubles, so that copying takes linear time.
LineReader::Status LineReader::readBlock()
{
    const int kept = end - begin;
    if (kept > mostBytes) {
        return Status::TooLong;
    }
    if (begin > 0) {
        std::memmove(buffer.data(), buffer.constData() + begin, kept);
        begin = 0;
        end = kept;
    }
    if (buffer.size() - end < blockLength) {
        buffer.resize(qMax(end + blockLength, qMin(2 * buffer.size(), mostBytes)));
    }
    const qint64 count = device.read(buffer.data() + end, blockLength);
    if (count < 0) {
        return Status::Failed;
    }
    end += int(count);
    return count > 0 ? Status::Line : Status::End;
}
