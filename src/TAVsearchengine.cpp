#include "TAVsearchengine.h"

#include "closure.h"
#include "comparison.h"
#include "databasechunk.h"
#include "databaseline.h"
#include "databaselinks.h"
#include "heap.h"
#include "inputfile.h"
#include "invariantfile.h"
#include "linereader.h"
#include "outputfile.h"
#include "parallel.h"
#include "textline.h"

#include <QFile>

#include <algorithm>
#include <iostream>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace
{
/// Every so many lines the loader reports its progress.
constexpr qint64 progressStep = 10000;
/// How many bytes of the file, about, the loader reads at a time.
constexpr int chunkLength = 1 << 20;
/// How many records loadData() makes room for at a time.
constexpr size_t recordsAtOnce = 4096;
/// The line buffer of loadData() in bytes; QFile::readLine() ends each line with a zero byte.
constexpr qint64 pieceBufferSize = 1024;
/// Every so many lines loadData() reports to standard error.
constexpr qint64 pieceReportStep = 1000000;

void diagnose(const QString &text)
{
    std::cerr << qPrintable(text) << std::endl;
}

int toInt(qint64 count)
{
    return int(qMin<qint64>(count, std::numeric_limits<int>::max()));
}
} // namespace

TAVSearchEngine::TAVSearchEngine()
{
    diagnose(QStringLiteral("Starting..."));
}

TAVSearchEngine::~TAVSearchEngine() = default;

void TAVSearchEngine::setFilename(const QString &path)
{
    setFilenames({path});
}

void TAVSearchEngine::setFilenames(const QStringList &paths)
{
    filenames = paths;
}

void TAVSearchEngine::run()
{
    fault.clear();
    emit signal_console(QStringLiteral("Loading data ... please wait."));
    qint64 linkCount = 0;
    Outcome outcome = Outcome::Done;
    QString path;
    try {
        for (int i = 0; i < filenames.size() && outcome == Outcome::Done; ++i) {
            path = filenames.at(i);
            outcome = readFile(path, linkCount);
        }
    } catch (const std::bad_alloc &) { // thrown also for a line with more links than a QList can hold
        outcome = Outcome::Failed;
        rejectForMemory();
    }
    if (outcome == Outcome::Done) {
        emit signal_console(QStringLiteral("Data loaded : %1 nodes and %2 links.").arg(graphs.size()).arg(linkCount));
        emit signal_load_succedded();
    } else if (outcome == Outcome::Failed) {
        if (filenames.size() > 1) {
            eraseDatabase(); // of the files before one that cannot be opened
            fault = path + QStringLiteral(": ") + (fault.isEmpty() ? rejection : fault);
        }
        emit signal_load_failed();
    }
}

bool TAVSearchEngine::loadData(const QString &path)
{
    fault.clear();
    diagnose(QStringLiteral("Reading ") + path);
    emit signal_console(QStringLiteral("Loading ") + path);
    QFile file(path);
    if (!openDatabase(file)) {
        return false;
    }
    diagnose(QStringLiteral("Reading data"));
    emit signal_console(QStringLiteral("Reading data."));

    try {
        if (!readPieces(file)) {
            return false;
        }
    } catch (const std::bad_alloc &) {
        rejectForMemory();
        return false;
    }
    file.close();
    const QString loaded = QStringLiteral("Data loaded %1").arg(graphs.size());
    diagnose(loaded);
    emit signal_console(loaded);
    return true;
}

void TAVSearchEngine::clear()
{
    for (TAVGraph *graph : qAsConst(graphs)) {
        graph->resetChecked();
    }
    spareListA.clear();
    spareListB.clear();
    emit signal_console(QStringLiteral("Database cleared."));
}

void TAVSearchEngine::eraseDatabase()
{
    graphs = QVector<TAVGraph *>();
    forEachRange(int(storage.size()), 1, threadCount(), [this](int i, int) { storage[i] = std::vector<TAVGraph>(); });
    storage.clear();
    releaseFreeMemory();
}

bool TAVSearchEngine::saveGraphs(const QString &path)
{
    return save(path, writeNameFile);
}

bool TAVSearchEngine::saveInv1(const QString &path)
{
    return save(path, writeInvariantFile);
}

bool TAVSearchEngine::loadInv1(const QString &path)
{
    return loadInvariant(path, &TAVGraph::setInv1, [](const InvariantReading &reading) {
        return reading.outcome == InvariantOutcome::TooFewFields
                   ? QStringLiteral("premature end or wrong format of file.")
                   : reading.expectedName + QStringLiteral(" != ") + reading.foundName;
    });
}

