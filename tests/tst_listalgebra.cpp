// The set operations of lists.

#include "listalgebra.h"
#include "support/literals.h"
#include "support/threads.h"

#include <QtTest>

#include <algorithm>
#include <random>

class TestListAlgebra : public QObject
{
    Q_OBJECT

private slots:
    void byHand();
    void likeTheLiteralOperations();
    void manyNames_data();
    void manyNames();
};

void TestListAlgebra::byHand()
{
    QCOMPARE(unionOf(words({"b", "a", "b"}), words({"c", "a"})), words({"a", "b", "c"}));
    QCOMPARE(unionOf({}, {}), QStringList());
    QCOMPARE(intersectionOf(words({"b", "a", "b"}), words({"a", "b"})), words({"b", "a", "b"}));
    QCOMPARE(intersectionOf(words({"a"}), words({"A"})), QStringList());
    QCOMPARE(differenceOf(words({"b", "a", "b", "c"}), words({"b"})), words({"a", "c"}));
    QCOMPARE(differenceOf(words({"a", "a"}), {}), words({"a", "a"}));
    QCOMPARE(differenceOf(words({"a"}), words({"a"})), QStringList());
}

/// Name by name, as one would by hand.
void TestListAlgebra::likeTheLiteralOperations()
{
    constexpr unsigned seed = 5;
    std::mt19937 random(seed);
    const QStringList letters = words({"a", "B", "b", "aa", "?", "~", "A_", "Bw\r"});
    const auto randomList = [&] {
        QStringList list;
        for (int length = 1 + int(random() % 12); length > 0; --length) {
            list.append(letters.at(int(random() % 8)));
        }
        return list;
    };
    for (int round = 0; round < 500; ++round) {
        const QStringList a = randomList();
        const QStringList b = randomList();
        QStringList all;
        for (const QString &graph : a + b) {
            if (!all.contains(graph)) {
                all.append(graph);
            }
        }
        std::sort(all.begin(), all.end());
        QStringList both;
        QStringList onlyA;
        for (const QString &graph : a) {
            (b.contains(graph) ? both : onlyA).append(graph);
        }
        QCOMPARE(unionOf(a, b), all);
        QCOMPARE(intersectionOf(a, b), both);
        QCOMPARE(differenceOf(a, b), onlyA);
    }
}

void TestListAlgebra::manyNames_data()
{
    QTest::addColumn<int>("threads");
    for (const int threads : {1, 2, 3, 8}) {
        QTest::addRow("%d threads", threads) << threads;
    }
}

void TestListAlgebra::manyNames()
{
    QFETCH(int, threads);
    const ThreadCount count(threads);
    constexpr int many = 60000;
    QStringList even;
    QStringList thirds;
    for (int i = 0; i < many; ++i) {
        even.append(QString::number(2 * i));
        thirds.append(QString::number(3 * i));
    }
    QStringList both;
    QStringList onlyEven;
    for (int number = 0; number < 2 * many; number += 2) {
        (number % 3 == 0 ? both : onlyEven).append(QString::number(number));
    }
    QStringList all = onlyEven + thirds;
    all.sort();
    QCOMPARE(intersectionOf(even, thirds), both);
    QCOMPARE(differenceOf(even, thirds), onlyEven);
    QCOMPARE(unionOf(even, thirds), all);
}

QTEST_APPLESS_MAIN(TestListAlgebra)
#include "tst_listalgebra.moc"
