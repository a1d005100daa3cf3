#include "databasechunk.h"

#include "databaseline.h"
#include "parallel.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

DatabaseChunk parseDatabaseChunk(std::string_view lines)
{
    DatabaseChunk chunk;
    const auto newlines = size_t(std::count(lines.begin(), lines.end(), '\n'));
    chunk.records.reserve(newlines + 1);
    chunk.lineNumbers.reserve(newlines + 1);
    chunk.links.counts.reserve(newlines + 1);
    chunk.links.indices.reserve(size_t(std::count(lines.begin(), lines.end(), '\t')));
    DatabaseLine line;
    for (; !lines.empty(); ++chunk.lineCount) {
        const size_t length = std::min(lines.find('\n'), lines.size());
        if (parseDatabaseLine(lines.substr(0, length), line)) {
            chunk.records.emplace_back(std::move(line.name));
            chunk.lineNumbers.push_back(quint32(chunk.lineCount));
            chunk.links.counts.push_back(quint32(line.indices.size()));
            chunk.links.indices.insert(chunk.links.indices.end(), line.indices.begin(), line.indices.end());
        }
        lines.remove_prefix(std::min(length + 1, lines.size()));
    }
    return chunk;
}

DatabaseReader::DatabaseReader(QIODevice &source, int chunkLength) : reader(source, chunkLength) {}

LineReader::Status DatabaseReader::next(DatabaseChunk &chunk)
{
    std::string_view lines;
    while (status == LineReader::Status::Line && ahead.size() <= size_t(threadCount()) &&
           (status = reader.nextLines(lines)) == LineReader::Status::Line) {
        // The library loses work that is moved into a thread which cannot be made: it gets a copy, of a pointer.
        const auto parse = [bytes = std::make_shared<const std::string>(lines)] { return parseDatabaseChunk(*bytes); };
        ahead.push(std::async(threadIfPossible, parse));
    }
    if (ahead.empty()) {
        return status;
    }
    chunk = ahead.front().get();
    ahead.pop();
    return LineReader::Status::Line;
}
