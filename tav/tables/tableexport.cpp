#include "tableexport.h"

#include "commandline.h"
#include "databaseline.h"
#include "input.h"
#include "inputfile.h"
#include "invariantline.h"
#include "linereader.h"
#include "regularfile.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

namespace
{
/// Sums of as many values as a graph can have neighbours are finite below this.
constexpr double ordinaryBound = 1e290;

/// Of two values that differ by exactly the tolerance, one at least is smaller than this: see barriers.cpp.
constexpr double tinyBound = 0x1p-23;

template<typename Number> void appendNumber(QByteArray &row, Number number)
{
    std::array<char, 32> digits{};
    const std::to_chars_result end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    row.append(digits.data(), int(end.ptr - digits.data()));
}

/// The shortest text that both engines read as the same value again.
void appendValue(QByteArray &row, double value)
{
    if (std::isnan(value)) {
        row.append("nan"); // whatever its sign is
    } else {
        appendNumber(row, value);
    }
}

bool sortsAlike(const QByteArray &name)
{
    constexpr uchar firstOfFourBytes = 0xF0;
    return std::none_of(name.begin(), name.end(), [](char byte) { return uchar(byte) >= firstOfFourBytes; });
}

/// The files of a table, one behind the other.
class PartedTable
{
public:
    PartedTable(const OutputFolder &outputFolder, QString tableName, int partCount)
        : folder(outputFolder)
        , name(std::move(tableName))
        , parts(partCount)
    {
        openNext();
    }

    /// To which the next row of the part, which is the current one or a later one, is to be appended.
    QByteArray &rowOf(int part)
    {
        constexpr int much = 1 << 20;
        if (rows.size() >= much) {
            flush();
        }
        while (current < part) {
            openNext();
        }
        return rows;
    }

    /// Writes what is left, and the parts without rows, and returns the number of bytes.
    qint64 finish()
    {
        rowOf(parts - 1);
        flush();
        file->finish();
        return bytes;
    }

private:
    void openNext()
    {
        if (file) {
            flush();
            file->finish();
        }
        ++current;
        file.emplace(folder, name + QLatin1Char('/') + partName(current));
    }

    void flush()
    {
        file->write(rows);
        bytes += rows.size();
        rows.clear();
    }

    const OutputFolder &folder;
    QString name;
    int parts;
    int current = -1;
    std::optional<FolderFile> file;
    QByteArray rows;
    qint64 bytes = 0;
};

/// A graph of the database, and where it stands.
struct GraphLine {
    const DatabaseLine &graph;
    const QString &path;
    qint64 number;
    qint64 bytes;
};

/// Calls @p take with every GraphLine of the database.
template<typename Take> void readGraphs(const QStringList &paths, Take take)
{
    DatabaseLine graph;
    for (const QString &path : paths) {
        readLines(path, [&](std::string_view line, qint64 number) {
            if (parseDatabaseLine(line, graph)) {
                take(GraphLine{graph, path, number, qint64(line.size())});
            }
        });
    }
}

/// The levels of the graphs, by id.
using Levels = std::vector<qint16>;

struct Place {
    int level = 0;
    bool hasLoop = false;
};

/// The level of the next graph. Throws CommandError when an index is not the number of an earlier graph.
Place placeOf(const GraphLine &line, const Levels &levels)
{
    Place place;
    const auto id = qint64(levels.size());
    for (const int index : line.graph.indices) {
        if (index < 0 || index > id) {
            throw CommandError(line.path, line.number,
                               QStringLiteral("%1 is not the number of an earlier graph").arg(index));
        }
        if (index == id) {
            place.hasLoop = true;
        } else {
            place.level = std::max(place.level, levels[index] + 1);
        }
    }
    if (place.level >= levelLimit) {
        throw CommandError(line.path, line.number,
                           QStringLiteral("a chain of more than %1 links ends here").arg(levelLimit - 1));
    }
    return place;
}

void appendRow(QByteArray &rows, qint64 id, const Place &place, const QByteArray &name, const std::vector<int> &indices)
{
    appendNumber(rows, id);
    rows.append('\t');
    appendNumber(rows, place.level);
    rows.append(place.hasLoop ? "\t1\t" : "\t0\t").append(name).append('\t');
    const char *separator = "";
    for (const int index : indices) {
        rows.append(separator);
        appendNumber(rows, index);
        separator = ",";
    }
    rows.append('\n');
}

/// The lines of an invariant file, one by one.
class ValueFile
{
public:
    explicit ValueFile(const QString &path) : file(path), reader(file)
    {
        openRegular(file);
        std::string_view header;
        isAtEnd = !readLine(header);
    }

