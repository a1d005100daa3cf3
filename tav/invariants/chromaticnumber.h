#ifndef TAVOLINE_CHROMATICNUMBER_H
#define TAVOLINE_CHROMATICNUMBER_H

#include "smallgraph.h"

/// The smallest number of colours with which no two adjacent vertices of @p graph share one, found by branch and bound:
/// the next vertex is the one whose neighbours show most colours (D. Brélaz, "New methods to color the vertices of a
/// graph", 1979). The search ends as soon as it is down at @p lowerBound, which the number is known to reach; a clique
/// number is a good one. The time is exponential in the worst case.
int chromaticNumber(const SmallGraph &graph, int lowerBound);

#endif
