#ifndef TAVOLINE_TESTS_TESTDATA_H
#define TAVOLINE_TESTS_TESTDATA_H

#include <QFile>
#include <QStringList>

#include <initializer_list>

/// A list of Latin-1 texts.
inline QStringList words(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts) {
        list.append(QString::fromLatin1(text));
    }
    return list;
}

/// The path of one of the sample files.
inline QString example(const char *name)
{
    return QStringLiteral(TAVOLINE_EXAMPLES "/") + QLatin1String(name);
}

/// All bytes of a file, which must be there.
inline QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("cannot read %s", qPrintable(path));
    }
    return file.readAll();
}

#endif
