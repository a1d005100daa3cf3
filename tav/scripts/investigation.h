#ifndef TAVOLINE_INVESTIGATION_H
#define TAVOLINE_INVESTIGATION_H

#include "TAVmanager.h"
#include "progress.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// The list manager of the window, without the window. Console lines are printed on standard output at once, unless
/// they are not wanted, the progress of a load on standard error.
class Investigation
{
public:
    /// Without console lines if @p isQuiet. If @p isPart, some parts of a database are loaded, not all: a list without
    /// graphs is kept, since other parts may have graphs in it.
    Investigation(bool isQuiet, bool isPart);
    Investigation(const Investigation &) = delete;
    Investigation &operator=(const Investigation &) = delete;

    /// For the operations that return when they are done, with whether they succeeded.
    TAVManager &getManager() { return manager; }

    /// Loads the database files @p files, one behind the other, waits for the outcome and returns whether there is a
    /// database now.
    bool load(const QStringList &files);
    /// Loads an invariant by @p operation and returns whether every graph got its value.
    bool loadInvariant(void (TAVManager::*operation)(const QString &), const QString &file);
    /// An operation of the manager that sets an invariant of all graphs.
    using SetInvariant = bool (TAVManager::*)(const QString &what, const std::vector<std::optional<double>> &values);
    /// Computes an invariant, which @p set sets, by an expression and returns whether there is a database. Throws
    /// CommandError, with all values as they were, when the name of a graph is no graph6 string.
    bool computeInvariant(SetInvariant set, const QString &expression);
    /// Adds the list @p name of the graphs of the database that are isomorphic to those of the file @p file, in the
    /// order of the file; tells on the console how many the database does not hold. Returns false when the name is
    /// empty or taken or there is no database; throws CommandError when the file cannot be read or a line of it is no
    /// graph.
    bool addListFromGraphs(const QString &name, const QString &file);
    /// Prints the name and the length of every list, separated by a tab, one list a line.
    void printLists();
    /// Prints the graph names of the list @p name, one a line; returns false when there is no such list.
    bool printList(const QString &name);

private:
    void showConsoleLine(const QString &text);
    void showProgress(int done, int total);

    bool quiet;
    TAVManager manager;
    QString lastConsoleLine;
    std::optional<Progress> progress; // removed before a console line is printed
};

#endif
