#include "output.h"

#include "commandline.h"
#include "interruption.h"
#include "outputfile.h"

#include <optional>
#include <unistd.h>

namespace
{
void produceInto(OutputFile &file, const QString &path, const std::function<void(const Write &)> &produce)
{
    produce([&](const QByteArray &bytes) {
        file.write(bytes);
        InterruptionScope::check();
        if (!file.tookEverything()) {
            throw cannotWrite(path, file.reason());
        }
    });
}

void writeStandardOutput(const std::function<void(const Write &)> &produce)
{
    OutputFile file(STDOUT_FILENO);
    produceInto(file, standardStream, produce);
}
} // namespace

void writeOutput(const QString &path, const std::function<void(const Write &)> &produce)
{
    std::optional<InterruptionScope> scope; // only for a new file, which a signal must not leave behind unfinished
    if (path != standardStream && isReplaced(path)) {
        scope.emplace();
    }
    if (path == standardStream) {
        writeStandardOutput(produce);
        return;
    }
    QString reason;
    const auto write = [&](OutputFile &file) { produceInto(file, path, produce); };
    if (writeFile(path, write, &reason) != WriteResult::Written) {
        throw cannotWrite(path, reason);
    }
}
