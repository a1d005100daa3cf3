#ifndef TAVOLINE_TREEWIDTH_H
#define TAVOLINE_TREEWIDTH_H

#include "smallgraph.h"

/// The treewidth of @p graph, which must have a vertex. The time is exponential in the worst case.
int treewidth(const SmallGraph &graph);

#endif
