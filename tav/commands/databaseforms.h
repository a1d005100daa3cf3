#ifndef TAVOLINE_DATABASEFORMS_H
#define TAVOLINE_DATABASEFORMS_H

#include "formindex.h"
#include "regularfile.h"

#include <QString>

#include <optional>
#include <string>

class QFile;

/// Where the index of a database file stands by default.
QString indexPath(const QString &database);

/// Opens a database file whose forms are needed. Throws CommandError when that is not possible: WrongUsage for the
/// empty name, and for standard input, which can be read only once.
void openDatabase(QFile &file);

/// The index of the canonical forms of the database @p file, open, made with @p jobs threads. Throws CommandError for a
/// file that cannot be read, for a name that is no graph6 or sparse6 string of a graph on at most SmallGraph::maxOrder
/// vertices, for a number that is not that of an earlier graph, and for a last line without "\n"; throws Interrupted
/// after a signal within an InterruptionScope.
std::string makeFormIndex(QFile &file, int jobs, quint64 &graphCount);

/// The canonical forms of a database: from the index file beside it, which all processes that use it share, or where
/// there is none made anew.
class DatabaseForms
{
public:
    /// Throws CommandError as openDatabase() and makeFormIndex() do, and for an index file that is not one of this
    /// database.
    DatabaseForms(const QString &path, int jobs);

    /// The path of the database.
    const QString &path() const { return database; }
    const FormIndex &index() const { return forms; }
    /// Whether there is an index file.
    bool isFromFile() const { return file.has_value(); }

private:
    void readIndex(QFile &databaseFile);

    QString database;
    std::optional<MappedFile> file; // of the index
    std::string made;
    FormIndex forms;
};

#endif
