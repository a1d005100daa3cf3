#ifndef TAVOLINE_DATABASECHUNK_H
#define TAVOLINE_DATABASECHUNK_H

#include "TAVgraph.h"
#include "linereader.h"

#include <future>
#include <queue>
#include <string_view>
#include <vector>

/// The links of consecutive records to their sub-graphs.
struct RecordLinks {
    std::vector<quint32> counts; ///< by record: how many it has
    std::vector<int> indices;    ///< those of all records, one after the other
};

/// What some lines of a database file say: their records, and the links that are still to be made.
struct DatabaseChunk {
    std::vector<TAVGraph> records;    ///< of the lines that name a graph, in order
    std::vector<quint32> lineNumbers; ///< by record: the number of its line among those of the chunk, from 0
    RecordLinks links;
    qint64 lineCount = 0;
};

/// Reads lines, each with its "\n", which the last may lack.
DatabaseChunk parseDatabaseChunk(std::string_view lines);

/// Reads a database file from beginning to end in chunks, and parses the next ones on all processors meanwhile.
class DatabaseReader
{
public:
    /// Reads @p source, which is open and outlives the reader; a chunk has about @p chunkLength bytes.
    DatabaseReader(QIODevice &source, int chunkLength);

    /// Sets @p chunk to the next chunk. On any status but Line there is none and never will be.
    LineReader::Status next(DatabaseChunk &chunk);

private:
    LineReader reader;
    LineReader::Status status = LineReader::Status::Line;
    std::queue<std::future<DatabaseChunk>> ahead;
};

#endif
