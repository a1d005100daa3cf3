// A named list of graph names.

#include "graphlist.h"

#include <QtTest>

class TestGraphList : public QObject
{
    Q_OBJECT

private slots:
    void startsEmptyWithItsName();
    void startsWithACopyOfTheNames();
    void keepsOrderAndDuplicates();
    void setListReplacesTheNames();
};

void TestGraphList::startsEmptyWithItsName()
{
    const GraphList list(QStringLiteral("trees"));
    QCOMPARE(list.getName(), QStringLiteral("trees"));
    QCOMPARE(list.getList(), QStringList());
    QCOMPARE(list.size(), 0);
}

void TestGraphList::startsWithACopyOfTheNames()
{
    QStringList names{QStringLiteral("BW"), QStringLiteral("A_")};
    const GraphList list(QStringLiteral("trees"), names);
    names.append(QStringLiteral("@"));
    QCOMPARE(list.getName(), QStringLiteral("trees"));
    QCOMPARE(list.getList(), (QStringList{QStringLiteral("BW"), QStringLiteral("A_")}));
    QCOMPARE(list.size(), 2);

    list.getList().append(QStringLiteral("@"));
    QCOMPARE(list.size(), 2);
}

void TestGraphList::keepsOrderAndDuplicates()
{
    GraphList list(QStringLiteral("any"));
    list.addGraph(QStringLiteral("BW"));
    list.addGraph(QStringLiteral("A_"));
    list.addGraph(QStringLiteral("BW"));
    QCOMPARE(list.getList(), (QStringList{QStringLiteral("BW"), QStringLiteral("A_"), QStringLiteral("BW")}));
    QCOMPARE(list.size(), 3);
}

void TestGraphList::setListReplacesTheNames()
{
    GraphList list(QStringLiteral("any"), {QStringLiteral("BW"), QStringLiteral("A_")});
    list.setList({QStringLiteral("@")});
    QCOMPARE(list.getList(), QStringList{QStringLiteral("@")});
    QCOMPARE(list.getName(), QStringLiteral("any"));
    list.setList({});
    QCOMPARE(list.size(), 0);
}

QTEST_APPLESS_MAIN(TestGraphList)
#include "tst_graphlist.moc"
