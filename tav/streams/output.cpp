#include "output.h"

#include "commandline.h"
#include "fileidentity.h"
#include "interruption.h"
#include "outputfile.h"

#include <algorithm>
#include <optional>
#include <unistd.h>

namespace
{
using Produce = std::function<void(const std::vector<Write> &writes)>;

Write writeInto(OutputFile &file, const QString &path)
{
    return [&file, path](const QByteArray &bytes) {
        file.write(bytes);
        InterruptionScope::check();
        if (!file.tookEverything()) {
            throw cannotWrite(path, file.reason());
        }
    };
}

/// Opens the outputs behind those that @p writes has, one within the other, and produces them.
void openNext(const QStringList &paths, std::vector<Write> &writes, const Produce &produce)
{
    if (int(writes.size()) == paths.size()) {
        produce(writes);
        return;
    }
    const QString &path = paths.at(int(writes.size()));
    const auto write = [&](OutputFile &file) {
        writes.push_back(writeInto(file, path));
        openNext(paths, writes, produce);
    };
    if (path == standardStream) {
        OutputFile file(STDOUT_FILENO);
        write(file);
        return;
    }
    QString reason;
    if (writeFile(path, write, &reason) != WriteResult::Written) {
        throw cannotWrite(path, reason);
    }
}
} // namespace

void expectDifferentFiles(const QString &input, const QStringList &outputs)
{
    const std::optional<FileIdentity> read = FileIdentity::of(input, STDIN_FILENO);
    std::vector<FileIdentity> written;
    for (const QString &output : outputs) {
        const std::optional<FileIdentity> one = FileIdentity::of(output, STDOUT_FILENO);
        if (!one) {
            continue;
        }
        if (one == read) {
            throw CommandError(QStringLiteral("%1 would be read and written at once.").arg(inputName(input)),
                               WrongUsage);
        }
        if (std::find(written.begin(), written.end(), *one) != written.end()) {
            throw CommandError(QStringLiteral("Two outputs are the same file."), WrongUsage);
        }
        written.push_back(*one);
    }
}

void writeOutput(const QString &path, const std::function<void(const Write &)> &produce)
{
    writeOutputs({path}, [&](const std::vector<Write> &writes) { produce(writes.front()); });
}

void writeOutputs(const QStringList &paths, const Produce &produce)
{
    std::optional<InterruptionScope> scope; // only for a new file, which a signal must not leave behind unfinished
    if (std::any_of(paths.begin(), paths.end(),
                    [](const QString &path) { return path != standardStream && isReplaced(path); })) {
        scope.emplace();
    }
    std::vector<Write> writes;
    openNext(paths, writes, produce);
}
