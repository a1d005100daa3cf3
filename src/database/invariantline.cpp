#include "invariantline.h"

#include "textline.h"

#include <array>
#include <charconv>
#include <cmath>

namespace
{
constexpr int significantDigits = 6;

/// Appends what QByteArray::number(value, 'g', 6) gives, in a fraction of its time. std::to_chars() differs only for a
/// value half-way between two numbers of six digits, which Qt rounds away from zero. The seventh digit of such a value
/// is 5: these values are left to Qt.
void appendNumber(QByteArray &text, double value)
{
    std::array<char, 32> digits;
    char *const begin = digits.data();
    char *const end = begin + digits.size();
    std::to_chars(begin, end, std::fabs(value), std::chars_format::scientific, significantDigits);
    if (!std::isfinite(value) || value == 0.0 || digits[significantDigits + 1] == '5') {
        text.append(QByteArray::number(value, 'g', significantDigits));
        return;
    }
    const std::to_chars_result written =
        std::to_chars(begin, end, value, std::chars_format::general, significantDigits);
    text.append(begin, int(written.ptr - begin));
}
} // namespace

bool parseInvariantLine(std::string_view bytes, InvariantLine &line)
{
    QByteArray memory;
    std::string_view rest = normaliseDroppingReturns(withoutReturnsAtEnd(bytes), memory);
    bool more = false;
    const std::string_view name = takeField(rest, more);
    if (!more) {
        return false;
    }
    line.name = textOf(name);
    bool isNumber = false;
    line.value = textOf(takeField(rest, more)).toDouble(&isNumber);
    line.missing = !isNumber;
    return true;
}

void appendInvariantLine(QByteArray &lines, const QString &name, double value, bool missing)
{
    lines.append(name.toLatin1()).append('\t');
    if (missing) {
        lines.append("NA", 2);
    } else {
        appendNumber(lines, value);
    }
    lines.append('\n');
}
