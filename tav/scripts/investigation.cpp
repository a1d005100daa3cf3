#include "investigation.h"

#include "standardoutput.h"

#include <QEventLoop>

namespace
{
const QChar lineEnd = QLatin1Char('\n');
} // namespace

Investigation::Investigation()
{
    QObject::connect(&manager, &TAVManager::signal_console, [this](const QString &text) { showConsoleLine(text); });
    QObject::connect(&manager, &TAVManager::signal_progress,
                     [this](int done, int total) { showProgress(done, total); });
}

bool Investigation::load(const QString &file)
{
    bool loaded = false;
    QEventLoop untilOutcome;
    QObject::connect(&manager, &TAVManager::signal_database_loaded, &untilOutcome, [&] {
        loaded = true;
        untilOutcome.quit();
    });
    QObject::connect(&manager, &TAVManager::signal_database_empty, &untilOutcome, &QEventLoop::quit);
    manager.loadDatabase(file);
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
    print(text + lineEnd);
    sendPrinted();
}

void Investigation::showProgress(int done, int total)
{
    if (!progress) {
        progress.emplace(QStringLiteral("Loading"), total);
    }
    progress->report(done);
}
