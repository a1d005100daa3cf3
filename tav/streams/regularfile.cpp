#include "regularfile.h"

#include "inputfile.h"

#include <QFile>

#include <sys/mman.h>
#include <sys/stat.h>

void openRegular(QFile &file)
{
    QString reason;
    if (!openForReading(file, &reason)) {
        throw CommandError(QStringLiteral("%1: cannot be opened: %2").arg(file.fileName(), reason));
    }
}

qint64 sizeOf(const QFile &file)
{
    struct stat status = {};
    if (::fstat(file.handle(), &status) != 0) {
        throw cannotRead(file.fileName(), qt_error_string());
    }
    return status.st_size;
}

CommandError cannotRead(const QString &path, const QString &reason)
{
    return CommandError(QStringLiteral("%1: cannot be read: %2").arg(path, reason));
}

MappedFile::MappedFile(const QString &path)
{
    QFile file(path);
    openRegular(file);
    const auto size = size_t(sizeOf(file));
    if (size == 0) {
        return; // mmap() refuses that
    }
    void *const mapping = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.handle(), 0);
    if (mapping == MAP_FAILED) {
        throw cannotRead(path, qt_error_string());
    }
    begin = static_cast<char *>(mapping);
    length = size;
}

MappedFile::~MappedFile()
{
    if (begin != nullptr) {
        ::munmap(begin, length);
    }
}
