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
    std::vector<int> counts;  ///< by record: the number of its links
    std::vector<int> indices; ///< the sub-graphs of the first record, then those of the second, ...
};

/// Some lines of a database file: their records, and the links that are still to be made.
struct DatabaseChunk {
    std::vector<TAVGraph> records; ///< of the lines that name a graph, in order
    std::vector<int> lineNumbers;  ///< by record: the number of its line in the chunk, from 0
    RecordLinks links;
    int lineCount = 0;
};

/// Parses lines that end with "\n"; the last may lack it.
DatabaseChunk parseDatabaseChunk(std::string_view lines);

/// Reads a database file in chunks, from beginning to end; other threads parse the chunks ahead.
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
