#ifndef TAVOLINE_DATABASELINE_H
#define TAVOLINE_DATABASELINE_H

#include <QString>

#include <string_view>
#include <vector>

/// One line of a database file: the graph's name and the indices of its direct sub-graphs.
struct DatabaseLine {
    QString name;             ///< the first field
    std::vector<int> indices; ///< the further fields in order; a field that is no integer is 0
};

/// Reads one line of a database file: UTF-8 text without its "\n", fields separated by single tabs. Every "\r" is
/// dropped, wherever it stands. Returns false, with @p line as it was, when the line names no graph: when it is empty
/// or its first field is.
bool parseDatabaseLine(std::string_view bytes, DatabaseLine &line);

/// Splits a line that is normalised already (see textline.h) at single tabs, empty fields included.
void splitDatabaseLine(std::string_view normalised, DatabaseLine &line);

#endif
