#ifndef TAVOLINE_SYSTEMCALLS_H
#define TAVOLINE_SYSTEMCALLS_H

#include <cerrno>
#include <unistd.h>
#include <utility>

/// The result of @p call, a call of the operating system, which is repeated while signals interrupt it.
template<typename Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Writes what an open file holds to the disk, and returns whether that worked. A file system that cannot do so is no
/// error.
inline bool writeToDisk(int file)
{
    return uninterrupted([&] { return ::fdatasync(file); }) == 0 || errno == EINVAL || errno == ENOSYS;
}

/// The descriptor of an open file, which is closed at the end.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    /// Takes over what an open() has returned, a negative number after a failure.
    explicit FileDescriptor(int opened) : descriptor(opened) {}
    FileDescriptor(FileDescriptor &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor() { close(); }

    bool isOpen() const { return descriptor >= 0; }
    int number() const { return descriptor; }

    /// Closes the file if it is open. Some file systems report a failed write only now: returns false then.
    bool close()
    {
        const int closed = std::exchange(descriptor, -1);
        return closed < 0 || ::close(closed) == 0 || errno == EINTR; // Linux closes the file even then
    }

private:
    int descriptor = -1;
};

#endif
