#ifndef TAVOLINE_INDEPENDENCENUMBER_H
#define TAVOLINE_INDEPENDENCENUMBER_H

#include "smallgraph.h"

/// The largest number of mutually non-adjacent vertices of @p graph, found by branching at a vertex of largest degree
/// (R. E. Tarjan and A. E. Trojanowski, "Finding a maximum independent set", 1977, in its plainest form). igraph takes
/// tens of seconds for a sparse graph on 62 vertices, both by its independence number and by the clique number of the
/// complement; this takes milliseconds.
int independenceNumber(const SmallGraph &graph);

#endif
