// The search for cycles and paths through all vertices: held against trial of all, and graphs where trial takes for
// ever.

#include "hamiltoncycle.h"
#include "support/namedgraphs.h"
#include "support/testfiles.h"

#include <QtTest>

#include <ctime>
#include <vector>

namespace
{
/// All sets of vertices with the ends of the paths that begin at @p start and have exactly these vertices; in both, the
/// vertex v is the bit 1 << v.
std::vector<unsigned> endsOfPathsFrom(int start, const SmallGraph &graph)
{
    std::vector<unsigned> ends(size_t(1) << graph.order);
    ends[1U << start] = 1U << start;
    for (unsigned set = 0; set < ends.size(); ++set) {
        for (int v = 0; v < graph.order; ++v) {
            for (int u = 0; u < graph.order; ++u) {
                if ((ends[set] >> v & 1U) != 0 && graph.adjacent(u, v) && (set >> u & 1U) == 0) {
                    ends[set | 1U << u] |= 1U << u;
                }
            }
        }
    }
    return ends;
}

bool hasCycleByTrial(const SmallGraph &graph)
{
    const unsigned ends = endsOfPathsFrom(0, graph).back();
    for (int v = 1; v < graph.order; ++v) {
        if (graph.order > 2 && (ends >> v & 1U) != 0 && graph.adjacent(0, v)) {
            return true;
        }
    }
    return false;
}

bool hasPathByTrial(const SmallGraph &graph)
{
    for (int v = 0; v < graph.order; ++v) {
        if (endsOfPathsFrom(v, graph).back() != 0) {
            return true;
        }
    }
    return false;
}

SmallGraph grid(int rows, int columns)
{
    SmallGraph graph = edgeless(rows * columns);
    for (int v = 0; v < graph.order; ++v) {
        if (v % columns > 0) {
            graph.addEdge(v - 1, v);
        }
        if (v >= columns) {
            graph.addEdge(v - columns, v);
        }
    }
    return graph;
}

/// The generalised Petersen graph P(n, 2).
SmallGraph generalisedPetersen(int n)
{
    SmallGraph graph = edgeless(2 * n);
    for (int i = 0; i < n; ++i) {
        graph.addEdge(i, (i + 1) % n);
        graph.addEdge(i, i + n);
        graph.addEdge(i + n, (i + 2) % n + n);
    }
    return graph;
}

/// Complete graphs on @p size vertices, each of them adjacent to the same two.
SmallGraph completeOnesAroundTwo(int count, int size)
{
    SmallGraph graph = edgeless(2 + count * size);
    for (int v = 2; v < graph.order; ++v) {
        graph.addEdge(0, v);
        graph.addEdge(1, v);
        for (int u = 2; u < v; ++u) {
            if ((u - 2) / size == (v - 2) / size) {
                graph.addEdge(u, v);
            }
        }
    }
    return graph;
}

/// The triples of seven points that are no line of the projective plane; adjacent are disjoint ones.
SmallGraph coxeter()
{
    std::vector<unsigned> triples;
    for (unsigned set = 0; set < 128; ++set) {
        bool isLine = false;
        for (unsigned i = 0; i < 7; ++i) {
            isLine = isLine || set == (1U << i | 1U << (i + 1) % 7 | 1U << (i + 3) % 7);
        }
        if (qPopulationCount(set) == 3 && !isLine) {
            triples.push_back(set);
        }
    }
    SmallGraph graph = edgeless(int(triples.size()));
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if ((triples[u] & triples[v]) == 0) {
                graph.addEdge(u, v);
            }
        }
    }
    return graph;
}
} // namespace

class TestHamiltonCycle : public QObject
{
    Q_OBJECT

private slots:
    void againstTrial();
    void namedGraphs_data();
    void namedGraphs();
};

/// All graphs on up to seven vertices.
void TestHamiltonCycle::againstTrial()
{
    int count = 0;
    for (const QByteArray &line : contents(QStringLiteral(TAVOLINE_TEST_DATA "/all-7-edge-deleted.tav")).split('\n')) {
        const QByteArray name = line.split('\t').first();
        if (!name.isEmpty()) {
            const SmallGraph graph = decoded(name);
            QVERIFY2(hasHamiltonCycle(graph) == hasCycleByTrial(graph), name.constData());
            QVERIFY2(hasHamiltonPath(graph) == hasPathByTrial(graph), name.constData());
            ++count;
        }
    }
    QCOMPARE(count, 1252);
}

/// W. T. Tutte found the cycles of Coxeter's graph too short ("A non-Hamiltonian graph", 1960), and B. Alspach ("The
/// classification of Hamiltonian generalized Petersen graphs", 1983) which P(n, 2) have one: those with n other than 5
/// modulo 6.
void TestHamiltonCycle::namedGraphs_data()
{
    QTest::addColumn<SmallGraph>("graph");
    QTest::addColumn<bool>("cycle");
    QTest::addColumn<bool>("path");
    QTest::newRow("Coxeter") << coxeter() << false << true;
    QTest::newRow("P(13, 2)") << generalisedPetersen(13) << true << true;
    QTest::newRow("P(17, 2)") << generalisedPetersen(17) << false << true;
    QTest::newRow("P(29, 2)") << generalisedPetersen(29) << false << true;
    QTest::newRow("P(31, 2)") << generalisedPetersen(31) << true << true;
    QTest::newRow("grid, 7 x 7") << grid(7, 7) << false << true;
    QTest::newRow("grid, 7 x 8") << grid(7, 8) << true << true;
    QTest::newRow("path on 62") << path(62) << false << true;
    QTest::newRow("cycle on 62") << cycle(62) << true << true;
    QTest::newRow("complete on 62") << complete(62) << true << true;
    QTest::newRow("complete bipartite, 31 and 31") << completeBipartite(31, 31) << true << true;
    QTest::newRow("complete bipartite, 30 and 31") << completeBipartite(30, 31) << false << true;
    QTest::newRow("complete bipartite, 30 and 32") << completeBipartite(30, 32) << false << false;
    QTest::newRow("two complete ones around two") << completeOnesAroundTwo(2, 30) << true << true;
    QTest::newRow("three complete ones around two") << completeOnesAroundTwo(3, 20) << false << true;
    QTest::newRow("four complete ones around two") << completeOnesAroundTwo(4, 15) << false << false;
    QTest::newRow("without edges") << edgeless(62) << false << false;
}

void TestHamiltonCycle::namedGraphs()
{
    QFETCH(SmallGraph, graph);
    const std::clock_t start = std::clock(); // of the process: what else the machine does counts for nothing
    QTEST(hasHamiltonCycle(graph), "cycle");
    QTEST(hasHamiltonPath(graph), "path");
    QVERIFY(std::clock() - start < 10 * CLOCKS_PER_SEC);
}

QTEST_APPLESS_MAIN(TestHamiltonCycle)
#include "tst_hamiltoncycle.moc"
