#ifndef TAVOLINE_CHROMATICNUMBER_H
#define TAVOLINE_CHROMATICNUMBER_H

#include "smallgraph.h"

/// The smallest number of colours with which no two adjacent vertices of @p graph share one, found by branch and bound:
/// the next vertex is the one whose neighbours have the most colours (D. Brélaz, "New methods to color the vertices of
/// a graph", 1979). @p lowerBound must not exceed the number, the clique number for example: the search ends when it
/// has found a colouring with so few colours. The time is exponential in the worst case.
int chromaticNumber(const SmallGraph &graph, int lowerBound);

#endif
