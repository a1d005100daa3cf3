#include "TAVmanager.h"

#include "TAVgraph.h"
#include "TAVsearchengine.h"
#include "graphlist.h"
#include "inputfile.h"
#include "listalgebra.h"
#include "listfile.h"
#include "outputfile.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <iostream>
#include <new>
#include <optional>

TAVManager::TAVManager() : engine(new TAVSearchEngine), mailbox(new QObject(this))
{
    engine->setParent(this);
    connect(engine, &TAVSearchEngine::signal_progress, mailbox,
            [this](int current, int total) { slot_progress(current, total); });
    connect(engine, &TAVSearchEngine::signal_load_failed, mailbox, [this] {
        fault = engine->fileFault();
        slot_load_failed();
    });
    connect(engine, &TAVSearchEngine::signal_load_succedded, mailbox, [this] { slot_load_succeeded(); });
    connect(engine, &TAVSearchEngine::signal_console, mailbox, [this](const QString &text) { slot_console(text); });
}

TAVManager::~TAVManager()
{
    stopLoading();
    engine->eraseDatabase();
    qDeleteAll(lists);
}

int TAVManager::indexOf(const QString &name) const
{
    const auto found =
        std::find_if(lists.begin(), lists.end(), [&name](const GraphList *list) { return list->getName() == name; });
    return found == lists.end() ? -1 : int(found - lists.begin());
}

bool TAVManager::addList(const QString &name, const QStringList &names)
{
    if (name.isEmpty() || indexOf(name) >= 0) {
        return refuse();
    }
    const QString added = QStringLiteral("List added : ") + name;
    if (names.isEmpty() && !keepsEmptyLists) {
        emit signal_console(QStringLiteral("Empty list, not added."));
    } else {
        lists.append(new GraphList(name, names));
        emit signal_console(added + QStringLiteral(" [ ") + QString::number(names.size()) +
                            QStringLiteral(" element(s)]"));
    }
    emit signal_manager_ready();
    emit signal_lists_changed();
    emit signal_console(added);
    std::cerr << qPrintable(added) << std::endl;
    return true;
}

bool TAVManager::remList(const QString &name)
{
    const int index = name.isEmpty() ? -1 : indexOf(name);
    if (index < 0) {
        emit signal_manager_ready();
        emit signal_console(QStringLiteral("Unable to remove list."));
        return false;
    }
    delete lists.takeAt(index);
    emit signal_console(QStringLiteral("List ") + name + QStringLiteral(" removed."));
    emit signal_lists_changed();
    emit signal_manager_ready();
    return true;
}

QStringList TAVManager::getList(const QString &name)
{
    const int index = indexOf(name);
    if (index < 0) {
        emit signal_manager_ready();
        return QStringList();
    }
    return lists.at(index)->getList();
}

QStringList TAVManager::listNames() const
{
    QStringList names;
    for (const GraphList *list : lists) {
        names.append(list->getName());
    }
    return names;
}

bool TAVManager::addUnionList(const QString &newName, const QString &nameA, const QString &nameB)
{
    return addCombination(newName, nameA, nameB, unionOf);
}

bool TAVManager::addInterList(const QString &newName, const QString &nameA, const QString &nameB)
{
    return addCombination(newName, nameA, nameB, intersectionOf);
}

bool TAVManager::addExceptList(const QString &newName, const QString &nameA, const QString &nameB)
{
    return addCombination(newName, nameA, nameB, differenceOf);
}

bool TAVManager::addSubsList(const QString &newName, const QString &sourceName)
{
    return addClosure(newName, sourceName, &TAVSearchEngine::subgraphs);
}

bool TAVManager::addOverList(const QString &newName, const QString &sourceName)
{
    return addClosure(newName, sourceName, &TAVSearchEngine::overgraphs);
}

bool TAVManager::addListFromFile(const QString &newName, const QString &fileName)
{
    fault.clear();
    if (newName.isEmpty() || indexOf(newName) >= 0) {
        return refuse();
    }
    QFile file(fileName);
    if (!openForReading(file, &fault)) {
        std::cerr << "Unable to open file" << std::endl;
        emit signal_console(QStringLiteral("Unable to open file :") + fileName);
        return refuse();
    }
    return withinMemory([&] {
        const std::optional<QStringList> names = readNames(file);
        if (!names) {
            fault = readFault(file);
            emit signal_console(QStringLiteral("Unable to read file :") + fileName);
            return refuse();
        }
        return addList(newName, *names);
    });
}

