#include "invariant.h"

#include "commandline.h"
#include "evaluation.h"
#include "expression.h"
#include "graphpass.h"
#include "invariantcatalogue.h"
#include "output.h"
#include "standardoutput.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
/// Where the values go: into an invariant file for each expression, or into one table.
struct Outputs {
    QStringList paths;
    bool isTable = false;
};

/// The first lines of the outputs.
std::vector<QByteArray> headers(const Outputs &outputs, const Evaluation &evaluation)
{
    if (!outputs.isTable) {
        return std::vector<QByteArray>(outputs.paths.size(), QByteArrayLiteral("GRAPH\tINV1\n"));
    }
    QByteArray header = QByteArrayLiteral("graph");
    for (const Expression &expression : evaluation.expressions()) {
        header.append('\t').append(expression.text().simplified().toUtf8());
    }
    return {header + '\n'};
}

void appendLines(std::vector<QByteArray> &lines, const GraphNames &names, const Evaluation &evaluation)
{
    for (size_t graph = 0; graph < names.count(); ++graph) {
        const std::string_view name = names.at(graph);
        for (QByteArray &output : lines) {
            output.append(name.data(), int(name.size()));
        }
        for (size_t i = 0; i < evaluation.expressions().size(); ++i) {
            QByteArray &output = lines.size() == 1 ? lines.front() : lines[i];
            output.append('\t').append(invariantText(evaluation.value(graph, i)));
        }
        for (QByteArray &output : lines) {
            output.append('\n');
        }
    }
}

/// Writes the values for the graphs of the database, in the order of its lines. Throws CommandError for a name that is
/// no graph6 string of at most SmallGraph::maxOrder vertices and for a database without graphs.
void writeValues(const QString &database, Evaluation &evaluation, const Outputs &outputs)
{
    writeOutputs(outputs.paths, [&](const std::vector<Write> &writes) {
        std::vector<QByteArray> lines = headers(outputs, evaluation);
        bool hasGraph = false;
        passGraphs(database, evaluation, [&](const GraphNames &names) {
            hasGraph = true;
            appendLines(lines, names, evaluation);
            for (size_t i = 0; i < writes.size(); ++i) {
                writes[i](lines[i]);
                lines[i].clear();
            }
            return true;
        });
        if (!hasGraph) {
            throw CommandError(database, 1, QStringLiteral("the database holds no graph"));
        }
    });
}

/// The value of @p invariant for a graph on @p order vertices without edges.
QString edgelessValue(const Invariant &invariant, int order)
{
    SmallGraph graph;
    graph.order = order;
    GraphFacts facts(graph);
    return QString::fromLatin1(invariantText(invariant.valueOf(facts)));
}

void printRow(const QString &name, const QString &ofNone, const QString &ofOne, const QString &description)
{
    print(QStringLiteral("%1 %2 %3  %4\n").arg(name, -30).arg(ofNone, 5).arg(ofOne, 5).arg(description));
}

void printInvariants()
{
    QLatin1String group("");
    for (const Invariant &invariant : invariants()) {
        if (group != QLatin1String(invariant.group)) {
            print(group.isEmpty() ? QString() : QStringLiteral("\n"));
            group = QLatin1String(invariant.group);
            printRow(group, QStringLiteral("n = 0"), QStringLiteral("n = 1"), QStringLiteral("definition"));
        }
        printRow(QStringLiteral("  ") + QLatin1String(invariant.name), edgelessValue(invariant, 0),
                 edgelessValue(invariant, 1), QString::fromUtf8(invariant.description));
        const QString source = QString::fromUtf8(invariant.source);
        if (!source.isEmpty()) {
            print(QString(44, QLatin1Char(' ')) + QLatin1Char('[') + source + QStringLiteral("]\n"));
        }
    }
}

