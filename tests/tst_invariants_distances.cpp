// The invariants that are made of distances: values known for graphs that have a name.

#include "support/namedgraphs.h"

#include <QtTest>

class TestInvariantsDistances : public QObject
{
    Q_OBJECT

private slots:
    void values_data()
    {
        QTest::addColumn<SmallGraph>("graph");
        QTest::addColumn<QByteArray>("invariant");
        QTest::addColumn<QByteArray>("expected");
        addKnown("no vertex", edgeless(0),
                 {{"average-eccentricity", "NA"},
                  {"proximity", "NA"},
                  {"remoteness", "NA"},
                  {"hyper-wiener-index", "NA"},
                  {"harary-index", "NA"},
                  {"eccentric-connectivity-index", "NA"},
                  {"szeged-index", "NA"},
                  {"balaban-index", "NA"},
                  {"kirchhoff-index", "NA"}});
        addKnown("one vertex", edgeless(1),
                 {{"average-eccentricity", "0"},
                  {"proximity", "NA"},
                  {"remoteness", "NA"},
                  {"hyper-wiener-index", "0"},
                  {"harary-index", "0"},
                  {"eccentric-connectivity-index", "0"},
                  {"szeged-index", "0"},
                  {"balaban-index", "0"},
                  {"kirchhoff-index", "0"}});
        addKnown("K2", complete(2),
                 {{"average-eccentricity", "1"},
                  {"proximity", "1"},
                  {"remoteness", "1"},
                  {"hyper-wiener-index", "1"},
                  {"harary-index", "1"},
                  {"eccentric-connectivity-index", "2"},
                  {"szeged-index", "1"},
                  {"balaban-index", "1"},
                  {"kirchhoff-index", "1"}});
        addKnown("two triangles", decoded("EwCW"),
                 {{"average-eccentricity", "NA"},
                  {"proximity", "NA"},
                  {"remoteness", "NA"},
                  {"hyper-wiener-index", "NA"},
                  {"harary-index", "NA"},
                  {"eccentric-connectivity-index", "NA"},
                  {"szeged-index", "NA"},
                  {"balaban-index", "NA"},
                  {"kirchhoff-index", "NA"}});
        addKnown("Petersen", petersen(),
                 {{"average-eccentricity", "2"},
                  {"proximity", "1.66666666667"},
                  {"remoteness", "1.66666666667"},
                  {"hyper-wiener-index", "105"},
                  {"harary-index", "30"},
                  {"eccentric-connectivity-index", "60"},
                  {"szeged-index", "135"},
                  {"balaban-index", "2.14285714286"},
                  {"kirchhoff-index", "33"}});
        addKnown("Heawood", heawood(),
                 {{"average-eccentricity", "3"},
                  {"proximity", "2.07692307692"},
                  {"remoteness", "2.07692307692"},
                  {"hyper-wiener-index", "315"},
                  {"harary-index", "51.3333333333"},
                  {"eccentric-connectivity-index", "126"},
                  {"szeged-index", "1029"},
                  {"balaban-index", "1.81481481481"},
                  {"kirchhoff-index", "74.3333333333"}});
        addKnown("K3,3", completeBipartite(3, 3),
                 {{"average-eccentricity", "2"},
                  {"proximity", "1.4"},
                  {"remoteness", "1.4"},
                  {"hyper-wiener-index", "27"},
                  {"harary-index", "12"},
                  {"eccentric-connectivity-index", "36"},
                  {"szeged-index", "81"},
                  {"balaban-index", "2.31428571429"},
                  {"kirchhoff-index", "9"}});
        addKnown("K1,4", completeBipartite(1, 4),
                 {{"average-eccentricity", "1.8"},
                  {"proximity", "1"},
                  {"remoteness", "1.75"},
                  {"hyper-wiener-index", "22"},
                  {"harary-index", "7"},
                  {"eccentric-connectivity-index", "12"},
                  {"szeged-index", "16"},
                  {"balaban-index", "3.02371578407"},
                  {"kirchhoff-index", "16"}});
        addKnown("C7", cycle(7),
                 {{"average-eccentricity", "3"},
                  {"proximity", "2"},
                  {"remoteness", "2"},
                  {"hyper-wiener-index", "70"},
                  {"harary-index", "12.8333333333"},
                  {"eccentric-connectivity-index", "42"},
                  {"szeged-index", "63"},
                  {"balaban-index", "2.04166666667"},
                  {"kirchhoff-index", "28"}});
        addKnown("C8", cycle(8),
                 {{"average-eccentricity", "4"},
                  {"proximity", "2.28571428571"},
                  {"remoteness", "2.28571428571"},
                  {"hyper-wiener-index", "120"},
                  {"harary-index", "15.6666666667"},
                  {"eccentric-connectivity-index", "64"},
                  {"szeged-index", "128"},
                  {"balaban-index", "2"},
                  {"kirchhoff-index", "42"}});
        addKnown("P5", path(5),
                 {{"average-eccentricity", "3.2"},
                  {"proximity", "1.5"},
                  {"remoteness", "2.5"},
                  {"hyper-wiener-index", "35"},
                  {"harary-index", "6.41666666667"},
                  {"eccentric-connectivity-index", "24"},
                  {"szeged-index", "20"},
                  {"balaban-index", "2.19060968716"},
                  {"kirchhoff-index", "20"}});
        addKnown("K5", complete(5),
                 {{"average-eccentricity", "1"},
                  {"proximity", "1"},
                  {"remoteness", "1"},
                  {"hyper-wiener-index", "10"},
                  {"harary-index", "10"},
                  {"eccentric-connectivity-index", "20"},
                  {"szeged-index", "10"},
                  {"balaban-index", "3.57142857143"},
                  {"kirchhoff-index", "4"}});
        addKnown("Q4", hypercube(4),
                 {{"average-eccentricity", "4"},
                  {"proximity", "2.13333333333"},
                  {"remoteness", "2.13333333333"},
                  {"hyper-wiener-index", "448"},
                  {"harary-index", "68.6666666667"},
                  {"eccentric-connectivity-index", "256"},
                  {"szeged-index", "2048"},
                  {"balaban-index", "1.77777777778"},
                  {"kirchhoff-index", "68.6666666667"}});
        addKnown("K62", complete(62),
                 {{"average-eccentricity", "1"},
                  {"proximity", "1"},
                  {"remoteness", "1"},
                  {"hyper-wiener-index", "1891"},
                  {"harary-index", "1891"},
                  {"eccentric-connectivity-index", "3782"},
                  {"szeged-index", "1891"},
                  {"kirchhoff-index", "61"}});
        addKnown("P62", path(62), {{"szeged-index", "39711"}, {"kirchhoff-index", "39711"}});
        addKnown("C62", cycle(62),
                 {{"average-eccentricity", "31"},
                  {"eccentric-connectivity-index", "3844"},
                  {"szeged-index", "59582"},
                  {"kirchhoff-index", "19855.5"}});
    }

    void values()
    {
        QFETCH(SmallGraph, graph);
        QFETCH(QByteArray, invariant);
        QFETCH(QByteArray, expected);
        QCOMPARE(textOf(invariant.constData(), graph), expected);
    }
};

QTEST_APPLESS_MAIN(TestInvariantsDistances)
#include "tst_invariants_distances.moc"
