#ifndef TAVOLINE_INVARIANTCATALOGUE_H
#define TAVOLINE_INVARIANTCATALOGUE_H

#include "smallgraph.h"

#include <QString>

#include <optional>
#include <vector>

/// A number that isomorphic graphs share.
struct Invariant {
    const char *name;        ///< on the command line
    const char *description; ///< one line, which also tells where it is undefined
    /// Its value for a graph, or nothing where it is undefined. Throws CommandError when igraph fails. Only one thread
    /// may call this at a time: neither igraph nor cliquer is thread-safe.
    std::optional<double> (*valueOf)(const SmallGraph &graph);
};

/// All invariants there are.
///
/// Special cases: a number or a sum is 0 when there is nothing to count or add, in the graph without vertices for
/// example. A minimum, maximum or mean over nothing is undefined: degrees, distances and the spectral radius of the
/// graph without vertices, the average distance and the algebraic connectivity of a graph on fewer than two vertices,
/// the girth of a forest. Distances are defined for connected graphs; the graph on one vertex is connected, the one
/// without vertices is not. The graph on one vertex has the diameter, the radius, the Wiener index and the
/// connectivities 0.
const std::vector<Invariant> &invariants();

/// The invariant named @p name; nullptr when there is none.
const Invariant *findInvariant(const QString &name);

#endif
