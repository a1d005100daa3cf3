// For tests that let every call of the operating system fail once: which calls there are, and what their failure means.
// The kinds of calls are those of SystemCall.
#ifndef TAVOLINE_TESTS_CALLFAILURES_H
#define TAVOLINE_TESTS_CALLFAILURES_H

#include <QByteArray>
#include <QList>
#include <QMap>

#include <cerrno>
#include <cstring>

/// With each of these each call fails.
constexpr int callErrors[] = {EIO, ENOSPC, EACCES, EINTR};

/// How many calls of each kind there are.
using CallCounts = QMap<QByteArray, int>;

/// Whether a call of the kind is repeated when a signal interrupts it, or done all the same.
inline bool survivesSignals(const QByteArray &kind)
{
    return QList<QByteArray>{"open", "read", "write", "fsync", "close"}.contains(kind);
}

/// Whether no file is saved when a call of the kind fails. (Who reads a file may come to its end without the last
/// call.)
inline bool isIndispensable(const QByteArray &kind)
{
    return QList<QByteArray>{"open", "write", "fsync", "rename", "link"}.contains(kind);
}

/// The kinds of which one call at least must not fail in a save; @p isNamed where no file without a name can be made.
inline QList<QByteArray> importantKinds(bool isNamed)
{
    QList<QByteArray> kinds{"open", "write", "fsync", "close", "rename", "fstat"};
    if (!isNamed) {
        kinds.append("link");
    }
    return kinds;
}

inline QByteArray reasonOf(int error)
{
    return std::strerror(error);
}

/// For the message of a test that fails.
inline QByteArray description(const QByteArray &kind, int occurrence, int error)
{
    return kind + " number " + QByteArray::number(occurrence) + " fails: " + reasonOf(error);
}

#endif
