// The random numbers of the viewer, and the change counter of a graph, which starts at a random number.

#include "graph.h"
#include "random.h"
#include "support/stderrcapture.h"

#include <QtTest>

#include <limits>

namespace
{
int scriptedNumber = 0;
} // namespace

// Takes the place of Qt's generator in this program, so that its greatest number comes up too.
int qrand()
{
    return scriptedNumber;
}

class TestRandom : public QObject
{
    Q_OBJECT

private slots:
    void unitInterval_data();
    void unitInterval();
    void integers_data();
    void integers();
    void greatestNumberIsReportedAndCutOff();
    void odd_data();
    void odd();
    void theCounterOfAGraphStartsAtARandomNumber();
};

void TestRandom::unitInterval_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<double>("expected");
    QTest::newRow("least") << 0 << 0.0;
    QTest::newRow("one") << 1 << 4.656612875245797e-10;
    QTest::newRow("middle") << 1073741824 << 0.5000000002328306;
    QTest::newRow("greatest") << 2147483647 << 1.0;
}

void TestRandom::unitInterval()
{
    QFETCH(int, number);
    QFETCH(double, expected);
    scriptedNumber = number;
    QCOMPARE(olm_rand(), expected);
}

void TestRandom::integers_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("n");
    QTest::addColumn<int>("expected");
    QTest::newRow("no range") << 2147483647 << 0 << 0;
    QTest::newRow("negative range") << 2147483647 << -5 << 0;
    QTest::newRow("one value") << 2147483646 << 1 << 0;
    QTest::newRow("least of ten") << 0 << 10 << 0;
    QTest::newRow("below the first step") << 214748364 << 10 << 0;
    QTest::newRow("above the first step") << 214748365 << 10 << 1;
    QTest::newRow("last of ten") << 2147483646 << 10 << 9;
    QTest::newRow("whole int range") << 2147483646 << std::numeric_limits<int>::max() << 2147483646;
}

void TestRandom::integers()
{
    QFETCH(int, number);
    QFETCH(int, n);
    scriptedNumber = number;
    StderrCapture errors;
    QTEST(olm_rand(n), "expected");
    QCOMPARE(errors.take(), QByteArray());
}

void TestRandom::greatestNumberIsReportedAndCutOff()
{
    scriptedNumber = 2147483647;
    StderrCapture errors;
    QCOMPARE(olm_rand(1000000), 999999);
    QCOMPARE(olm_rand(1), 0);
    QCOMPARE(errors.take(), QByteArray("ERROR IN OLM_RAND(int)\nERROR IN OLM_RAND(int)\n"));
}

void TestRandom::odd_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<bool>("expected");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << false;
    QTest::newRow("-1") << -1 << true;
    QTest::newRow("-2") << -2 << false;
    QTest::newRow("least int") << std::numeric_limits<int>::min() << false;
    QTest::newRow("greatest int") << std::numeric_limits<int>::max() << true;
}

void TestRandom::odd()
{
    QFETCH(int, n);
    QTEST(is_odd(n), "expected");
}

void TestRandom::theCounterOfAGraphStartsAtARandomNumber()
{
    scriptedNumber = std::numeric_limits<int>::max();
    Graph graph(QStringLiteral("wrapping"), false);
    // 496 removals of clear(), 10 vertices, 45 pairs; the first of them steps over the end.
    QCOMPARE(graph.getID(), std::numeric_limits<int>::min() + 496 + 10 + 45 - 1);
    QCOMPARE(graph.getNbEdges(), 45);
}

QTEST_MAIN(TestRandom)
#include "tst_random.moc"
