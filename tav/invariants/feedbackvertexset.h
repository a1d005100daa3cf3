#ifndef TAVOLINE_FEEDBACKVERTEXSET_H
#define TAVOLINE_FEEDBACKVERTEXSET_H

#include "smallgraph.h"

/// The smallest number of vertices that meet every cycle of @p graph. The time is exponential in the worst case.
int feedbackVertexSetNumber(const SmallGraph &graph);

#endif
