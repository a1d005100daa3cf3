#include "output.h"

#include "commandline.h"
#include "interruption.h"
#include "outputfile.h"

#include <QFile>

#include <cstdio>
#include <optional>

namespace
{
CommandError cannotWrite(const QString &path)
{
    return CommandError(
        QStringLiteral("%1: cannot be written").arg(path == standardStream ? QStringLiteral("standard output") : path));
}

void produceInto(OutputFile &file, const QString &path, const std::function<void(const Write &)> &produce)
{
    produce([&](const QByteArray &bytes) {
        file.write(bytes);
        InterruptionScope::check();
        if (!file.tookEverything()) {
            throw cannotWrite(path);
        }
    });
}

void writeStandardOutput(const std::function<void(const Write &)> &produce)
{
    QFile stream;
    if (!stream.open(stdout, QIODevice::WriteOnly)) {
        throw cannotWrite(standardStream);
    }
    OutputFile file(stream);
    produceInto(file, standardStream, produce);
    if (!stream.flush() || std::fflush(stdout) != 0) {
        throw cannotWrite(standardStream);
    }
}
} // namespace

void writeOutput(const QString &path, const std::function<void(const Write &)> &produce)
{
    std::optional<InterruptionScope> scope; // while there is something to take back
    if (path != standardStream && isReplaced(path)) {
        scope.emplace();
    }
    if (path == standardStream) {
        writeStandardOutput(produce);
        return;
    }
    const WriteResult result = writeFile(path, [&](OutputFile &file) { produceInto(file, path, produce); });
    if (result != WriteResult::Written) {
        throw cannotWrite(path);
    }
}

void flushStandardOutput()
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw cannotWrite(standardStream);
    }
}
