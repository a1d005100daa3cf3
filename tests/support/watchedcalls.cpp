// Each function below stands before that of glibc, for Qt too: the linker looks into the program and into what
// LD_PRELOAD names before it looks into other libraries.

#include "watchedcalls.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

/// The function that would have been called.
#define NEXT(function) static auto *const next = reinterpret_cast<decltype(&::function)>(dlsym(RTLD_NEXT, #function))

namespace
{
thread_local const CallWatch *watchOfThread = nullptr;
thread_local bool isInHook = false;
std::atomic<const CallWatch *> watchOfProcess = nullptr;

std::string linkAt(const std::string &path)
{
    NEXT(readlink);
    std::array<char, PATH_MAX> target{};
    const ssize_t length = next(path.c_str(), target.data(), target.size());
    return {target.data(), length > 0 ? size_t(length) : 0};
}

std::string fileOf(int descriptor)
{
    return linkAt("/proc/self/fd/" + std::to_string(descriptor));
}

/// The absolute form of a path that a call with the descriptor @p folder gets.
std::string fileAt(int folder, const char *path)
{
    const std::string name(path);
    if (name.rfind("/proc/self/fd/", 0) == 0) {
        return linkAt(name);
    }
    if (name.empty()) {
        return fileOf(folder);
    }
    const bool isAbsolute = name.front() == '/';
    const std::string before = isAbsolute ? "" : (folder == AT_FDCWD ? linkAt("/proc/self/cwd") : fileOf(folder)) + '/';
    return before + name;
}
} // namespace

/// Asks the hook of the watch, if there is one for the thread and the file.
class CallGate
{
public:
    /// Whether the call must fail, with errno set.
    static bool isClosed(const char *kind, int descriptor)
    {
        return isWatched() && isClosedFor({kind, fileOf(descriptor), descriptor, false});
    }
    static bool isClosed(const char *kind, int folder, const char *path, bool isUnnamed = false)
    {
        return isWatched() && isClosedFor({kind, fileAt(folder, path), -1, isUnnamed});
    }

private:
    static const CallWatch *watch() { return watchOfThread != nullptr ? watchOfThread : watchOfProcess.load(); }
    static bool isWatched() { return !isInHook && watch() != nullptr; }

    static bool isClosedFor(const SystemCall &call)
    {
        const std::string &folder = watch()->watchedFolder;
        const bool isInside =
            call.path.rfind(folder, 0) == 0 && (call.path.size() == folder.size() || call.path[folder.size()] == '/');
        if (!isInside) {
            return false;
        }
        const int before = errno;
        isInHook = true;
        const int error = watch()->askedHook(call);
        isInHook = false;
        errno = error != 0 ? error : before;
        return error != 0;
    }
};

CallWatch::CallWatch(std::string folder, CallHook hook) : watchedFolder(std::move(folder)), askedHook(std::move(hook))
{
    watchOfThread = this;
}

CallWatch::~CallWatch()
{
    watchOfThread = nullptr;
}

void CallWatch::forProcess(std::string folder, CallHook hook)
{
    watchOfProcess = new CallWatch(std::move(folder), std::move(hook)); // until the process ends
    watchOfThread = nullptr;
}

namespace
{
/// The third argument of open(), which it has when a file can come into being.
mode_t modeOf(int flags, va_list arguments)
{
    const bool makesFile = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return makesFile ? va_arg(arguments, mode_t) : 0;
}

bool isUnnamed(int flags)
{
    return (flags & O_TMPFILE) == O_TMPFILE;
}
} // namespace

