// What holds for a viewer's graph after any operation.
#ifndef TAVOLINE_FUZZ_VIEWERCHECKS_H
#define TAVOLINE_FUZZ_VIEWERCHECKS_H

#include "graph.h"

#include <QByteArray>
#include <QString>

/// Like startTarget<QApplication>(); also closes every message box at once: the readers show one for a binary file.
int startViewerTarget(int *argc, char ***argv);

/// A path in a temporary folder of this process.
QString scratchPath(const QString &name);

/// All bytes of a file.
QByteArray contentOf(const QString &path);

/// Requires what holds after every operation: both matrices are symmetric, the numbers of edges and neighbours are
/// right, and every vertex has a place.
void requireSound(Graph &graph);

/// Requires a vertex count of 0..32.
void requireCount(const Graph &graph);

/// Requires what holds while the current graph is the published one: the best graph is the same, and as many vertex
/// items exist as it has vertices.
void requirePublished(const Graph &graph);

/// Requires that the vertex items that exist are those of the current or of the best graph. This holds after every
/// operation except copy(), which leaves the items to its caller.
void requireItemsInStep(const Graph &graph);

/// Carries out some operations on a graph and checks it. Its number of vertices may be out of range.
void exercise(Graph &graph);

#endif
