#ifndef TAVOLINE_CANONICALFORM_H
#define TAVOLINE_CANONICALFORM_H

#include "smallgraph.h"

#include <array>

/// A graph that is the same for all graphs isomorphic to a given one, and what its finding tells of the automorphisms.
struct CanonicalForm {
    SmallGraph graph;
    /// By vertex of the given graph: the smallest vertex that an automorphism maps it to.
    std::array<int, SmallGraph::MaxOrder> orbits{};
    /// The number of automorphisms.
    double automorphisms = 1.0;
};

/// Finds it by partition refinement (B. D. McKay and A. Piperno, "Practical graph isomorphism, II", 2014). Threads may
/// call it at the same time.
CanonicalForm canonicalForm(const SmallGraph &given);

#endif
