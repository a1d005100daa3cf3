#include "TAVsearchengine.h"

#include "TAVgraph.h"
#include "databaseline.h"
#include "invariantline.h"
#include "linereader.h"
#include "outputfile.h"

#include <QFile>
#include <QSet>
#include <queue>

#include <iostream>
#include <limits>

namespace
{
/// Every so many lines the loader reports its progress.
constexpr qint64 progressStep = 10000;
/// Every so many lines the loader asks whether it should stop.
constexpr qint64 interruptionStep = 1000;
/// The synchronous loader's line buffer in bytes, one of them for its terminator.
constexpr qint64 pieceBufferSize = 1024;
/// Every so many lines the synchronous loader reports to standard error.
constexpr qint64 pieceReportStep = 1000000;

void diagnose(const QString &text)
{
    std::cerr << qPrintable(text) << std::endl;
}

bool openDatabase(QFile &file)
{
    const bool opened = openForReading(file);
    if (!opened) {
        diagnose(QStringLiteral("Unable to open file"));
    }
    return opened;
}

int toInt(qint64 count)
{
    return int(qMin<qint64>(count, std::numeric_limits<int>::max()));
}
/// The names of the graphs whose invariants are both present and pass the test.
template<typename Test> QStringList namesWhere(const QVector<TAVGraph *> &graphs, Test test)
{
    QStringList names;
    for (const TAVGraph *graph : graphs) {
        if (!graph->getErrInv1() && !graph->getErrInv2() && test(graph->getInv1(), graph->getInv2())) {
            names.append(graph->getName());
        }
    }
    return names;
}
} // namespace

TAVSearchEngine::TAVSearchEngine()
{
    diagnose(QStringLiteral("Starting..."));
}

TAVSearchEngine::~TAVSearchEngine() = default;

void TAVSearchEngine::setFilename(const QString &path)
{
    filename = path;
}

void TAVSearchEngine::run()
{
    emit signal_console(QStringLiteral("Loading data ... please wait."));
    qint64 lineCount = 0;
    qint64 linkCount = 0;
    Outcome outcome = countLines(lineCount);
    if (outcome == Outcome::Done) {
        emit signal_console(QStringLiteral("%1 lines.").arg(lineCount));
        outcome = readRecords(lineCount, linkCount);
    }
    if (outcome == Outcome::Done) {
        emit signal_console(QStringLiteral("Data loaded : %1 nodes and %2 links.").arg(graphs.size()).arg(linkCount));
        emit signal_load_succedded();
    } else if (outcome == Outcome::Failed) {
        emit signal_load_failed();
    }
}

