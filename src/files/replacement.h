#ifndef TAVOLINE_REPLACEMENT_H
#define TAVOLINE_REPLACEMENT_H

#include <QByteArray>

#include <sys/stat.h>

/// A new file that takes the place of the one at a path when it is complete, and else leaves no trace.
///
/// Until then it has no name, where the file system has such files; elsewhere it has a random one beside the target.
/// A symbolic link at the path stays, and its target is replaced. What replaces a file gets its mode, its group, its
/// access control list and its other extended attributes, as far as the system allows, and is never open to anybody to
/// whom that file was closed. A hard link to the old file keeps the old contents.
///
/// Every operation that fails leaves in errno why.
class Replacement
{
public:
    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    /// Makes the new file for the regular file, or for no file, at @p path; false when that is not possible or the old
    /// file may not be written to.
    bool open(const QByteArray &path);

    /// Where the contents are to be written.
    int descriptor() const { return file; }

    /// Writes the new file to the disk and puts it in the place of the old one; false when any step fails, the old file
    /// then being as it was.
    bool commit();

private:
    bool openFolder(const QByteArray &path);
    bool create(mode_t mode);
    bool createNamed(mode_t mode);
    bool giveName();
    bool closeFile();
    void takeBack();

    int folder = -1;
    int file = -1;
    QByteArray target;        // its name in the folder
    QByteArray temporaryName; // that of the new file, as long as it has one
};

#endif
