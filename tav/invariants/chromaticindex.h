#ifndef TAVOLINE_CHROMATICINDEX_H
#define TAVOLINE_CHROMATICINDEX_H

#include "smallgraph.h"

/// The smallest number of colours with which no two edges of @p graph with a common vertex share one: the largest
/// degree or one more (V. G. Vizing, "On an estimate of the chromatic class of a p-graph", 1964). The time is
/// exponential in the worst case.
int chromaticIndex(const SmallGraph &graph);

#endif
