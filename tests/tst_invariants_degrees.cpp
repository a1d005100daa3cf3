// The invariants that are made of degrees: values known for graphs that have a name.

#include "support/namedgraphs.h"

#include <QtTest>

class TestInvariantsDegrees : public QObject
{
    Q_OBJECT

private slots:
    void values_data()
    {
        QTest::addColumn<SmallGraph>("graph");
        QTest::addColumn<QByteArray>("invariant");
        QTest::addColumn<QByteArray>("expected");
        addKnown("no vertex", edgeless(0),
                 {{"first-zagreb-index", "0"},
                  {"second-zagreb-index", "0"},
                  {"harmonic-index", "0"},
                  {"abc-index", "0"},
                  {"sum-connectivity-index", "0"},
                  {"geometric-arithmetic-index", "0"},
                  {"irregularity", "0"},
                  {"degree-variance", "NA"}});
        addKnown("one vertex", edgeless(1),
                 {{"first-zagreb-index", "0"},
                  {"second-zagreb-index", "0"},
                  {"harmonic-index", "0"},
                  {"abc-index", "0"},
                  {"sum-connectivity-index", "0"},
                  {"geometric-arithmetic-index", "0"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("four vertices without edges", edgeless(4),
                 {{"first-zagreb-index", "0"},
                  {"second-zagreb-index", "0"},
                  {"harmonic-index", "0"},
                  {"abc-index", "0"},
                  {"sum-connectivity-index", "0"},
                  {"geometric-arithmetic-index", "0"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("K2", complete(2),
                 {{"first-zagreb-index", "2"},
                  {"second-zagreb-index", "1"},
                  {"harmonic-index", "1"},
                  {"abc-index", "0"},
                  {"sum-connectivity-index", "0.707106781187"},
                  {"geometric-arithmetic-index", "1"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("Petersen", petersen(),
                 {{"first-zagreb-index", "90"},
                  {"second-zagreb-index", "135"},
                  {"harmonic-index", "5"},
                  {"abc-index", "10"},
                  {"sum-connectivity-index", "6.12372435696"},
                  {"geometric-arithmetic-index", "15"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("Heawood", heawood(),
                 {{"first-zagreb-index", "126"},
                  {"second-zagreb-index", "189"},
                  {"harmonic-index", "7"},
                  {"abc-index", "14"},
                  {"sum-connectivity-index", "8.57321409974"},
                  {"geometric-arithmetic-index", "21"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("K3,3", completeBipartite(3, 3),
                 {{"first-zagreb-index", "54"},
                  {"second-zagreb-index", "81"},
                  {"harmonic-index", "3"},
                  {"abc-index", "6"},
                  {"sum-connectivity-index", "3.67423461417"},
                  {"geometric-arithmetic-index", "9"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("K2,4", completeBipartite(2, 4),
                 {{"first-zagreb-index", "48"},
                  {"second-zagreb-index", "64"},
                  {"harmonic-index", "2.66666666667"},
                  {"abc-index", "5.65685424949"},
                  {"sum-connectivity-index", "3.26598632371"},
                  {"geometric-arithmetic-index", "7.54247233266"},
                  {"irregularity", "16"},
                  {"degree-variance", "0.888888888889"}});
        addKnown("K1,4", completeBipartite(1, 4),
                 {{"first-zagreb-index", "20"},
                  {"second-zagreb-index", "16"},
                  {"harmonic-index", "1.6"},
                  {"abc-index", "3.46410161514"},
                  {"sum-connectivity-index", "1.788854382"},
                  {"geometric-arithmetic-index", "3.2"},
                  {"irregularity", "12"},
                  {"degree-variance", "1.44"}});
        addKnown("C7", cycle(7),
                 {{"first-zagreb-index", "28"},
                  {"second-zagreb-index", "28"},
                  {"harmonic-index", "3.5"},
                  {"abc-index", "4.94974746831"},
                  {"sum-connectivity-index", "3.5"},
                  {"geometric-arithmetic-index", "7"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("P5", path(5),
                 {{"first-zagreb-index", "14"},
                  {"second-zagreb-index", "12"},
                  {"harmonic-index", "2.33333333333"},
                  {"abc-index", "2.82842712475"},
                  {"sum-connectivity-index", "2.15470053838"},
                  {"geometric-arithmetic-index", "3.88561808316"},
                  {"irregularity", "2"},
                  {"degree-variance", "0.24"}});
        addKnown("K5", complete(5),
                 {{"first-zagreb-index", "80"},
                  {"second-zagreb-index", "160"},
                  {"harmonic-index", "2.5"},
                  {"abc-index", "6.12372435696"},
                  {"sum-connectivity-index", "3.53553390593"},
                  {"geometric-arithmetic-index", "10"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("K62", complete(62),
                 {{"first-zagreb-index", "230702"},
                  {"second-zagreb-index", "7036411"},
                  {"harmonic-index", "31"},
                  {"geometric-arithmetic-index", "1891"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("Q4", hypercube(4),
                 {{"first-zagreb-index", "256"},
                  {"second-zagreb-index", "512"},
                  {"harmonic-index", "8"},
                  {"abc-index", "19.5959179423"},
                  {"sum-connectivity-index", "11.313708499"},
                  {"geometric-arithmetic-index", "32"},
                  {"irregularity", "0"},
                  {"degree-variance", "0"}});
        addKnown("a triangle and two vertices", decoded("Dw?"),
                 {{"first-zagreb-index", "12"},
                  {"second-zagreb-index", "12"},
                  {"harmonic-index", "1.5"},
                  {"abc-index", "2.12132034356"},
                  {"sum-connectivity-index", "1.5"},
                  {"geometric-arithmetic-index", "3"},
                  {"irregularity", "0"},
                  {"degree-variance", "0.96"}});
    }

    void values()
    {
        QFETCH(SmallGraph, graph);
        QFETCH(QByteArray, invariant);
        QFETCH(QByteArray, expected);
        QCOMPARE(textOf(invariant.constData(), graph), expected);
    }
};

QTEST_APPLESS_MAIN(TestInvariantsDegrees)
#include "tst_invariants_degrees.moc"