extern "C" {

int open(const char *path, int flags, ...)
{
    NEXT(open);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return CallGate::isClosed("open", AT_FDCWD, path, isUnnamed(flags)) ? -1 : next(path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    NEXT(open64);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return CallGate::isClosed("open", AT_FDCWD, path, isUnnamed(flags)) ? -1 : next(path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    NEXT(openat);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return CallGate::isClosed("open", folder, path, isUnnamed(flags)) ? -1 : next(folder, path, flags, mode);
}

ssize_t read(int file, void *bytes, size_t count)
{
    NEXT(read);
    return CallGate::isClosed("read", file) ? -1 : next(file, bytes, count);
}

ssize_t write(int file, const void *bytes, size_t count)
{
    NEXT(write);
    return CallGate::isClosed("write", file) ? -1 : next(file, bytes, count);
}

int fsync(int file)
{
    NEXT(fsync);
    return CallGate::isClosed("fsync", file) ? -1 : next(file);
}

int fdatasync(int file)
{
    NEXT(fdatasync);
    return CallGate::isClosed("fsync", file) ? -1 : next(file);
}

int close(int file)
{
    NEXT(close);
    const bool fails = CallGate::isClosed("close", file);
    const int error = errno;
    const int result = next(file); // Linux closes the file in any case
    if (fails) {
        errno = error;
    }
    return fails ? -1 : result;
}

int rename(const char *path, const char *newPath) noexcept
{
    NEXT(rename);
    return CallGate::isClosed("rename", AT_FDCWD, newPath) ? -1 : next(path, newPath);
}

int renameat(int folder, const char *path, int newFolder, const char *newPath) noexcept
{
    NEXT(renameat);
    return CallGate::isClosed("rename", newFolder, newPath) ? -1 : next(folder, path, newFolder, newPath);
}

int renameat2(int folder, const char *path, int newFolder, const char *newPath, unsigned int flags) noexcept
{
    NEXT(renameat2);
    return CallGate::isClosed("rename", newFolder, newPath) ? -1 : next(folder, path, newFolder, newPath, flags);
}

int link(const char *path, const char *newPath) noexcept
{
    NEXT(link);
    return CallGate::isClosed("link", AT_FDCWD, newPath) ? -1 : next(path, newPath);
}

int linkat(int folder, const char *path, int newFolder, const char *newPath, int flags) noexcept
{
    NEXT(linkat);
    return CallGate::isClosed("link", newFolder, newPath) ? -1 : next(folder, path, newFolder, newPath, flags);
}

int stat(const char *path, struct stat *status) noexcept
{
    NEXT(stat);
    return CallGate::isClosed("fstat", AT_FDCWD, path) ? -1 : next(path, status);
}

int stat64(const char *path, struct stat64 *status) noexcept
{
    NEXT(stat64);
    return CallGate::isClosed("fstat", AT_FDCWD, path) ? -1 : next(path, status);
}

int lstat(const char *path, struct stat *status) noexcept
{
    NEXT(lstat);
    return CallGate::isClosed("fstat", AT_FDCWD, path) ? -1 : next(path, status);
}

int lstat64(const char *path, struct stat64 *status) noexcept
{
    NEXT(lstat64);
    return CallGate::isClosed("fstat", AT_FDCWD, path) ? -1 : next(path, status);
}

int fstat(int file, struct stat *status) noexcept
{
    NEXT(fstat);
    return CallGate::isClosed("fstat", file) ? -1 : next(file, status);
}

int fstat64(int file, struct stat64 *status) noexcept
{
    NEXT(fstat64);
    return CallGate::isClosed("fstat", file) ? -1 : next(file, status);
}

int fstatat(int folder, const char *path, struct stat *status, int flags) noexcept
{
    NEXT(fstatat);
    return CallGate::isClosed("fstat", folder, path) ? -1 : next(folder, path, status, flags);
}

int statx(int folder, const char *path, int flags, unsigned int mask, struct statx *status) noexcept
{
    NEXT(statx);
    return CallGate::isClosed("fstat", folder, path) ? -1 : next(folder, path, flags, mask, status);
}

int access(const char *path, int kind) noexcept
{
    NEXT(access);
    return CallGate::isClosed("access", AT_FDCWD, path) ? -1 : next(path, kind);
}

int faccessat(int folder, const char *path, int kind, int flags) noexcept
{
    NEXT(faccessat);
    return CallGate::isClosed("access", folder, path) ? -1 : next(folder, path, kind, flags);
}

ssize_t readlink(const char *path, char *target, size_t size) noexcept
{
    NEXT(readlink);
    return CallGate::isClosed("readlink", AT_FDCWD, path) ? -1 : next(path, target, size);
}

int unlinkat(int folder, const char *path, int flags) noexcept
{
    NEXT(unlinkat);
    return CallGate::isClosed("unlink", folder, path) ? -1 : next(folder, path, flags);
}

int fchown(int file, uid_t owner, gid_t group) noexcept
{
    NEXT(fchown);
    return CallGate::isClosed("fchown", file) ? -1 : next(file, owner, group);
}

int fchmod(int file, mode_t mode) noexcept
{
    NEXT(fchmod);
    return CallGate::isClosed("fchmod", file) ? -1 : next(file, mode);
}

int fsetxattr(int file, const char *name, const void *value, size_t size, int flags) noexcept
{
    NEXT(fsetxattr);
    return CallGate::isClosed("fsetxattr", file) ? -1 : next(file, name, value, size, flags);
}

int fremovexattr(int file, const char *name) noexcept
{
    NEXT(fremovexattr);
    return CallGate::isClosed("fremovexattr", file) ? -1 : next(file, name);
}

ssize_t lgetxattr(const char *path, const char *name, void *value, size_t size) noexcept
{
    NEXT(lgetxattr);
    return CallGate::isClosed("getxattr", AT_FDCWD, path) ? -1 : next(path, name, value, size);
}

ssize_t llistxattr(const char *path, char *names, size_t size) noexcept
{
    NEXT(llistxattr);
    return CallGate::isClosed("listxattr", AT_FDCWD, path) ? -1 : next(path, names, size);
}

} // extern "C"
