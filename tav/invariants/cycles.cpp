#include "cyclecount.h"
#include "igraphobjects.h"
#include "invariantgroups.h"
#include "longestpaths.h"
#include "spanningtrees.h"

#include <cmath>

namespace
{
/// igraph returns an infinity for a forest.
InvariantValue girth(GraphFacts &facts)
{
    double length = 0.0;
    checkIgraph(igraph_girth(facts.igraph().get(), &length, nullptr));
    return std::isfinite(length) ? InvariantValue(length) : std::nullopt;
}

InvariantValue cycles(GraphFacts &facts)
{
    return cycleCount(facts.graph());
}

/// A length of 0 stands for none.
InvariantValue cycleLength(int length)
{
    return length > 0 ? InvariantValue(length) : std::nullopt;
}

InvariantValue circumference(GraphFacts &facts)
{
    return cycleLength(longestCycle(facts.graph()));
}

InvariantValue inducedCycle(GraphFacts &facts)
{
    return cycleLength(longestInducedCycle(facts.graph()));
}

InvariantValue path(GraphFacts &facts)
{
    return facts.order() > 0 ? InvariantValue(longestPath(facts.graph()) - 1) : std::nullopt;
}

InvariantValue inducedPath(GraphFacts &facts)
{
    return facts.order() > 0 ? InvariantValue(longestInducedPath(facts.graph()) - 1) : std::nullopt;
}

InvariantValue spanningTrees(GraphFacts &facts)
{
    return spanningTreeCount(facts.graph());
}
} // namespace

std::vector<Invariant> cycleInvariants()
{
    const char *const group = "Cycles and paths";
    return {
        {"girth", group, "length of a shortest cycle; NA for a forest", "", girth},
        {"circumference", group, "length of a longest cycle; NA for a forest", "", circumference},
        {"longest-induced-cycle", group, "length of a longest cycle without chords; NA for a forest", "", inducedCycle},
        {"cycles", group, "number of cycles", "", cycles},
        {"longest-path", group, "number of edges of a longest path; NA without vertices", "", path},
        {"longest-induced-path", group, "number of edges of a longest path without chords; NA without vertices", "",
         inducedPath},
        {"spanning-trees", group, "number of spanning trees, exact up to 2^53",
         "G. Kirchhoff, \"Über die Auflösung der Gleichungen, auf welche man bei der Untersuchung der linearen "
         "Vertheilung galvanischer Ströme geführt wird\", 1847",
         spanningTrees},
    };
}
