#ifndef TAVOLINE_DATABASEBUILDER_H
#define TAVOLINE_DATABASEBUILDER_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

class DatabaseForms;

/// What a direct sub-graph of a graph lacks.
enum class Relation {
    Vertex, ///< one vertex, with its edges
    Edge,   ///< one edge
};

struct BuildOptions {
    Relation relation = Relation::Vertex;
    bool connectedOnly = false; ///< leave out the disconnected graphs of the input
    bool strict = false;        ///< a graph isomorphic to an earlier one is an error
    int jobs = 1;               ///< how many threads work; the result does not depend on it
    QStringList inputs;         ///< files of graph6 strings, one a line
    QString output;
    /// When given, links lead to the graphs of this database only, and behind it the output is a part of it.
    const DatabaseForms *base = nullptr;
};

struct BuildSummary {
    qint64 graphs = 0;       ///< lines written
    qint64 links = 0;        ///< indices written
    qint64 repetitions = 0;  ///< graphs dropped because an isomorphic one came before
    qint64 disconnected = 0; ///< graphs left out
};

/// Writes the database of the graphs of the inputs, by order, then size, then their place in the input. The name of a
/// graph is its string in the input; its indices are those of its distinct direct sub-graphs in the database, or in the
/// base. Throws CommandError for a fault of an input (see GraphInput::read()), with the option strict for a graph
/// isomorphic to an earlier one, and with a base for a graph that it holds or that has a direct sub-graph in the input;
/// throws Interrupted after a signal that ends the program. An old output file then stays as it was.
BuildSummary buildDatabase(const BuildOptions &options);

#endif