// One text for both faults, on purpose: only loadInv1() tells them apart.
bool TAVSearchEngine::loadInv2(const QString &path)
{
    return loadInvariant(path, &TAVGraph::setInv2,
                         [](const InvariantReading &) { return QStringLiteral("Data format error"); });
}

void TAVSearchEngine::setInv1(const std::vector<std::optional<double>> &values)
{
    setInvariant(values, &TAVGraph::setInv1);
}

void TAVSearchEngine::setInv2(const std::vector<std::optional<double>> &values)
{
    setInvariant(values, &TAVGraph::setInv2);
}

QStringList TAVSearchEngine::subgraphs(const QStringList &names)
{
    return closure(names, Neighbours::Sub);
}

QStringList TAVSearchEngine::overgraphs(const QStringList &names)
{
    return closure(names, Neighbours::Over);
}

// clang-format off
void TAVSearchEngine::avgSub1()  { forEachGraph(&TAVGraph::avgSub1); }
void TAVSearchEngine::avgOver1() { forEachGraph(&TAVGraph::avgOver1); }
void TAVSearchEngine::avgAll1()  { forEachGraph(&TAVGraph::avgAll1); }
void TAVSearchEngine::minSub1()  { forEachGraph(&TAVGraph::minSub1); }
void TAVSearchEngine::minOver1() { forEachGraph(&TAVGraph::minOver1); }
void TAVSearchEngine::minAll1()  { forEachGraph(&TAVGraph::minAll1); }
void TAVSearchEngine::maxSub1()  { forEachGraph(&TAVGraph::maxSub1); }
void TAVSearchEngine::maxOver1() { forEachGraph(&TAVGraph::maxOver1); }
void TAVSearchEngine::maxAll1()  { forEachGraph(&TAVGraph::maxAll1); }
void TAVSearchEngine::exch_1_2() { forEachGraph(&TAVGraph::exch_1_2); }
void TAVSearchEngine::I1getsI2() { forEachGraph(&TAVGraph::I1getsI2); }
void TAVSearchEngine::I2getsI1() { forEachGraph(&TAVGraph::I2getsI1); }

QStringList TAVSearchEngine::I1eqI2subsgraphs() { return walk(Neighbours::Sub, Match::Equal); }
QStringList TAVSearchEngine::I1eqI2overgraphs() { return walk(Neighbours::Over, Match::Equal); }
QStringList TAVSearchEngine::I1geI2subsgraphs() { return walk(Neighbours::Sub, Match::AtLeast); }
QStringList TAVSearchEngine::I1leI2subsgraphs() { return walk(Neighbours::Sub, Match::AtMost); }
QStringList TAVSearchEngine::I1geI2overgraphs() { return walk(Neighbours::Over, Match::AtLeast); }
QStringList TAVSearchEngine::I1leI2overgraphs() { return walk(Neighbours::Over, Match::AtMost); }
QStringList TAVSearchEngine::I1gtI2subsgraphs() { return walk(Neighbours::Sub, Match::Above); }
QStringList TAVSearchEngine::I1ltI2subsgraphs() { return walk(Neighbours::Sub, Match::Below); }
QStringList TAVSearchEngine::I1gtI2overgraphs() { return walk(Neighbours::Over, Match::Above); }
QStringList TAVSearchEngine::I1ltI2overgraphs() { return walk(Neighbours::Over, Match::Below); }
// clang-format on

QStringList TAVSearchEngine::I1geI2graphs() const
{
    return namesWhereI1AtLeastI2(graphs);
}

QStringList TAVSearchEngine::I1leI2graphs() const
{
    return namesWhereI1AtMostI2(graphs);
}

/// Reads the lines of @p file for loadData(), and returns whether all are good.
bool TAVSearchEngine::readPieces(QFile &file)
{
    char piece[pieceBufferSize];
    DatabaseLine line;
    qint64 length = 0;
    for (qint64 number = 0; (length = file.readLine(piece, pieceBufferSize)) > 0; ++number) {
        if (number % pieceReportStep == 0) {
            diagnose(QString::number(number));
        }
        std::string_view bytes(piece, length);
        if (bytes.back() == '\n') {
            bytes.remove_suffix(1);
        }
        QByteArray memory;
        const std::string_view normalised = normaliseKeepingReturns(bytes, memory);
        if (normalised.empty()) {
            continue;
        }
        splitDatabaseLine(normalised, line);
        if (!addRecord(line)) {
            rejectFormat();
            return false;
        }
    }
    if (file.error() != QFileDevice::NoError) {
        rejectUnreadable(file);
        return false;
    }
    return true;
}

