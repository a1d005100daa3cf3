// A database file, read by the code of the loader thread. The file is read a second time in small chunks; the first
// byte of an input is their length.

#include "TAVgraph.h"
#include "TAVsearchengine.h"
#include "databasechunk.h"
#include "fuzztarget.h"

#include <QBuffer>
#include <QCoreApplication>

#include <vector>

namespace
{
using Indices = std::vector<int>;

/// The lines of a file: the names with the numbers of their lines, and the links.
struct Content {
    QStringList names;
    std::vector<qint64> lineNumbers;
    std::vector<Indices> links;
    qint64 lineCount = 0;
};

void append(const DatabaseChunk &chunk, Content &content)
{
    require(chunk.lineNumbers.size() == chunk.records.size() && chunk.links.counts.size() == chunk.records.size(),
            "a chunk has a line number and a link count for each record");
    auto link = chunk.links.indices.begin();
    for (size_t i = 0; i < chunk.records.size(); ++i) {
        content.names.append(chunk.records[i].getName());
        content.lineNumbers.push_back(content.lineCount + chunk.lineNumbers[i]);
        content.links.emplace_back(link, link + chunk.links.counts[i]);
        link += chunk.links.counts[i];
    }
    require(link == chunk.links.indices.end(), "every link belongs to a record");
    content.lineCount += chunk.lineCount;
}

void compareWithSmallChunks(QByteArray file, int chunkLength, const Content &whole)
{
    QBuffer device(&file);
    device.open(QIODevice::ReadOnly);
    DatabaseReader reader(device, chunkLength);
    DatabaseChunk chunk;
    Content pieces;
    while (reader.next(chunk) == LineReader::Status::Line) {
        append(chunk, pieces);
    }
    require(pieces.names == whole.names && pieces.lineNumbers == whole.lineNumbers && pieces.links == whole.links &&
                pieces.lineCount == whole.lineCount,
            "the borders of chunks do not show");
}

bool isGood(const Content &content)
{
    for (size_t i = 0; i < content.links.size(); ++i) {
        for (const int index : content.links[i]) {
            if (index < 0 || size_t(index) > i) {
                return false;
            }
        }
    }
    return true;
}

Indices positionsOf(const QList<TAVGraph *> &graphs)
{
    Indices positions;
    for (const TAVGraph *graph : graphs) {
        positions.push_back(graph->getPosition());
    }
    return positions;
}

void checkDatabase(const TAVSearchEngine &engine, const Content &content)
{
    const QVector<TAVGraph *> &records = engine.records();
    require(records.size() == content.names.size(), "every named line is a record");
    std::vector<Indices> supers(content.links.size());
    for (int i = 0; i < records.size(); ++i) {
        require(records[i]->getName() == content.names[i] && records[i]->getPosition() == i,
                "the records are in the order of the file");
        require(positionsOf(records[i]->getSub()) == content.links[i], "the links are those of the line");
        for (const int sub : content.links[i]) {
            supers[sub].push_back(i);
        }
    }
    for (int i = 0; i < records.size(); ++i) {
        require(positionsOf(records[i]->getOver()) == supers[i], "every link is there in both directions");
    }
}

void walk(TAVSearchEngine &engine)
{
    const QStringList first = {engine.records().first()->getName()};
    const QStringList last = {engine.records().last()->getName()};
    require(engine.overgraphs(first).contains(first.first()) && engine.subgraphs(last).contains(last.first()),
            "a closure contains where it starts");
    engine.avgAll1();
    engine.I1eqI2subsgraphs();
    engine.I1eqI2overgraphs();
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    InputBytes input(data, size);
    const int chunkLength = 1 + input.byte();
    const MemoryFile file(input.rest());
    Content content;
    append(parseDatabaseChunk(input.rest()), content);
    compareWithSmallChunks(input.restAsBytes(), chunkLength, content);

    TAVSearchEngine engine;
    int successes = 0;
    int failures = 0;
    QObject::connect(&engine, &TAVSearchEngine::signal_load_succedded, [&] { ++successes; });
    QObject::connect(&engine, &TAVSearchEngine::signal_load_failed, [&] { ++failures; });
    engine.setFilename(file.path());
    engine.run();
    require(successes == (isGood(content) ? 1 : 0) && failures == 1 - successes,
            "a load succeeds when every index names a line up to its own, and fails otherwise");
    if (successes == 0) {
        require(engine.records().isEmpty(), "a load that fails leaves nothing");
    } else {
        checkDatabase(engine, content);
        if (!engine.records().isEmpty()) {
            walk(engine);
        }
    }
    engine.eraseDatabase();
    require(engine.loadData(file.path()) || engine.records().isEmpty(), "a load that fails leaves nothing");
    engine.eraseDatabase();
    return 0;
}
