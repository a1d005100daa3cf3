// The edge item: the line between two vertices.

#include "edge.h"
#include "node.h"
#include "support/itemimage.h"
#include "support/stderrcapture.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QVector>
#include <QtTest>

class TestEdge : public QObject
{
    Q_OBJECT

private slots:
    void startsHiddenFarBelow();
    void endsCanBeReplaced();
    void shownWhenPresent();
    void adjustHidesAnEdgeWithAHiddenEnd_data();
    void adjustHidesAnEdgeWithAHiddenEnd();
    void cannotBeShownWithAHiddenEnd();
    void paintingWithAHiddenEndForgetsTheEdge();
    void worksWithoutEnds();
    void goesBeforeOrAfterItsVertices_data();
    void goesBeforeOrAfterItsVertices();
    void liesBelowItsLowerVertex();
    void joinsTheCentresOfItsVertices();
    void followsWhileItIsPresentOnly();
    void shortLinesArePoints_data();
    void shortLinesArePoints();
    void fourUnitsArePaintedAsAPoint();
    void boundingRectHasRoomForTheLabel();
    void isABlackLineOfWidthTwo();
    void hilightedIsRedAndThicker();
    void widthIsCommonToAllEdges();
    void labelBoxIsWhite();
    void labelTextIsBlack();
    void withoutLabelThereIsNoBox();
    void sceneFindsItWhereItIs();
    void isDrawnUnderItsVertices();
    void mouseButtonsRepaintAndPass_data();
    void mouseButtonsRepaintAndPass();
    void displayWritesTheNamesOfTheEnds();
    void displayLeavesAMissingEndEmpty();
};

namespace
{
/// Vertices "a" at (0, 0) and "b" at (x, y) with the edge between them, not in a scene.
struct Pair {
    explicit Pair(double x = 100.0, double y = 0.0)
    {
        a.addENeighbor(&edge);
        b.addENeighbor(&edge);
        b.setPosition(x, y);
    }

    Node a{0, 0, 10.0, 10.0, QStringLiteral("a"), true};
    Node b{0, 0, 10.0, 10.0, QStringLiteral("b"), true};
    Edge edge{&a, &b};
};

constexpr QRgb black = 0xff000000;
constexpr QRgb white = 0xffffffff;
constexpr QRgb red = 0xffff0000;
} // namespace

void TestEdge::startsHiddenFarBelow()
{
    Pair pair;
    QCOMPARE(pair.edge.from(), &pair.a);
    QCOMPARE(pair.edge.to(), &pair.b);
    QVERIFY(!pair.edge.isVisible());
    QCOMPARE(pair.edge.zValue(), -10000.0);
    QCOMPARE(pair.edge.length(), 0.0);
    QCOMPARE(pair.edge.line(), QLineF(0, 0, 0, 0));
    QCOMPARE(pair.edge.parentItem(), nullptr);
}

void TestEdge::endsCanBeReplaced()
{
    Pair pair;
    Node c(0, 30, 10.0, 10.0, QStringLiteral("c"), true);
    Node d(40, 0, 10.0, 10.0, QStringLiteral("d"), true);
    pair.edge.setOrig(&c);
    pair.edge.setDest(&d);
    QCOMPARE(pair.edge.from(), &c);
    QCOMPARE(pair.edge.to(), &d);
    pair.edge.resetVisible(true);
    QCOMPARE(pair.edge.length(), 50.0);
}

void TestEdge::shownWhenPresent()
{
    Pair pair;
    pair.edge.resetVisible(true);
    QVERIFY(pair.edge.isVisible());
    pair.edge.adjust();
    QVERIFY(pair.edge.isVisible());
    pair.edge.resetVisible(false);
    QVERIFY(!pair.edge.isVisible());
    pair.edge.adjust();
    QVERIFY(!pair.edge.isVisible());
    pair.edge.resetVisible(true);
    pair.edge.hide();
    pair.edge.adjust();
    QVERIFY(pair.edge.isVisible());
}

void TestEdge::adjustHidesAnEdgeWithAHiddenEnd_data()
{
    QTest::addColumn<bool>("source");
    QTest::newRow("source") << true;
    QTest::newRow("dest") << false;
}

