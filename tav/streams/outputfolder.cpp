#include "outputfolder.h"

#include "commandline.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr mode_t forEverybody = S_IRWXU | S_IRWXG | S_IRWXO; // less what the umask of the process takes away
constexpr mode_t readableAndWritable = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

QString withoutSlashesAtEnd(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    return path;
}

/// Makes a folder beside @p path under a name that nobody can predict, and returns its path; empty, with errno set,
/// when that is not possible.
QByteArray makeTemporaryFolder(const QByteArray &path)
{
    for (;;) {
        QByteArray temporary = path + '.' + QByteArray::number(QRandomGenerator::system()->generate64(), 36);
        if (::mkdir(temporary.constData(), forEverybody) == 0) {
            return temporary;
        }
        if (errno != EEXIST) {
            return {};
        }
    }
}

FileDescriptor makeFile(const QByteArray &path)
{
    constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC;
    return FileDescriptor(uninterrupted([&] { return ::open(path.constData(), flags, readableAndWritable); }));
}

/// Renames a folder to a name that is not taken, and returns whether that worked.
bool giveName(const QByteArray &folder, const QByteArray &name)
{
    if (::renameat2(AT_FDCWD, folder.constData(), AT_FDCWD, name.constData(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    // A file system may not know the flag. Without it only an empty folder is replaced.
    return errno == EINVAL && ::rename(folder.constData(), name.constData()) == 0;
}
} // namespace

OutputFolder::OutputFolder(const QString &path) : finalPath(withoutSlashesAtEnd(path))
{
    const QByteArray name = QFile::encodeName(finalPath);
    struct stat old = {};
    if (::lstat(name.constData(), &old) == 0) {
        throw cannotWrite(finalPath, qt_error_string(EEXIST));
    }
    temporaryPath = makeTemporaryFolder(name);
    if (temporaryPath.isEmpty()) {
        throw cannotWrite(finalPath, qt_error_string(errno));
    }
}

OutputFolder::~OutputFolder()
{
    if (!temporaryPath.isEmpty()) {
        QDir(QFile::decodeName(temporaryPath)).removeRecursively();
    }
}

void OutputFolder::makeFolder(const QString &name)
{
    const QByteArray path = temporaryPath + '/' + QFile::encodeName(name);
    if (::mkdir(path.constData(), forEverybody) != 0) {
        throw cannotWrite(finalPath, qt_error_string(errno));
    }
}

void OutputFolder::commit()
{
    InterruptionScope::check();
    if (!giveName(temporaryPath, QFile::encodeName(finalPath))) {
        throw cannotWrite(finalPath, qt_error_string(errno));
    }
    temporaryPath.clear();
}

FolderFile::FolderFile(const OutputFolder &folder, const QString &name)
    : folderPath(folder.finalPath)
    , file(makeFile(folder.temporaryPath + '/' + QFile::encodeName(name)))
    , output(file.number())
{
    if (!file.isOpen()) {
        throw cannotWrite(folderPath, qt_error_string(errno));
    }
}

void FolderFile::write(const QByteArray &bytes)
{
    output.write(bytes);
    InterruptionScope::check();
    if (!output.tookEverything()) {
        throw cannotWrite(folderPath, output.reason());
    }
}

void FolderFile::finish()
{
    if (!writeToDisk(file.number()) || !file.close()) {
        throw cannotWrite(folderPath, qt_error_string(errno));
    }
}
