#ifndef TAVOLINE_SPANNINGTREES_H
#define TAVOLINE_SPANNINGTREES_H

#include "smallgraph.h"

/// The number of spanning trees of @p graph; 0 without vertices. It is exact up to 2^53, the relative error of a larger
/// one is below 1e-12.
double spanningTreeCount(const SmallGraph &graph);

#endif
