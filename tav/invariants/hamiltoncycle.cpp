#include "hamiltoncycle.h"

#include "vertexset.h"

#include <algorithm>
#include <array>

namespace
{
/// A path through all vertices of a SmallGraph is a cycle through one vertex more.
constexpr int maxVertices = SmallGraph::maxOrder + 1;
using VertexSets = std::array<VertexSet, maxVertices>;

/// Hands every vertex as many neighbours as it needs, and every vertex to as many neighbours: where there is a cycle,
/// to each the next and the last one of the cycle. A flow, found with augmenting paths (L. R. Ford and D. R. Fulkerson,
/// "Maximal flow through a network", 1956).
class Handout
{
public:
    Handout(const VertexSets &givenNeighbours, const std::array<int, maxVertices> &givenNeeds)
        : neighbours(givenNeighbours)
        , needs(givenNeeds)
    {
    }

    /// Hands one more neighbour to @p v, if there is a way.
    bool handTo(int v)
    {
        untried = allVertices(maxVertices);
        return handUntriedTo(v);
    }

private:
    bool handUntriedTo(int v)
    {
        for (VertexSet rest = candidates(v); rest != 0; rest = candidates(v)) {
            const int u = firstVertex(rest);
            untried &= ~SmallGraph::bit(u);
            if (takeBack(u)) {
                owners[u] |= SmallGraph::bit(v);
                owned[v] |= SmallGraph::bit(u);
                return true;
            }
        }
        return false;
    }

    /// Whether @p u can have one more owner, if need be in the place of one who is handed another vertex.
    bool takeBack(int u)
    {
        if (vertexCount(owners[u]) < needs[u]) {
            return true;
        }
        for (const int v : VerticesOf(owners[u])) {
            if (handUntriedTo(v)) {
                owners[u] &= ~SmallGraph::bit(v);
                owned[v] &= ~SmallGraph::bit(u);
                return true;
            }
        }
        return false;
    }

    VertexSet candidates(int v) const { return neighbours[v] & ~owned[v] & untried; }

    const VertexSets &neighbours;
    const std::array<int, maxVertices> &needs;
    VertexSet untried = 0;
    VertexSets owned{};
    VertexSets owners{};
};

/// Disjoint paths that a cycle through all vertices is to contain, and the edges that it may contain besides. A vertex
/// by itself is a path, too. The inner vertices of paths are done with; the others are open.
class PartialCycle
{
public:
    explicit PartialCycle(int order) : open(allVertices(order))
    {
        for (int v = 0; v < order; ++v) {
            otherEnds[v] = v;
        }
    }

    void allow(int u, int v)
    {
        allowed[u] |= SmallGraph::bit(v);
        allowed[v] |= SmallGraph::bit(u);
    }

    bool canBeCompleted();

private:
    enum class Outcome { Complete, Impossible, Undecided };

    void exclude(int u, int v)
    {
        allowed[u] &= ~SmallGraph::bit(v);
        allowed[v] &= ~SmallGraph::bit(u);
    }

    bool isSingle(int v) const { return otherEnds[v] == v; }
    int edgesNeeded(int v) const { return isSingle(v) ? 2 : 1; }
    VertexSet endsOfPath(int v) const { return SmallGraph::bit(v) | SmallGraph::bit(otherEnds[v]); }
    Outcome joinWhatIsForced();
    void join(int u, int v);
    void close(int v);
    void excludeAlike(int u, int v);
    bool hangsTogetherWithout(VertexSet path) const;
    bool isBiconnected() const;
    bool hasEdgesForAll() const;
    int fewestEdges(VertexSet vertices) const;
    int nextEnd() const;

