#ifndef TAVOLINE_TAVMANAGER_H
#define TAVOLINE_TAVMANAGER_H

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

class GraphList;
class TAVSearchEngine;

/// Owns the database engine and the named lists of graphs; the only thing that the interface talks to.
///
/// Outcomes are reported as one line of text through signal_console(). Every operation but loadDatabase(),
/// resetDatabase(), listNames() and indexOf() ends with signal_manager_ready(); getList() only when it fails.
class TAVManager : public QObject
{
    Q_OBJECT

public:
    TAVManager();
    /// Stops a load that is still running and frees the database and the lists.
    ~TAVManager() override;

    /// The position of the list named @p name (exact, case-sensitive) in the registry, or -1.
    int indexOf(const QString &name) const;
    /// Adds a list; an empty @p name or one that is taken is refused silently with false. An empty list of @p names
    /// is reported and not added, and yet the result is true.
    bool addList(const QString &name, const QStringList &names);
    /// Adds a list of the non-empty lines of a text file. Returns false when @p newName is empty or taken, and, with
    /// a console line, when the file cannot be opened; else what addList() returns.
    bool addListFromFile(const QString &newName, const QString &fileName);
    /// Removes the list named @p name; returns false, with a console line, when there is none.
    bool remList(const QString &name);
    /// The graph names of the list named @p name; an empty list when there is none.
    QStringList getList(const QString &name);
    /// The names of all lists in the order in which they were added.
    QStringList listNames() const;

    /// Empties the database and starts to load the file @p fileName in the background; a load that is still running is
    /// stopped first and never heard of again. The outcome is signal_database_loaded() or signal_database_empty().
    void loadDatabase(const QString &fileName);
    /// Empties the database, stopping a load that is still running, and emits signal_database_empty().
    void resetDatabase();

signals:
    void signal_database_empty();
    void signal_database_loaded();
    void signal_manager_ready();
    void signal_progress(int current, int total);
    void signal_load_succeeded();
    void signal_load_failed();
    void signal_lists_changed();
    void signal_console(QString text);

public slots:
    void slot_progress(int current, int total);
    void slot_load_succeeded();
    void slot_load_failed();
    void slot_console(const QString &text);

private:
    void stopLoading();
    bool refuse();

    TAVSearchEngine *engine;
    /// Receives the engine's signals on behalf of the manager: its queue holds nothing else and can be emptied.
    QObject *mailbox;
    QVector<GraphList *> lists;
};

#endif
