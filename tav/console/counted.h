#ifndef TAVOLINE_COUNTED_H
#define TAVOLINE_COUNTED_H

#include <QString>

/// A number and the word for what it counts, which is @p one when it is 1.
inline QString counted(qint64 number, const char *one, const char *several)
{
    return QString::number(number) + QLatin1Char(' ') + QLatin1String(number == 1 ? one : several);
}

#endif
