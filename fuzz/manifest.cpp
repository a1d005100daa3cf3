// The manifest of the tables of a database.

#include "manifest.h"

#include "commandline.h"
#include "fuzztarget.h"

#include <QCoreApplication>

/// Qt 5.15 never frees the arrays and objects of a key that occurs twice.
extern "C" const char *__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): its name
{
    return "leak:libQt5Core.so";
}

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        const Manifest manifest = parseManifest(InputBytes(data, size).restAsBytes(), QStringLiteral("tables"));
        qint64 graphs = 0;
        for (const LevelSummary &level : manifest.levels) {
            require(level.graphs > 0 && level.last - level.first + 1 >= level.graphs, "a level has its graphs");
            require(level.first >= 0 && level.last < manifest.graphs, "graphs have ids");
            graphs += level.graphs;
        }
        require(graphs == manifest.graphs, "every graph has a level");
        const QByteArray text = manifestText(manifest);
        require(manifestText(parseManifest(text, QString())) == text, "what is written is read again");
    } catch (const CommandError &error) {
        require(error.text().startsWith(QStringLiteral("tables: ")), "a message names the tables");
    }
    return 0;
}
