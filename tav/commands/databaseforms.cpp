#include "databaseforms.h"

#include "canonicalform.h"
#include "checksum.h"
#include "commandline.h"
#include "graphstring.h"
#include "inputfile.h"
#include "interruption.h"
#include "isomorphismtable.h"
#include "linereader.h"
#include "parallel.h"
#include "progress.h"
#include "textline.h"

#include <QFile>

#include <cerrno>
#include <charconv>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace
{
/// How many bytes of the database, about, are read at a time.
constexpr int blockLength = 1 << 20;

/// How many graphs a thread takes at a time.
constexpr int pieceLength = 16;

bool exists(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) == 0) {
        return true;
    }
    if (errno == ENOENT) {
        return false;
    }
    throw cannotRead(path, qt_error_string());
}

/// Whether a field is a number of at least 0 and below @p end, as the loader reads numbers.
bool isNumberBelow(quint64 end, std::string_view field)
{
    quint32 number = 0;
    const auto [stop, error] = std::from_chars(field.begin(), field.end(), number);
    if (error == std::errc() && stop == field.end()) {
        return number < end;
    }
    bool isInteger = false;
    const int other = textOf(field).toInt(&isInteger); // which allows blanks and signs
    return isInteger && other >= 0 && quint64(other) < end;
}

/// A line of a database, and what a thread finds out about its graph.
struct NamedGraph {
    std::string_view bytes;
    qint64 line;
    int order = 0;
    std::string key;
    QString fault;

    /// @p number is that of the graph.
    void examine(quint64 number)
    {
        QByteArray memory;
        std::string_view rest = normaliseDroppingReturns(bytes, memory);
        bool more = false;
        SmallGraph graph;
        fault = parseGraph(takeField(rest, more), graph);
        while (more && fault.isEmpty()) {
            readNumber(takeField(rest, more), number);
        }
        if (fault.isEmpty()) {
            order = graph.order;
            key = IsomorphismTable::keyOf(canonicalForm(graph));
        }
    }

    void readNumber(std::string_view field, quint64 own)
    {
        if (!isNumberBelow(own, field)) {
            fault = QStringLiteral("%1 is not the number of an earlier graph; a part alone is no base, but base and "
                                   "part one behind the other are")
                        .arg(quoted(textOf(field)));
        }
    }
};

/// The graphs of some lines of a database, by the rules of the loader. @p number is that of the first line, and becomes
/// that of the line behind them.
std::vector<NamedGraph> graphsOn(std::string_view lines, qint64 &number)
{
    std::vector<NamedGraph> graphs;
    QByteArray memory;
    for (; !lines.empty(); ++number) {
        const size_t end = lines.find('\n');
        const std::string_view line = lines.substr(0, end);
        lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 1);
        if (!normaliseDroppingReturns(line.substr(0, line.find('\t')), memory).empty()) {
            graphs.push_back({line, number, 0, {}, {}});
        }
    }
    return graphs;
}

/// The contents of an open file, which is read to its end.
FileMark markOf(QFile &file)
{
    Checksum checksum;
    QByteArray block(blockLength, Qt::Uninitialized);
    qint64 length = 0;
    while ((length = file.read(block.data(), block.size())) > 0) {
        checksum.add({block.constData(), size_t(length)});
    }
    if (length < 0) {
        throw cannotRead(file.fileName(), file.errorString());
    }
    return {quint64(file.pos()), checksum.value()};
}
} // namespace

QString indexPath(const QString &database)
{
    return database + QStringLiteral(".index");
}

void openDatabase(QFile &file)
{
    if (file.fileName().isEmpty()) {
        throw CommandError(QStringLiteral("The name of the database file is empty."), WrongUsage);
    }
    if (file.fileName() == standardStream) {
        throw CommandError(QStringLiteral("The database is read twice and cannot come from standard input."),
                           WrongUsage);
    }
    openRegular(file);
}

std::string makeFormIndex(QFile &file, int jobs, quint64 &graphCount)
{
    const QString path = file.fileName();
    LineReader reader(file, blockLength);
    Progress progress(QStringLiteral("Reading ") + path, file.size());
    FormIndexMaker maker;
    Checksum checksum;
    quint64 size = 0;
    std::string_view lines;
    LineReader::Status status = LineReader::Status::Line;
    bool endsWithLine = true;
    qint64 number = 1;
    while ((status = reader.nextLines(lines)) == LineReader::Status::Line) {
        checksum.add(lines);
        size += lines.size();
        endsWithLine = lines.back() == '\n';
        std::vector<NamedGraph> graphs = graphsOn(lines, number);
        forEachRange(int(graphs.size()), pieceLength, jobs, [&](int begin, int end) {
            for (int i = begin; i < end && !InterruptionScope::isRequested(); ++i) {
                graphs[i].examine(maker.graphCount() + quint64(i));
            }
        });
        InterruptionScope::check();
        for (const NamedGraph &graph : graphs) {
            if (!graph.fault.isEmpty()) {
                throw CommandError(path, graph.line, graph.fault);
            }
            maker.add(graph.order, graph.key);
        }
        progress.report(size);
    }
    if (status != LineReader::Status::End) {
        throw cannotRead(path, readFault(file));
    }
    if (!endsWithLine) {
        throw CommandError(path, number - 1,
                           QStringLiteral("no newline at its end: a part behind it would begin on the same line"));
    }
    graphCount = maker.graphCount();
    return maker.finish({size, checksum.value()});
}

DatabaseForms::DatabaseForms(const QString &path, int jobs) : database(path)
{
    QFile databaseFile(path);
    openDatabase(databaseFile);
    if (exists(indexPath(path))) {
        readIndex(databaseFile);
    } else {
        quint64 graphCount = 0;
        made = makeFormIndex(databaseFile, jobs, graphCount);
        forms.open(made);
    }
}

void DatabaseForms::readIndex(QFile &databaseFile)
{
    const QString path = indexPath(database);
    const QString fault = forms.open(file.emplace(path).bytes());
    if (!fault.isEmpty()) {
        throw CommandError(QStringLiteral("%1: %2").arg(path, fault));
    }
    if (!(markOf(databaseFile) == forms.database())) {
        throw CommandError(
            QStringLiteral("%1: not the index of %2 as it is now; 'tav index' makes it anew").arg(path, database));
    }
}
