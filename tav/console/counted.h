#ifndef TAVOLINE_COUNTED_H
#define TAVOLINE_COUNTED_H

#include <QString>

/// A number and its noun: @p one for 1, @p several for any other number.
inline QString counted(qint64 number, const char *one, const char *several)
{
    return QString::number(number) + QLatin1Char(' ') + QLatin1String(number == 1 ? one : several);
}

#endif
