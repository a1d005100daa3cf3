// The calls of the operating system on files: a test sees each of them, and can let it fail.
#ifndef TAVOLINE_TESTS_WATCHEDCALLS_H
#define TAVOLINE_TESTS_WATCHEDCALLS_H

#include <functional>
#include <string>

/// A call of the operating system on a file that is watched.
struct SystemCall {
    /// The kind of the call, which many functions share: "open", "read", "write", "fsync", "close", "rename", "link",
    /// "fstat", "access", "readlink", "unlink", "fchown", "fchmod", "fsetxattr", "fremovexattr", "getxattr",
    /// "listxattr". So fdatasync() is of the kind "fsync", statx() of the kind "fstat".
    const char *kind;
    /// The file of the call; the new one where the call gives a file another name.
    std::string path;
    /// The descriptor of the file; -1 where the call gets a path.
    int descriptor;
    /// Whether it is an open() of a new file without a name.
    bool isUnnamed;
};

/// Is told of a call before it is made, and returns the error with which it fails instead, or 0.
using CallHook = std::function<int(const SystemCall &)>;

/// While one lives, the calls that the thread makes on the files in @p folder, also through Qt, go through @p hook. The
/// calls of the hook itself do not. There is never more than one in a thread.
class CallWatch
{
public:
    CallWatch(std::string folder, CallHook hook);
    ~CallWatch();
    CallWatch(const CallWatch &) = delete;
    CallWatch &operator=(const CallWatch &) = delete;

    /// The same for all threads of the process until its end. The hook may then be called by several threads at once.
    static void forProcess(std::string folder, CallHook hook);

private:
    friend class CallGate;

    std::string watchedFolder;
    CallHook askedHook;
};

#endif
