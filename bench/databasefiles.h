#ifndef TAVOLINE_BENCH_DATABASEFILES_H
#define TAVOLINE_BENCH_DATABASEFILES_H

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

/// An invariant: its value for the graph of a line, NaN for a missing one.
using Value = double (*)(uint32_t line);

/// The numbers of graphs and links in a database, and files of its names and of invariants, from which the rows of a
/// benchmark start as a user does. Ends the program when a file cannot be read or written.
///
/// The files of names are all.g6; half.g6 and other-half.g6, which have half of their names in common; and thousand.g6,
/// with about a thousand names from all parts of the database.
class DatabaseFiles
{
public:
    /// Reads the file @p databasePath and writes the files of names to @p temporaryFolder.
    DatabaseFiles(const QString &databasePath, QString temporaryFolder);

    QString path(const QString &name) const { return folder + QLatin1Char('/') + name; }

    /// Writes the file @p name with the values of the invariant @p value.
    void writeInvariant(const QString &name, Value value) const;

    qint64 graphs = 0;
    qint64 links = 0;
    qint64 withSubGraphs = 0;
    qint64 withSuperGraphs = 0;
    qint64 withLevelSubGraphs = 0; ///< with a sub-graph for which nearLevel() is level
    qint64 half = 0;
    qint64 otherHalf = 0;
    qint64 bothHalves = 0; ///< names that are in both
    qint64 thousand = 0;

private:
    void addLinks(const QByteArray &line, std::vector<bool> &hasSuperGraph);

    QString folder;
};

/// Whether the files have the same bytes.
bool haveSameContents(const QString &pathA, const QString &pathB);

#endif