    /// The value of the graph whose turn it is.
    std::optional<double> next(const QString &graph)
    {
        std::string_view bytes;
        if (isAtEnd || !readLine(bytes)) {
            throw fault(QStringLiteral("the file ends; the value of %1 is expected").arg(quoted(graph)));
        }
        InvariantLine line;
        if (!parseInvariantLine(bytes, line)) {
            throw fault(QStringLiteral("a name, a tab and a value are expected"));
        }
        if (line.name != graph) {
            throw fault(QStringLiteral("%1 is expected, not %2").arg(quoted(graph), quoted(line.name)));
        }
        return line.missing ? std::nullopt : std::make_optional(line.value);
    }

private:
    bool readLine(std::string_view &line)
    {
        ++number;
        const LineReader::Status status = reader.next(line);
        if (status == LineReader::Status::Failed || status == LineReader::Status::TooLong) {
            throw fault(QStringLiteral("cannot be read: ") + readFault(file));
        }
        return status == LineReader::Status::Line;
    }

    CommandError fault(const QString &text) const { return CommandError(file.fileName(), number, text); }

    QFile file;
    LineReader reader;
    qint64 number = 0;
    bool isAtEnd = false;
};

/// The size of the files together. Each is read several times, so that it cannot be a pipe.
qint64 sizeOf(const QStringList &paths)
{
    qint64 size = 0;
    for (const QString &path : paths) {
        QFile file(path);
        openRegular(file);
        size += sizeOf(file);
    }
    return size;
}
} // namespace

TableExport::TableExport(const QStringList &files, int parts, OutputFolder &folder) : paths(files), output(folder)
{
    manifest.parts = parts;
    for (const QString &path : files) {
        manifest.databases.append(fileNameOf(path));
    }
}

void TableExport::writeGraphs()
{
    const qint64 size = std::max<qint64>(sizeOf(paths), 1); // some file systems tell no size
    output.makeFolder(graphsFolder);
    PartedTable table(output, graphsFolder, manifest.parts);
    qint64 read = 0; // bytes
    readGraphs(paths, [&](const GraphLine &line) {
        const auto id = qint64(levels.size());
        const auto part = int(std::min<qint64>(read * manifest.parts / size, manifest.parts - 1));
        read += line.bytes + 1;
        firstOfPart.resize(part + 1, id);
        const Place place = placeOf(line, levels);
        addLevel(id, place.level);
        const QByteArray name = line.graph.name.toUtf8();
        const std::vector<int> &indices = line.graph.indices;
        appendRow(table.rowOf(part), id, place, name, indices);
        manifest.isPlain16 = manifest.isPlain16 && sortsAlike(name);
        manifest.hasLoops = manifest.hasLoops || place.hasLoop;
        manifest.isRegular = manifest.isRegular && std::all_of(indices.begin(), indices.end(), [&](int index) {
                                 return levels[index] == place.level - 1;
                             });
        manifest.links += indices.size();
    });
    if (levels.empty()) {
        throw CommandError(QStringLiteral("%1: the database holds no graph").arg(paths.last()));
    }
    manifest.graphs = qint64(levels.size());
    manifest.bytes = table.finish();
    firstOfPart.resize(manifest.parts, manifest.graphs);
}

void TableExport::writeValueFile(const QString &file)
{
    ValueSource source;
    source.file = fileNameOf(file);
    writeTable(source, [&](const Take &take) {
        ValueFile values(file);
        readGraphs(paths, [&](const GraphLine &line) { take(values.next(line.graph.name)); });
    });
}

void TableExport::writeValues(const QString &expression, const std::function<void(const Take &)> &produce)
{
    ValueSource source;
    source.expression = expression;
    writeTable(source, produce);
}

const Manifest &TableExport::finish()
{
    FolderFile file(output, manifestName);
    file.write(manifestText(manifest));
    file.finish();
    return manifest;
}

void TableExport::addLevel(qint64 id, int level)
{
    levels.push_back(qint16(level));
    const auto place = size_t(level);
    if (place == manifest.levels.size()) {
        manifest.levels.push_back({0, id, id});
    }
    LevelSummary &summary = manifest.levels[place];
    ++summary.graphs;
    summary.last = id;
}

void TableExport::writeTable(ValueSource source, const std::function<void(const Take &)> &produce)
{
    source.folder = QStringLiteral("values-%1").arg(manifest.values.size() + 1);
    output.makeFolder(source.folder);
    PartedTable table(output, source.folder, manifest.parts);
    qint64 id = 0;
    int part = 0;
    produce([&](std::optional<double> value) {
        if (id == manifest.graphs) {
            throw CommandError(QStringLiteral("%1: the file has changed").arg(paths.last()));
        }
        while (part + 1 < manifest.parts && id >= firstOfPart[part + 1]) {
            ++part;
        }
        if (value) {
            source.areOrdinary = source.areOrdinary && std::fabs(*value) < ordinaryBound;
            source.hasTiny = source.hasTiny || (*value != 0.0 && std::fabs(*value) < tinyBound);
            QByteArray &row = table.rowOf(part);
            appendNumber(row, id);
            row.append('\t');
            appendNumber(row, levels[id]);
            row.append('\t');
            appendValue(row, *value);
            row.append('\n');
        }
        ++id;
    });
    if (id != manifest.graphs) {
        throw CommandError(QStringLiteral("%1: the file has changed").arg(paths.last()));
    }
    source.bytes = table.finish();
    manifest.values.push_back(source);
}
