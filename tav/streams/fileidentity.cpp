#include "fileidentity.h"

#include "commandline.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

std::optional<FileIdentity> FileIdentity::of(const QString &path, int standardDescriptor)
{
    struct stat status = {};
    FileIdentity identity;
    const bool isThere = path == standardStream ? ::fstat(standardDescriptor, &status) == 0
                                                : ::stat(QFile::encodeName(path).constData(), &status) == 0;
    if (isThere && !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    if (!isThere) {
        const QFileInfo file(path);
        if (::stat(QFile::encodeName(file.path()).constData(), &status) != 0) {
            return std::nullopt;
        }
        identity.newName = QFile::encodeName(file.fileName());
    }
    identity.device = status.st_dev;
    identity.number = status.st_ino;
    return identity;
}