TAVSearchEngine::Outcome TAVSearchEngine::readFile(const QString &path, qint64 &linkCount)
{
    FileSize counted;
    const Outcome outcome = count(path, counted);
    if (outcome != Outcome::Done) {
        return outcome;
    }
    emit signal_console(QStringLiteral("%1 lines.").arg(counted.lines));
    return readRecords(path, counted, linkCount);
}

TAVSearchEngine::Outcome TAVSearchEngine::count(const QString &path, FileSize &size)
{
    QFile file(path);
    if (!openDatabase(file)) {
        return Outcome::Failed;
    }
    LineReader reader(file, chunkLength);
    std::string_view lines;
    LineReader::Status status = LineReader::Status::Line;
    while ((status = reader.nextLines(lines)) == LineReader::Status::Line) {
        size.lines += std::count(lines.begin(), lines.end(), '\n') + (lines.back() == '\n' ? 0 : 1);
        if (isInterruptionRequested()) {
            return Outcome::Interrupted;
        }
    }
    if (status != LineReader::Status::End) {
        rejectUnreadable(file);
        return Outcome::Failed;
    }
    size.bytes = file.pos();
    return Outcome::Done;
}

TAVSearchEngine::Outcome TAVSearchEngine::readRecords(const QString &path, const FileSize &counted, qint64 &linkCount)
{
    QFile file(path);
    if (!openDatabase(file)) {
        return Outcome::Failed;
    }
    DatabaseReader reader(file, chunkLength);
    DatabaseChunk chunk;
    std::vector<RecordLinks> links;
    LineReader::Status status = LineReader::Status::Line;
    const int firstNew = graphs.size();
    qint64 nextReport = 0;
    FileSize read;
    for (; (status = reader.next(chunk)) == LineReader::Status::Line; read.lines += chunk.lineCount) {
        const std::optional<qint64> badLine = addRecords(chunk);
        const qint64 lastLine = read.lines + badLine.value_or(chunk.lineCount - 1);
        for (; nextReport <= lastLine && !isInterruptionRequested(); nextReport += progressStep) {
            emit signal_progress(toInt(nextReport), toInt(counted.lines));
        }
        if (isInterruptionRequested()) {
            return Outcome::Interrupted;
        }
        if (badLine) {
            rejectFormat();
            return Outcome::Failed;
        }
        linkCount += chunk.links.indices.size();
        links.push_back(std::move(chunk.links));
    }
    if (status != LineReader::Status::End) {
        rejectUnreadable(file);
        return Outcome::Failed;
    }
    read.bytes = file.pos();
    // What is left of a file that was cut off looks like a database, but its lists and invariants would be wrong. One
    // that has grown is complete as far as it was read: a line names earlier ones only.
    if (read.lines < counted.lines || read.bytes < counted.bytes) {
        rejectShorter(read, counted);
        return Outcome::Failed;
    }
    linkRecords(graphs, firstNew, std::move(links), [this] { return isInterruptionRequested(); });
    if (isInterruptionRequested()) {
        return Outcome::Interrupted;
    }
    releaseFreeMemory();
    return Outcome::Done;
}

/// Appends the records of @p chunk, without links. Every index must be the position of the line's own record or of an
/// earlier one. At the first line for which this fails it stops, with the records up to that line in place, and returns
/// the number of the line in the chunk; when all are good it returns nothing.
std::optional<qint64> TAVSearchEngine::addRecords(DatabaseChunk &chunk)
{
    storage.push_back(std::move(chunk.records));
    auto index = chunk.links.indices.begin();
    for (size_t i = 0; i < storage.back().size(); ++i) {
        TAVGraph &graph = storage.back()[i];
        graph.setPosition(graphs.size());
        graphs.append(&graph);
        for (const auto end = index + chunk.links.counts[i]; index != end; ++index) {
            if (*index < 0 || *index >= graphs.size()) {
                return chunk.lineNumbers[i];
            }
        }
    }
    return std::nullopt;
}

