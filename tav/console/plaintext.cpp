#include "plaintext.h"

#include <QVector>

namespace
{
QString escaped(char letter, uint character, int digits)
{
    return QStringLiteral("\\%1%2").arg(QLatin1Char(letter)).arg(character, digits, 16, QLatin1Char('0'));
}

QString plain(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
        return escaped('x', character, 2);
    case QChar::Other_Format: // those that set the direction of writing among them
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return character > 0xffff ? escaped('U', character, 8) : escaped('u', character, 4);
    default:
        return QString::fromUcs4(&character, 1);
    }
}
} // namespace

QString plainText(const QString &text)
{
    QString result;
    for (const uint character : text.toUcs4()) {
        result += plain(character);
    }
    return result;
}
