#ifndef TAVOLINE_INVARIANTCATALOGUE_H
#define TAVOLINE_INVARIANTCATALOGUE_H

#include "graphfacts.h"

#include <QString>

#include <optional>
#include <vector>

/// The value of an invariant, or nothing where it is undefined.
using InvariantValue = std::optional<double>;

enum class ValueKind {
    Integer,
    Real, ///< computed with rounding errors
};

/// A number that isomorphic graphs share.
struct Invariant {
    const char *name;        ///< on the command line
    const char *group;       ///< the heading above it in lists; invariants of a group stand together
    const char *description; ///< one line: the definition, and where it is undefined
    const char *source;      ///< who defined it, in UTF-8; empty for what textbooks define
    /// Its value for a graph. Throws CommandError when igraph fails.
    InvariantValue (*valueOf)(GraphFacts &facts);
    ValueKind kind = ValueKind::Integer;
};

/// All invariants there are, group by group.
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
