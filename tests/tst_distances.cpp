// The distances in a graph, and its diametral pairs.

#include "distances.h"

#include <QtTest>

#include <algorithm>
#include <random>

class TestDistances : public QObject
{
    Q_OBJECT

private slots:
    void smallGraphs_data();
    void smallGraphs();
    void agreeWithShortestPathsOverAllVertices();
    void diametralPairs_data();
    void diametralPairs();
};

namespace
{
constexpr int unreachable = 32;

using Edges = QVector<std::pair<int, int>>;

Distances distancesOf(int n, const Edges &edges)
{
    return distances(n, unreachable, [&edges](int i, int j) {
        return edges.contains({i, j}) || edges.contains({j, i});
    });
}

QString text(const Distances &matrix)
{
    QStringList rows;
    for (const QVector<int> &row : matrix) {
        QStringList entries;
        for (const int entry : row) {
            entries.append(QString::number(entry));
        }
        rows.append(entries.join(QLatin1Char(' ')));
    }
    return rows.join(QLatin1String(" | "));
}
} // namespace

Q_DECLARE_METATYPE(Edges)

void TestDistances::smallGraphs_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Edges>("edges");
    QTest::addColumn<QString>("matrix");
    QTest::addColumn<int>("largest");
    QTest::newRow("no vertex") << 0 << Edges() << QString() << 0;
    QTest::newRow("one vertex") << 1 << Edges() << QStringLiteral("0") << 0;
    QTest::newRow("edge") << 2 << Edges{{1, 0}} << QStringLiteral("0 1 | 1 0") << 1;
    QTest::newRow("path") << 3 << Edges{{0, 2}, {2, 1}} << QStringLiteral("0 2 1 | 2 0 1 | 1 1 0") << 2;
    QTest::newRow("two parts") << 3 << Edges{{0, 2}} << QStringLiteral("0 32 1 | 32 0 32 | 1 32 0") << 32;
}

void TestDistances::smallGraphs()
{
    QFETCH(int, n);
    QFETCH(Edges, edges);
    const Distances matrix = distancesOf(n, edges);
    QTEST(text(matrix), "matrix");
    QTEST(largestDistance(matrix), "largest");
}

void TestDistances::agreeWithShortestPathsOverAllVertices()
{
    constexpr unsigned seed = 20240607;
    std::mt19937 random(seed);
    for (int graph = 0; graph < 200; ++graph) {
        const int n = 1 + int(random() % 32);
        const unsigned density = 1 + random() % 12;
        Edges edges;
        Distances expected(n, QVector<int>(n, unreachable));
        for (int j = 0; j < n; ++j) {
            expected[j][j] = 0;
            for (int i = 0; i < j; ++i) {
                if (random() % 24 < density) {
                    edges.append({i, j});
                    expected[i][j] = expected[j][i] = 1;
                }
            }
        }
        for (int k = 0; k < n; ++k) {
            for (int i = 0; i < n; ++i) {
                for (int j = 0; j < n; ++j) {
                    expected[i][j] = std::min(expected[i][j], expected[i][k] + expected[k][j]);
                }
            }
        }
        QVERIFY2(distancesOf(n, edges) == expected,
                 qPrintable(QStringLiteral("seed %1, graph %2").arg(seed).arg(graph)));
    }
}

void TestDistances::diametralPairs_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Edges>("edges");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::newRow("no vertex") << 0 << Edges() << -1 << -1;
    QTest::newRow("one vertex") << 1 << Edges() << -1 << -1;
    QTest::newRow("path") << 3 << Edges{{0, 1}, {1, 2}} << 0 << 2;
    QTest::newRow("the first of several") << 4 << Edges{{0, 1}, {1, 2}, {2, 3}, {3, 0}} << 0 << 2;
    // Vertex 4 is at distance 3 from 0, 1 and 5; 0 and 1 are of degree 2, 5 is of degree 1.
    QTest::newRow("the smaller degrees") << 6 << Edges{{0, 1}, {0, 2}, {1, 2}, {2, 3}, {3, 4}, {2, 5}} << 4 << 5;
}

void TestDistances::diametralPairs()
{
    QFETCH(int, n);
    QFETCH(Edges, edges);
    const auto pair = diametralPair(distancesOf(n, edges));
    QTEST(pair.first, "first");
    QTEST(pair.second, "second");
}

QTEST_APPLESS_MAIN(TestDistances)
#include "tst_distances.moc"
