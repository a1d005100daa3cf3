#ifndef TAVOLINE_CYCLECOUNT_H
#define TAVOLINE_CYCLECOUNT_H

#include "smallgraph.h"

/// The number of cycles of @p graph. The time is exponential in the worst case; beyond 16 vertices it grows with the
/// number of cycles.
double cycleCount(const SmallGraph &graph);

#endif
