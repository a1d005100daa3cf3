#include "TAVmanager.h"

#include "TAVsearchengine.h"
#include "graphlist.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <iostream>

TAVManager::TAVManager() : engine(new TAVSearchEngine), mailbox(new QObject(this))
{
    connect(engine, &TAVSearchEngine::signal_progress, mailbox,
            [this](int current, int total) { slot_progress(current, total); });
    connect(engine, &TAVSearchEngine::signal_load_failed, mailbox, [this] { slot_load_failed(); });
    connect(engine, &TAVSearchEngine::signal_load_succedded, mailbox, [this] { slot_load_succeeded(); });
    connect(engine, &TAVSearchEngine::signal_console, mailbox, [this](const QString &text) { slot_console(text); });
}

TAVManager::~TAVManager()
{
    stopLoading();
    engine->eraseDatabase();
    delete engine;
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
    if (names.isEmpty()) {
        emit signal_console(QStringLiteral("Empty list, not added."));
    } else {
        lists.append(new GraphList(name, names));
        emit signal_console(QStringLiteral("List added : ") + name + QStringLiteral(" [ ") +
                            QString::number(names.size()) + QStringLiteral(" element(s)]"));
    }
    emit signal_manager_ready();
    emit signal_lists_changed();
    const QString added = QStringLiteral("List added : ") + name;
    emit signal_console(added);
    std::cerr << qPrintable(added) << std::endl;
    return true;
}

bool TAVManager::addListFromFile(const QString &newName, const QString &fileName)
{
    if (newName.isEmpty() || indexOf(newName) >= 0) {
        return refuse();
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        std::cerr << "Unable to open file" << std::endl;
        emit signal_console(QStringLiteral("Unable to open file :") + fileName);
        return refuse();
    }
    const QByteArray bytes = file.readAll();
    file.close();
    const QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    return addList(newName, text.split(QLatin1Char('\n'), Qt::SkipEmptyParts));
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

void TAVManager::loadDatabase(const QString &fileName)
{
    stopLoading();
    engine->eraseDatabase();
    engine->setFilename(fileName);
    engine->start(QThread::InheritPriority);
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
    emit signal_database_loaded();
}

void TAVManager::slot_load_failed()
{
    emit signal_database_empty();
}

void TAVManager::slot_console(const QString &text)
{
    emit signal_console(text);
}

/// Waits for the loader's thread after telling it to stop, and drops what it had still to say, so that nobody takes it
/// for the words of a later load.
void TAVManager::stopLoading()
{
    engine->requestInterruption();
    engine->wait();
    QCoreApplication::removePostedEvents(mailbox);
}

/// The end of an operation that was refused.
bool TAVManager::refuse()
{
    emit signal_manager_ready();
    return false;
}
