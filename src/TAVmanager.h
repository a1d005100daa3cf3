#ifndef TAVOLINE_TAVMANAGER_H
#define TAVOLINE_TAVMANAGER_H

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>
#include <vector>

class GraphList;
class TAVSearchEngine;

/// Owns the database engine and the named lists of graphs; the only thing that the interface talks to.
///
/// Outcomes are reported as one line of text through signal_console(). Every operation but loadDatabase(),
/// loadDatabases(), resetDatabase(), listNames() and indexOf() emits signal_manager_ready(); getList() only when it
/// fails.
///
/// While a load runs, an operation that needs the database is refused: it says so in one console line and changes
/// nothing. A load runs until its outcome is delivered here.
///
/// An operation for which memory is short fails: it says so in one console line, and all lists are as they were.
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
    /// From now on, lists without graphs are added like all others.
    void keepEmptyLists() { keepsEmptyLists = true; }
    /// Removes the list named @p name; returns false, with a console line, when there is none.
    bool remList(const QString &name);
    /// The graph names of the list named @p name; an empty list when there is none.
    QStringList getList(const QString &name);
    /// The names of all lists in the order in which they were added.
    QStringList listNames() const;

    // New lists from old ones. False, silently, when the new name is empty or taken or a source names no list; true
    // when these checks pass, even if the result is empty and therefore not added.

    /// The names of both lists, sorted, each once.
    bool addUnionList(const QString &newName, const QString &nameA, const QString &nameB);
    /// The names of A that B contains, in A's order and as often as there.
    bool addInterList(const QString &newName, const QString &nameA, const QString &nameB);
    /// The names of A that B does not contain, in A's order and as often as there.
    bool addExceptList(const QString &newName, const QString &nameA, const QString &nameB);
    /// The graphs of the source that are in the database, and all graphs below them.
    bool addSubsList(const QString &newName, const QString &sourceName);
    /// The graphs of the source that are in the database, and all graphs above them.
    bool addOverList(const QString &newName, const QString &sourceName);

    // List files: one graph name a line.

    /// Adds a list of the non-empty lines of a text file. Returns false when @p newName is empty or taken, and, with
    /// a console line, when the file cannot be opened; else what addList() returns.
    bool addListFromFile(const QString &newName, const QString &fileName);
    /// Writes the list named @p listName. False when there is none, and, with a console line, when the file cannot be
    /// written, in which case a file that stood there is as it was.
    bool saveList(const QString &listName, const QString &fileName);

    /// Whether there is a database with a graph in it, and no load runs.
    bool hasGraphs() const;
    /// Calls @p take with the name of every graph of the database, in its order; with none while a load runs.
    void visitNames(const std::function<void(const QString &name)> &take) const;

    // Files of the database: see the engine's operations of the same names. A success is told on the console.

    bool saveGraphs(const QString &fileName);
    bool saveInv1(const QString &fileName);
    void loadInv1(const QString &fileName);
    void loadInv2(const QString &fileName);

    /// Sets I1 of all graphs, in the order of the database, to as many @p values, of which one may be missing, and
    /// tells on the console that @p what was computed. Returns false, with a console line, when the database is empty.
    bool setInv1(const QString &what, const std::vector<std::optional<double>> &values);
    /// The same for I2.
    bool setInv2(const QString &what, const std::vector<std::optional<double>> &values);

    /// Why the last operation with the name of a file could not open, read or write the file, in the words of the
    /// system; empty when it could, or failed for another reason.
    QString fileFault() const { return fault; }

    // The engine's operation of the same name on the whole database.

    void avgSub1();
    void avgOver1();
    void avgAll1();
    void minSub1();
    void minOver1();
    void minAll1();
    void maxSub1();
    void maxOver1();
    void maxAll1();
    void exch_1_2();
    void I1getsI2();
    void I2getsI1();

    // Lists of what an engine's query of a like name answers. False, with a console line, when the name is empty or
    // taken; an empty answer is told on the console and adds no list, and yet the result is true.

    bool addI1geI2List(const QString &newName);
    bool addI1leI2List(const QString &newName);
    bool addI1eqI2subsList(const QString &newName);
    bool addI1eqI2overList(const QString &newName);
    bool addI1geI2subsList(const QString &newName);
    bool addI1leI2subsList(const QString &newName);
    bool addI1geI2overList(const QString &newName);
    bool addI1leI2overList(const QString &newName);
    bool addI1gtI2subsList(const QString &newName);
    bool addI1ltI2subsList(const QString &newName);
    bool addI1gtI2overList(const QString &newName);
    bool addI1ltI2overList(const QString &newName);

    /// Empties the database and starts to load the file @p fileName in the background; a load that is still running is
    /// stopped first and never heard of again. The outcome is signal_database_loaded() or signal_database_empty().
    void loadDatabase(const QString &fileName);
    /// The same with several files, one behind the other: a database and parts of it.
    void loadDatabases(const QStringList &fileNames);
    /// Empties the database, stopping a load that is still running, and emits signal_database_empty().
    void resetDatabase();

signals:
    /// The database is empty: a load has failed, or resetDatabase() was called.
    void signal_database_empty();
    /// A load has succeeded.
    void signal_database_loaded();
    /// An operation is over.
    void signal_manager_ready();
    /// The load is at line @p current of @p total.
    void signal_progress(int current, int total);
    /// Never emitted: signal_database_loaded() tells it.
    void signal_load_succeeded();
    /// Never emitted: signal_database_empty() tells it.
    void signal_load_failed();
    /// A list was added or removed.
    void signal_lists_changed();
    /// A line of @p text for the console, plain and without its end.
    void signal_console(QString text);

public slots:
    // What the engine reports during a load.

    void slot_progress(int current, int total);
    void slot_load_succeeded();
    void slot_load_failed();
    void slot_console(const QString &text);

private:
    void stopLoading();
    bool refuse();
    bool refuseWhileLoading();
    template<typename Operation> bool withinMemory(Operation operation);

    using Query = std::function<QStringList(TAVSearchEngine &)>;
    using Combine = QStringList (*)(const QStringList &a, const QStringList &b);
    bool addCombination(const QString &newName, const QString &nameA, const QString &nameB, Combine combine);
    bool addClosure(const QString &newName, const QString &sourceName,
                    QStringList (TAVSearchEngine::*closure)(const QStringList &));
    bool saveFile(const QString &fileName, bool (TAVSearchEngine::*save)(const QString &));
    void loadInvariant(const QString &fileName, bool (TAVSearchEngine::*load)(const QString &));
    bool setInvariant(const QString &what, const std::vector<std::optional<double>> &values,
                      void (TAVSearchEngine::*set)(const std::vector<std::optional<double>> &));
    void derive(void (TAVSearchEngine::*derivation)());
    bool addComparison(const QString &newName, const Query &query);

    TAVSearchEngine *engine;
    /// Receives the engine's signals on behalf of the manager: its queue holds nothing else and can be emptied.
    QObject *mailbox;
    QVector<GraphList *> lists;
    QString fault; // of a file
    bool loading = false;
    bool keepsEmptyLists = false;
};

#endif
