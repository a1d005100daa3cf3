// Texts, bytes and lists of texts from literals.
#ifndef TAVOLINE_TESTS_LITERALS_H
#define TAVOLINE_TESTS_LITERALS_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <initializer_list>

inline QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

/// A text from UTF-8.
inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The bytes of a literal, NUL bytes included.
template<size_t size> QByteArray bytes(const char (&literal)[size])
{
    return QByteArray(literal, int(size) - 1);
}

/// A list of Latin-1 texts.
inline QStringList words(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts) {
        list.append(latin1(text));
    }
    return list;
}

#endif
