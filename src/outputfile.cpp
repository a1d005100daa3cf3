#include "outputfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace
{
WriteResult writeDirectly(const QString &path, const std::function<void(OutputFile &)> &write)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
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
