#include "textline.h"

#include <algorithm>

namespace
{
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool beginsWithMark(std::string_view bytes)
{
    return bytes.substr(0, byteOrderMark.size()) == byteOrderMark;
}

std::string_view encode(const QString &text, QByteArray &memory)
{
    memory = text.toUtf8();
    return std::string_view(memory.constData(), memory.size());
}
} // namespace

bool isPlain(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) < 0x80 && byte != '\r'; });
}

std::string_view withoutReturnsAtEnd(std::string_view line)
{
    while (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

std::string_view withoutByteOrderMark(std::string_view bytes)
{
    return beginsWithMark(bytes) ? bytes.substr(byteOrderMark.size()) : bytes;
}

std::string_view normaliseKeepingReturns(std::string_view line, QByteArray &memory)
{
    return isPlain(line) ? line : encode(textOf(withoutByteOrderMark(line)), memory);
}

std::string_view normaliseDroppingReturns(std::string_view line, QByteArray &memory)
{
    return isPlain(line) ? line : encode(textOf(withoutByteOrderMark(line)).remove(QLatin1Char('\r')), memory);
}

QString textOf(std::string_view bytes)
{
    if (isPlain(bytes)) {
        return QString::fromLatin1(bytes.data(), int(bytes.size())); // the same text as fromUtf8(), but faster
    }
    const QString text = QString::fromUtf8(bytes.data(), int(bytes.size()));
    // QString::fromUtf8() has dropped the mark.
    return beginsWithMark(bytes) ? QChar(QChar::ByteOrderMark) + text : text;
}

std::string_view takeField(std::string_view &rest, bool &more)
{
    const size_t tab = rest.find('\t');
    more = tab != std::string_view::npos;
    const std::string_view field = rest.substr(0, tab);
    rest.remove_prefix(more ? tab + 1 : rest.size());
    return field;
}
