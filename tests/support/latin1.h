#ifndef TAVOLINE_TESTS_LATIN1_H
#define TAVOLINE_TESTS_LATIN1_H

#include <QString>

/// A text from a literal.
inline QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

#endif
