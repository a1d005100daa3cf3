#ifndef TAVOLINE_REGULARFILE_H
#define TAVOLINE_REGULARFILE_H

#include "commandline.h"

#include <QString>

#include <string_view>

class QFile;

// What is read more than once, or in no order, has to be a regular file: no pipe, and no standard input.

/// Opens a regular file for reading. Throws CommandError when that is not possible.
void openRegular(QFile &file);

/// The size in bytes of a file that was opened so. Throws CommandError when the system does not tell.
qint64 sizeOf(const QFile &file);

/// The file @p path cannot be read, for a @p reason in the words of the system.
CommandError cannotRead(const QString &path, const QString &reason);

/// The bytes of a regular file, mapped into memory: all processes that do so share them. On a local disk they stay when
/// another file takes the place of the file; on a network disk, when another machine did that, using them may end the
/// process.
class MappedFile
{
public:
    /// Throws CommandError when the file cannot be opened or mapped.
    explicit MappedFile(const QString &path);
    ~MappedFile();
    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;

    std::string_view bytes() const { return {begin, length}; }

private:
    char *begin = nullptr;
    size_t length = 0;
};

#endif
