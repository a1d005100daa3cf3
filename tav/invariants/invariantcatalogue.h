#ifndef TAVOLINE_INVARIANTCATALOGUE_H
#define TAVOLINE_INVARIANTCATALOGUE_H

#include "smallgraph.h"

#include <QString>

#include <optional>
#include <vector>

/// A number that isomorphic graphs share.
struct Invariant {
    const char *name;        ///< as the command line has it
    const char *description; ///< one line, which tells where it is undefined
    /// Its value for a graph, or nothing where it is undefined. Throws CommandError when a library fails. Not for
    /// several threads at a time.
    std::optional<double> (*valueOf)(const SmallGraph &graph);
};

/// All invariants there are.
///
/// A sum or a number of things is 0 where there are none of them, so for the graph without vertices. What is taken over
/// vertices, distances, cycles or eigenvalues is undefined where there are none: degrees, distances and the spectral
/// radius without vertices, the average distance and the algebraic connectivity below two vertices, the girth of a
/// forest. Distances need a connected graph; one vertex is connected, no vertex is not. One vertex has the diameter,
/// the radius, the Wiener index and the connectivities 0.
const std::vector<Invariant> &invariants();

/// The one of the name @p name; nullptr when there is none.
const Invariant *findInvariant(const QString &name);

#endif
