// The files of a test: the samples, and those that it writes into a folder of its own.
#ifndef TAVOLINE_TESTS_TESTFILES_H
#define TAVOLINE_TESTS_TESTFILES_H

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

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

/// Writes a file, over one that is there, and returns its path.
inline QString write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}

/// The names of all files in a folder, of whatever kind.
inline QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// A new folder, which is removed with all that is in it.
class TestFolder
{
public:
    TestFolder()
    {
        if (!directory.isValid()) {
            qFatal("cannot make a folder");
        }
    }

    QString path() const { return directory.path(); }
    /// The path of a file in the folder; @p name itself when it is an absolute path.
    QString path(const QString &name) const { return QDir(path()).filePath(name); }
    QString path(const char *name) const { return path(QString::fromUtf8(name)); }

    /// Writes a file in the folder and returns its path.
    QString write(const QString &name, const QByteArray &bytes) const { return ::write(path(name), bytes); }
    QString write(const char *name, const QByteArray &bytes) const { return ::write(path(name), bytes); }

    /// The names of all files in the folder.
    QStringList files() const { return filesIn(path()); }

private:
    QTemporaryDir directory;
};

#endif
