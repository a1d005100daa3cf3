#ifndef TAVOLINE_CANONICALFORM_H
#define TAVOLINE_CANONICALFORM_H

#include "smallgraph.h"

#include <array>

/// The canonical form, which isomorphic graphs share, and what nauty finds out about the automorphisms on the way.
struct CanonicalForm {
    SmallGraph graph;
    /// By vertex of the given graph: the smallest vertex to which an automorphism maps it.
    std::array<int, SmallGraph::maxOrder> orbits{};
    /// The number of automorphisms.
    double automorphisms = 1.0;
};

/// Computes the canonical form with nauty (B. D. McKay and A. Piperno, "Practical graph isomorphism, II", 2014).
/// Several threads may call it at the same time.
CanonicalForm canonicalForm(const SmallGraph &given);

/// A checksum of the canonical forms of some graphs, by which those of another nauty, or of other options, are noticed.
quint32 canonicalFormsChecksum();

#endif
