#ifndef TAVOLINE_PLANARITYTEST_H
#define TAVOLINE_PLANARITYTEST_H

#include "smallgraph.h"

/// Whether @p graph can be drawn in the plane without crossings.
bool isPlanar(const SmallGraph &graph);

#endif
