// The invariants of sets of vertices and edges: values known for graphs that have a name, and the literal definition
// for all graphs on up to six or seven vertices.

#include "support/namedgraphs.h"
#include "vertexset.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace
{
/// A set of vertices: v is bit v.
using Subset = unsigned;

bool contains(Subset set, int v)
{
    return (set >> v & 1U) != 0;
}

int sizeOf(Subset set)
{
    return int(std::bitset<32>(set).count());
}

/// The size of a smallest set of vertices for which @p holds is true; -1 when there is none.
int smallestSet(int order, const std::function<bool(Subset)> &holds)
{
    int smallest = -1;
    for (Subset set = 0; set < 1U << order; ++set) {
        if ((smallest < 0 || sizeOf(set) < smallest) && holds(set)) {
            smallest = sizeOf(set);
        }
    }
    return smallest;
}

bool coversEdges(const SmallGraph &graph, Subset set)
{
    for (int u = 0; u < graph.order; ++u) {
        for (int v = 0; v < u; ++v) {
            if (graph.adjacent(u, v) && !contains(set, u) && !contains(set, v)) {
                return false;
            }
        }
    }
    return true;
}

/// Whether the vertices outside @p removed are in several components, or there is one of them.
bool separates(const SmallGraph &graph, Subset removed)
{
    SmallGraph rest = graph;
    for (int v = graph.order - 1; v >= 0; --v) {
        if (contains(removed, v)) {
            rest = rest.withoutVertex(v);
        }
    }
    return rest.order == 1 || (rest.order > 1 && !rest.isConnected());
}

int fewestEdgesAcross(const SmallGraph &graph)
{
    int fewest = graph.order < 2 ? 0 : graph.size();
    for (Subset side = 1; side + 1 < 1U << graph.order; ++side) {
        int across = 0;
        for (int u = 0; u < graph.order; ++u) {
            for (int v = 0; v < u; ++v) {
                across += graph.adjacent(u, v) && contains(side, u) != contains(side, v) ? 1 : 0;
            }
        }
        fewest = std::min(fewest, across);
    }
    return fewest;
}

bool dominates(const SmallGraph &graph, Subset set, bool isTotal)
{
    for (int v = 0; v < graph.order; ++v) {
        bool isDominated = !isTotal && contains(set, v);
        for (int u = 0; u < graph.order; ++u) {
            isDominated = isDominated || (contains(set, u) && graph.adjacent(u, v));
        }
        if (!isDominated) {
            return false;
        }
    }
    return true;
}

/// Whether the vertices outside @p removed are a forest: nothing is left when those with less than two neighbours go.
bool isForest(const SmallGraph &graph, Subset removed)
{
    for (int v = 0; v < graph.order; ++v) {
        int neighbours = 0;
        for (int u = 0; u < graph.order; ++u) {
            neighbours += !contains(removed, u) && graph.adjacent(u, v) ? 1 : 0;
        }
        if (!contains(removed, v) && neighbours < 2) {
            return isForest(graph, removed | 1U << v);
        }
    }
    return sizeOf(removed) == graph.order;
}

using Edges = std::vector<std::pair<int, int>>;

/// Whether the edges from @p next on can have colours below @p colours, when those before have @p given.
bool canColour(const Edges &edges, std::vector<int> &given, int colours)
{
    const size_t next = given.size();
    if (next == edges.size()) {
        return true;
    }
    for (int colour = 0; colour < colours; ++colour) {
        bool isFree = true;
        for (size_t i = 0; i < next; ++i) {
            const bool meet = edges[i].first == edges[next].first || edges[i].first == edges[next].second ||
                              edges[i].second == edges[next].first || edges[i].second == edges[next].second;
            isFree = isFree && !(meet && given[i] == colour);
        }
        if (isFree) {
            given.push_back(colour);
            const bool isDone = canColour(edges, given, colours);
            given.pop_back();
            if (isDone) {
                return true;
            }
        }
    }
    return false;
}

int fewestEdgeColours(const SmallGraph &graph)
{
    Edges edges;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (graph.adjacent(u, v)) {
                edges.emplace_back(u, v);
            }
        }
    }
    for (int colours = 0;; ++colours) {
        std::vector<int> none;
        if (canColour(edges, none, colours)) {
            return colours;
        }
    }
}