bool TAVSearchEngine::loadData(const QString &path)
{
    diagnose(QStringLiteral("Reading ") + path);
    emit signal_console(QStringLiteral("Loading ") + path);
    QFile file(path);
    if (!openDatabase(file)) {
        return false;
    }
    diagnose(QStringLiteral("Reading data"));
    emit signal_console(QStringLiteral("Reading data."));

    char piece[pieceBufferSize];
    DatabaseLine line;
    qint64 length = 0;
    for (qint64 number = 0; (length = file.readLine(piece, pieceBufferSize)) > 0; ++number) {
        if (number % pieceReportStep == 0) {
            diagnose(QString::number(number));
        }
        QString text = QString::fromUtf8(piece, int(length));
        text.remove(QLatin1Char('\n'));
        if (text.isEmpty()) {
            continue;
        }
        splitDatabaseLine(text, line);
        if (!addRecord(line)) {
            rejectFormat();
            return false;
        }
    }
    if (file.error() != QFileDevice::NoError) {
        rejectUnreadable(path);
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
    qDeleteAll(graphs);
    graphs = QVector<TAVGraph *>();
}

bool TAVSearchEngine::saveGraphs(const QString &path)
{
    return save(path, [this](OutputFile &file) {
        for (const TAVGraph *graph : qAsConst(graphs)) {
            file.write(graph->getName().toLatin1() + '\n');
        }
    });
}

bool TAVSearchEngine::saveInv1(const QString &path)
{
    return save(path, [this](OutputFile &file) {
        file.write(QByteArrayLiteral("GRAPH\tINV1\n"));
        for (const TAVGraph *graph : qAsConst(graphs)) {
            file.write(formatInvariantLine(graph->getName(), graph->getInv1(), graph->getErrInv1()));
        }
    });
}

/// What the console says of a line that does not fit.
struct TAVSearchEngine::InvariantFaults {
    QString tooFewFields;
    std::function<QString(const QString &expected, const QString &found)> otherName;
};

bool TAVSearchEngine::loadInv1(const QString &path)
{
    return loadInvariant(
        path, &TAVGraph::setInv1,
        {QStringLiteral("premature end or wrong format of file."),
         [](const QString &expected, const QString &found) { return expected + QStringLiteral(" != ") + found; }});
}

// Both faults read alike here, unlike those of I1: so it is meant.
bool TAVSearchEngine::loadInv2(const QString &path)
{
    const QString fault = QStringLiteral("Data format error");
    return loadInvariant(path, &TAVGraph::setInv2, {fault, [&](const QString &, const QString &) { return fault; }});
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
    return namesWhere(graphs, [](double inv1, double inv2) { return inv1 >= inv2 - TOLERANCE; });
}

QStringList TAVSearchEngine::I1leI2graphs() const
{
    return namesWhere(graphs, [](double inv1, double inv2) { return inv2 + TOLERANCE >= inv1; });
}

TAVSearchEngine::Outcome TAVSearchEngine::countLines(qint64 &lineCount)
{
    QFile file(filename);
    if (!openDatabase(file)) {
        return Outcome::Failed;
    }
    LineReader reader(file);
    std::string_view bytes;
    LineReader::Status status = LineReader::Status::Line;
    for (lineCount = 0; (status = reader.next(bytes)) == LineReader::Status::Line; ++lineCount) {
        if (lineCount % interruptionStep == 0 && isInterruptionRequested()) {
            return Outcome::Interrupted;
        }
    }
    if (status != LineReader::Status::End) {
        rejectUnreadable(filename);
        return Outcome::Failed;
    }
    return Outcome::Done;
}

TAVSearchEngine::Outcome TAVSearchEngine::readRecords(qint64 lineCount, qint64 &linkCount)
{
    QFile file(filename);
    if (!openDatabase(file)) {
        return Outcome::Failed;
    }
    LineReader reader(file);
    std::string_view bytes;
    DatabaseLine line;
    LineReader::Status status = LineReader::Status::Line;
    for (qint64 number = 0; (status = reader.next(bytes)) == LineReader::Status::Line; ++number) {
        if (number % progressStep == 0) {
            emit signal_progress(toInt(number), toInt(lineCount));
        }
        if (number % interruptionStep == 0 && isInterruptionRequested()) {
            return Outcome::Interrupted;
        }
        if (!parseDatabaseLine(bytes, line)) {
            continue;
        }
        if (!addRecord(line)) {
            rejectFormat();
            return Outcome::Failed;
        }
        linkCount += qint64(line.indices.size());
    }
    if (status != LineReader::Status::End) {
        rejectUnreadable(filename);
        return Outcome::Failed;
    }
    return Outcome::Done;
}

/// Appends the record of @p line and links it, both ways, to the records that the line names; returns false when an
/// index names no record, with the record and its earlier links in place.
bool TAVSearchEngine::addRecord(const DatabaseLine &line)
{
    auto *graph = new TAVGraph(line.name);
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

void TAVSearchEngine::rejectFormat()
{
    diagnose(QStringLiteral("Error in database format"));
    emit signal_console(QStringLiteral("ERROR in database format."));
    eraseDatabase();
}

void TAVSearchEngine::rejectUnreadable(const QString &path)
{
    diagnose(QStringLiteral("Unable to read file"));
    emit signal_console(QStringLiteral("Unable to read file :") + path);
    eraseDatabase();
}

bool TAVSearchEngine::save(const QString &path, const std::function<void(OutputFile &)> &write)
{
    if (graphs.isEmpty()) {
        emit signal_console(QStringLiteral("No data to save."));
        return false;
    }
    const WriteResult result = writeFile(path, write);
    if (result == WriteResult::Failed) {
        emit signal_console(QStringLiteral("Unable to write file :") + path);
    }
    return result == WriteResult::Written;
}

bool TAVSearchEngine::loadInvariant(const QString &path, SetInvariant set, const InvariantFaults &faults)
{
    if (graphs.isEmpty()) {
        emit signal_console(QStringLiteral("No data to match."));
        return false;
    }
    QFile file(path);
    if (!openForReading(file)) {
        emit signal_console(QStringLiteral("Unable to open file."));
        return false;
    }
    LineReader reader(file);
    std::string_view bytes;
    InvariantLine line;
    LineReader::Status status = reader.next(bytes); // the header
    for (TAVGraph *graph : qAsConst(graphs)) {
        status = status == LineReader::Status::Line ? reader.next(bytes) : status;
        if (status != LineReader::Status::Line) {
            break;
        }
        if (!parseInvariantLine(bytes, line)) {
            emit signal_console(faults.tooFewFields);
            return false;
        }
        if (line.name != graph->getName()) {
            emit signal_console(faults.otherName(graph->getName(), line.name));
            return false;
        }
        (graph->*set)(line.value, line.missing);
    }
    if (status == LineReader::Status::Failed || status == LineReader::Status::TooLong) {
        emit signal_console(QStringLiteral("Unable to read file :") + path);
    }
    return status == LineReader::Status::Line;
}

QStringList TAVSearchEngine::closure(const QStringList &names, Neighbours neighbours)
{
    clear();
    QStringList result;
    std::queue<const TAVGraph *> reached;
    const auto reach = [&](TAVGraph *graph) {
        if (!graph->isChecked()) {
            graph->setChecked(true);
            result.append(graph->getName());
            reached.push(graph);
        }
    };
    const QSet<QString> seeds(names.begin(), names.end());
    for (TAVGraph *graph : qAsConst(graphs)) {
        if (seeds.contains(graph->getName())) {
            reach(graph);
        }
    }
    for (; !reached.empty(); reached.pop()) {
        for (TAVGraph *neighbour : linksOf(*reached.front(), neighbours)) {
            reach(neighbour);
        }
    }
    return result;
}

void TAVSearchEngine::forEachGraph(void (TAVGraph::*operation)())
{
    for (TAVGraph *graph : qAsConst(graphs)) {
        (graph->*operation)();
    }
}

QStringList TAVSearchEngine::walk(Neighbours neighbours, Match match)
{
    clear();
    return walkNeighbours(graphs, neighbours, match);
}
