#include "replacement.h"

#include <QList>
#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{
constexpr char accessControlList[] = "system.posix_acl_access";
constexpr mode_t ownerBits = 0700;
constexpr mode_t permissionBits = 0777;
constexpr mode_t allBits = 07777;

/// The path to which the symbolic links at @p path lead, where no file need exist; empty, with errno set, when they
/// lead in a circle.
QByteArray behindLinks(QByteArray path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    std::array<char, PATH_MAX> link{};
    for (int followed = 0; followed < mostLinks; ++followed) {
        const ssize_t length = ::readlink(path.constData(), link.data(), link.size());
        if (length < 0) {
            return path;
        }
        const QByteArray next(link.data(), int(length));
        path = next.startsWith('/') ? next : path.left(path.lastIndexOf('/') + 1) + next;
    }
    errno = ELOOP;
    return {};
}

/// A name for a temporary file beside @p name that nobody can predict.
QByteArray randomNameFor(const QByteArray &name)
{
    constexpr int longest = NAME_MAX - 14; // a dot and 64 bits to the base 36
    const QByteArray number = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    return (name.size() <= longest ? name : QByteArrayLiteral("tavoline")) + '.' + number;
}

QByteArray pathOf(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

/// The value of an extended attribute of the file at @p path; a null array when it has none or it cannot be read.
QByteArray attributeOf(const QByteArray &path, const char *name)
{
    const ssize_t length = ::lgetxattr(path.constData(), name, nullptr, 0);
    if (length < 0) {
        return {};
    }
    QByteArray value(int(length), Qt::Uninitialized);
    const ssize_t taken = ::lgetxattr(path.constData(), name, value.data(), length);
    return taken == length ? value : QByteArray();
}

QList<QByteArray> attributeNames(const QByteArray &path)
{
    const ssize_t length = ::llistxattr(path.constData(), nullptr, 0);
    QByteArray names(int(qMax<ssize_t>(length, 0)), '\0');
    const ssize_t taken = ::llistxattr(path.constData(), names.data(), names.size());
    names.truncate(int(qMax<ssize_t>(taken, 0)));
    return names.split('\0');
}

/// Gives the new file the access control list of the file at @p path, or none when that has none; false when the
/// system does not allow it.
bool copyAccessControlList(const QByteArray &path, int file)
{
    const QByteArray list = attributeOf(path, accessControlList);
    if (!list.isNull()) {
        return ::fsetxattr(file, accessControlList, list.constData(), list.size(), 0) == 0;
    }
    // The new file may have got the default list of the folder.
    return ::fremovexattr(file, accessControlList) == 0 || errno == ENODATA || errno == EOPNOTSUPP;
}

/// Attributes that cannot be set, those of another security module for example, are left out.
void copyOtherAttributes(const QByteArray &path, int file)
{
    for (const QByteArray &name : attributeNames(path)) {
        const QByteArray value =
            name.isEmpty() || name == accessControlList ? QByteArray() : attributeOf(path, name.constData());
        if (!value.isNull()) {
            ::fsetxattr(file, name.constData(), value.constData(), value.size(), 0);
        }
    }
}

/// Gives the new file the attributes of the old one, whose status is @p old. Where the system does not allow that,
/// fewer users may access the new file.
void copyAttributes(const QByteArray &path, const struct stat &old, int file)
{
    const bool hasOwner = ::fchown(file, old.st_uid, uid_t(-1)) == 0;
    const bool hasGroup = ::fchown(file, uid_t(-1), old.st_gid) == 0;
    mode_t mode = old.st_mode & (hasOwner && hasGroup ? allBits : permissionBits);
    if (!hasGroup) {
        // The new file has another group, which gets the rights of everybody.
        mode &= ~mode_t(S_IRWXG) | ((old.st_mode & S_IRWXO) << 3);
    }
    if (!copyAccessControlList(path, file) || (!hasGroup && !attributeOf(path, accessControlList).isNull())) {
        ::fremovexattr(file, accessControlList);
        mode &= ownerBits;
    }
    copyOtherAttributes(path, file); // before the mode, which may take away the right to do so
    ::fchmod(file, mode);
}

/// fdatasync(), repeated after a signal. A file system without it is no error.
bool writeToDisk(int file)
{
    int result = 0;
    do {
        result = ::fdatasync(file);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOSYS;
}
} // namespace

Replacement::~Replacement()
{
    takeBack();
    if (folder >= 0) {
        ::close(folder);
    }
}

bool Replacement::open(const QByteArray &path)
{
    const QByteArray place = behindLinks(path);
    if (place.isEmpty() || !openFolder(place)) {
        return false;
    }
    struct stat old = {};
    if (::fstatat(folder, target.constData(), &old, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT && create(S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH);
    }
    if (::faccessat(folder, target.constData(), W_OK, AT_EACCESS) != 0 || !create(S_IRUSR | S_IWUSR)) {
        return false;
    }
    copyAttributes(place, old, file);
    return true;
}

bool Replacement::commit()
{
    if (!writeToDisk(file) || (temporaryName.isEmpty() && !giveName()) || !closeFile() ||
        ::renameat(folder, temporaryName.constData(), folder, target.constData()) != 0) {
        const int reason = errno;
        takeBack();
        errno = reason;
        return false;
    }
    temporaryName.clear();
    return true;
}

bool Replacement::openFolder(const QByteArray &path)
{
    const int slash = path.lastIndexOf('/');
    const QByteArray folderPath = slash < 0 ? QByteArray(".") : path.left(slash + 1);
    target = path.mid(slash + 1);
    folder = ::open(folderPath.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return folder >= 0;
}

bool Replacement::create(mode_t mode)
{
    file = ::openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
    // Not every file system has O_TMPFILE, and without /proc such a file cannot be given a name later.
    const bool canBeNamed = file >= 0 && ::access(pathOf(file).constData(), F_OK) == 0;
    if (canBeNamed) {
        return true;
    }
    if (file < 0 && errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) {
        return false;
    }
    takeBack();
    return createNamed(mode);
}

bool Replacement::createNamed(mode_t mode)
{
    do {
        temporaryName = randomNameFor(target);
        file = ::openat(folder, temporaryName.constData(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, mode);
    } while (file < 0 && errno == EEXIST);
    if (file < 0) {
        temporaryName.clear();
    }
    return file >= 0;
}

/// Gives the new file a name beside the target, since renameat() replaces a file and linkat() does not.
bool Replacement::giveName()
{
    QByteArray name;
    int result = 0;
    do {
        name = randomNameFor(target);
        result = ::linkat(AT_FDCWD, pathOf(file).constData(), folder, name.constData(), AT_SYMLINK_FOLLOW);
    } while (result != 0 && errno == EEXIST);
    if (result == 0) {
        temporaryName = name;
    }
    return result == 0;
}

/// Some file systems report a failed write only when the file is closed.
bool Replacement::closeFile()
{
    const int result = ::close(file);
    file = -1;
    return result == 0 || errno == EINTR; // Linux closes the file even then
}

void Replacement::takeBack()
{
    if (file >= 0) {
        ::close(file);
        file = -1;
    }
    if (!temporaryName.isEmpty()) {
        ::unlinkat(folder, temporaryName.constData(), 0);
        temporaryName.clear();
    }
}
