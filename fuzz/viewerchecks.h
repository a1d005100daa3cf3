#ifndef TAVOLINE_FUZZ_VIEWERCHECKS_H
#define TAVOLINE_FUZZ_VIEWERCHECKS_H

#include "graph.h"

#include <QByteArray>
#include <QString>

/// Like startTarget<QApplication>(); message boxes, which the readers show for what is no text, are closed at once.
int startViewerTarget(int *argc, char ***argv);

/// A path in a folder of the process's own.
QString scratchPath(const QString &name);

/// All bytes of a file.
QByteArray contentOf(const QString &path);

/// Requires what holds between any two operations: both matrices are symmetric, the counts of edges and neighbours are
/// those of the pairs that are joined, and every vertex has a place.
void requireSound(Graph &graph);

/// Requires a vertex count of 0..32.
void requireCount(const Graph &graph);

/// Requires what holds as long as the current graph is the one that was published: the best graph is the same, and the
/// vertex items exist in step with the count.
void requirePublished(const Graph &graph);

/// Requires that the vertex items which exist are those of the current or of the best graph: what holds after every
/// operation but copy(), which leaves the items to the caller.
void requireItemsInStep(const Graph &graph);

/// Works on a graph whose vertex count may be anything.
void exercise(Graph &graph);

#endif