bool TAVManager::saveList(const QString &listName, const QString &fileName)
{
    fault.clear();
    const int index = listName.isEmpty() ? -1 : indexOf(listName);
    if (index < 0) {
        return refuse();
    }
    return withinMemory([&] {
        const QStringList names = lists.at(index)->getList();
        switch (writeFile(
            fileName, [&names](OutputFile &file) { writeNames(names, file); }, &fault)) {
        case WriteResult::Written:
            emit signal_manager_ready();
            return true;
        case WriteResult::NotOpened:
            std::cerr << "Unable to open file" << std::endl;
            emit signal_console(QStringLiteral("Unable to open file :") + fileName);
            break;
        case WriteResult::Failed:
            emit signal_console(QStringLiteral("Unable to write file :") + fileName);
            break;
        }
        return refuse();
    });
}

bool TAVManager::hasGraphs() const
{
    return !loading && !engine->records().isEmpty();
}

void TAVManager::visitNames(const std::function<void(const QString &)> &take) const
{
    if (loading) {
        return;
    }
    for (const TAVGraph *graph : engine->records()) {
        take(graph->getName());
    }
}

bool TAVManager::saveGraphs(const QString &fileName)
{
    return saveFile(fileName, &TAVSearchEngine::saveGraphs);
}

bool TAVManager::saveInv1(const QString &fileName)
{
    return saveFile(fileName, &TAVSearchEngine::saveInv1);
}

void TAVManager::loadInv1(const QString &fileName)
{
    loadInvariant(fileName, &TAVSearchEngine::loadInv1);
}

void TAVManager::loadInv2(const QString &fileName)
{
    loadInvariant(fileName, &TAVSearchEngine::loadInv2);
}

bool TAVManager::setInv1(const QString &what, const std::vector<std::optional<double>> &values)
{
    return setInvariant(what, values, &TAVSearchEngine::setInv1);
}

bool TAVManager::setInv2(const QString &what, const std::vector<std::optional<double>> &values)
{
    return setInvariant(what, values, &TAVSearchEngine::setInv2);
}

// clang-format off
void TAVManager::avgSub1()  { derive(&TAVSearchEngine::avgSub1); }
void TAVManager::avgOver1() { derive(&TAVSearchEngine::avgOver1); }
void TAVManager::avgAll1()  { derive(&TAVSearchEngine::avgAll1); }
void TAVManager::minSub1()  { derive(&TAVSearchEngine::minSub1); }
void TAVManager::minOver1() { derive(&TAVSearchEngine::minOver1); }
void TAVManager::minAll1()  { derive(&TAVSearchEngine::minAll1); }
void TAVManager::maxSub1()  { derive(&TAVSearchEngine::maxSub1); }
void TAVManager::maxOver1() { derive(&TAVSearchEngine::maxOver1); }
void TAVManager::maxAll1()  { derive(&TAVSearchEngine::maxAll1); }
void TAVManager::exch_1_2() { derive(&TAVSearchEngine::exch_1_2); }
void TAVManager::I1getsI2() { derive(&TAVSearchEngine::I1getsI2); }
void TAVManager::I2getsI1() { derive(&TAVSearchEngine::I2getsI1); }

bool TAVManager::addI1geI2List(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1geI2graphs); }
bool TAVManager::addI1leI2List(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1leI2graphs); }
bool TAVManager::addI1eqI2subsList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1eqI2subsgraphs); }
bool TAVManager::addI1eqI2overList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1eqI2overgraphs); }
bool TAVManager::addI1geI2subsList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1geI2subsgraphs); }
bool TAVManager::addI1leI2subsList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1leI2subsgraphs); }
bool TAVManager::addI1geI2overList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1geI2overgraphs); }
bool TAVManager::addI1leI2overList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1leI2overgraphs); }
bool TAVManager::addI1gtI2subsList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1gtI2subsgraphs); }
bool TAVManager::addI1ltI2subsList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1ltI2subsgraphs); }
bool TAVManager::addI1gtI2overList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1gtI2overgraphs); }
bool TAVManager::addI1ltI2overList(const QString &newName) { return addComparison(newName, &TAVSearchEngine::I1ltI2overgraphs); }
// clang-format on

void TAVManager::loadDatabase(const QString &fileName)
{
    loadDatabases({fileName});
}

void TAVManager::loadDatabases(const QStringList &fileNames)
{
    stopLoading();
    fault.clear();
    engine->eraseDatabase();
    engine->setFilenames(fileNames);
    loading = true;
    engine->start(QThread::InheritPriority);
    if (!engine->isRunning() && !engine->isFinished()) {
        // The system could not make the thread. Queued, so that the outcome comes after this call, as for any load.
        QMetaObject::invokeMethod(
            mailbox,
            [this] {
                slot_console(tr("Unable to start loading."));
                slot_load_failed();
            },
            Qt::QueuedConnection);
    }
}

void TAVManager::resetDatabase()
{
    stopLoading();
    engine->eraseDatabase();
    emit signal_database_empty();
}

void TAVManager::slot_progress(int current, int total)
{
    emit signal_progress(current, total);
}

void TAVManager::slot_load_succeeded()
{
    loading = false;
    emit signal_database_loaded();
}

void TAVManager::slot_load_failed()
{
    loading = false;
    emit signal_database_empty();
}

