#ifndef TAVOLINE_FILEIDENTITY_H
#define TAVOLINE_FILEIDENTITY_H

#include <QByteArray>
#include <QString>

#include <optional>
#include <sys/types.h>

/// What tells a regular file from all others, however its name is written.
class FileIdentity
{
public:
    /// That of the file @p path, which need not be there yet; for "-" that of the file behind the standard stream
    /// @p standardDescriptor. None for what can be read and written at once, as a pipe or a device, and for a file in a
    /// folder that does not exist.
    static std::optional<FileIdentity> of(const QString &path, int standardDescriptor);

    bool operator==(const FileIdentity &other) const
    {
        return device == other.device && number == other.number && newName == other.newName;
    }

private:
    dev_t device = 0;
    ino_t number = 0;
    QByteArray newName; // of a file that is not there yet: device and number are those of its folder
};

#endif
