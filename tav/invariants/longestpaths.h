#ifndef TAVOLINE_LONGESTPATHS_H
#define TAVOLINE_LONGESTPATHS_H

#include "smallgraph.h"

// The time of each of these is exponential in the worst case.

/// The number of vertices of a longest path; 0 without vertices.
int longestPath(const SmallGraph &graph);

/// The number of vertices of a longest cycle; 0 for a forest.
int longestCycle(const SmallGraph &graph);

/// The number of vertices of a longest path that has all edges between them; 0 without vertices.
int longestInducedPath(const SmallGraph &graph);

/// The number of vertices of a longest cycle that has all edges between them; 0 for a forest.
int longestInducedCycle(const SmallGraph &graph);

#endif