void TestEdge::adjustHidesAnEdgeWithAHiddenEnd()
{
    QFETCH(bool, source);
    Pair pair;
    pair.edge.resetVisible(true);
    Node &end = source ? pair.a : pair.b;
    end.resetVisible(false, false);
    QVERIFY(pair.edge.isVisible());
    pair.edge.adjust();
    QVERIFY(!pair.edge.isVisible());
    end.resetVisible(true, false);
    pair.edge.adjust(); // the pair is no longer an edge of the displayed graph
    QVERIFY(!pair.edge.isVisible());
}

void TestEdge::cannotBeShownWithAHiddenEnd()
{
    Pair pair;
    pair.a.resetVisible(false, true);
    pair.edge.resetVisible(true);
    QVERIFY(!pair.edge.isVisible());
    pair.a.resetVisible(true, true);
    pair.edge.adjust();
    QVERIFY(!pair.edge.isVisible());
    pair.edge.resetVisible(true);
    QVERIFY(pair.edge.isVisible());
}

void TestEdge::paintingWithAHiddenEndForgetsTheEdge()
{
    Pair pair;
    pair.edge.resetVisible(true);
    pair.b.resetVisible(false, false);
    QVERIFY(ItemImage(pair.edge).painted().isEmpty());
    pair.b.resetVisible(true, false);
    pair.edge.adjust();
    QVERIFY(!pair.edge.isVisible());
}

void TestEdge::worksWithoutEnds()
{
    Node a(0, 0, 10.0, 10.0, QStringLiteral("a"), true);
    Edge noSource(nullptr, &a);
    Edge noDest(&a, nullptr);
    Edge loop(&a, &a);
    for (Edge *edge : {&noSource, &noDest, &loop}) {
        QCOMPARE(edge->zValue(), 0.0);
    }
    for (Edge *edge : {&noSource, &noDest}) {
        QVERIFY(edge->boundingRect().isNull());
        edge->resetVisible(true);
        QVERIFY(!edge->isVisible());
        QVERIFY(ItemImage(*edge).painted().isEmpty());
    }
}

void TestEdge::goesBeforeOrAfterItsVertices_data()
{
    QTest::addColumn<QVector<int>>("order"); // 0 and 1 are the vertices, 2 is the edge
    QTest::newRow("vertices first") << QVector<int>{0, 1, 2};
    QTest::newRow("edge first") << QVector<int>{2, 1, 0};
    QTest::newRow("edge between") << QVector<int>{1, 2, 0};
}

void TestEdge::goesBeforeOrAfterItsVertices()
{
    QFETCH(QVector<int>, order);
    QGraphicsScene scene;
    auto *a = new Node(0, 0, 10.0, 10.0, QStringLiteral("a"), true);
    auto *b = new Node(100, 0, 10.0, 10.0, QStringLiteral("b"), true);
    auto *edge = new Edge(a, b);
    a->addENeighbor(edge);
    b->addENeighbor(edge);
    edge->resetVisible(true);
    const QVector<QGraphicsItem *> items{a, b, edge};
    for (QGraphicsItem *item : items) {
        scene.addItem(item);
    }
    QCOMPARE(QApplication::topLevelWidgets().size(), 2); // the dialogs of the vertices

    int left = items.size();
    for (const int index : order) {
        delete items.at(index);
        QCOMPARE(scene.items().size(), --left);
    }
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void TestEdge::liesBelowItsLowerVertex()
{
    Pair pair;
    pair.edge.resetVisible(true);
    QCOMPARE(pair.edge.zValue(), 0.9);
    pair.b.setPosition(100, 0, -7);
    QCOMPARE(pair.edge.zValue(), -7.1);
    pair.a.setPosition(0, 0, -20);
    QCOMPARE(pair.edge.zValue(), -20.1);
    pair.a.setPosition(0, 0, 5);
    pair.b.setPosition(100, 0, 3);
    QCOMPARE(pair.edge.zValue(), 2.9);
}

void TestEdge::joinsTheCentresOfItsVertices()
{
    Pair pair(30, 40);
    pair.edge.setPos(10, 10); // the line is kept in the coordinates of the item
    pair.edge.resetVisible(true);
    QCOMPARE(pair.edge.length(), 50.0);
    QCOMPARE(pair.edge.boundingRect(), QRectF(-31.5, -21.5, 73, 63));
}

void TestEdge::followsWhileItIsPresentOnly()
{
    Pair pair;
    pair.edge.resetVisible(true);
    QCOMPARE(pair.edge.length(), 100.0);
    pair.b.setPosition(60, 0);
    QCOMPARE(pair.edge.length(), 60.0);
    pair.edge.resetVisible(false);
    pair.b.setPosition(80, 0);
    QCOMPARE(pair.edge.length(), 60.0);
    pair.edge.resetVisible(true);
    QCOMPARE(pair.edge.length(), 80.0);
}

void TestEdge::shortLinesArePoints_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("length");
    QTest::newRow("4 units") << 4.0 << 0.0 << 0.0;
    QTest::newRow("5 units") << 3.0 << 4.0 << 0.0;
    QTest::newRow("5.5 units") << 0.0 << -5.5 << 5.5;
    QTest::newRow("6 units") << 6.0 << 0.0 << 6.0;
}

