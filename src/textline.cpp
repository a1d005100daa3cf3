#include "textline.h"

#include <algorithm>

bool isPlain(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80 && byte != '\r'; });
}

std::string_view withoutLineEnd(std::string_view bytes)
{
    while (!bytes.empty() && bytes.back() == '\r') {
        bytes.remove_suffix(1);
    }
    return bytes;
}

QString decodeText(std::string_view bytes, bool isFirstLine)
{
    const QString text = QString::fromUtf8(bytes.data(), int(bytes.size()));
    // The toolkit drops the mark wherever it begins to decode.
    const std::string_view mark = "\xEF\xBB\xBF";
    return !isFirstLine && bytes.substr(0, mark.size()) == mark ? QChar(QChar::ByteOrderMark) + text : text;
}

QString decodeLine(std::string_view bytes)
{
    QString text = QString::fromUtf8(bytes.data(), int(bytes.size()));
    text.remove(QLatin1Char('\r'));
    return text;
}

QString plainText(std::string_view bytes)
{
    return QString::fromLatin1(bytes.data(), int(bytes.size()));
}

std::string_view takeField(std::string_view &rest, bool &more)
{
    const size_t tab = rest.find('\t');
    more = tab != std::string_view::npos;
    const std::string_view field = rest.substr(0, tab);
    rest.remove_prefix(more ? tab + 1 : rest.size());
    return field;
}

QStringRef takeField(QStringRef &rest, bool &more)
{
    const int tab = rest.indexOf(QLatin1Char('\t'));
    more = tab >= 0;
    const QStringRef field = rest.left(tab);
    rest = more ? rest.mid(tab + 1) : QStringRef();
    return field;
}
