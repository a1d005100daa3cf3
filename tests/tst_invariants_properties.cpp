// The invariants that are 1 or 0: which properties graphs have that have a name.

#include "support/namedgraphs.h"

#include <QStringList>
#include <QtTest>

class TestInvariantsProperties : public QObject
{
    Q_OBJECT

private slots:
    void properties_data()
    {
        QTest::addColumn<SmallGraph>("graph");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const SmallGraph &graph, const char *properties) {
            QTest::newRow(name) << graph << QString::fromLatin1(properties);
        };
        row("no vertex", edgeless(0),
            "regular bipartite planar chordal threshold triangle-free claw-free self-complementary integral");
        row("one vertex", edgeless(1),
            "regular bipartite tree eulerian traceable planar chordal threshold triangle-free claw-free "
            "self-complementary integral");
        row("four vertices without edges", edgeless(4),
            "regular bipartite planar chordal threshold triangle-free claw-free integral");
        row("K2", complete(2),
            "regular bipartite tree bridge biconnected traceable planar chordal threshold triangle-free claw-free "
            "integral");
        row("K3", complete(3),
            "regular biconnected eulerian hamiltonian traceable planar chordal threshold claw-free integral");
        row("K4", complete(4), "regular biconnected hamiltonian traceable planar chordal threshold claw-free integral");
        row("K5", complete(5),
            "regular biconnected eulerian hamiltonian traceable chordal threshold claw-free integral");
        row("K62", complete(62), "regular biconnected hamiltonian traceable chordal threshold claw-free integral");
        row("C4", cycle(4),
            "regular bipartite biconnected eulerian hamiltonian traceable planar triangle-free claw-free integral");
        row("C5", cycle(5),
            "regular biconnected eulerian hamiltonian traceable planar triangle-free claw-free self-complementary");
        row("C6", cycle(6),
            "regular bipartite biconnected eulerian hamiltonian traceable planar triangle-free claw-free integral");
        row("C62", cycle(62),
            "regular bipartite biconnected eulerian hamiltonian traceable planar triangle-free claw-free");
        row("P3", path(3), "bipartite tree bridge traceable planar chordal threshold triangle-free claw-free");
        row("P4", path(4), "bipartite tree bridge traceable planar chordal triangle-free claw-free self-complementary");
        row("P62", path(62), "bipartite tree bridge traceable planar chordal triangle-free claw-free");
        row("K1,3", completeBipartite(1, 3), "bipartite tree bridge planar chordal threshold triangle-free");
        row("K1,4", completeBipartite(1, 4), "bipartite tree bridge planar chordal threshold triangle-free integral");
        row("K2,3", completeBipartite(2, 3), "bipartite biconnected traceable planar triangle-free");
        row("K2,4", completeBipartite(2, 4), "bipartite biconnected eulerian planar triangle-free");
        row("K2,8", completeBipartite(2, 8), "bipartite biconnected eulerian planar triangle-free integral");
        row("K3,3", completeBipartite(3, 3),
            "regular bipartite biconnected hamiltonian traceable triangle-free integral");
        row("Petersen", petersen(), "regular biconnected traceable triangle-free integral");
        row("Heawood", heawood(), "regular bipartite biconnected hamiltonian traceable triangle-free");
        row("Q3", hypercube(3), "regular bipartite biconnected hamiltonian traceable planar triangle-free integral");
        row("Q4", hypercube(4), "regular bipartite biconnected eulerian hamiltonian traceable triangle-free integral");
        row("two edges", decoded("C`"), "regular bipartite bridge planar chordal triangle-free claw-free integral");
        row("two triangles", decoded("EwCW"), "regular planar chordal claw-free integral");
        row("two triangles with a common vertex", joined(5, {{0, 1}, {0, 2}, {1, 2}, {0, 3}, {0, 4}, {3, 4}}),
            "eulerian traceable planar chordal claw-free");
        row("bull", joined(5, {{0, 1}, {0, 2}, {1, 2}, {1, 3}, {2, 4}}),
            "bridge traceable planar chordal claw-free self-complementary");
    }

    void properties()
    {
        QFETCH(SmallGraph, graph);
        QFETCH(QString, expected);
        GraphFacts facts(graph);
        QStringList actual;
        for (const Invariant &invariant : invariants()) {
            if (QByteArray(invariant.group).startsWith("Properties")) {
                const QByteArray text = invariantText(invariant.valueOf(facts));
                QVERIFY(text == "0" || text == "1");
                if (text == "1") {
                    actual.append(QString::fromLatin1(invariant.name));
                }
            }
        }
        QCOMPARE(actual.join(QLatin1Char(' ')), expected);
    }

private:
    static SmallGraph joined(int order, std::initializer_list<std::pair<int, int>> edges)
    {
        SmallGraph graph = edgeless(order);
        for (const auto &[u, v] : edges) {
            graph.addEdge(u, v);
        }
        return graph;
    }
};

QTEST_APPLESS_MAIN(TestInvariantsProperties)
#include "tst_invariants_properties.moc"
