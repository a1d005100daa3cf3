// Files and folders that the process has no right to use.
#ifndef TAVOLINE_TESTS_WITHOUTRIGHTS_H
#define TAVOLINE_TESTS_WITHOUTRIGHTS_H

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

/// While one lives, a file or folder has the access mode @p mode. root, whom the mode would not stop, becomes the user
/// nobody meanwhile.
class WithoutRights
{
public:
    WithoutRights(const QString &path, mode_t mode) : name(QFile::encodeName(path)), user(::geteuid())
    {
        struct stat status {
        };
        const bool done = ::stat(name.constData(), &status) == 0 && ::chmod(name.constData(), mode) == 0;
        usualMode = status.st_mode & 07777U;
        if (!done || (user == 0 && ::seteuid(nobody) != 0)) {
            qFatal("%s keeps its rights", name.constData());
        }
    }
    ~WithoutRights()
    {
        if (::seteuid(user) != 0 || ::chmod(name.constData(), usualMode) != 0) {
            qFatal("%s does not get its rights back", name.constData());
        }
    }
    WithoutRights(const WithoutRights &) = delete;
    WithoutRights &operator=(const WithoutRights &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    const QByteArray name;
    const uid_t user;
    mode_t usualMode = 0;
};

#endif
