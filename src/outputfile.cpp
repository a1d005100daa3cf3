#include "outputfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>

namespace
{
/// Opens what is no regular file. A FIFO that nobody reads is refused: a plain open would wait for a reader, and the
/// window with it.
bool openWithoutWaiting(QFile &file)
{
    const int descriptor = ::open(QFile::encodeName(file.fileName()).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    // From here on a slow reader is waited for.
    return descriptor >= 0 && ::fcntl(descriptor, F_SETFL, O_WRONLY) == 0 &&
           file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
}

WriteResult writeDirectly(const QString &path, const std::function<void(OutputFile &)> &write)
{
    QFile file(path);
    if (!openWithoutWaiting(file)) {
        return WriteResult::NotOpened;
    }
    OutputFile output(file);
    write(output);
    return output.tookEverything() && file.flush() ? WriteResult::Written : WriteResult::Failed;
}
} // namespace

void OutputFile::write(const QByteArray &bytes)
{
    complete = complete && device.write(bytes) == bytes.size();
}

WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write)
{
    if (path.isEmpty()) {
        return WriteResult::NotOpened; // a cancelled dialog; the toolkit would complain on its own account
    }
    const QFileInfo target(path);
    if (target.exists() && !target.isFile()) {
        return writeDirectly(path, write);
    }
    // Without the fallback to writing directly: it would truncate the old file before the new one is complete.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return WriteResult::NotOpened;
    }
    OutputFile output(file);
    write(output);
    if (!output.tookEverything() || !file.flush()) {
        file.cancelWriting();
    }
    return file.commit() ? WriteResult::Written : WriteResult::Failed;
}
