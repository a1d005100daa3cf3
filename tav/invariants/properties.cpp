#include "exactelimination.h"
#include "hamiltoncycle.h"
#include "igraphobjects.h"
#include "invariantgroups.h"
#include "planaritytest.h"
#include "vertexset.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace
{
/// The value of a property: 0 or 1.
template<bool (*holds)(GraphFacts &facts)> InvariantValue zeroOrOne(GraphFacts &facts)
{
    return holds(facts) ? 1.0 : 0.0;
}

bool regular(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return std::adjacent_find(degrees.begin(), degrees.end(), std::not_equal_to<>()) == degrees.end();
}

bool bipartite(GraphFacts &facts)
{
    igraph_bool_t holds = true;
    checkIgraph(igraph_is_bipartite(facts.igraph().get(), &holds, nullptr));
    return holds;
}

bool tree(GraphFacts &facts)
{
    return facts.isConnected() && facts.size() == facts.order() - 1;
}

bool bridge(GraphFacts &facts)
{
    IntegerVector edges;
    checkIgraph(igraph_bridges(facts.igraph().get(), edges.get()));
    return edges.size() > 0;
}

bool biconnected(GraphFacts &facts)
{
    if (facts.order() < 2 || !facts.isConnected()) {
        return false;
    }
    IntegerVector vertices;
    checkIgraph(igraph_articulation_points(facts.igraph().get(), vertices.get()));
    return vertices.size() == 0;
}

/// L. Euler, 1736.
bool eulerian(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return facts.isConnected() &&
           std::all_of(degrees.begin(), degrees.end(), [](int degree) { return degree % 2 == 0; });
}

bool hamiltonian(GraphFacts &facts)
{
    return hasHamiltonCycle(facts.graph());
}

bool traceable(GraphFacts &facts)
{
    return facts.isConnected() && hasHamiltonPath(facts.graph());
}

bool planar(GraphFacts &facts)
{
    return isPlanar(facts.graph());
}

bool chordal(GraphFacts &facts)
{
    igraph_bool_t holds = true;
    checkIgraph(igraph_is_chordal(facts.igraph().get(), nullptr, nullptr, &holds, nullptr, nullptr));
    return holds;
}

/// Takes isolated vertices, and such as are adjacent to all others, away as long as there are any.
bool threshold(GraphFacts &facts)
{
    VertexSet rest = allVertices(facts.order());
    for (VertexSet before = 0; rest != before;) {
        before = rest;
        for (const int v : VerticesOf(before)) {
            const VertexSet others = rest & ~SmallGraph::bit(v);
            const VertexSet neighbours = rest & facts.graph().rows[v];
            if (neighbours == 0 || neighbours == others) {
                rest = others;
            }
        }
    }
    return rest == 0;
}

bool triangleFree(GraphFacts &facts)
{
    const SmallGraph &graph = facts.graph();
    for (int v = 0; v < graph.order; ++v) {
        for (const int u : VerticesOf(graph.rows[v])) {
            if ((graph.rows[u] & graph.rows[v]) != 0) {
                return false;
            }
        }
    }
    return true;
}

bool isClique(VertexSet set, const SmallGraph &graph)
{
    const VerticesOf vertices(set);
    return std::all_of(vertices.begin(), vertices.end(),
                       [&](int v) { return (set & ~graph.rows[v]) == SmallGraph::bit(v); });
}

/// The neighbours of a vertex that are not adjacent to one of them must be adjacent to each other.
bool clawFree(GraphFacts &facts)
{
    const SmallGraph &graph = facts.graph();
    for (int v = 0; v < graph.order; ++v) {
        for (const int u : VerticesOf(graph.rows[v])) {
            if (!isClique(graph.rows[v] & ~graph.rows[u] & ~SmallGraph::bit(u), graph)) {
                return false;
            }
        }
    }
    return true;
}

bool selfComplementary(GraphFacts &facts)
{
    return 4 * facts.size() == facts.order() * (facts.order() - 1) &&
           facts.canonicalForm().graph.rows == canonicalForm(facts.complement()).graph.rows;
}

/// LAPACK's errors are far below the tolerance. Whether eigenvalues that are so near to integers are these, the exact
/// rank decides.
bool integral(GraphFacts &facts)
{
    constexpr double tolerance = 1e-6;
    int exactMultiplicities = 0;
    double last = facts.order();
    for (const double eigenvalue : facts.spectrum(GraphMatrix::Adjacency)) {
        const double integer = std::nearbyint(eigenvalue);
        if (std::abs(eigenvalue - integer) > tolerance) {
            return false;
        }
        if (integer != last) {
            exactMultiplicities += facts.order() - exactRank(facts.graph(), int(integer));
            last = integer;
        }
    }
    return exactMultiplicities == facts.order();
}
} // namespace

std::vector<Invariant> propertyInvariants()
{
    const char *const group = "Properties (1 or 0)";
    return {
        {"regular", group, "1 when all degrees are equal", "", zeroOrOne<regular>},
        {"bipartite", group, "1 when there is no cycle of odd length", "", zeroOrOne<bipartite>},
        {"tree", group, "1 when connected and without cycles", "", zeroOrOne<tree>},
        {"bridge", group, "1 when there is an edge that is on no cycle", "", zeroOrOne<bridge>},
        {"biconnected", group, "1 when connected, on two or more vertices, and without a vertex that disconnects it",
         "", zeroOrOne<biconnected>},
        {"eulerian", group, "1 when connected and all degrees are even", "", zeroOrOne<eulerian>},
        {"hamiltonian", group, "1 when there is a cycle through all vertices", "", zeroOrOne<hamiltonian>},
        {"traceable", group, "1 when there is a path through all vertices", "", zeroOrOne<traceable>},
        {"planar", group, "1 when it can be drawn in the plane without crossings", "", zeroOrOne<planar>},
        {"chordal", group, "1 when every cycle of length four or more has a chord", "", zeroOrOne<chordal>},
        {"threshold", group,
         "1 when isolated vertices and vertices adjacent to all others can be taken away until none is left",
         "V. Chvátal and P. L. Hammer, \"Aggregation of inequalities in integer programming\", 1977",
         zeroOrOne<threshold>},
        {"triangle-free", group, "1 when no three vertices are mutually adjacent", "", zeroOrOne<triangleFree>},
        {"claw-free", group, "1 when no vertex has three mutually non-adjacent neighbours",
         "R. Faudree, E. Flandrin and Z. Ryjáček, \"Claw-free graphs: a survey\", 1997", zeroOrOne<clawFree>},
        {"self-complementary", group, "1 when isomorphic to its complement",
         "H. Sachs, \"Über selbstkomplementäre Graphen\", 1962", zeroOrOne<selfComplementary>},
        {"integral", group, "1 when all eigenvalues of the adjacency matrix are integers",
         "F. Harary and A. J. Schwenk, \"Which graphs have integral spectra?\", 1974", zeroOrOne<integral>},
    };
}
