#include "investigation.h"

#include "commandline.h"
#include "evaluation.h"
#include "expression.h"
#include "graphinput.h"
#include "graphnames.h"
#include "graphstring.h"
#include "namesearch.h"
#include "parallel.h"
#include "standardoutput.h"
#include "textline.h"

#include <QEventLoop>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
const QChar lineEnd = QLatin1Char('\n');

std::vector<std::string> readGraphStrings(const QString &file)
{
    std::vector<std::string> graphs;
    // In a script "-" is a name like any other.
    const QString path = file == standardStream ? QStringLiteral("./-") : file;
    readGraphs(path, [&](const GraphLine &line) { graphs.emplace_back(line.text); });
    return graphs;
}

/// The values of an expression for all graphs of the database, in its order.
std::vector<std::optional<double>> valuesOf(const QString &expression, const TAVManager &manager)
{
    constexpr size_t batchLength = 1 << 15;
    std::vector<Expression> expressions;
    expressions.emplace_back(expression);
    Evaluation evaluation(std::move(expressions), threadCount());
    std::vector<std::optional<double>> values;
    GraphNames names;
    Progress progress(QStringLiteral("Computing"), 0);
    const auto finishBatch = [&] {
        evaluation.compute(names);
        for (size_t i = 0; i < names.count(); ++i) {
            values.push_back(evaluation.value(i, 0));
        }
        names.clear();
        progress.report(qint64(values.size()));
    };
    SmallGraph graph;
    manager.visitNames([&](const QString &name) {
        const std::string text = name.toStdString();
        const QString fault = parseGraph(text, graph);
        if (!fault.isEmpty()) {
            throw CommandError(QStringLiteral("%1: %2").arg(quoted(name), fault));
        }
        names.add(text);
        if (names.count() == batchLength) {
            finishBatch();
        }
    });
    if (names.count() > 0) {
        finishBatch();
    }
    return values;
}

/// Some names of many.
struct Names {
    qint64 count = 0;
    QString first;

    void add(const QString &name)
    {
        if (++count == 1) {
            first = name;
        }
    }
};
} // namespace

Investigation::Investigation(bool isQuiet, bool isPart) : quiet(isQuiet)
{
    if (isPart) {
        manager.keepEmptyLists();
    }
    QObject::connect(&manager, &TAVManager::signal_console, [this](const QString &text) { showConsoleLine(text); });
    QObject::connect(&manager, &TAVManager::signal_progress,
                     [this](int done, int total) { showProgress(done, total); });
}

bool Investigation::load(const QStringList &files)
{
    bool loaded = false;
    QEventLoop untilOutcome;
    QObject::connect(&manager, &TAVManager::signal_database_loaded, &untilOutcome, [&] {
        loaded = true;
        untilOutcome.quit();
    });
    QObject::connect(&manager, &TAVManager::signal_database_empty, &untilOutcome, &QEventLoop::quit);
    manager.loadDatabases(files);
    untilOutcome.exec();
    progress.reset();
    return loaded;
}

// The manager reports the failure only as the last console line of the operation.
bool Investigation::loadInvariant(void (TAVManager::*operation)(const QString &), const QString &file)
{
    (manager.*operation)(file);
    return lastConsoleLine != QLatin1String("Load failed");
}

bool Investigation::computeInvariant(SetInvariant set, const QString &expression)
{
    return (manager.*set)(expression, valuesOf(expression, manager));
}

bool Investigation::addListFromGraphs(const QString &name, const QString &file)
{
    if (name.isEmpty() || manager.indexOf(name) >= 0 || !manager.hasGraphs()) {
        return false;
    }
    const std::vector<std::string> graphs = readGraphStrings(file);
    Names odd;
    NameSearch search(graphs, threadCount(),
                      [&](std::string_view graph, qint64, const QString &) { odd.add(textOf(graph)); });
    qint64 number = 0;
    manager.visitNames([&](const QString &graph) { search.offer(graph.toStdString(), ++number); });
    search.finish();

    QStringList found;
    Names missing;
    for (size_t i = 0; i < graphs.size(); ++i) {
        const QString graph = textOf(search.nameOf(i));
        if (graph.isEmpty()) {
            missing.add(textOf(graphs[i]));
        } else {
            found.append(graph);
        }
    }
    if (odd.count > 0) {
        showConsoleLine(QStringLiteral("Names that are no graphs : %1, the first is %2")
                            .arg(QString::number(odd.count), odd.first));
    }
    if (missing.count > 0) {
        showConsoleLine(QStringLiteral("Not in the database : %1 of %2 graph(s), the first is %3")
                            .arg(QString::number(missing.count), QString::number(graphs.size()), missing.first));
    }
    return manager.addList(name, found);
}

void Investigation::printLists()
{
    for (const QString &name : manager.listNames()) {
        print(name + QLatin1Char('\t') + QString::number(manager.getList(name).size()) + lineEnd);
    }
}

bool Investigation::printList(const QString &name)
{
    if (manager.indexOf(name) < 0) {
        return false;
    }
    for (const QString &graph : manager.getList(name)) {
        print(graph + lineEnd);
    }
    return true;
}

void Investigation::showConsoleLine(const QString &text)
{
    progress.reset();
    lastConsoleLine = text;
    if (!quiet) {
        print(text + lineEnd);
        sendPrinted();
    }
}

void Investigation::showProgress(int done, int total)
{
    if (!progress) {
        progress.emplace(QStringLiteral("Loading"), total);
    }
    progress->report(done);
}
