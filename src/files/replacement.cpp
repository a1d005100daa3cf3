#include "replacement.h"

#include "systemcalls.h"

#include <QList>
#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <linux/limits.h>
#include <optional>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{
constexpr char accessControlList[] = "system.posix_acl_access";
constexpr mode_t readableAndWritable = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr mode_t privateMode = S_IRUSR | S_IWUSR;
constexpr mode_t permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t allBits = permissionBits | S_ISUID | S_ISGID | S_ISVTX;

/// The path to which the symbolic links at @p path lead, where no file need exist; empty, with errno set, when that
/// cannot be found out.
QByteArray behindLinks(QByteArray path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    std::array<char, PATH_MAX> link{};
    for (int followed = 0; followed <= mostLinks; ++followed) {
        const ssize_t length = ::readlink(path.constData(), link.data(), link.size());
        if (length < 0) {
            const bool isNoLink = errno == EINVAL || errno == ENOENT;
            return isNoLink ? path : QByteArray();
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

/// The value of an extended attribute of the file at @p path; nothing, with errno set, when it has none or it cannot be
/// read.
std::optional<QByteArray> attributeOf(const QByteArray &path, const char *name)
{
    QByteArray value(XATTR_SIZE_MAX, Qt::Uninitialized);
    const ssize_t length = ::lgetxattr(path.constData(), name, value.data(), value.size());
    if (length < 0) {
        return std::nullopt;
    }
    value.truncate(int(length));
    return value;
}

QList<QByteArray> attributeNames(const QByteArray &path)
{
    QByteArray names(XATTR_LIST_MAX, Qt::Uninitialized);
    const ssize_t length = ::llistxattr(path.constData(), names.data(), names.size());
    names.truncate(int(qMax<ssize_t>(length, 0)));
    QList<QByteArray> list = names.split('\0');
    list.removeLast(); // what is behind the last zero
    return list;
}

/// Whether a call on an attribute failed because the file has no such attribute.
bool isWithoutAttribute(int error)
{
    return error == ENODATA || error == EOPNOTSUPP;
}

/// Whether open() failed because the kernel or the file system does not know a flag.
bool isUnknownFlag(int error)
{
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL;
}

bool removeAccessControlList(int file)
{
    return ::fremovexattr(file, accessControlList) == 0 || isWithoutAttribute(errno);
}

/// Gives the new file the access control list of the file at @p path, or none when that has none; false when that is
/// not possible.
bool copyAccessControlList(const QByteArray &path, int file)
{
    if (const auto list = attributeOf(path, accessControlList)) {
        return ::fsetxattr(file, accessControlList, list->constData(), list->size(), 0) == 0;
    }
    // The new file may have got the default list of the folder.
    return isWithoutAttribute(errno) && removeAccessControlList(file);
}

/// Attributes that cannot be set, those of another security module for example, are left out.
void copyOtherAttributes(const QByteArray &path, int file)
{
    for (const QByteArray &name : attributeNames(path)) {
        const auto value = name == accessControlList ? std::nullopt : attributeOf(path, name.constData());
        if (value) {
            ::fsetxattr(file, name.constData(), value->constData(), value->size(), 0);
        }
    }
}

/// Gives the new file the attributes of the old one, whose status is @p old. Where the system does not allow that,
/// fewer users may access the new file.
void copyAttributes(const QByteArray &path, const struct stat &old, int file)
{
    const bool hasOwner = ::fchown(file, old.st_uid, gid_t(-1)) == 0;
    const bool hasGroup = ::fchown(file, uid_t(-1), old.st_gid) == 0;
    mode_t mode = old.st_mode & (hasOwner ? allBits : permissionBits);
    if (!hasGroup) {
        // The members of the old group are others now, and some others are in the new group.
        const mode_t both = (mode >> 3) & mode & S_IRWXO;
        mode = (mode & S_IRWXU) | both << 3 | both;
    }
    // An access control list may give the group more rights, or others fewer.
    if (!copyAccessControlList(path, file) || (!hasGroup && attributeOf(path, accessControlList))) {
        removeAccessControlList(file);
        mode &= S_IRWXU;
    }
    copyOtherAttributes(path, file); // before the mode, which may take away the right to do so
    ::fchmod(file, mode);
}
} // namespace

Replacement::~Replacement()
{
    if (!temporaryName.isEmpty()) {
        ::unlinkat(folder.number(), temporaryName.constData(), 0);
    }
}

bool Replacement::open(const QByteArray &path)
{
    // The kernel decides whether the links at the path may be followed.
    struct stat old = {};
    const bool isThere = ::stat(path.constData(), &old) == 0;
    if (!isThere && errno != ENOENT) {
        return false;
    }
    const QByteArray place = behindLinks(path);
    if (place.isEmpty() || !openFolder(place)) {
        return false;
    }
    if (!isThere) {
        return create(readableAndWritable);
    }
    if (!S_ISREG(old.st_mode)) {
        errno = EEXIST;
        return false;
    }
    if (::faccessat(folder.number(), target.constData(), W_OK, AT_EACCESS) != 0 || !create(privateMode)) {
        return false;
    }
    copyAttributes(place, old, file.number());
    return true;
}

bool Replacement::commit()
{
    if (!writeToDisk(file.number()) || (temporaryName.isEmpty() && !giveName()) || !file.close() ||
        ::renameat(folder.number(), temporaryName.constData(), folder.number(), target.constData()) != 0) {
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
    constexpr int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    folder = FileDescriptor(uninterrupted([&] { return ::open(folderPath.constData(), flags); }));
    return folder.isOpen();
}

bool Replacement::create(mode_t mode)
{
    constexpr int flags = O_TMPFILE | O_WRONLY | O_CLOEXEC;
    file = FileDescriptor(uninterrupted([&] { return ::openat(folder.number(), ".", flags, mode); }));
    if (!file.isOpen()) {
        return isUnknownFlag(errno) && createNamed(mode);
    }
    // Without /proc the file cannot be given a name later.
    return ::access(pathOf(file.number()).constData(), F_OK) == 0 || createNamed(mode);
}

bool Replacement::createNamed(mode_t mode)
{
    constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC; // O_EXCL follows no link
    QByteArray name;
    do {
        name = randomNameFor(target);
        file = FileDescriptor(uninterrupted([&] { return ::openat(folder.number(), name.constData(), flags, mode); }));
    } while (!file.isOpen() && errno == EEXIST);
    if (file.isOpen()) {
        temporaryName = name;
    }
    return file.isOpen();
}

/// Gives the new file a name beside the target, since renameat() replaces a file and linkat() does not.
bool Replacement::giveName()
{
    const QByteArray unnamed = pathOf(file.number());
    QByteArray name;
    int result = 0;
    do {
        name = randomNameFor(target);
        result = ::linkat(AT_FDCWD, unnamed.constData(), folder.number(), name.constData(), AT_SYMLINK_FOLLOW);
    } while (result != 0 && errno == EEXIST);
    if (result == 0) {
        temporaryName = name;
    }
    return result == 0;
}
