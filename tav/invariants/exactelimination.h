#ifndef TAVOLINE_EXACTELIMINATION_H
#define TAVOLINE_EXACTELIMINATION_H

#include "smallgraph.h"

// Gaussian elimination of adjacency matrices without rounding: modulo so many primes that Hadamard's bound on the
// minors tells the result. LAPACK rounds, and neither igraph nor nauty has exact determinants.

/// The rank of the adjacency matrix less @p shift times the identity matrix; @p shift is below the order in absolute
/// value. So the multiplicity of the eigenvalue @p shift is the order less the rank.
int exactRank(const SmallGraph &graph, int shift);

/// The determinant of the adjacency matrix, or the next number that a double holds; 1 for no vertices.
double exactDeterminant(const SmallGraph &graph);

#endif
