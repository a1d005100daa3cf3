// The table of names that lists are looked up in.

#include "nameset.h"

#include <QtTest>

#include <algorithm>
#include <random>

class TestNameSet : public QObject
{
    Q_OBJECT

private slots:
    void containsItsNames()
    {
        const NameSet names({QStringLiteral("A"), QStringLiteral("Bw"), QString(), QStringLiteral("A")});
        QVERIFY(names.contains(QStringLiteral("A")));
        QVERIFY(names.contains(QStringLiteral("Bw")));
        QVERIFY(names.contains(QString()));
        QVERIFY(names.contains(QLatin1String("")));
        QVERIFY(!names.contains(QStringLiteral("a")));
        QVERIFY(!names.contains(QStringLiteral("B")));
        QVERIFY(!names.contains(QStringLiteral("Bww")));
    }

    void anEmptyListContainsNothing()
    {
        const NameSet names({});
        QVERIFY(!names.contains(QString()));
        QVERIFY(!names.contains(QStringLiteral("A")));
    }

    void oneNameVeryOften()
    {
        QStringList list;
        for (int i = 0; i < 300000; ++i) {
            list.append(QStringLiteral("A"));
        }
        const NameSet names(list);
        QVERIFY(names.contains(QStringLiteral("A")));
        QVERIFY(!names.contains(QStringLiteral("B")));
    }

    void namesThatAChecksumTakesForTheSame()
    {
        // The two blocks have the same CRC-32C from any start but 0, by which Qt hashes where the processor can; so
        // has whatever is made of as many of them. So many would take a quarter of an hour.
        const QString blocks[] = {QStringLiteral("ge]Z_NM{"), QStringLiteral("eDvW@\\dU")};
        constexpr int length = 18;
        QStringList list;
        for (int bits = 0; bits < 1 << length; ++bits) {
            QString name;
            for (int i = 0; i < length; ++i) {
                name += blocks[(bits >> i) & 1];
            }
            list.append(name);
        }
        const NameSet names(list);
        QVERIFY(std::all_of(list.begin(), list.end(), [&](const QString &name) { return names.contains(name); }));
        QVERIFY(!names.contains(blocks[0].repeated(length - 1)));
        QVERIFY(!names.contains(blocks[0].repeated(length + 1)));
    }

    void namesOfTheSameHashAreToldApart()
    {
        // Of 300 000 random names in the set and as many others, some forty pairs have the same hash.
        constexpr int count = 300000;
        std::mt19937_64 random(12);
        QStringList inside;
        QStringList outside;
        for (int i = 0; i < count; ++i) {
            const QString name = QString::number(random(), 36);
            inside.append(name + QLatin1Char('a'));
            outside.append(name + QLatin1Char('b'));
        }
        const NameSet names(inside);
        QVERIFY(std::all_of(inside.begin(), inside.end(), [&](const QString &name) { return names.contains(name); }));
        QVERIFY(
            std::none_of(outside.begin(), outside.end(), [&](const QString &name) { return names.contains(name); }));
    }

    void agreesWithASet()
    {
        std::mt19937 random(8);
        for (const int count : {1, 2, 3, 100, 16383, 16384, 16385, 50000}) {
            const int bound = 2 * count;
            QStringList list;
            for (int i = 0; i < count; ++i) {
                list.append(QString::number(random() % bound));
            }
            const NameSet names(list);
            const QSet<QString> expected(list.begin(), list.end());
            for (int i = 0; i < bound; ++i) {
                QCOMPARE(names.contains(QString::number(i)), expected.contains(QString::number(i)));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestNameSet)
#include "tst_nameset.moc"
