#include "databaseline.h"

#include "textline.h"

#include <algorithm>

namespace
{
bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// The value of a field of plain text, 0 when it is no integer of 32 bits.
int toIndex(std::string_view field)
{
    constexpr size_t digitsThatAlwaysFit = 9;
    if (field.empty() || field.size() > digitsThatAlwaysFit || !std::all_of(field.begin(), field.end(), isDigit)) {
        // White space, signs and overflow: the rules of the toolkit's own conversion.
        return plainText(field).toInt();
    }
    int value = 0;
    for (const char digit : field) {
        value = 10 * value + (digit - '0');
    }
    return value;
}
} // namespace

bool parseDatabaseLine(std::string_view bytes, DatabaseLine &line)
{
    bytes = withoutLineEnd(bytes);
    if (!isPlain(bytes)) {
        splitDatabaseLine(decodeLine(bytes), line);
        return !line.name.isEmpty();
    }
    bool more = false;
    const std::string_view name = takeField(bytes, more);
    if (name.empty()) {
        return false;
    }
    line.name = plainText(name);
    line.indices.clear();
    while (more) {
        line.indices.push_back(toIndex(takeField(bytes, more)));
    }
    return true;
}

void splitDatabaseLine(const QString &text, DatabaseLine &line)
{
    QStringRef rest(&text);
    bool more = false;
    line.name = takeField(rest, more).toString();
    line.indices.clear();
    while (more) {
        line.indices.push_back(takeField(rest, more).toInt());
    }
}
