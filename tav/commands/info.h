#ifndef TAVOLINE_INFO_H
#define TAVOLINE_INFO_H

#include <QString>
#include <QStringList>

#include <functional>
#include <limits>
#include <vector>

/// The smallest, the largest and the sum of some counts.
struct CountSummary {
    qint64 low = std::numeric_limits<qint64>::max();
    qint64 high = 0;
    qint64 sum = 0;

    void include(qint64 count);
};

/// What is told of one graph of a database file.
struct NotableGraph {
    QString name;
    qint64 line = 0;
    int order = 0;
    int size = 0;
};

/// How many faults of a kind were counted only.
struct UntoldFaults {
    const char *kind; ///< in texts for the user
    qint64 count;
};

struct DatabaseSummary {
    qint64 graphs = 0;
    NotableGraph smallest; ///< by order, then size; the first of equal ones. Line 0 when no name is a graph6 string.
    NotableGraph largest;
    CountSummary subGraphs;   ///< by graph: the number of indices on its line
    CountSummary superGraphs; ///< by graph: the number of lines with its index
    qint64 memory = 0;        ///< about how many bytes the loaded database takes
    qint64 faults = 0;
    std::vector<UntoldFaults> untold; ///< of each kind that has some
};

/// Reads the database file @p path and calls @p fault for the first hundred faults of each kind: an index that is no
/// number (the loader reads 0), that is not the number of an earlier graph, or that the line repeats; a missing name,
/// one that is no graph6 string, and one that an earlier graph has. Throws CommandError when the file cannot be read.
DatabaseSummary examineDatabase(const QString &path,
                                const std::function<void(qint64 line, const QString &text)> &fault);

/// The command "info".
void runInfo(const QStringList &arguments);

#endif
