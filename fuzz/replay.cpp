// Runs a target without libFuzzer, once for each file. The arguments are files and folders of files.

#include "fuzztarget.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

namespace
{
QStringList filesIn(const QString &path)
{
    if (!QFileInfo(path).isDir()) {
        return {path};
    }
    QStringList files;
    for (QDirIterator entry(path, QDir::Files); entry.hasNext();) {
        files.append(entry.next());
    }
    files.sort();
    return files;
}

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "Unable to open %s\n", qPrintable(path));
        return false;
    }
    const QByteArray input = file.readAll();
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout); // after a crash the last line is the name of the input
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.constData()), input.size());
    return true;
}
} // namespace

int main(int argc, char *argv[])
{
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const QString &path : filesIn(QFile::decodeName(argv[i]))) {
            if (!replay(path)) {
                return 1;
            }
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
