#include "igraphobjects.h"
#include "invariantgroups.h"

namespace
{
InvariantValue order(GraphFacts &facts)
{
    return facts.order();
}

InvariantValue size(GraphFacts &facts)
{
    return facts.size();
}

InvariantValue triangles(GraphFacts &facts)
{
    IntegerVector corners;
    checkIgraph(igraph_list_triangles(facts.igraph().get(), corners.get()));
    return corners.size() / 3;
}

InvariantValue components(GraphFacts &facts)
{
    igraph_integer_t count = 0;
    checkIgraph(igraph_connected_components(facts.igraph().get(), nullptr, nullptr, &count, IGRAPH_WEAK));
    return count;
}

InvariantValue automorphisms(GraphFacts &facts)
{
    return facts.canonicalForm().automorphisms;
}
} // namespace

std::vector<Invariant> countInvariants()
{
    const char *const group = "Counts";
    return {
        {"order", group, "number of vertices", "", order},
        {"size", group, "number of edges", "", size},
        {"triangles", group, "number of triangles", "", triangles},
        {"components", group, "number of connected components", "", components},
        {"automorphisms", group, "number of automorphisms", "", automorphisms},
    };
}