/// Appends the record of @p line and links it, both ways, to the records whose indices the line holds. Returns false at
/// an index without a record, with the record and its earlier links in place.
bool TAVSearchEngine::addRecord(const DatabaseLine &line)
{
    if (storage.empty() || storage.back().size() == storage.back().capacity()) {
        storage.emplace_back();
        storage.back().reserve(recordsAtOnce);
    }
    TAVGraph *graph = &storage.back().emplace_back(line.name);
    graph->setPosition(graphs.size());
    graphs.append(graph);
    for (const int index : line.indices) {
        if (index < 0 || index >= graphs.size()) {
            return false;
        }
        TAVGraph *subGraph = graphs.at(index);
        graph->addSub(subGraph);
        subGraph->addOver(graph);
    }
    return true;
}

void TAVSearchEngine::reject(const QString &reason)
{
    rejection = reason;
    diagnose(reason);
}

void TAVSearchEngine::rejectFormat()
{
    reject(QStringLiteral("Error in database format"));
    emit signal_console(QStringLiteral("ERROR in database format."));
    eraseDatabase();
}

void TAVSearchEngine::rejectForMemory()
{
    eraseDatabase(); // first, so that there is memory for the messages
    reject(QStringLiteral("Not enough memory"));
    emit signal_console(tr("Not enough memory."));
}

void TAVSearchEngine::rejectShorter(const FileSize &read, const FileSize &counted)
{
    reject(QStringLiteral("The file has changed"));
    emit signal_console(QStringLiteral("The file has changed: %1 of %2 lines were read, %3 of %4 bytes.")
                            .arg(read.lines)
                            .arg(counted.lines)
                            .arg(read.bytes)
                            .arg(counted.bytes));
    eraseDatabase();
}

void TAVSearchEngine::rejectUnreadable(const QFile &file)
{
    fault = readFault(file);
    diagnose(QStringLiteral("Unable to read file"));
    emit signal_console(QStringLiteral("Unable to read file :") + file.fileName());
    eraseDatabase();
}

bool TAVSearchEngine::openDatabase(QFile &file)
{
    const bool opened = openForReading(file, &fault);
    if (!opened) {
        diagnose(QStringLiteral("Unable to open file"));
    }
    return opened;
}

bool TAVSearchEngine::save(const QString &path, WriteRecords write)
{
    fault.clear();
    if (graphs.isEmpty()) {
        emit signal_console(QStringLiteral("No data to save."));
        return false;
    }
    const WriteResult result = writeFile(
        path, [&](OutputFile &file) { write(graphs, file); }, &fault);
    if (result == WriteResult::Failed) {
        emit signal_console(QStringLiteral("Unable to write file :") + path);
    }
    return result == WriteResult::Written;
}

bool TAVSearchEngine::loadInvariant(const QString &path, SetInvariant set, DescribeFault describe)
{
    fault.clear();
    if (graphs.isEmpty()) {
        emit signal_console(QStringLiteral("No data to match."));
        return false;
    }
    QFile file(path);
    if (!openForReading(file, &fault)) {
        emit signal_console(QStringLiteral("Unable to open file."));
        return false;
    }
    InvariantReading reading;
    try {
        reading = readInvariantFile(file, graphs, set);
    } catch (const std::bad_alloc &) {
        emit signal_console(tr("Not enough memory."));
        return false;
    }
    switch (reading.outcome) {
    case InvariantOutcome::TooFewFields:
    case InvariantOutcome::OtherName:
        emit signal_console(describe(reading));
        break;
    case InvariantOutcome::Unreadable:
        fault = readFault(file);
        emit signal_console(QStringLiteral("Unable to read file :") + path);
        break;
    case InvariantOutcome::Complete:
    case InvariantOutcome::TooShort:
        break;
    }
    return reading.outcome == InvariantOutcome::Complete;
}

void TAVSearchEngine::setInvariant(const std::vector<std::optional<double>> &values, SetInvariant set)
{
    for (int i = 0; i < graphs.size(); ++i) {
        (graphs.at(i)->*set)(values[i].value_or(0.0), !values[i]);
    }
}

QStringList TAVSearchEngine::closure(const QStringList &names, Neighbours neighbours)
{
    clear();
    return closureOf(graphs, names, neighbours);
}

void TAVSearchEngine::forEachGraph(void (TAVGraph::*operation)())
{
    forEachRange(graphs.size(), recordsPerPiece, threadCount(), [&](int begin, int end) {
        for (int i = begin; i < end; ++i) {
            (graphs.at(i)->*operation)();
        }
    });
}

QStringList TAVSearchEngine::walk(Neighbours neighbours, Match match)
{
    clear();
    return walkNeighbours(graphs, neighbours, match);
}
