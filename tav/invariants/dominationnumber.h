#ifndef TAVOLINE_DOMINATIONNUMBER_H
#define TAVOLINE_DOMINATIONNUMBER_H

#include "smallgraph.h"

/// The smallest number of vertices such that each of the others is adjacent to one of them. The time is exponential in
/// the worst case.
int dominationNumber(const SmallGraph &graph);

/// The smallest number of vertices such that each vertex, also of them, is adjacent to one of them. There must be none
/// without neighbours. The time is exponential in the worst case.
int totalDominationNumber(const SmallGraph &graph);

#endif
