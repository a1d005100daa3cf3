// The record of one database graph.

#include "TAVgraph.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace
{
const double notANumberValue = std::numeric_limits<double>::quiet_NaN();

/// A record whose I1 is @p value.
TAVGraph withInv1(const char *name, double value)
{
    TAVGraph graph{QString::fromLatin1(name)};
    graph.setInv1(value, false);
    return graph;
}
} // namespace

class TestTAVGraph : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutLinksAndWithBothInvariantsMissing();
    void keepsLinksInOrderWithRepetitionsAndSelfLinks();
    void invariantAccessors();
    void exchangeAndCopies();
    void noSubGraphs_data();
    void noSubGraphs();
    void missingNeighboursAreSkipped();
    void derivationsReadTheirOwnLists_data();
    void derivationsReadTheirOwnLists();
    void averageOfAllCountsOccurrences();
    void firstNaNStaysLaterOnesAreIgnored();
    void derivationsNeverReadTheOwnI1();
};

using Derivation = void (TAVGraph::*)();
Q_DECLARE_METATYPE(Derivation)

void TestTAVGraph::startsWithoutLinksAndWithBothInvariantsMissing()
{
    const TAVGraph graph(QStringLiteral("Bw"));
    QCOMPARE(graph.getName(), QStringLiteral("Bw"));
    QVERIFY(graph.getSub().isEmpty());
    QVERIFY(graph.getOver().isEmpty());
    QVERIFY(graph.getErrInv1());
    QVERIFY(graph.getErrInv2());
    QVERIFY(!graph.isChecked());
}

void TestTAVGraph::keepsLinksInOrderWithRepetitionsAndSelfLinks()
{
    TAVGraph a(QStringLiteral("A_"));
    TAVGraph b(QStringLiteral("BW"));
    b.addSub(&a);
    b.addSub(&b);
    b.addSub(&a);
    b.addOver(&b);
    QCOMPARE(b.getSub(), (QList<TAVGraph *>{&a, &b, &a}));
    QCOMPARE(b.getOver(), (QList<TAVGraph *>{&b}));
    b.setChecked(true);
    QVERIFY(b.isChecked());
    b.resetChecked();
    QVERIFY(!b.isChecked());
}

void TestTAVGraph::invariantAccessors()
{
    TAVGraph graph(QStringLiteral("@"));
    graph.setInv1(1.5, false);
    graph.setInv2(-2.0, true);
    QCOMPARE(graph.getInv1(), 1.5);
    QVERIFY(!graph.getErrInv1());
    QCOMPARE(graph.getInv2(), -2.0);
    QVERIFY(graph.getErrInv2());
    graph.setErrInv1(true);
    graph.setErrInv2(false);
    QVERIFY(graph.getErrInv1());
    QVERIFY(!graph.getErrInv2());
    QCOMPARE(graph.getInv1(), 1.5);
    QCOMPARE(graph.getInv2(), -2.0);
}

void TestTAVGraph::exchangeAndCopies()
{
    TAVGraph graph(QStringLiteral("@"));
    graph.setInv1(1.0, false);
    graph.setInv2(2.0, true);

    graph.exch_1_2();
    QCOMPARE(graph.getInv1(), 2.0);
    QVERIFY(graph.getErrInv1());
    QCOMPARE(graph.getInv2(), 1.0);
    QVERIFY(!graph.getErrInv2());
    graph.exch_1_2();
    QCOMPARE(graph.getInv1(), 1.0);
    QVERIFY(!graph.getErrInv1());
    QCOMPARE(graph.getInv2(), 2.0);
    QVERIFY(graph.getErrInv2());

    TAVGraph first = graph;
    first.I1getsI2();
    QCOMPARE(first.getInv1(), 2.0);
    QVERIFY(first.getErrInv1());

    TAVGraph second = graph;
    second.I2getsI1();
    QCOMPARE(second.getInv2(), 1.0);
    QVERIFY(!second.getErrInv2());
}

void TestTAVGraph::noSubGraphs_data()
{
    QTest::addColumn<Derivation>("derive");
    QTest::newRow("average") << &TAVGraph::avgSub1;
    QTest::newRow("minimum") << &TAVGraph::minSub1;
    QTest::newRow("maximum") << &TAVGraph::maxSub1;
}

void TestTAVGraph::noSubGraphs()
{
    QFETCH(Derivation, derive);
    TAVGraph lonely(QStringLiteral("@"));
    lonely.setInv2(7.0, false);
    (lonely.*derive)();
    QVERIFY(lonely.getErrInv2());
    QCOMPARE(lonely.getInv2(), 7.0);

    TAVGraph missing(QStringLiteral("A?"));
    TAVGraph graph(QStringLiteral("A_"));
    graph.addSub(&missing);
    graph.addSub(&missing);
    graph.setInv2(7.0, false);
    (graph.*derive)();
    QVERIFY(graph.getErrInv2());
    QCOMPARE(graph.getInv2(), 7.0);
}

