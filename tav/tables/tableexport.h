#ifndef TAVOLINE_TABLEEXPORT_H
#define TAVOLINE_TABLEEXPORT_H

#include "manifest.h"
#include "outputfolder.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

/// Writes a database as tables for an SQL engine: text files with a row a line and fields separated by tabs.
///
///   graphs      id, level, 1 for a link to itself or 0, name, ids of the direct sub-graphs separated by commas
///   values-N    id, level, value; a graph without a value has no row
///
/// The id of a graph is its position in the database, from 0.
class TableExport
{
public:
    /// The database is what the regular files @p files hold, one behind the other. Every table has as many files as
    /// @p parts says. Both are written into @p folder.
    TableExport(const QStringList &files, int parts, OutputFolder &folder);

    /// Writes the table of the graphs. Throws CommandError for a file that cannot be read or a line with a bad index.
    void writeGraphs();
    /// Writes the table of the values in an invariant file. Throws CommandError when it does not fit the database.
    void writeValueFile(const QString &file);

    using Take = std::function<void(std::optional<double> value)>;
    /// Writes the table of the values of an expression, which @p produce gives to its argument, one for each graph in
    /// the order of the database.
    void writeValues(const QString &expression, const std::function<void(const Take &take)> &produce);

    /// Writes the manifest, when all tables are there.
    const Manifest &finish();

private:
    void addLevel(qint64 id, int level);
    void writeTable(ValueSource source, const std::function<void(const Take &take)> &produce);

    QStringList paths;
    OutputFolder &output;
    Manifest manifest;
    std::vector<qint16> levels;      // by id
    std::vector<qint64> firstOfPart; // by part: the smallest id in it
};

#endif
