#ifndef TAVOLINE_INFO_H
#define TAVOLINE_INFO_H

#include <QString>
#include <QStringList>

#include <functional>
#include <limits>

/// The smallest, the largest and the sum of some counts.
struct CountSummary {
    qint64 low = std::numeric_limits<qint64>::max();
    qint64 high = 0;
    qint64 sum = 0;

    void include(qint64 count);
};

/// One graph of a database file, as far as it is told of.
struct NotableGraph {
    QString name;
    qint64 line = 0;
    int order = 0;
    int size = 0;
};

struct DatabaseSummary {
    qint64 graphs = 0;
    NotableGraph smallest; ///< by order, then size; the first of equal ones. Line 0 when no name is a graph6 string.
    NotableGraph largest;
    CountSummary subGraphs;   ///< of the graphs: how many indices their lines hold
    CountSummary superGraphs; ///< how many lines hold their index
    qint64 memory = 0;        ///< bytes that the program needs for the loaded database, about
    qint64 faults = 0;
};

/// Reads the database file @p path and tells @p fault of whatever is wrong with a line: an index that the loader takes
/// for 0 because it is no number, that names no earlier graph, or that stands there twice; a name that is no graph6
/// string, or that an earlier graph has. Throws CommandError when the file cannot be read.
DatabaseSummary examineDatabase(const QString &path,
                                const std::function<void(qint64 line, const QString &text)> &fault);

/// The command "info".
void runInfo(const QStringList &arguments);

#endif
