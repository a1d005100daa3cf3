#include "invariantline.h"

#include "textline.h"

#include <QVector>

namespace
{
void setValue(InvariantLine &line, const QString &field)
{
    bool isNumber = false;
    line.value = field.toDouble(&isNumber);
    line.missing = !isNumber;
}
} // namespace

bool parseInvariantLine(std::string_view bytes, InvariantLine &line)
{
    bytes = withoutLineEnd(bytes);
    if (!isPlain(bytes)) {
        const QString text = decodeLine(bytes);
        const QVector<QStringRef> fields = text.splitRef(QLatin1Char('\t'));
        if (fields.size() < 2) {
            return false;
        }
        line.name = fields.at(0).toString();
        setValue(line, fields.at(1).toString());
        return true;
    }
    bool more = false;
    const std::string_view name = takeField(bytes, more);
    if (!more) {
        return false;
    }
    line.name = plainText(name);
    setValue(line, plainText(takeField(bytes, more)));
    return true;
}

QByteArray formatInvariantLine(const QString &name, double value, bool missing)
{
    return name.toLatin1() + '\t' + (missing ? QByteArrayLiteral("NA") : QByteArray::number(value, 'g', 6)) + '\n';
}
