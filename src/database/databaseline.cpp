#include "databaseline.h"

#include "textline.h"

#include <algorithm>

namespace
{
bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// The value of a field; 0 when it is no integer of 32 bits.
int toIndex(std::string_view field)
{
    constexpr size_t digitsThatAlwaysFit = 9;
    if (field.empty() || field.size() > digitsThatAlwaysFit || !std::all_of(field.begin(), field.end(), isDigit)) {
        // Blanks, signs and overflow follow the rules of QString::toInt().
        return textOf(field).toInt();
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
    QByteArray memory;
    const std::string_view normalised = normaliseDroppingReturns(withoutReturnsAtEnd(bytes), memory);
    if (normalised.empty() || normalised.front() == '\t') {
        return false;
    }
    splitDatabaseLine(normalised, line);
    return true;
}

void splitDatabaseLine(std::string_view normalised, DatabaseLine &line)
{
    bool more = false;
    line.name = textOf(takeField(normalised, more));
    line.indices.clear();
    while (more) {
        line.indices.push_back(toIndex(takeField(normalised, more)));
    }
}
