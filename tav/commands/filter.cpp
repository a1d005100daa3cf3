#include "filter.h"

#include "commandline.h"
#include "evaluation.h"
#include "expression.h"
#include "graphpass.h"
#include "output.h"

#include <QByteArray>

#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
/// How many graphs are wanted at most.
qint64 firstCount(const QCommandLineParser &parser, const QCommandLineOption &first)
{
    if (!parser.isSet(first)) {
        return std::numeric_limits<qint64>::max();
    }
    bool isNumber = false;
    const qint64 count = parser.value(first).toLongLong(&isNumber);
    if (!isNumber || count < 1) {
        throw CommandError(QStringLiteral("Not a number of graphs from 1: %1.").arg(quoted(parser.value(first))),
                           WrongUsage);
    }
    return count;
}
} // namespace

void runFilter(const QStringList &arguments)
{
    const QCommandLineOption count(QStringLiteral("count"), QStringLiteral("Print only how many graphs there are."));
    const QCommandLineOption first(QStringLiteral("first"),
                                   QStringLiteral("Stop when there are <N> graphs, without reading the rest."),
                                   QStringLiteral("N"));
    const QCommandLineOption invert(
        QStringLiteral("invert"),
        QStringLiteral("Print the graphs for which it does not hold; one for which it is NA is never printed."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Prints the graphs of a file for which an expression such as 'diameter == 2 and not planar' "
                       "holds: its value is not 0, and not NA. They stay in their order."));
    parser.addPositionalArgument(QStringLiteral("EXPRESSION"), QStringLiteral("What the graphs are to satisfy."));
    parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QStringLiteral(
            "Graph6 or sparse6 strings, one a line, or a database; by default, and for '-', standard input."),
        QStringLiteral("[FILE]"));
    parser.addOptions({count, first, invert, jobsOption()});
    if (!parseExpressionArguments(parser, arguments)) {
        return;
    }
    QStringList operands = parser.positionalArguments();
    if (operands.isEmpty()) {
        throw CommandError(QStringLiteral("No expression given."), WrongUsage);
    }
    std::vector<Expression> expressions;
    expressions.emplace_back(operands.takeFirst());
    expectNoMore(operands.mid(1));
    const qint64 most = firstCount(parser, first);
    const auto isWanted = parser.isSet(invert) ? isFalse : isTrue;
    const QString input = operands.value(0, standardStream);
    expectDifferentFiles(input, {standardStream});
    Evaluation evaluation(std::move(expressions), jobCount(parser));
    writeOutput(standardStream, [&](const Write &write) {
        qint64 found = 0;
        passGraphs(input, evaluation, [&](const GraphNames &names) {
            QByteArray lines;
            for (size_t graph = 0; graph < names.count() && found < most; ++graph) {
                if (isWanted(evaluation.value(graph, 0))) {
                    ++found;
                    const std::string_view name = names.at(graph);
                    lines.append(name.data(), int(name.size())).append('\n');
                }
            }
            if (!parser.isSet(count)) {
                write(lines);
            }
            return found < most;
        });
        if (parser.isSet(count)) {
            write(QByteArray::number(found) + '\n');
        }
    });
}
