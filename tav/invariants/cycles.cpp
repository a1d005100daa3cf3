#include "igraphobjects.h"
#include "invariantgroups.h"

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
} // namespace

std::vector<Invariant> cycleInvariants()
{
    const char *const group = "Cycles and paths";
    return {
        {"girth", group, "length of a shortest cycle; NA for a forest", "", girth},
    };
}
