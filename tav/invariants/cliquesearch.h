#ifndef TAVOLINE_CLIQUESEARCH_H
#define TAVOLINE_CLIQUESEARCH_H

#include <stdint.h> // NOLINT(modernize-deprecated-headers): C reads it, too

#ifdef __cplusplus
extern "C" {
#endif

/// The largest number of mutually adjacent vertices of a graph on @p order vertices, at most 64, with the neighbours of
/// a vertex in its row of @p rows, vertex 0 at the highest bit. cliquer finds it by branch and bound (P. R. J.
/// Östergård, "A fast algorithm for the maximum clique problem", 2002); the time is exponential in the worst case.
/// cliquer has global variables: only one thread may call this at a time.
int findLargestClique(int order, const uint64_t *rows);

#ifdef __cplusplus
}
#endif

#endif
