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

/// A graph of a database, and what a thread finds out about it.
struct NamedGraph {
    std::string name;
    qint64 line;
    int order = 0;
    std::string key;
    QString fault;

    void examine()
    {
        SmallGraph graph;
        fault = parseGraph(name, graph);
        if (fault.isEmpty()) {
            order = graph.order;
            key = IsomorphismTable::keyOf(canonicalForm(graph));
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
        std::string_view line = lines.substr(0, end);
        lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 1);
        bool more = false;
        const std::string_view name = normaliseDroppingReturns(takeField(line, more), memory);
        if (!name.empty()) {
            graphs.push_back({std::string(name), number, 0, {}, {}});
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

std::string makeFormIndex(const QString &path, int jobs, quint64 &graphCount)
{
    QFile file(path);
    openRegular(file);
    LineReader reader(file, blockLength);
    Progress progress(QStringLiteral("Reading ") + path, file.size());
    FormIndexMaker maker;
    Checksum checksum;
    quint64 size = 0;
    std::string_view lines;
    LineReader::Status status = LineReader::Status::Line;
    for (qint64 number = 1; (status = reader.nextLines(lines)) == LineReader::Status::Line;) {
        checksum.add(lines);
        size += lines.size();
        std::vector<NamedGraph> graphs = graphsOn(lines, number);
        forEachRange(int(graphs.size()), pieceLength, jobs, [&](int begin, int end) {
            for (int i = begin; i < end && !InterruptionScope::isRequested(); ++i) {
                graphs[i].examine();
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
    graphCount = maker.graphCount();
    return maker.finish({size, checksum.value()});
}

DatabaseForms::DatabaseForms(const QString &path, int jobs) : database(path)
{
    if (exists(indexPath(path))) {
        readIndex();
    } else {
        quint64 graphCount = 0;
        made = makeFormIndex(path, jobs, graphCount);
        forms.open(made);
    }
}

void DatabaseForms::readIndex()
{
    QFile databaseFile(database);
    openRegular(databaseFile);
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
