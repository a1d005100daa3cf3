#include "databasechunk.h"

#include "databaseline.h"
#include "parallel.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace
{
/// Whether a line with this first byte is empty or names no graph.
bool beginsBlankLine(char first)
{
    return first == '\n' || first == '\r' || first == '\t';
}

/// How many lines name a graph, judged by their first byte: an estimate, for which memory is reserved. It is wrong
/// only for a line that begins with "\r" and names a graph, and for one that consists of a byte order mark.
size_t countNamingLines(std::string_view lines)
{
    size_t count = !lines.empty() && !beginsBlankLine(lines.front()) ? 1 : 0;
    for (size_t i = 1; i < lines.size(); ++i) {
        const bool beginsLine = lines[i - 1] == '\n';
        const bool isBlank = beginsBlankLine(lines[i]);
        count += beginsLine & !isBlank; // without a branch, so that the compiler uses vector instructions
    }
    return count;
}
} // namespace

DatabaseChunk parseDatabaseChunk(std::string_view lines)
{
    DatabaseChunk chunk;
    const size_t namingLines = countNamingLines(lines);
    chunk.records.reserve(namingLines);
    chunk.lineNumbers.reserve(namingLines);
    chunk.links.counts.reserve(namingLines);
    chunk.links.indices.reserve(std::count(lines.begin(), lines.end(), '\t'));
    DatabaseLine line;
    for (; !lines.empty(); ++chunk.lineCount) {
        const size_t length = std::min(lines.find('\n'), lines.size());
        if (parseDatabaseLine(lines.substr(0, length), line)) {
            chunk.records.emplace_back(std::move(line.name));
            chunk.lineNumbers.push_back(chunk.lineCount);
            chunk.links.counts.push_back(int(line.indices.size()));
            chunk.links.indices.insert(chunk.links.indices.end(), line.indices.begin(), line.indices.end());
        }
        lines.remove_prefix(std::min(length + 1, lines.size()));
    }
    return chunk;
}

DatabaseReader::DatabaseReader(QIODevice &source, int chunkLength) : reader(source, chunkLength) {}

LineReader::Status DatabaseReader::next(DatabaseChunk &chunk)
{
    const size_t mostAhead = threadCount();
    std::string_view lines;
    while (status == LineReader::Status::Line && ahead.size() <= mostAhead &&
           (status = reader.nextLines(lines)) == LineReader::Status::Line) {
        // std::async() of libstdc++ forwards its argument a second time when the thread cannot be made: an argument
        // that is moved would be empty by then. This one is copied, with a pointer to the bytes.
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
