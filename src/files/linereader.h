#ifndef TAVOLINE_LINEREADER_H
#define TAVOLINE_LINEREADER_H

#include <QByteArray>
#include <QIODevice>

#include <string_view>

/// Reads a device block by block and hands out its lines in place, without copying or decoding them.
class LineReader
{
public:
    enum class Status {
        Line,    ///< a line was read
        End,     ///< the device has no more lines
        Failed,  ///< the device reported a read error
        TooLong, ///< the next line, or one of the next lines, is too long
    };

    /// The longest line in bytes, without its "\n": half of what a QString can hold.
    static constexpr int maxLineLength = 1 << 29;

    /// Reads @p source, which is open and outlives the reader, @p blockSize bytes at a time; a line of more than
    /// @p longestLine bytes is too long.
    explicit LineReader(QIODevice &source, int blockSize = 1 << 18, int longestLine = maxLineLength);

    /// Sets @p line to the bytes of the next line without its "\n"; they stay valid until the next call. A last line
    /// without "\n" is a line; an empty device has none. On any status but Line @p line is left as it was.
    Status next(std::string_view &line);

    /// Sets @p lines to the bytes of the next lines, at least one, each with its "\n", which only the last line of the
    /// device may lack; else like next(). They make up about a block, or one line that is longer.
    Status nextLines(std::string_view &lines);

    /// Whether next() has a line without reading from the device.
    bool hasLine() const;

private:
    using FindNewline = size_t (*)(std::string_view bytes);
    bool isTooLong(std::string_view lines) const;
    Status take(std::string_view &bytes, FindNewline findNewline);
    Status readBlock();

    QIODevice &device;
    QByteArray buffer;
    int blockLength;
    int mostBytes; // of a line
    int begin = 0; // what is read and not yet handed out: [begin, end) of the buffer
    int end = 0;
};

#endif