void TestEdge::shortLinesArePoints()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(double, length);
    Pair pair(100, 0);
    pair.edge.resetVisible(true);
    pair.b.setPosition(x, y);
    QCOMPARE(pair.edge.length(), length);
}

void TestEdge::fourUnitsArePaintedAsAPoint()
{
    Pair pair(4, 0);
    pair.edge.resetVisible(true);
    QCOMPARE(ItemImage(pair.edge).painted(), QRect(-1, -1, 2, 2));
    QCOMPARE(pair.edge.boundingRect(), QRectF(-21.5, -11.5, 43, 23));
    pair.b.setPosition(6, 0);
    QCOMPARE(ItemImage(pair.edge).painted(), QRect(-1, -1, 8, 2));
    pair.b.setPosition(4, 0);
    pair.a.setPosition(1, 0); // a point follows its source
    QCOMPARE(ItemImage(pair.edge).painted(), QRect(0, -1, 2, 2));
}

void TestEdge::boundingRectHasRoomForTheLabel()
{
    Pair pair(100, 50);
    pair.edge.resetVisible(true);
    QCOMPARE(pair.edge.boundingRect(), QRectF(-21.5, -11.5, 143, 73));
    pair.b.setPosition(-100, -50);
    QCOMPARE(pair.edge.boundingRect(), QRectF(-121.5, -61.5, 143, 73));
    pair.b.setPosition(0, 6);
    QCOMPARE(pair.edge.boundingRect(), QRectF(-21.5, -11.5, 43, 29));
}

void TestEdge::isABlackLineOfWidthTwo()
{
    Pair pair;
    pair.edge.resetVisible(true);
    const ItemImage image(pair.edge);
    QCOMPARE(image.countInColumn(50, black), 2);
    QCOMPARE(image.painted(), QRect(-1, -1, 102, 2)); // round caps reach past both ends
}

void TestEdge::hilightedIsRedAndThicker()
{
    Pair pair;
    pair.edge.resetVisible(true);
    pair.edge.setHilighted(true);
    const ItemImage image(pair.edge);
    QCOMPARE(image.countInColumn(50, red), 4);
    QCOMPARE(image.countInColumn(50, black), 0);
    pair.edge.setHilighted(false);
    QCOMPARE(ItemImage(pair.edge).countInColumn(50, black), 2);
}

void TestEdge::widthIsCommonToAllEdges()
{
    Pair one;
    Pair two;
    one.edge.resetVisible(true);
    two.edge.resetVisible(true);
    two.edge.setHilighted(true);
    Edge::setEdgeWidth(6);
    const ItemImage plain(one.edge);
    const ItemImage hilighted(two.edge);
    Edge::setEdgeWidth(2); // the other tests expect the initial width
    QCOMPARE(plain.countInColumn(50, black), 6);
    QCOMPARE(hilighted.countInColumn(50, red), 8);
}

void TestEdge::labelBoxIsWhite()
{
    Pair pair;
    pair.edge.resetVisible(true);
    pair.edge.setLabel(QStringLiteral(" "));
    const ItemImage image(pair.edge);
    const QRect box(30, -10, 41, 21); // 40 x 20 around (50, 0), outlined
    QVERIFY(image.unlike(white, box).isEmpty());
    QCOMPARE(image.painted(), QRect(-1, -10, 102, 21));
    QCOMPARE(image.countInColumn(29, black), 2);
    QVERIFY(!image.paints(30, -11));
    QVERIFY(!image.paints(70, 11));
    QCOMPARE(image.countInColumn(71, black), 2);
}

