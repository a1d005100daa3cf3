#ifndef TAVOLINE_MATCHINGNUMBER_H
#define TAVOLINE_MATCHINGNUMBER_H

#include "smallgraph.h"

/// The largest number of edges of @p graph of which no two share a vertex.
int matchingNumber(const SmallGraph &graph);

#endif
