// A standard stream of the process that goes elsewhere for a while.
#ifndef TAVOLINE_TESTS_REDIRECTION_H
#define TAVOLINE_TESTS_REDIRECTION_H

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

/// While one lives, a standard stream is another file.
class Redirection
{
public:
    /// The stream is what @p target is.
    Redirection(int descriptor, int target) : stream(descriptor), saved(::dup(descriptor)) { ::dup2(target, stream); }
    /// The stream is the file @p path, opened with @p flags.
    Redirection(int descriptor, const QString &path, int flags) : stream(descriptor), saved(::dup(descriptor))
    {
        const int file = ::open(QFile::encodeName(path).constData(), flags, 0600);
        ::dup2(file, stream);
        ::close(file);
    }
    ~Redirection()
    {
        ::dup2(saved, stream);
        ::close(saved);
    }
    Redirection(const Redirection &) = delete;
    Redirection &operator=(const Redirection &) = delete;

private:
    int stream;
    int saved;
};

#endif