    VertexSet open;
    VertexSets allowed{};                     // by open vertex: the other ends of its edges
    std::array<int, maxVertices> otherEnds{}; // by open vertex: the other end of its path
};

/// What is true of all cycles is looked at when the first try has failed: most graphs need no second one.
bool PartialCycle::canBeCompleted()
{
    for (bool isFirst = true;; isFirst = false) {
        const Outcome outcome = joinWhatIsForced();
        if (outcome != Outcome::Undecided) {
            return outcome == Outcome::Complete;
        }
        if (!isFirst && (!isBiconnected() || !hasEdgesForAll())) {
            return false;
        }
        const int u = nextEnd();
        const int v = fewestEdges(allowed[u]);
        PartialCycle longer = *this;
        longer.join(u, v);
        if (longer.canBeCompleted()) {
            return true;
        }
        excludeAlike(u, v);
    }
}

/// When two vertices are left, they are the ends of
/// one path.
PartialCycle::Outcome PartialCycle::joinWhatIsForced()
{
    for (bool changed = true; changed;) {
        changed = false;
        for (VertexSet rest = open; rest != 0; rest &= open) {
            const int v = firstVertex(rest);
            rest &= ~SmallGraph::bit(v);
            const int edges = vertexCount(allowed[v]);
            if (edges < edgesNeeded(v)) {
                return Outcome::Impossible;
            }
            if (edges == edgesNeeded(v) && vertexCount(open) > 2) {
                join(v, firstVertex(allowed[v]));
                changed = true;
            }
        }
    }
    return vertexCount(open) == 2 ? Outcome::Complete : Outcome::Undecided;
}

/// Makes one path of two by the edge uv. Its ends may be joined only when it has all vertices.
void PartialCycle::join(int u, int v)
{
    const int first = otherEnds[u];
    const int last = otherEnds[v];
    exclude(u, v);
    if (first != u) {
        close(u);
    }
    if (last != v) {
        close(v);
    }
    otherEnds[first] = last;
    otherEnds[last] = first;
    if (vertexCount(open) > 2) {
        exclude(first, last);
    }
}

void PartialCycle::close(int v)
{
    for (const int u : VerticesOf(allowed[v])) {
        exclude(u, v);
    }
    open &= ~SmallGraph::bit(v);
}

/// Excludes the edge uv, which no cycle contains, and those from u to the vertices that could change places with v.
void PartialCycle::excludeAlike(int u, int v)
{
    const auto isAlike = [&](int w) {
        return isSingle(v) && isSingle(w) && (allowed[v] & ~SmallGraph::bit(w)) == (allowed[w] & ~SmallGraph::bit(v));
    };
    VertexSet alike = SmallGraph::bit(v);
    for (const int w : VerticesOf(allowed[u])) {
        alike |= isAlike(w) ? SmallGraph::bit(w) : 0;
    }
    for (const int w : VerticesOf(alike)) {
        exclude(u, w);
    }
}

/// Whether the paths but the one whose ends are @p path are connected by edges.
bool PartialCycle::hangsTogetherWithout(VertexSet path) const
{
    const VertexSet others = open & ~path;
    VertexSet reached = SmallGraph::bit(firstVertex(others));
    for (VertexSet fresh = reached; fresh != 0;) {
        VertexSet around = 0;
        for (const int v : VerticesOf(fresh)) {
            around |= allowed[v] | endsOfPath(v);
        }
        fresh = around & others & ~reached;
        reached |= fresh;
    }
    return reached == others;
}

/// A cycle hangs together without any of its paths.
bool PartialCycle::isBiconnected() const
{
    for (VertexSet rest = open; rest != 0;) {
        const VertexSet path = endsOfPath(firstVertex(rest));
        if (!hangsTogetherWithout(path)) {
            return false;
        }
        rest &= ~path;
    }
    return true;
}

/// Whether every vertex can have as many edges as it needs, when half an edge counts, too.
bool PartialCycle::hasEdgesForAll() const
{
    std::array<int, maxVertices> needs{};
    for (const int v : VerticesOf(open)) {
        needs[v] = edgesNeeded(v);
    }
    Handout handout(allowed, needs);
    for (const int v : VerticesOf(open)) {
        for (int i = 0; i < needs[v]; ++i) {
            if (!handout.handTo(v)) {
                return false;
            }
        }
    }
    return true;
}

int PartialCycle::fewestEdges(VertexSet vertices) const
{
    int best = -1;
    for (const int v : VerticesOf(vertices)) {
        if (best < 0 || vertexCount(allowed[v]) < vertexCount(allowed[best])) {
            best = v;
        }
    }
    return best;
}

/// The end of a path of two or more vertices, if there is one, with the fewest edges.
int PartialCycle::nextEnd() const
{
    VertexSet ends = 0;
    for (const int v : VerticesOf(open)) {
        ends |= isSingle(v) ? 0 : SmallGraph::bit(v);
    }
    return fewestEdges(ends != 0 ? ends : open);
}

PartialCycle withoutPaths(const SmallGraph &graph, int order)
{
    PartialCycle cycle(order);
    for (int v = 1; v < graph.order; ++v) {
        for (const int u : VerticesOf(graph.rows[v] & allVertices(v))) {
            cycle.allow(u, v);
        }
    }
    return cycle;
}
} // namespace

bool hasHamiltonCycle(const SmallGraph &graph)
{
    return graph.order > 2 && withoutPaths(graph, graph.order).canBeCompleted();
}

bool hasHamiltonPath(const SmallGraph &graph)
{
    if (graph.order < 2) {
        return graph.order == 1;
    }
    PartialCycle cycle = withoutPaths(graph, graph.order + 1);
    for (int v = 0; v < graph.order; ++v) {
        cycle.allow(v, graph.order);
    }
    return cycle.canBeCompleted();
}