/// The expressions among the operands, the last of which is the database.
std::vector<Expression> expressionsOf(const QStringList &operands)
{
    if (operands.isEmpty()) {
        throw CommandError(QStringLiteral("No invariant given; 'tav invariant --list' names them."), WrongUsage);
    }
    const int named = int(std::count_if(operands.begin(), operands.end(), [](const QString &operand) {
        return operand.endsWith(QLatin1String(".tav"));
    }));
    const int databases = operands.size() > 1 ? std::max(named, 1) : 0;
    std::vector<Expression> expressions;
    for (const QString &operand : operands.mid(0, std::max(1, operands.size() - databases))) {
        expressions.emplace_back(operand);
    }
    if (databases != 1) {
        throw CommandError(QStringLiteral("Exactly one database file expected, %1 given.").arg(databases), WrongUsage);
    }
    return expressions;
}

Outputs outputsOf(const QCommandLineParser &parser, const QCommandLineOption &table, int expressions)
{
    const QString output = QStringLiteral("output");
    if (parser.isSet(table) && parser.isSet(output)) {
        throw CommandError(QStringLiteral("Either '-o' or '--table' expected, both given."), WrongUsage);
    }
    Outputs outputs;
    outputs.isTable = parser.isSet(table);
    outputs.paths = outputs.isTable ? parser.values(table) : parser.values(output); // by default standard output
    if (outputs.paths.contains(QString())) {
        throw CommandError(QStringLiteral("The name of the output file is empty."), WrongUsage);
    }
    if (outputs.isTable && outputs.paths.size() > 1) {
        throw CommandError(QStringLiteral("More than one '--table' given."), WrongUsage);
    }
    if (!outputs.isTable && outputs.paths.size() != expressions) {
        throw CommandError(
            expressions == 1
                ? QStringLiteral("'-o' expected once for the expression.")
                : QStringLiteral("'-o' expected once for each of the %1 expressions, or '--table'.").arg(expressions),
            WrongUsage);
    }
    if (outputs.paths.removeDuplicates() > 0) {
        throw CommandError(QStringLiteral("Two outputs have the same name."), WrongUsage);
    }
    return outputs;
}
} // namespace

QByteArray invariantText(std::optional<double> value)
{
    constexpr int digits = 12;
    if (!value) {
        return QByteArrayLiteral("NA");
    }
    const double number = withoutRoundingError(*value);
    return isExactInteger(number) ? QByteArray::number(qint64(number)) : QByteArray::number(number, 'g', digits);
}

void runInvariant(const QStringList &arguments)
{
    const QCommandLineOption list(
        QStringLiteral("list"),
        QStringLiteral("Lists the invariants in groups, with their values for the graphs on no and "
                       "on one vertex, their definitions and sources."));
    const QCommandLineOption table(
        QStringLiteral("table"),
        QStringLiteral("Write one table to <FILE> instead, with a header, a line for each graph and a column for each "
                       "expression."),
        QStringLiteral("FILE"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Computes an invariant, or an expression such as 'radius - randic_index', of every graph of a "
                       "database and writes the file of it that Tavoline loads: a name and a value a line, 'NA' where "
                       "the invariant is undefined."));
    parser.addPositionalArgument(
        QStringLiteral("EXPRESSION"),
        QStringLiteral("The name of an invariant or an expression; for several, '-o' is given for each in turn."),
        QStringLiteral("EXPRESSION..."));
    parser.addPositionalArgument(
        QStringLiteral("DATABASE"),
        QStringLiteral("The database, whose names are graph6 strings; '-' is standard input."));
    parser.addOptions({list, outputOption(), table, jobsOption()});
    if (!parseExpressionArguments(parser, arguments)) {
        return;
    }
    const QStringList operands = parser.positionalArguments();
    if (parser.isSet(list)) {
        expectNoMore(operands);
        printInvariants();
        return;
    }
    std::vector<Expression> expressions = expressionsOf(operands);
    const Outputs outputs = outputsOf(parser, table, int(expressions.size()));
    expectDifferentFiles(operands.last(), outputs.paths);
    Evaluation evaluation(std::move(expressions), jobCount(parser));
    writeValues(operands.last(), evaluation, outputs);
}
