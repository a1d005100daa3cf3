#include "TAVsearchengine.h"

#include "TAVgraph.h"
#include "databaseline.h"
#include "linereader.h"

#include <QFile>

#include <iostream>
#include <limits>
#include <memory>

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
    if (!file.open(QIODevice::ReadOnly)) {
        diagnose(QStringLiteral("Unable to open file"));
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

TAVSearchEngine::Outcome TAVSearchEngine::countLines(qint64 &lineCount)
{
    QFile file(filename);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        diagnose(QStringLiteral("Unable to open file"));
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
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        diagnose(QStringLiteral("Unable to open file"));
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
