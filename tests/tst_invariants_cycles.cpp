// The invariants of cycles, paths and spanning trees: values known for graphs that have a name, and the literal
// definition for all graphs on up to seven vertices.

#include "support/namedgraphs.h"

#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace
{
/// What there is in a graph, found by trial of every path.
struct Found {
    int longestPath = 0; // edges
    int longestInducedPath = 0;
    int longestCycle = 0; // 0 when there is none
    int longestInducedCycle = 0;
    int cyclesTwice = 0; // either direction
};

/// The squares of a chessboard; adjacent are those a knight's move apart. Boards with four rows, and such with an odd
/// number of squares, have tours, but no closed ones (A. J. Schwenk, "Which rectangular chessboards have a knight's
/// tour?", 1991).
SmallGraph knightMoves(int rows, int columns)
{
    SmallGraph graph = edgeless(rows * columns);
    for (int v = 0; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            const int down = v / columns - u / columns;
            const int across = std::abs(v % columns - u % columns);
            if (down * across == 2) {
                graph.addEdge(u, v);
            }
        }
    }
    return graph;
}

/// The edges between the vertices of @p path, but for those between consecutive ones.
int chords(const SmallGraph &graph, const std::vector<int> &path)
{
    int count = 0;
    for (size_t i = 0; i < path.size(); ++i) {
        for (size_t j = i + 2; j < path.size(); ++j) {
            count += graph.adjacent(path[i], path[j]) ? 1 : 0;
        }
    }
    return count;
}

void tryAll(const SmallGraph &graph, std::vector<int> &path, Found &found)
{
    const int vertices = int(path.size());
    const int chordCount = chords(graph, path);
    found.longestPath = std::max(found.longestPath, vertices - 1);
    if (chordCount == 0) {
        found.longestInducedPath = std::max(found.longestInducedPath, vertices - 1);
    }
    if (vertices > 2 && graph.adjacent(path.front(), path.back())) {
        found.longestCycle = std::max(found.longestCycle, vertices);
        if (chordCount == 1) {
            found.longestInducedCycle = std::max(found.longestInducedCycle, vertices);
        }
        found.cyclesTwice += path.front() == *std::min_element(path.begin(), path.end()) ? 1 : 0;
    }
    for (int v = 0; v < graph.order; ++v) {
        if (graph.adjacent(path.back(), v) && std::find(path.begin(), path.end(), v) == path.end()) {
            path.push_back(v);
            tryAll(graph, path, found);
            path.pop_back();
        }
    }
}

Found tryAll(const SmallGraph &graph)
{
    Found found;
    for (int v = 0; v < graph.order; ++v) {
        std::vector<int> path{v};
        tryAll(graph, path, found);
    }
    return found;
}

/// The trees among the sets of edges that have one edge less than there are vertices.
int spanningTreesByTrial(const SmallGraph &graph)
{
    std::vector<std::pair<int, int>> edges;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (graph.adjacent(u, v)) {
                edges.emplace_back(u, v);
            }
        }
    }
    int count = 0;
    for (unsigned set = 0; set < 1U << edges.size(); ++set) {
        SmallGraph part = edgeless(graph.order);
        for (size_t i = 0; i < edges.size(); ++i) {
            if ((set >> i & 1U) != 0) {
                part.addEdge(edges[i].first, edges[i].second);
            }
        }
        count += part.size() == graph.order - 1 && part.isConnected() ? 1 : 0;
    }
    return count;
}
} // namespace