void TestTAVGraph::missingNeighboursAreSkipped()
{
    TAVGraph one = withInv1("C1", 1.0);
    TAVGraph missing(QStringLiteral("C2"));
    missing.setInv1(100.0, true);
    TAVGraph three = withInv1("C3", 3.0);
    TAVGraph graph(QStringLiteral("D"));
    graph.addSub(&one);
    graph.addSub(&missing);
    graph.addSub(&three);

    graph.avgSub1();
    QCOMPARE(graph.getInv2(), 2.0);
    QVERIFY(!graph.getErrInv2());
    graph.setErrInv2(true);
    graph.minSub1();
    QCOMPARE(graph.getInv2(), 1.0);
    QVERIFY(!graph.getErrInv2());
    graph.setErrInv2(true);
    graph.maxSub1();
    QCOMPARE(graph.getInv2(), 3.0);
    QVERIFY(!graph.getErrInv2());
}

void TestTAVGraph::derivationsReadTheirOwnLists_data()
{
    QTest::addColumn<Derivation>("derive");
    QTest::addColumn<double>("expected");
    QTest::newRow("avgSub1") << &TAVGraph::avgSub1 << 3.0;
    QTest::newRow("avgOver1") << &TAVGraph::avgOver1 << 15.0;
    QTest::newRow("avgAll1") << &TAVGraph::avgAll1 << 9.0;
    QTest::newRow("minSub1") << &TAVGraph::minSub1 << 2.0;
    QTest::newRow("minOver1") << &TAVGraph::minOver1 << 10.0;
    QTest::newRow("minAll1") << &TAVGraph::minAll1 << 2.0;
    QTest::newRow("maxSub1") << &TAVGraph::maxSub1 << 4.0;
    QTest::newRow("maxOver1") << &TAVGraph::maxOver1 << 20.0;
    QTest::newRow("maxAll1") << &TAVGraph::maxAll1 << 20.0;
}

void TestTAVGraph::derivationsReadTheirOwnLists()
{
    QFETCH(Derivation, derive);
    QFETCH(double, expected);
    TAVGraph two = withInv1("S2", 2.0);
    TAVGraph four = withInv1("S4", 4.0);
    TAVGraph ten = withInv1("O10", 10.0);
    TAVGraph twenty = withInv1("O20", 20.0);
    TAVGraph graph(QStringLiteral("D"));
    graph.addSub(&four);
    graph.addSub(&two);
    graph.addOver(&ten);
    graph.addOver(&twenty);
    (graph.*derive)();
    QCOMPARE(graph.getInv2(), expected);
    QVERIFY(!graph.getErrInv2());
}

void TestTAVGraph::averageOfAllCountsOccurrences()
{
    TAVGraph a = withInv1("A", 0.0);
    TAVGraph b = withInv1("B", 3.0);
    TAVGraph graph(QStringLiteral("G"));
    graph.addSub(&a);
    graph.addSub(&a);
    graph.addOver(&b);
    graph.avgAll1();
    QCOMPARE(graph.getInv2(), 1.0);
}

void TestTAVGraph::firstNaNStaysLaterOnesAreIgnored()
{
    TAVGraph notANumber = withInv1("N", notANumberValue);
    TAVGraph five = withInv1("F", 5.0);

    TAVGraph first(QStringLiteral("G"));
    first.addSub(&notANumber);
    first.addSub(&five);
    first.minSub1();
    QVERIFY(std::isnan(first.getInv2()));
    QVERIFY(!first.getErrInv2());
    first.maxSub1();
    QVERIFY(std::isnan(first.getInv2()));

    TAVGraph later(QStringLiteral("H"));
    later.addSub(&five);
    later.addSub(&notANumber);
    later.minSub1();
    QCOMPARE(later.getInv2(), 5.0);
    later.maxSub1();
    QCOMPARE(later.getInv2(), 5.0);
}

void TestTAVGraph::derivationsNeverReadTheOwnI1()
{
    TAVGraph one = withInv1("S", 1.0);
    TAVGraph graph = withInv1("G", 50.0);
    graph.addSub(&one);
    graph.maxSub1();
    QCOMPARE(graph.getInv2(), 1.0);
    QCOMPARE(graph.getInv1(), 50.0);
    QVERIFY(!graph.getErrInv1());
}

QTEST_APPLESS_MAIN(TestTAVGraph)
#include "tst_tavgraph.moc"
