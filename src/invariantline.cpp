#include "invariantline.h"

#include "textline.h"

#include <array>
#include <charconv>
#include <cmath>

namespace
{
constexpr int significantDigits = 6;

void setValue(InvariantLine &line, const QString &field)
{
    bool isNumber = false;
    line.value = field.toDouble(&isNumber);
    line.missing = !isNumber;
}

/// What QByteArray::number(value, 'g', 6) gives, which takes several times as long. The two differ only where the value
/// lies half-way between two numbers of six digits, which the toolkit rounds away from zero: its next digit is 5 then.
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
    bytes = withoutLineEnd(bytes);
    bool more = false;
    if (!isPlain(bytes)) {
        const QString text = decodeLine(bytes);
        QStringRef rest(&text);
        line.name = takeField(rest, more).toString();
        if (!more) {
            return false;
        }
        setValue(line, takeField(rest, more).toString());
        return true;
    }
    const std::string_view name = takeField(bytes, more);
    if (!more) {
        return false;
    }
    line.name = plainText(name);
    setValue(line, plainText(takeField(bytes, more)));
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
