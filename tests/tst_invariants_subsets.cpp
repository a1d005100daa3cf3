// The invariants of sets of vertices and edges: values known for graphs that have a name, and the literal definition
// for all graphs on up to six vertices.

#include "support/namedgraphs.h"
#include "vertexset.h"

#include <QtTest>

#include <algorithm>
#include <functional>

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

/// Calls @p visit for every graph on up to @p order vertices that is named by its edges.
void forEveryGraph(int order, const std::function<void(const SmallGraph &)> &visit)
{
    for (int n = 1; n <= order; ++n) {
        const int pairs = n * (n - 1) / 2;
        for (unsigned edges = 0; edges < 1U << pairs; ++edges) {
            SmallGraph graph = edgeless(n);
            int pair = 0;
            for (int v = 1; v < n; ++v) {
                for (int u = 0; u < v; ++u, ++pair) {
                    if ((edges >> pair & 1U) != 0) {
                        graph.addEdge(u, v);
                    }
                }
            }
            visit(graph);
        }
    }
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
                 {{"vertex-cover-number", "0"}, {"edge-cover-number", "0"}, {"degeneracy", "NA"}});
        addKnown("one vertex", edgeless(1),
                 {{"vertex-cover-number", "0"}, {"edge-cover-number", "NA"}, {"degeneracy", "0"}});
        addKnown("three vertices without edges", edgeless(3),
                 {{"vertex-cover-number", "0"}, {"edge-cover-number", "NA"}, {"degeneracy", "0"}});
        addKnown("Petersen", petersen(),
                 {{"vertex-cover-number", "6"}, {"edge-cover-number", "5"}, {"degeneracy", "3"}});
        addKnown("Heawood", heawood(),
                 {{"vertex-cover-number", "7"},
                  {"edge-cover-number", "7"},
                  {"degeneracy", "3"},
                  {"vertex-connectivity", "3"},
                  {"edge-connectivity", "3"}});
        addKnown("K3,3", completeBipartite(3, 3),
                 {{"vertex-cover-number", "3"}, {"edge-cover-number", "3"}, {"degeneracy", "3"}});
        addKnown("K2,4", completeBipartite(2, 4),
                 {{"vertex-cover-number", "2"}, {"edge-cover-number", "4"}, {"degeneracy", "2"}});
        addKnown("K1,5", completeBipartite(1, 5),
                 {{"vertex-cover-number", "1"}, {"edge-cover-number", "5"}, {"degeneracy", "1"}});
        addKnown("K5", complete(5), {{"vertex-cover-number", "4"}, {"edge-cover-number", "3"}, {"degeneracy", "4"}});
        addKnown("K6", complete(6), {{"vertex-cover-number", "5"}, {"edge-cover-number", "3"}, {"degeneracy", "5"}});
        addKnown("C7", cycle(7), {{"vertex-cover-number", "4"}, {"edge-cover-number", "4"}, {"degeneracy", "2"}});
        addKnown("P5", path(5), {{"vertex-cover-number", "2"}, {"edge-cover-number", "3"}, {"degeneracy", "1"}});
        addKnown("Q4", hypercube(4),
                 {{"vertex-cover-number", "8"},
                  {"edge-cover-number", "8"},
                  {"degeneracy", "4"},
                  {"vertex-connectivity", "4"},
                  {"edge-connectivity", "4"}});
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
        int graphs = 0;
        forEveryGraph(6, [&](const SmallGraph &graph) {
            ++graphs;
            const auto smallest = [&](const std::function<bool(Subset)> &holds) {
                return smallestSet(graph.order, holds);
            };
            const std::initializer_list<std::pair<const char *, int>> expected = {
                {"vertex-cover-number", smallest([&](Subset set) { return coversEdges(graph, set); })},
                {"vertex-connectivity", smallest([&](Subset set) { return separates(graph, set); })},
                {"edge-connectivity", fewestEdgesAcross(graph)},
            };
            for (const auto &[invariant, value] : expected) {
                if (valueOf(invariant, graph).value_or(-1) != value) {
                    QFAIL(invariant);
                }
            }
        });
        QCOMPARE(graphs, 1 + 2 + 8 + 64 + 1024 + 32768);
    }
};

QTEST_APPLESS_MAIN(TestInvariantsSubsets)
#include "tst_invariants_subsets.moc"