/// The smallest width of an order of elimination, with the vertices of @p eliminated before all others.
int eliminationWidth(SmallGraph graph, Subset eliminated)
{
    int smallest = graph.order - sizeOf(eliminated) - 1;
    for (int v = 0; v < graph.order; ++v) {
        if (contains(eliminated, v)) {
            continue;
        }
        SmallGraph next = graph;
        int neighbours = 0;
        for (int u = 0; u < graph.order; ++u) {
            neighbours += graph.adjacent(u, v) ? 1 : 0;
            for (int w = 0; w < u; ++w) {
                if (graph.adjacent(u, v) && graph.adjacent(w, v)) {
                    next.addEdge(u, w);
                }
            }
        }
        for (int u = 0; u < graph.order; ++u) {
            next.removeEdge(u, v);
        }
        if (neighbours < smallest) {
            smallest = std::min(smallest, std::max(neighbours, eliminationWidth(next, eliminated | 1U << v)));
        }
    }
    return smallest;
}

SmallGraph grid(int columns, int rows)
{
    SmallGraph graph = edgeless(columns * rows);
    for (int v = 0; v < graph.order; ++v) {
        if (v % columns != columns - 1) {
            graph.addEdge(v, v + 1);
        }
        if (v + columns < graph.order) {
            graph.addEdge(v, v + columns);
        }
    }
    return graph;
}

/// Two cycles of the given length, and the edges between their vertices of the same number.
SmallGraph prism(int length)
{
    SmallGraph graph = edgeless(2 * length);
    for (int i = 0; i < length; ++i) {
        graph.addEdge(i, (i + 1) % length);
        graph.addEdge(length + i, length + (i + 1) % length);
        graph.addEdge(i, length + i);
    }
    return graph;
}

/// The snark on four times @p petals vertices: a star of three for each petal, whose first leaves are in a cycle and
/// whose others are in a cycle of twice the length. @p petals must be odd.
SmallGraph flowerSnark(int petals)
{
    SmallGraph graph = edgeless(4 * petals);
    for (int i = 0; i < petals; ++i) {
        const int centre = 4 * i;
        const int next = 4 * ((i + 1) % petals);
        const bool isTwisted = next == 0;
        for (int leaf = 1; leaf <= 3; ++leaf) {
            graph.addEdge(centre, centre + leaf);
        }
        graph.addEdge(centre + 1, next + 1);
        graph.addEdge(centre + 2, next + (isTwisted ? 3 : 2));
        graph.addEdge(centre + 3, next + (isTwisted ? 2 : 3));
    }
    return graph;
}

} // namespace

