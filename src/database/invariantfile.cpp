#include "invariantfile.h"

#include "TAVgraph.h"
#include "invariantline.h"
#include "linereader.h"
#include "outputfile.h"
#include "parallel.h"

namespace
{
/// Writes a line for each record, as appendLine(graph, lines) makes it.
template<typename AppendLine>
void writeLines(const QVector<TAVGraph *> &graphs, OutputFile &file, AppendLine appendLine)
{
    const auto linesOf = [&](int begin, int end) {
        QByteArray lines;
        for (int i = begin; i < end; ++i) {
            appendLine(*graphs.at(i), lines);
        }
        return lines;
    };
    forEachPiece(graphs.size(), recordsPerPiece, linesOf, [&](const QByteArray &lines) { file.write(lines); });
}

InvariantOutcome outcomeOf(LineReader::Status status)
{
    switch (status) {
    case LineReader::Status::Line:
        return InvariantOutcome::Complete;
    case LineReader::Status::End:
        return InvariantOutcome::TooShort;
    case LineReader::Status::Failed:
    case LineReader::Status::TooLong:
        break;
    }
    return InvariantOutcome::Unreadable;
}
} // namespace

InvariantReading readInvariantFile(QIODevice &file, const QVector<TAVGraph *> &graphs,
                                   void (TAVGraph::*set)(double value, bool missing))
{
    LineReader reader(file);
    std::string_view bytes;
    InvariantLine line;
    LineReader::Status status = reader.next(bytes); // the header
    for (TAVGraph *graph : graphs) {
        status = status == LineReader::Status::Line ? reader.next(bytes) : status;
        if (status != LineReader::Status::Line) {
            break;
        }
        if (!parseInvariantLine(bytes, line)) {
            return {InvariantOutcome::TooFewFields, {}, {}};
        }
        if (line.name != graph->getName()) {
            return {InvariantOutcome::OtherName, graph->getName(), line.name};
        }
        (graph->*set)(line.value, line.missing);
    }
    return {outcomeOf(status), {}, {}};
}

void writeInvariantFile(const QVector<TAVGraph *> &graphs, OutputFile &file)
{
    file.write(QByteArrayLiteral("GRAPH\tINV1\n"));
    writeLines(graphs, file, [](const TAVGraph &graph, QByteArray &lines) {
        appendInvariantLine(lines, graph.getName(), graph.getInv1(), graph.getErrInv1());
    });
}

void writeNameFile(const QVector<TAVGraph *> &graphs, OutputFile &file)
{
    writeLines(graphs, file,
               [](const TAVGraph &graph, QByteArray &lines) { lines.append(graph.getName().toLatin1()).append('\n'); });
}
