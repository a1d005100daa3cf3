#include "treewidth.h"

#include "vertexset.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
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

/// The search for an elimination order of a given width from its end: of the vertices of a connected set, the one that
/// is eliminated last has then all neighbours of the set for its own, and the components of the others are independent
/// of each other (S. Arnborg, D. G. Corneil and A. Proskurowski, "Complexity of finding embeddings in a k-tree", 1987).
class Elimination
{
public:
    Elimination(const SmallGraph &given, int mostNeighbours) : graph(given), width(mostNeighbours) {}

    /// Whether the width is enough for every component of @p set.
    bool succeeds(VertexSet set)
    {
        while (set != 0) {
            const VertexSet component = reachable(graph, SmallGraph::bit(firstVertex(set)), set);
            if (!succeedsIn(component)) {
                return false;
            }
            set &= ~component;
        }
        return true;
    }

private:
    bool succeedsIn(VertexSet component)
    {
        const VertexSet around = neighbours(component);
        if (vertexCount(around) > width) {
            return false;
        }
        if (vertexCount(around | component) <= width + 1) {
            return true;
        }
        const auto known = results.find(component);
        if (known != results.end()) {
            return known->second;
        }
        const bool result = search(component, around);
        constexpr size_t mostKept = 1 << 20; // about 50 MB
        if (results.size() < mostKept) {
            results[component] = result;
        }
        return result;
    }

    bool search(VertexSet component, VertexSet around)
    {
        for (const int u : VerticesOf(around)) {
            const VertexSet inside = graph.rows[u] & component;
            if (vertexCount(inside) == 1) { // takes the place of u without harm
                return succeeds(component & ~inside);
            }
        }
        if (lowerBound(withClique(component, around)) > width) {
            return false;
        }
        std::vector<std::pair<int, int>> candidates; // with the number of vertices around what they leave
        for (const int v : VerticesOf(component)) {
            candidates.emplace_back(vertexCount(neighbours(component & ~SmallGraph::bit(v))), v);
        }
        std::sort(candidates.begin(), candidates.end());
        return std::any_of(candidates.begin(), candidates.end(), [&](const std::pair<int, int> &candidate) {
            return succeeds(component & ~SmallGraph::bit(candidate.second));
        });
    }

    VertexSet neighbours(VertexSet set) const
    {
        VertexSet all = 0;
        for (const int v : VerticesOf(set)) {
            all |= graph.rows[v];
        }
        return all & ~set;
    }

    /// The graph on both sets, with all edges between vertices of @p around.
    Remainder withClique(VertexSet component, VertexSet around) const
    {
        Remainder result;
        result.rest = component | around;
        result.graph.order = graph.order;
        for (const int v : VerticesOf(component)) {
            result.graph.rows[v] = graph.rows[v];
        }
        for (const int v : VerticesOf(around)) {
            result.graph.rows[v] = ((graph.rows[v] & component) | around) & ~SmallGraph::bit(v);
        }
        return result;
    }

    const SmallGraph &graph;
    const int width;
    std::unordered_map<VertexSet, bool> results;
};
} // namespace

int treewidth(const SmallGraph &graph)
{
    const Remainder whole{graph, allVertices(graph.order)};
    for (int width = lowerBound(whole);; ++width) {
        Remainder remainder = whole;
        eliminateForced(remainder, width);
        if (Elimination(remainder.graph, width).succeeds(remainder.rest)) {
            return width;
        }
    }
}