class TestInvariantsSubsets : public QObject
{
    Q_OBJECT

private slots:
    void values_data()
    {
        QTest::addColumn<SmallGraph>("graph");
        QTest::addColumn<QByteArray>("invariant");
        QTest::addColumn<QByteArray>("expected");
        addKnown("no vertex", edgeless(0),
                 {{"vertex-cover-number", "0"},
                  {"edge-cover-number", "0"},
                  {"degeneracy", "NA"},
                  {"domination-number", "0"},
                  {"total-domination-number", "0"},
                  {"feedback-vertex-set-number", "0"},
                  {"chromatic-index", "0"},
                  {"treewidth", "NA"}});
        addKnown("one vertex", edgeless(1),
                 {{"vertex-cover-number", "0"},
                  {"edge-cover-number", "NA"},
                  {"degeneracy", "0"},
                  {"domination-number", "1"},
                  {"total-domination-number", "NA"},
                  {"feedback-vertex-set-number", "0"},
                  {"chromatic-index", "0"},
                  {"treewidth", "0"}});
        addKnown("three vertices without edges", edgeless(3),
                 {{"vertex-cover-number", "0"},
                  {"edge-cover-number", "NA"},
                  {"degeneracy", "0"},
                  {"domination-number", "3"},
                  {"total-domination-number", "NA"},
                  {"feedback-vertex-set-number", "0"},
                  {"chromatic-index", "0"},
                  {"treewidth", "0"}});
        addKnown("Petersen", petersen(),
                 {{"vertex-cover-number", "6"},
                  {"edge-cover-number", "5"},
                  {"degeneracy", "3"},
                  {"domination-number", "3"},
                  {"total-domination-number", "4"},
                  {"feedback-vertex-set-number", "3"},
                  {"chromatic-index", "4"},
                  {"treewidth", "4"}});
        addKnown("Heawood", heawood(),
                 {{"vertex-cover-number", "7"},
                  {"edge-cover-number", "7"},
                  {"degeneracy", "3"},
                  {"vertex-connectivity", "3"},
                  {"edge-connectivity", "3"},
                  {"domination-number", "4"},
                  {"total-domination-number", "6"},
                  {"feedback-vertex-set-number", "4"},
                  {"chromatic-index", "3"},
                  {"treewidth", "5"}});
        addKnown("K3,3", completeBipartite(3, 3),
                 {{"vertex-cover-number", "3"},
                  {"edge-cover-number", "3"},
                  {"degeneracy", "3"},
                  {"domination-number", "2"},
                  {"total-domination-number", "2"},
                  {"feedback-vertex-set-number", "2"},
                  {"chromatic-index", "3"},
                  {"treewidth", "3"}});
        addKnown("K2,4", completeBipartite(2, 4),
                 {{"vertex-cover-number", "2"},
                  {"edge-cover-number", "4"},
                  {"degeneracy", "2"},
                  {"domination-number", "2"},
                  {"total-domination-number", "2"},
                  {"feedback-vertex-set-number", "1"},
                  {"chromatic-index", "4"},
                  {"treewidth", "2"}});
        addKnown("K1,5", completeBipartite(1, 5),
                 {{"vertex-cover-number", "1"},
                  {"edge-cover-number", "5"},
                  {"degeneracy", "1"},
                  {"domination-number", "1"},
                  {"total-domination-number", "2"},
                  {"feedback-vertex-set-number", "0"},
                  {"chromatic-index", "5"},
                  {"treewidth", "1"}});
        addKnown("K5", complete(5),
                 {{"vertex-cover-number", "4"},
                  {"edge-cover-number", "3"},
                  {"degeneracy", "4"},
                  {"domination-number", "1"},
                  {"total-domination-number", "2"},
                  {"feedback-vertex-set-number", "3"},
                  {"chromatic-index", "5"},
                  {"treewidth", "4"}});
        addKnown("K6", complete(6),
                 {{"vertex-cover-number", "5"},
                  {"edge-cover-number", "3"},
                  {"degeneracy", "5"},
                  {"domination-number", "1"},
                  {"total-domination-number", "2"},
                  {"feedback-vertex-set-number", "4"},
                  {"chromatic-index", "5"},
                  {"treewidth", "5"}});
        addKnown("C7", cycle(7),
                 {{"vertex-cover-number", "4"},
                  {"edge-cover-number", "4"},
                  {"degeneracy", "2"},
                  {"domination-number", "3"},
                  {"total-domination-number", "4"},
                  {"feedback-vertex-set-number", "1"},
                  {"chromatic-index", "3"},
                  {"treewidth", "2"}});
        addKnown("P5", path(5),
                 {{"vertex-cover-number", "2"},
                  {"edge-cover-number", "3"},
                  {"degeneracy", "1"},
                  {"domination-number", "2"},
                  {"total-domination-number", "3"},
                  {"feedback-vertex-set-number", "0"},
                  {"chromatic-index", "2"},
                  {"treewidth", "1"}});
        addKnown("Q4", hypercube(4),
                 {{"vertex-cover-number", "8"},
                  {"edge-cover-number", "8"},
                  {"degeneracy", "4"},
                  {"vertex-connectivity", "4"},
                  {"edge-connectivity", "4"},
                  {"domination-number", "4"},
                  {"total-domination-number", "4"},
                  {"feedback-vertex-set-number", "6"},
                  {"chromatic-index", "4"},
                  {"treewidth", "6"}});
        addKnown("Q3", hypercube(3),
                 {{"domination-number", "2"},
                  {"total-domination-number", "4"},
                  {"feedback-vertex-set-number", "3"},
                  {"chromatic-index", "3"},
                  {"treewidth", "3"}});
        // L. W. Beineke and R. C. Vandell, "Decycling graphs", 1997
        addKnown("Q5", hypercube(5),
                 {{"domination-number", "7"}, {"feedback-vertex-set-number", "14"}, {"chromatic-index", "5"}});
        addKnown("K61", complete(61), {{"chromatic-index", "61"}, {"treewidth", "60"}});
        addKnown("K62", complete(62),
                 {{"chromatic-index", "61"}, {"treewidth", "61"}, {"feedback-vertex-set-number", "60"}});
        addKnown("C62", cycle(62),
                 {{"domination-number", "21"}, {"total-domination-number", "32"}, {"treewidth", "2"}});
        // The treewidth of a square grid is the length of its side.
        addKnown("grid of 7 by 7", grid(7, 7), {{"treewidth", "7"}});
        addKnown("prism over C31", prism(31), {{"treewidth", "4"}});
        // R. Isaacs, "Infinite families of nontrivial trivalent graphs which are not Tait colorable", 1975
        addKnown("flower of 20", flowerSnark(5), {{"chromatic-index", "4"}});
        addKnown("flower of 36", flowerSnark(9), {{"chromatic-index", "4"}});
        addKnown("two triangles with a common vertex", decoded("D{c"),
                 {{"vertex-connectivity", "1"}, {"edge-connectivity", "2"}, {"degeneracy", "2"}});
    }

