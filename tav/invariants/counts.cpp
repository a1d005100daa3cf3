#include "igraphobjects.h"
#include "invariantgroups.h"
#include "vertexset.h"

namespace
{
int componentCount(const SmallGraph &graph)
{
    int count = 0;
    for (VertexSet rest = allVertices(graph.order); rest != 0; ++count) {
        rest &= ~reachable(graph, SmallGraph::bit(firstVertex(rest)), rest);
    }
    return count;
}

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
    const SmallGraph &graph = facts.graph();
    int count = 0;
    for (int w = 0; w < graph.order; ++w) {
        for (const int v : VerticesOf(graph.rows[w] & allVertices(w))) {
            count += vertexCount(graph.rows[w] & graph.rows[v] & allVertices(v));
        }
    }
    return count;
}

InvariantValue density(GraphFacts &facts)
{
    const double pairs = facts.order() * (facts.order() - 1) / 2.0;
    return pairs > 0.0 ? InvariantValue(facts.size() / pairs) : std::nullopt;
}

InvariantValue components(GraphFacts &facts)
{
    return componentCount(facts.graph());
}

InvariantValue complementComponents(GraphFacts &facts)
{
    return componentCount(facts.complement());
}

InvariantValue cyclomaticNumber(GraphFacts &facts)
{
    return facts.size() - facts.order() + componentCount(facts.graph());
}

InvariantValue cliques(GraphFacts &facts)
{
    igraph_integer_t count = 0;
    checkIgraph(igraph_maximal_cliques_count(facts.igraph().get(), &count, 0, 0));
    return count;
}

InvariantValue automorphisms(GraphFacts &facts)
{
    return facts.canonicalForm().automorphisms;
}

/// nauty names every orbit by its smallest vertex.
InvariantValue orbits(GraphFacts &facts)
{
    int count = 0;
    for (int v = 0; v < facts.order(); ++v) {
        count += facts.canonicalForm().orbits[v] == v ? 1 : 0;
    }
    return count;
}
} // namespace

std::vector<Invariant> countInvariants()
{
    const char *const group = "Counts";
    const char *const algebraic = "C. Godsil and G. Royle, \"Algebraic Graph Theory\", 2001";
    return {
        {"order", group, "number of vertices", "", order},
        {"size", group, "number of edges", "", size},
        {"density", group, "number of edges over the number of pairs of vertices; NA below two vertices", "", density,
         ValueKind::Real},
        {"triangles", group, "number of triangles", "", triangles},
        {"cliques", group, "number of maximal sets of mutually adjacent vertices", "", cliques},
        {"components", group, "number of connected components", "", components},
        {"complement-components", group, "number of connected components of the complement", "", complementComponents},
        {"cyclomatic-number", group, "number of edges outside a spanning forest", "", cyclomaticNumber},
        {"automorphisms", group, "number of automorphisms", algebraic, automorphisms},
        {"orbits", group, "number of orbits of the vertices under the automorphisms", algebraic, orbits},
    };
}
