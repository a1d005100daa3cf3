#ifndef TAVOLINE_DRAWING_SPRINGLAYOUT_H
#define TAVOLINE_DRAWING_SPRINGLAYOUT_H

#include "places.h"

// Layouts by springs, from Boost Graph. Both start on the circle and use no random numbers: the same graph always gets
// the same places. Each component is laid out by itself; they stand in rows, the largest first.

/// A spring between any two vertices, as long as their distance in the graph. (Kamada and Kawai, "An algorithm for
/// drawing general undirected graphs")
Places kamadaKawai(const Adjacency &graph);

/// Neighbours attract each other, and all vertices repel each other. (Fruchterman and Reingold, "Graph drawing by
/// force-directed placement")
Places fruchtermanReingold(const Adjacency &graph);

#endif
