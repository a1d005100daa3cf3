// The invariants that count something: values known for graphs that have a name.

#include "support/namedgraphs.h"

#include <QtTest>

class TestInvariantsCounts : public QObject
{
    Q_OBJECT

private slots:
    void values_data()
    {
        QTest::addColumn<SmallGraph>("graph");
        QTest::addColumn<QByteArray>("invariant");
        QTest::addColumn<QByteArray>("expected");
        addKnown("no vertex", edgeless(0),
                 {{"density", "NA"},
                  {"cliques", "0"},
                  {"complement-components", "0"},
                  {"cyclomatic-number", "0"},
                  {"orbits", "0"}});
        addKnown("one vertex", edgeless(1),
                 {{"density", "NA"},
                  {"cliques", "1"},
                  {"complement-components", "1"},
                  {"cyclomatic-number", "0"},
                  {"orbits", "1"}});
        addKnown("four vertices without edges", edgeless(4),
                 {{"density", "0"},
                  {"triangles", "0"},
                  {"cliques", "4"},
                  {"components", "4"},
                  {"complement-components", "1"},
                  {"cyclomatic-number", "0"},
                  {"orbits", "1"}});
        addKnown("Petersen", petersen(),
                 {{"density", "0.333333333333"},
                  {"cliques", "15"},
                  {"complement-components", "1"},
                  {"cyclomatic-number", "6"},
                  {"orbits", "1"}});
        addKnown("Heawood", heawood(),
                 {{"density", "0.230769230769"},
                  {"cliques", "21"},
                  {"complement-components", "1"},
                  {"cyclomatic-number", "8"},
                  {"automorphisms", "336"},
                  {"orbits", "1"}});
        addKnown("K3,3", completeBipartite(3, 3),
                 {{"density", "0.6"},
                  {"cliques", "9"},
                  {"complement-components", "2"},
                  {"cyclomatic-number", "4"},
                  {"orbits", "1"}});
        addKnown("K2,4", completeBipartite(2, 4),
                 {{"density", "0.533333333333"},
                  {"cliques", "8"},
                  {"complement-components", "2"},
                  {"cyclomatic-number", "3"},
                  {"orbits", "2"}});
        addKnown("K5", complete(5),
                 {{"density", "1"},
                  {"cliques", "1"},
                  {"complement-components", "5"},
                  {"cyclomatic-number", "6"},
                  {"orbits", "1"}});
        addKnown("K15", complete(15), {{"automorphisms", "1307674368000"}});
        addKnown("K16", complete(16), {{"automorphisms", "20922789888000"}});
        addKnown("K17", complete(17), {{"automorphisms", "355687428096000"}});
        addKnown("K18", complete(18), {{"automorphisms", "6402373705728000"}});
        addKnown("K9,9", completeBipartite(9, 9), {{"automorphisms", "263363788800"}});
        addKnown("K9,10", completeBipartite(9, 10), {{"automorphisms", "1316818944000"}});
        addKnown("K62", complete(62),
                 {{"density", "1"}, {"triangles", "37820"}, {"cliques", "1"}, {"complement-components", "62"}});
        addKnown("C3", cycle(3), {{"cliques", "1"}, {"complement-components", "3"}});
        addKnown("C4", cycle(4), {{"cliques", "4"}, {"complement-components", "2"}, {"orbits", "1"}});
        addKnown("C7", cycle(7),
                 {{"density", "0.333333333333"},
                  {"cliques", "7"},
                  {"complement-components", "1"},
                  {"cyclomatic-number", "1"},
                  {"orbits", "1"}});
        addKnown("P5", path(5), {{"density", "0.4"}, {"cyclomatic-number", "0"}, {"cliques", "4"}, {"orbits", "3"}});
        addKnown("Q4", hypercube(4),
                 {{"density", "0.266666666667"},
                  {"cliques", "32"},
                  {"cyclomatic-number", "17"},
                  {"automorphisms", "384"},
                  {"orbits", "1"}});
        addKnown("octahedron", completeBut(6, [](int v, int u) { return v / 2 == u / 2; }),
                 {{"triangles", "8"}, {"cliques", "8"}, {"complement-components", "3"}, {"orbits", "1"}});
        addKnown("two triangles", decoded("EwCW"),
                 {{"triangles", "2"}, {"components", "2"}, {"cyclomatic-number", "2"}, {"orbits", "1"}});
    }

    void values()
    {
        QFETCH(SmallGraph, graph);
        QFETCH(QByteArray, invariant);
        QFETCH(QByteArray, expected);
        QCOMPARE(textOf(invariant.constData(), graph), expected);
    }
};

QTEST_APPLESS_MAIN(TestInvariantsCounts)
#include "tst_invariants_counts.moc"
