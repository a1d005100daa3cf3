#include "databasechunk.h"

#include "databaseline.h"
#include "parallel.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace
{
/// How many lines are not empty: at least as many as name a graph.
size_t countFilledLines(std::string_view lines)
{
    size_t count = !lines.empty() && lines.front() != '\n' ? 1 : 0;
    for (size_t i = 1; i < lines.size(); ++i) {
        count += size_t(lines[i - 1] == '\n') & size_t(lines[i] != '\n');
    }
    return count;
}
} // namespace

DatabaseChunk parseDatabaseChunk(std::string_view lines)
{
    DatabaseChunk chunk;
    const size_t mostRecords = countFilledLines(lines);
    chunk.records.reserve(mostRecords);
    chunk.lineNumbers.reserve(mostRecords);
    chunk.links.counts.reserve(mostRecords);
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