void TAVManager::slot_console(const QString &text)
{
    emit signal_console(text);
}

/// Stops the loader thread, waits for its end, and drops those of its signals that are still in the event queue: they
/// would be taken for signals of the next load.
void TAVManager::stopLoading()
{
    engine->requestInterruption();
    engine->wait();
    QCoreApplication::removePostedEvents(mailbox);
    loading = false;
}

bool TAVManager::refuse()
{
    emit signal_manager_ready();
    return false;
}

/// Refuses an operation that needs the database while a load runs, and returns whether it did.
bool TAVManager::refuseWhileLoading()
{
    if (!loading) {
        return false;
    }
    emit signal_console(tr("Not possible while a database is being loaded."));
    emit signal_manager_ready();
    return true;
}

/// Returns what @p operation returns, or refuses it when it runs out of memory. In a lambda of its callers, GCC 12 with
/// its undefined-behaviour sanitizer mistakes the object of "engine->*": they name the database outside.
template<typename Operation> bool TAVManager::withinMemory(Operation operation)
{
    try {
        return operation();
    } catch (const std::bad_alloc &) {
        emit signal_console(tr("Not enough memory."));
        return refuse();
    }
}

bool TAVManager::addCombination(const QString &newName, const QString &nameA, const QString &nameB, Combine combine)
{
    if (newName.isEmpty() || indexOf(newName) >= 0) {
        return refuse();
    }
    const int a = indexOf(nameA);
    const int b = indexOf(nameB);
    if (a < 0 || b < 0) {
        return refuse();
    }
    return withinMemory([&] {
        addList(newName, combine(lists.at(a)->getList(), lists.at(b)->getList()));
        emit signal_manager_ready();
        return true;
    });
}

bool TAVManager::addClosure(const QString &newName, const QString &sourceName,
                            QStringList (TAVSearchEngine::*closure)(const QStringList &))
{
    if (refuseWhileLoading()) {
        return false;
    }
    if (newName.isEmpty() || sourceName.isEmpty() || indexOf(newName) >= 0) {
        return refuse();
    }
    const int source = indexOf(sourceName);
    if (source < 0) {
        return refuse();
    }
    TAVSearchEngine &database = *engine;
    return withinMemory([&] {
        addList(newName, (database.*closure)(lists.at(source)->getList()));
        emit signal_lists_changed();
        emit signal_manager_ready();
        return true;
    });
}

bool TAVManager::saveFile(const QString &fileName, bool (TAVSearchEngine::*save)(const QString &))
{
    fault.clear();
    if (refuseWhileLoading()) {
        return false;
    }
    TAVSearchEngine &database = *engine;
    return withinMemory([&] {
        const bool saved = (database.*save)(fileName);
        fault = engine->fileFault();
        if (saved) {
            emit signal_console(QStringLiteral("Wrote ") + fileName);
        }
        emit signal_manager_ready();
        return saved;
    });
}

void TAVManager::loadInvariant(const QString &fileName, bool (TAVSearchEngine::*load)(const QString &))
{
    fault.clear();
    if (refuseWhileLoading()) {
        return;
    }
    const bool read = (engine->*load)(fileName);
    fault = engine->fileFault();
    emit signal_console(read ? QStringLiteral("Read ") + fileName : QStringLiteral("Load failed"));
    emit signal_manager_ready();
}

bool TAVManager::setInvariant(const QString &what, const std::vector<std::optional<double>> &values,
                              void (TAVSearchEngine::*set)(const std::vector<std::optional<double>> &))
{
    if (refuseWhileLoading()) {
        return false;
    }
    if (values.empty()) {
        emit signal_console(QStringLiteral("No data to match."));
        return refuse();
    }
    (engine->*set)(values);
    emit signal_console(QStringLiteral("Computed ") + what);
    emit signal_manager_ready();
    return true;
}

void TAVManager::derive(void (TAVSearchEngine::*derivation)())
{
    if (refuseWhileLoading()) {
        return;
    }
    TAVSearchEngine &database = *engine;
    withinMemory([&] {
        (database.*derivation)();
        emit signal_manager_ready();
        return true;
    });
}

bool TAVManager::addComparison(const QString &newName, const Query &query)
{
    if (refuseWhileLoading()) {
        return false;
    }
    if (newName.isEmpty()) {
        emit signal_console(QStringLiteral("Empty name"));
        return refuse();
    }
    if (indexOf(newName) >= 0) {
        emit signal_console(QStringLiteral("Name already used"));
        return refuse();
    }
    return withinMemory([&] {
        const QStringList names = query(*engine);
        if (names.isEmpty() && !keepsEmptyLists) {
            emit signal_console(QStringLiteral("Empty list"));
        } else {
            addList(newName, names);
        }
        emit signal_lists_changed();
        emit signal_manager_ready();
        return true;
    });
}