class TestInvariantsCycles : public QObject
{
    Q_OBJECT

private slots:
    void values_data()
    {
        QTest::addColumn<SmallGraph>("graph");
        QTest::addColumn<QByteArray>("invariant");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const SmallGraph &graph, const char *circumference,
                            const char *inducedCycle, const char *cycles, const char *path, const char *inducedPath,
                            const char *spanningTrees) {
            addKnown(name, graph,
                     {{"circumference", circumference},
                      {"longest-induced-cycle", inducedCycle},
                      {"cycles", cycles},
                      {"longest-path", path},
                      {"longest-induced-path", inducedPath},
                      {"spanning-trees", spanningTrees}});
        };
        row("no vertex", edgeless(0), "NA", "NA", "0", "NA", "NA", "0");
        row("one vertex", edgeless(1), "NA", "NA", "0", "0", "0", "1");
        row("two vertices without edges", edgeless(2), "NA", "NA", "0", "0", "0", "0");
        row("K2", complete(2), "NA", "NA", "0", "1", "1", "1");
        row("K3", complete(3), "3", "3", "1", "2", "1", "3");
        row("K5", complete(5), "5", "3", "37", "4", "1", "125");
        row("K9", complete(9), "9", "3", "62814", "8", "1", "4782969");
        row("C7", cycle(7), "7", "7", "1", "6", "5", "7");
        row("C62", cycle(62), "62", "62", "1", "61", "60", "62");
        row("P5", path(5), "NA", "NA", "0", "4", "4", "1");
        row("P62", path(62), "NA", "NA", "0", "61", "61", "1");
        row("K3,3", completeBipartite(3, 3), "6", "4", "15", "5", "2", "81");
        row("K2,4", completeBipartite(2, 4), "4", "4", "6", "4", "2", "32");
        row("K1,20", completeBipartite(1, 20), "NA", "NA", "0", "2", "2", "1");
        row("Petersen", petersen(), "9", "6", "57", "9", "4", "2000");
        row("Q3", hypercube(3), "8", "6", "28", "7", "4", "384");
        row("Q4", hypercube(4), "16", "8", "14704", "15", "7", "42467328");
        row("two triangles", decoded("EwCW"), "3", "3", "2", "2", "1", "0");
        addKnown("Heawood", heawood(), {{"circumference", "14"}, {"longest-path", "13"}, {"spanning-trees", "50421"}});
        // The longest snakes and coils in the box, of W. H. Kautz, "Unit-distance error-checking codes", 1958.
        addKnown("Q5", hypercube(5),
                 {{"circumference", "32"},
                  {"longest-path", "31"},
                  {"longest-induced-path", "13"},
                  {"longest-induced-cycle", "14"}});
        addKnown("K9,12", completeBipartite(9, 12), {{"circumference", "18"}, {"longest-path", "18"}});
        addKnown("K20,42", completeBipartite(20, 42), {{"circumference", "40"}, {"longest-path", "40"}});
        addKnown("K31,31", completeBipartite(31, 31), {{"circumference", "62"}, {"longest-path", "61"}});
        addKnown("K62", complete(62), {{"circumference", "62"}, {"longest-path", "61"}});
        addKnown("knight on 4 x 15", knightMoves(4, 15), {{"longest-path", "59"}});
        addKnown("knight on 7 x 7", knightMoves(7, 7), {{"circumference", "48"}, {"longest-path", "48"}});
    }

    void values()
    {
        QFETCH(SmallGraph, graph);
        QFETCH(QByteArray, invariant);
        QFETCH(QByteArray, expected);
        QCOMPARE(textOf(invariant.constData(), graph), expected);
    }

    /// Graphs on more vertices are searched in another way, so that each graph is tried with twelve more, too.
    void definitions()
    {
        for (const QByteArray &name : namesUpToSeven()) {
            const SmallGraph graph = decoded(name);
            SmallGraph larger = graph;
            larger.order += 12;
            const Found found = tryAll(graph);
            const std::initializer_list<std::pair<const char *, int>> expected = {
                {"longest-path", found.longestPath},   {"longest-induced-path", found.longestInducedPath},
                {"circumference", found.longestCycle}, {"longest-induced-cycle", found.longestInducedCycle},
                {"cycles", found.cyclesTwice / 2},
            };
            for (const auto &[invariant, value] : expected) {
                QVERIFY2(valueOf(invariant, graph).value_or(0) == value, (name + ' ' + invariant).constData());
                QVERIFY2(valueOf(invariant, larger).value_or(0) == value,
                         (name + " and more: " + invariant).constData());
            }
            if (graph.order < 7) {
                QVERIFY2(valueOf("spanning-trees", graph) == spanningTreesByTrial(graph), name.constData());
            }
        }
    }

    /// A. Cayley, "A theorem on trees" (1889): n^(n - 2) for the complete graph. 17^15 is beyond 2^53.
    void largeNumbersOfTrees()
    {
        QVERIFY(*valueOf("spanning-trees", complete(14)) == 56693912375296.0); // QCOMPARE rounds
        for (const int n : {17, 40, 62}) {
            const double expected = std::pow(double(n), n - 2);
            QVERIFY(std::abs(*valueOf("spanning-trees", complete(n)) - expected) < 1e-12 * expected);
        }
    }
};

QTEST_APPLESS_MAIN(TestInvariantsCycles)
#include "tst_invariants_cycles.moc"