void TestEdge::labelTextIsBlack()
{
    Pair pair;
    pair.edge.resetVisible(true);
    pair.edge.setLabel(QStringLiteral("H"));
    const ItemImage image(pair.edge);
    const QRect text = image.unlike(white, QRect(30, -10, 41, 21));
    QVERIFY2(text.left() >= 34 && text.left() <= 37, qPrintable(QString::number(text.left())));
    QCOMPARE(text.bottom(), 4); // the base line is at 5
    QVERIFY(text.height() >= 5);
    QVERIFY(image.at(text.left() + 1, 0).lightness() < 128);
}

void TestEdge::withoutLabelThereIsNoBox()
{
    Pair pair;
    pair.edge.resetVisible(true);
    const ItemImage before(pair.edge);
    pair.edge.setLabel(QStringLiteral("H"));
    QVERIFY(!(ItemImage(pair.edge) == before));
    pair.edge.setLabel(QString());
    QVERIFY(ItemImage(pair.edge) == before);
}

void TestEdge::sceneFindsItWhereItIs()
{
    QGraphicsScene scene(-100, -100, 1000, 200);
    Pair pair(100, 0);
    scene.addItem(&pair.edge);
    pair.edge.resetVisible(true);
    const QRectF far(700, -5, 10, 10);
    QVERIFY(scene.items(far, Qt::IntersectsItemBoundingRect).isEmpty());
    pair.b.setPosition(800, 0);
    QCOMPARE(scene.items(far, Qt::IntersectsItemBoundingRect), (QList<QGraphicsItem *>{&pair.edge}));
}

void TestEdge::isDrawnUnderItsVertices()
{
    QGraphicsScene scene(-100, -100, 400, 200);
    Pair pair(200, 0);
    for (QGraphicsItem *item : {static_cast<QGraphicsItem *>(&pair.a), static_cast<QGraphicsItem *>(&pair.b),
                                static_cast<QGraphicsItem *>(&pair.edge)}) {
        scene.addItem(item);
    }
    pair.a.setColor(8); // blue
    pair.b.setColor(6); // white
    pair.a.setPosition(0, 0, 0);
    pair.b.setPosition(200, 0, 0);
    pair.edge.resetVisible(true);

    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::gray);
    QPainter painter(&image);
    scene.render(&painter);
    QCOMPARE(image.pixel(200, 100), black); // between the vertices
    QVERIFY(qBlue(image.pixel(120, 100)) > 128);
    QVERIFY(qRed(image.pixel(280, 100)) > 128);
}

void TestEdge::mouseButtonsRepaintAndPass_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("press") << int(QEvent::GraphicsSceneMousePress);
    QTest::newRow("release") << int(QEvent::GraphicsSceneMouseRelease);
}

void TestEdge::mouseButtonsRepaintAndPass()
{
    QFETCH(int, type);
    QGraphicsScene scene;
    Pair pair;
    scene.addItem(&pair.edge);
    pair.edge.resetVisible(true);
    QSignalSpy changed(&scene, &QGraphicsScene::changed);
    QCoreApplication::sendPostedEvents(); // one of them lets the scene tell its changes
    QVERIFY(!changed.isEmpty());
    changed.clear();

    QGraphicsSceneMouseEvent event(static_cast<QEvent::Type>(type));
    event.setButton(Qt::LeftButton);
    scene.sendEvent(&pair.edge, &event);
    QCoreApplication::sendPostedEvents();
    QVERIFY(!changed.isEmpty());
    QCOMPARE(changed.at(0).at(0).value<QList<QRectF>>().constFirst(), pair.edge.sceneBoundingRect());
    if (type == QEvent::GraphicsSceneMousePress) {
        QVERIFY(!event.isAccepted());
    }
}

void TestEdge::displayWritesTheNamesOfTheEnds()
{
    const Pair pair;
    StderrCapture capture;
    pair.edge.display();
    QCOMPARE(capture.take(), QByteArray("Edge(a ; b)\n"));
}

void TestEdge::displayLeavesAMissingEndEmpty()
{
    Node a(0, 0, 10.0, 10.0, QStringLiteral("a"), true);
    const Edge noSource(nullptr, &a);
    const Edge noDest(&a, nullptr);
    const Edge loop(&a, &a);
    StderrCapture capture;
    noSource.display();
    noDest.display();
    loop.display();
    QCOMPARE(capture.take(), QByteArray("Edge( ; a)\nEdge(a ; )\nEdge(a ; a)\n"));
}

QTEST_MAIN(TestEdge)
#include "tst_edge.moc"
