#ifndef TAVOLINE_HAMILTONCYCLE_H
#define TAVOLINE_HAMILTONCYCLE_H

#include "smallgraph.h"

// Searches that put edges of the cycle together to paths, and follow what each edge forces and excludes (B. Vandegriend
// and J. Culberson, "The Gn,m phase transition is not hard for the Hamiltonian cycle problem", 1998). The time is
// exponential in the worst case.

/// Whether @p graph has a cycle through all its vertices, of which there are three or more.
bool hasHamiltonCycle(const SmallGraph &graph);

/// Whether @p graph has a path through all its vertices, of which there is one or more.
bool hasHamiltonPath(const SmallGraph &graph);

#endif
