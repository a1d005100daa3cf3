#ifndef TAVOLINE_REPLACEMENT_H
#define TAVOLINE_REPLACEMENT_H

#include "systemcalls.h"

#include <QByteArray>

#include <sys/stat.h>

/// A new file that takes the place of the one at a path when it is complete, and else leaves no trace.
///
/// Until then it has no name (O_TMPFILE), or where the file system has no such files, a random one beside the target.
/// A symbolic link at the path stays, and its target is replaced. What replaces a file gets its mode, its group, its
/// access control list and its other extended attributes, as far as the system allows; nobody gets access who had none
/// to the old file. A hard link to the old file keeps the old contents.
///
/// An operation that fails sets errno.
class Replacement
{
public:
    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    /// Makes the new file for @p path, where there is a regular file or none. Returns false when that is not possible,
    /// or when the old file is not writable.
    bool open(const QByteArray &path);

    /// The open new file.
    int descriptor() const { return file.number(); }

    /// Syncs the new file to the disk and replaces the old one by it; false, with the old file unchanged, when any step
    /// fails.
    bool commit();

private:
    bool openFolder(const QByteArray &path);
    bool create(mode_t mode);
    bool createNamed(mode_t mode);
    bool giveName();

    FileDescriptor folder;
    FileDescriptor file;
    QByteArray target;        // the name of the old file in the folder
    QByteArray temporaryName; // of the new file; empty while it has none
};

#endif
