// Places on a circle, and places that are fitted into a box.

#include "places.h"

#include <QPolygonF>
#include <QtTest>

class TestPlaces : public QObject
{
    Q_OBJECT

private slots:
    void circles_data();
    void circles();
    void fitting_data();
    void fitting();
};

namespace
{
bool isNear(QPointF a, QPointF b)
{
    return qAbs(a.x() - b.x()) < 1e-9 && qAbs(a.y() - b.y()) < 1e-9;
}
} // namespace

Q_DECLARE_METATYPE(Qt::AspectRatioMode)

void TestPlaces::circles_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 2, 3, 4, 31}) {
        QTest::addRow("%d", count) << count;
    }
}

void TestPlaces::circles()
{
    QFETCH(int, count);
    const Places places = circle(count);
    QCOMPARE(places.size(), count);
    QPointF sum;
    for (int i = 0; i < count; ++i) {
        sum += places[i];
        QVERIFY(count < 2 || qAbs(QLineF(places[i], places[(i + 1) % count]).length() - 1.0) < 1e-9);
    }
    QVERIFY(isNear(sum, {}));
}

void TestPlaces::fitting_data()
{
    const QSizeF box(40, 20);
    const auto keep = Qt::KeepAspectRatio;
    const auto stretch = Qt::IgnoreAspectRatio;
    QTest::addColumn<Places>("places");
    QTest::addColumn<QSizeF>("box");
    QTest::addColumn<Qt::AspectRatioMode>("mode");
    QTest::addColumn<Places>("expected");
    QTest::newRow("nothing") << Places() << box << stretch << Places();
    QTest::newRow("a point") << Places{{3, 4}} << box << stretch << Places{{0, 0}};
    QTest::newRow("a point, kept") << Places{{3, 4}} << box << keep << Places{{0, 0}};
    QTest::newRow("stretched") << Places{{0, 0}, {1, 5}, {2, 10}} << box << stretch
                               << Places{{-20, -10}, {0, 0}, {20, 10}};
    QTest::newRow("flat") << Places{{1, 7}, {2, 7}, {5, 7}} << box << stretch << Places{{-20, 0}, {-10, 0}, {20, 0}};
    QTest::newRow("flat, kept") << Places{{1, 7}, {2, 7}, {5, 7}} << box << keep << Places{{-20, 0}, {-10, 0}, {20, 0}};
    QTest::newRow("wide") << Places{{0, 0}, {8, 2}} << box << keep << Places{{-20, -5}, {20, 5}};
    QTest::newRow("square") << Places{{0, 0}, {8, 8}} << box << keep << Places{{-10, -10}, {10, 10}};
    QTest::newRow("high") << Places{{0, 0}, {2, 8}} << box << keep << Places{{-20, -5}, {20, 5}};
    QTest::newRow("high, into a square") << Places{{0, 0}, {2, 8}} << QSizeF(20, 20) << keep
                                         << Places{{-2.5, -10}, {2.5, 10}};
    QTest::newRow("wide, into a high box")
        << Places{{0, 0}, {8, 2}} << QSizeF(20, 40) << keep << Places{{-5, -20}, {5, 20}};
}

void TestPlaces::fitting()
{
    QFETCH(Places, places);
    QFETCH(QSizeF, box);
    QFETCH(Qt::AspectRatioMode, mode);
    QFETCH(Places, expected);
    const Places result = fitted(places, box, mode);
    QCOMPARE(result.size(), expected.size());
    for (int i = 0; i < result.size(); ++i) {
        QVERIFY2(isNear(result[i], expected[i]),
                 qPrintable(QStringLiteral("%1: %2, %3").arg(i).arg(result[i].x()).arg(result[i].y())));
    }
}

QTEST_APPLESS_MAIN(TestPlaces)
#include "tst_places.moc"
