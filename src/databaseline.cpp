#include "databaseline.h"

#include <QVector>

#include <algorithm>

namespace
{
bool isPlain(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80 && byte != '\r';
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// The value of a field of ASCII text, 0 when it is no integer of 32 bits.
int toIndex(std::string_view field)
{
    constexpr size_t digitsThatAlwaysFit = 9;
    if (field.empty() || field.size() > digitsThatAlwaysFit || !std::all_of(field.begin(), field.end(), isDigit)) {
        // White space, signs and overflow: the rules of the toolkit's own conversion.
        return QString::fromLatin1(field.data(), int(field.size())).toInt();
    }
    int value = 0;
    for (const char digit : field) {
        value = 10 * value + (digit - '0');
    }
    return value;
}

/// Cuts the first field off @p rest, which is left without it and without the tab behind it; the last field leaves
/// @p more false.
std::string_view takeField(std::string_view &rest, bool &more)
{
    const size_t tab = rest.find('\t');
    more = tab != std::string_view::npos;
    const std::string_view field = rest.substr(0, tab);
    rest.remove_prefix(more ? tab + 1 : rest.size());
    return field;
}
} // namespace

bool parseDatabaseLine(std::string_view bytes, DatabaseLine &line)
{
    while (!bytes.empty() && bytes.back() == '\r') {
        bytes.remove_suffix(1);
    }
    if (!std::all_of(bytes.begin(), bytes.end(), isPlain)) {
        QString text = QString::fromUtf8(bytes.data(), int(bytes.size()));
        text.remove(QLatin1Char('\r'));
        splitDatabaseLine(text, line);
        return !line.name.isEmpty();
    }

    bool more = false;
    const std::string_view name = takeField(bytes, more);
    if (name.empty()) {
        return false;
    }
    line.name = QString::fromLatin1(name.data(), int(name.size()));
    line.indices.clear();
    while (more) {
        line.indices.push_back(toIndex(takeField(bytes, more)));
    }
    return true;
}

void splitDatabaseLine(const QString &text, DatabaseLine &line)
{
    const QVector<QStringRef> fields = text.splitRef(QLatin1Char('\t'));
    line.name = fields.first().toString();
    line.indices.clear();
    for (auto field = fields.begin() + 1; field != fields.end(); ++field) {
        line.indices.push_back(field->toInt());
    }
}
