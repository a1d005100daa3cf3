#include "treewidth.h"

#include "vertexset.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace
{
/// A graph that gets smaller.
struct Remainder {
    SmallGraph graph; // the rows of the vertices in rest have no others
    VertexSet rest = 0;

    VertexSet neighbours(int v) const { return graph.rows[v]; }
    int degree(int v) const { return vertexCount(graph.rows[v]); }

    void remove(int v)
    {
        rest &= ~SmallGraph::bit(v);
        for (const int u : VerticesOf(graph.rows[v])) {
            graph.rows[u] &= ~SmallGraph::bit(v);
        }
    }

    /// Removes the vertex @p v and joins its neighbours to each other.
    void eliminate(int v)
    {
        remove(v);
        for (const int u : VerticesOf(graph.rows[v])) {
            graph.rows[u] |= graph.rows[v] & ~SmallGraph::bit(u);
        }
    }

    /// Joins the vertex @p v to its neighbour @p u.
    void contract(int v, int u)
    {
        remove(v);
        for (const int w : VerticesOf(graph.rows[v] & ~SmallGraph::bit(u))) {
            graph.addEdge(u, w);
        }
    }

    bool isClique(VertexSet set) const
    {
        const VerticesOf vertices(set);
        return std::all_of(vertices.begin(), vertices.end(),
                           [&](int v) { return (set & ~graph.rows[v]) == SmallGraph::bit(v); });
    }

    /// Whether the neighbours of @p v but one, or all, are adjacent to each other.
    bool isAlmostSimplicial(int v) const
    {
        const VertexSet around = neighbours(v);
        const VerticesOf vertices(around);
        return isClique(around) || std::any_of(vertices.begin(), vertices.end(),
                                               [&](int u) { return isClique(around & ~SmallGraph::bit(u)); });
    }
};

int vertexOfSmallestDegree(const Remainder &remainder, VertexSet among)
{
    const VerticesOf vertices(among);
    return *std::min_element(vertices.begin(), vertices.end(),
                             [&](int u, int v) { return remainder.degree(u) < remainder.degree(v); });
}

/// The largest of the smallest degrees while edges are contracted: the treewidth of no minor is larger (H. L.
/// Bodlaender and A. M. C. A. Koster, "Treewidth computations II. Lower bounds", 2011).
int lowerBound(Remainder remainder)
{
    int bound = 0;
    while (remainder.rest != 0) {
        const int v = vertexOfSmallestDegree(remainder, remainder.rest);
        bound = std::max(bound, remainder.degree(v));
        if (remainder.degree(v) == 0) {
            remainder.remove(v);
        } else {
            remainder.contract(v, vertexOfSmallestDegree(remainder, remainder.neighbours(v)));
        }
    }
    return bound;
}

/// Eliminates what can be eliminated first without harm when a tree decomposition of width @p width is looked for (H.
/// L. Bodlaender, A. M. C. A. Koster and F. van den Eijkhof, "Preprocessing rules for triangulation of probabilistic
/// networks", 2005).
void eliminateForced(Remainder &remainder, int width)
{
    const auto isForced = [&](int v) { return remainder.degree(v) <= width && remainder.isAlmostSimplicial(v); };
    for (;;) {
        const VerticesOf vertices(remainder.rest);
        const auto next = std::find_if(vertices.begin(), vertices.end(), isForced);
        if (next == vertices.end()) {
            return;
        }
        remainder.eliminate(*next);
    }
}

/// Whether a connected graph has a tree decomposition of a given width, found from its leaves (H. Tamaki,
/// "Positive-instance driven dynamic programming for treewidth", 2019). A connected set is feasible when it has, with
/// its neighbours, a decomposition in which these share a bag. Every bag that is needed is the neighbourhood of a
/// vertex, or that of a union of feasible sets together with what is adjacent to one of its vertices (V. Bouchitté and
/// I. Todinca, "Listing all potential maximal cliques of a graph", 2002).
class Decomposition
{
public:
    /// The graph on the connected set @p rest, with bags of at most @p mostInBag vertices.
    Decomposition(const SmallGraph &given, VertexSet rest, int mostInBag)
        : graph(given)
        , all(rest)
        , largestBag(mostInBag)
    {
    }

    bool exists()
    {
        for (const int v : VerticesOf(all)) {
            tryBag(graph.rows[v] | SmallGraph::bit(v));
        }
        // Sets are found while others are combined.
        for (size_t next = 0; next < found.size() && !isComplete; ++next) {
            combine(found[next]);
        }
        return isComplete;
    }

private:
    /// A union of feasible sets that are not adjacent to each other.
    struct Union {
        VertexSet inside;
        VertexSet around;
    };

    /// Adds the feasible @p set to every union that stands beside it.
    void combine(VertexSet set)
    {
        const VertexSet around = neighbours(graph, set);
        for (const int v : VerticesOf(all & ~set)) {
            const VertexSet bag = graph.rows[v] | SmallGraph::bit(v);
            if ((around & ~bag) == 0) {
                tryBag(bag);
            }
        }
        const size_t others = unions.size();
        extend({set, around});
        for (size_t i = 0; i < others && !isComplete; ++i) {
            const Union other = unions[i];
            if ((other.inside & (set | around)) == 0 && vertexCount(other.around | around) <= largestBag) {
                extend({other.inside | set, other.around | around});
            }
        }
    }

    void extend(const Union &sets)
    {
        unions.push_back(sets);
        for (const int v : VerticesOf(sets.around)) {
            tryBag(sets.around | (graph.rows[v] & ~sets.inside));
        }
    }

    /// Keeps what is feasible with @p bag at its top.
    void tryBag(VertexSet bag)
    {
        if (vertexCount(bag) > largestBag) {
            return;
        }
        VertexSet missing = 0; // the components that are not known to be feasible
        std::vector<VertexSet> components;
        for (VertexSet others = all & ~bag; others != 0; others &= ~components.back()) {
            components.push_back(reachable(graph, SmallGraph::bit(firstVertex(others)), others));
            if (feasible.count(components.back()) == 0) {
                missing |= components.back();
            }
        }
        if (missing == 0) {
            isComplete = true;
            return;
        }
        for (const VertexSet above : components) {
            const VertexSet border = neighbours(graph, above);
            const VertexSet own = bag & ~border;
            if (own == 0) {
                continue;
            }
            const VertexSet below = reachable(graph, SmallGraph::bit(firstVertex(own)), all & ~border);
            if ((own & ~below) == 0 && (below & missing) == 0 && feasible.insert(below).second) {
                found.push_back(below);
            }
        }
    }

    const SmallGraph &graph;
    const VertexSet all;
    const int largestBag;
    bool isComplete = false;
    std::unordered_set<VertexSet> feasible;
    std::vector<VertexSet> found; // the same in the order of their finding
    std::vector<Union> unions;
};

/// Whether the width @p width is enough for every component of @p remainder.
bool hasDecompositions(const Remainder &remainder, int width)
{
    VertexSet component = 0;
    for (VertexSet rest = remainder.rest; rest != 0; rest &= ~component) {
        component = reachable(remainder.graph, SmallGraph::bit(firstVertex(rest)), rest);
        if (!Decomposition(remainder.graph, component, width + 1).exists()) {
            return false;
        }
    }
    return true;
}
} // namespace

int treewidth(const SmallGraph &graph)
{
    const Remainder whole{graph, allVertices(graph.order)};
    for (int width = lowerBound(whole);; ++width) {
        Remainder remainder = whole;
        eliminateForced(remainder, width);
        if (hasDecompositions(remainder, width)) {
            return width;
        }
    }
}
