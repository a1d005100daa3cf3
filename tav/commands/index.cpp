#include "index.h"

#include "commandline.h"
#include "counted.h"
#include "databaseforms.h"
#include "output.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <string>

namespace
{
void writeInPieces(const std::string &bytes, const Write &write)
{
    constexpr size_t longest = 1 << 20;
    for (size_t begin = 0; begin < bytes.size(); begin += longest) {
        write(QByteArray::fromRawData(bytes.data() + begin, int(std::min(longest, bytes.size() - begin))));
    }
}
} // namespace

void runIndex(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Makes the index of a database: the canonical forms of its graphs, which 'tav build --base' needs "
        "for each part and finds in the file 'DATABASE.tav.index'."));
    parser.addPositionalArgument(QStringLiteral("DATABASE"), QStringLiteral("The database file."),
                                 QStringLiteral("DATABASE.tav"));
    const QCommandLineOption output(
        {QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write to <FILE>, which is replaced when the new one is complete; by default to the name of the "
                       "database with '.index' behind it."),
        QStringLiteral("FILE"));
    parser.addOptions({output, jobsOption()});
    if (!parseArguments(parser, arguments)) {
        return;
    }
    const int jobs = jobCount(parser);
    const QString database = onlyArgument(parser, QStringLiteral("database file"));
    const QString path = parser.isSet(output) ? outputPath(parser) : indexPath(database);
    expectDifferentFiles(database, {path});
    QFile file(database);
    openDatabase(file);
    quint64 graphs = 0;
    writeOutput(path, [&](const Write &write) { writeInPieces(makeFormIndex(file, jobs, graphs), write); });
    std::fprintf(stderr, "%s.\n", qPrintable(counted(qint64(graphs), "graph", "graphs")));
}
