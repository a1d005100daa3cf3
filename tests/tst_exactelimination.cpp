// Determinants and ranks of adjacency matrices, beyond what a double can hold while they are computed.

#include "exactelimination.h"
#include "support/namedgraphs.h"
#include "support/testfiles.h"

#include <QtTest>

#include <cmath>
#include <numeric>
#include <vector>

namespace
{
/// Adds up the products over all permutations of @p vertices from the position @p row on.
int determinantByDefinition(const SmallGraph &graph, std::vector<int> &vertices, int row)
{
    if (row == graph.order) {
        return 1;
    }
    int sum = 0;
    for (int i = row; i < graph.order; ++i) {
        if (graph.adjacent(row, vertices[i])) {
            std::swap(vertices[row], vertices[i]);
            sum += (i == row ? 1 : -1) * determinantByDefinition(graph, vertices, row + 1);
            std::swap(vertices[row], vertices[i]);
        }
    }
    return sum;
}

/// The nonzero vectors of five bits on either side; adjacent are those whose product is 1. By the rows of the matrix
/// between the sides, which with ones in front are a Hadamard matrix of order 32, its determinant is 2^49 or -2^49.
SmallGraph pointsAndHyperplanes()
{
    SmallGraph graph = edgeless(62);
    for (unsigned x = 1; x < 32; ++x) {
        for (unsigned y = 1; y < 32; ++y) {
            if (qPopulationCount(x & y) % 2 == 1) {
                graph.addEdge(int(x) - 1, int(y) + 30);
            }
        }
    }
    return graph;
}
} // namespace

class TestExactElimination : public QObject
{
    Q_OBJECT

private slots:
    /// All graphs on up to seven vertices.
    void determinantsByDefinition()
    {
        int count = 0;
        const QByteArray database = contents(QStringLiteral(TAVOLINE_TEST_DATA "/all-7-edge-deleted.tav"));
        for (const QByteArray &line : database.split('\n')) {
            const QByteArray name = line.split('\t').first();
            if (!name.isEmpty()) {
                const SmallGraph graph = decoded(name);
                std::vector<int> vertices(graph.order);
                std::iota(vertices.begin(), vertices.end(), 0);
                const double expected = determinantByDefinition(graph, vertices, 0);
                QVERIFY2(exactDeterminant(graph) == expected, name.constData());
                QVERIFY2((exactRank(graph, 0) == graph.order) == (expected != 0.0), name.constData());
                ++count;
            }
        }
        QCOMPARE(count, 1252);
    }

    /// The square of the determinant between the sides, and the sign of 31 swaps of rows.
    void largestDeterminant()
    {
        QVERIFY(exactDeterminant(pointsAndHyperplanes()) == -std::ldexp(1.0, 98));
        QCOMPARE(exactRank(pointsAndHyperplanes(), 0), 62);
    }

    /// 3^15 (-1)^15 of the complete graphs on four vertices, -1 of an edge.
    void productOfComponents()
    {
        SmallGraph graph = edgeless(62);
        for (int v = 1; v < 62; ++v) {
            for (int u = v / 4 * 4; u < v; ++u) {
                graph.addEdge(u, v);
            }
        }
        QVERIFY(exactDeterminant(graph) == 14348907.0);
    }

    /// A multiplicity is the order less the rank.
    void multiplicities()
    {
        QCOMPARE(exactRank(petersen(), 3), 9);
        QCOMPARE(exactRank(petersen(), 1), 5);
        QCOMPARE(exactRank(petersen(), -2), 6);
        QCOMPARE(exactRank(petersen(), 2), 10);
        QCOMPARE(exactRank(hypercube(5), -5), 31);
        QCOMPARE(exactRank(hypercube(5), 1), 22);
        QCOMPARE(exactRank(complete(62), 61), 61);
        QCOMPARE(exactRank(complete(62), -1), 1);
        QCOMPARE(exactRank(complete(62), -61), 62);
        QCOMPARE(exactRank(edgeless(0), 0), 0);
    }
};

QTEST_APPLESS_MAIN(TestExactElimination)
#include "tst_exactelimination.moc"