    void values()
    {
        QFETCH(SmallGraph, graph);
        QFETCH(QByteArray, invariant);
        QFETCH(QByteArray, expected);
        QCOMPARE(textOf(invariant.constData(), graph), expected);
    }

    void definitions()
    {
        const QList<QByteArray> names = namesUpToSeven();
        QCOMPARE(names.size(), 1252);
        for (const QByteArray &name : names) {
            const SmallGraph graph = decoded(name);
            const auto smallest = [&](const std::function<bool(Subset)> &holds) {
                return smallestSet(graph.order, holds);
            };
            const std::initializer_list<std::pair<const char *, int>> expected = {
                {"vertex-cover-number", smallest([&](Subset set) { return coversEdges(graph, set); })},
                {"vertex-connectivity", smallest([&](Subset set) { return separates(graph, set); })},
                {"edge-connectivity", fewestEdgesAcross(graph)},
                {"domination-number", smallest([&](Subset set) { return dominates(graph, set, false); })},
                {"total-domination-number", smallest([&](Subset set) { return dominates(graph, set, true); })},
                {"feedback-vertex-set-number", smallest([&](Subset set) { return isForest(graph, set); })},
            };
            for (const auto &[invariant, value] : expected) {
                QVERIFY2(valueOf(invariant, graph).value_or(-1) == value, (name + ' ' + invariant).constData());
            }
        }
    }

    void definitionsUpToSix()
    {
        for (const QByteArray &name : namesUpToSeven()) {
            const SmallGraph graph = decoded(name);
            if (graph.order < 7) {
                QVERIFY2(valueOf("chromatic-index", graph) == fewestEdgeColours(graph), name.constData());
                QVERIFY2(valueOf("treewidth", graph) == eliminationWidth(graph, 0), name.constData());
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestInvariantsSubsets)
#include "tst_invariants_subsets.moc"
