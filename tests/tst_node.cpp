// The vertex item: its place, look, state and mouse handling.

#include "edge.h"
#include "node.h"
#include "nodedisplay.h"
#include "support/itemimage.h"
#include "support/patience.h"
#include "support/stderrcapture.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QLineEdit>
#include <QPainter>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTextDocument>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

class TestNode : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void interactiveVertex();
    void plainVertex();
    void initialState();
    void names();
    void toolTipShowsTheNameAsItIs_data();
    void toolTipShowsTheNameAsItIs();
    void toolTipOfALongNameIsItsBeginning();
    void existenceAndVisibility();
    void resetVisibleShowsAtOnceOnRequest();
    void positionFromAPointKeepsDepth();
    void positionFromTwoNumbersKeepsTheStackingOrder();
    void positionFromThreeNumbersSetsTheStackingOrder();
    void positionWithoutAnyIsTheOrigin();
    void positionsAreFinite();
    void moveIsRelative();
    void edgesFollow_data();
    void edgesFollow();
    void edgesFollowPlacesSetThroughTheItem();
    void boundingRectAndShape();
    void labelledVertexIsNotCached();
    void sizeRatioEnlarges();
    void colours_data();
    void colours();
    void colourDarkensTowardsTheRim();
    void outlines_data();
    void outlines();
    void hilightedGradient();
    void paintedRadiusIsTruncated();
    void labelBox();
    void labelText();
    void printModeLooksTheSame();
    void plainVertexPaintsNothing();
    void changesOfTheLookRequestARepaint_data();
    void changesOfTheLookRequestARepaint();
    void pressMarksTheVertex();
    void pressAndRelease_data();
    void pressAndRelease();
    void releaseRepaintsTheOutline();
    void mouseDragsTheVertex();
    void pressSelectsInTheSceneToo();
    void doubleClickWritesALine();
    void mousePressPosIsRounded();
    void nodeUnderMouseToggles();
    void nodeUnderMouseRepaints();
    void deletedVertexIsNotUnderTheMouse();
    void dialogIsToggled();
    void dialogListsTheValues();
    void plainVertexHasNoDialog();
    void dialogGoesWithItsVertex();
    void displayWritesNameAndEdgeCount();
};

namespace
{
std::unique_ptr<Node> vertexAt(double x, double y, const char *name = "v")
{
    return std::make_unique<Node>(x, y, 10.0, 10.0, QString::fromLatin1(name), true);
}

/// The outline of a painted disc, met from the right on the row through its centre: its colour and width.
QString outlineOf(Node &node)
{
    const ItemImage image(node);
    int x = image.painted().right();
    const QColor colour = image.at(x, 0);
    int width = 0;
    while (image.at(x, 0) == colour) {
        ++width;
        --x;
    }
    return QStringLiteral("%1 %2").arg(colour.name()).arg(width);
}

bool alike(const QColor &a, const QColor &b)
{
    constexpr int tolerance = 4;
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance;
}

QList<NodeDisplay *> dialogs()
{
    QList<NodeDisplay *> found;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (auto *dialog = qobject_cast<NodeDisplay *>(window)) {
            found << dialog;
        }
    }
    return found;
}

/// The parts of @p scene that want repainting after @p action.
template<typename Action> QList<QRectF> repaints(QGraphicsScene &scene, Action action)
{
    QSignalSpy changed(&scene, &QGraphicsScene::changed);
    scene.update();
    QCoreApplication::sendPostedEvents(); // one of them lets the scene tell its changes
    changed.clear();
    action();
    QCoreApplication::sendPostedEvents();
    return changed.isEmpty() ? QList<QRectF>() : changed.at(0).at(0).value<QList<QRectF>>();
}

/// A scene with one vertex at (100, 100), worked with the left button.
class Stage
{
public:
    Stage() { scene.addItem(&vertex); }

    void press(QPointF scenePos, QPoint screenPos)
    {
        downAt = scenePos;
        send(QEvent::GraphicsSceneMousePress, scenePos, screenPos, Qt::LeftButton);
    }
    void moveTo(QPointF scenePos, QPoint screenPos)
    {
        send(QEvent::GraphicsSceneMouseMove, scenePos, screenPos, Qt::NoButton);
    }
    void release(QPointF scenePos, QPoint screenPos)
    {
        send(QEvent::GraphicsSceneMouseRelease, scenePos, screenPos, Qt::LeftButton);
    }
    void doubleClick(QPointF scenePos, QPoint screenPos)
    {
        send(QEvent::GraphicsSceneMouseDoubleClick, scenePos, screenPos, Qt::LeftButton);
    }

    QGraphicsScene scene{0, 0, 400, 400};
    Node vertex{100, 100, 10.0, 10.0, QStringLiteral("v"), true};

private:
    void send(QEvent::Type type, QPointF scenePos, QPoint screenPos, Qt::MouseButton button)
    {
        QGraphicsSceneMouseEvent event(type);
        event.setScenePos(scenePos);
        event.setLastScenePos(downAt);
        event.setButtonDownScenePos(Qt::LeftButton, downAt);
        event.setScreenPos(screenPos);
        event.setButton(button);
        event.setButtons(type == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
        QCoreApplication::sendEvent(&scene, &event);
    }

    QPointF downAt;
};
} // namespace

void TestNode::initTestCase()
{
    Node::initColors();
}

void TestNode::cleanup()
{
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    QVERIFY(dialogs().isEmpty());
}

void TestNode::interactiveVertex()
{
    const Node node(12.5, -3.0, 10.0, 10.0, QStringLiteral("Node 1"), true);
    QCOMPARE(node.flags(),
             QGraphicsItem::ItemIsMovable | QGraphicsItem::ItemIsSelectable | QGraphicsItem::ItemSendsGeometryChanges);
    QCOMPARE(node.cacheMode(), QGraphicsItem::DeviceCoordinateCache);
    QCOMPARE(node.zValue(), 1.0);
    QCOMPARE(node.toolTip(), QStringLiteral("Node 1"));
    QCOMPARE(node.pos(), QPointF(12.5, -3.0));
    QCOMPARE(node.position(), QPointF(12.5, -3.0));
    QCOMPARE(node.parentItem(), nullptr);
}

void TestNode::plainVertex()
{
    const Node node(12.5, -3.0, 10.0, 10.0, QStringLiteral("Node 1"), false);
    QCOMPARE(node.flags(), QGraphicsItem::GraphicsItemFlags());
    QCOMPARE(node.cacheMode(), QGraphicsItem::NoCache);
    QCOMPARE(node.zValue(), 0.0);
    QCOMPARE(node.toolTip(), QString());
    QCOMPARE(node.pos(), QPointF(0, 0));
    QCOMPARE(node.getName(), QStringLiteral("Node 1"));
}

void TestNode::initialState()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("Node 1"), true);
    QVERIFY(node.getVisible());
    QVERIFY(!node.isSelected());
    QCOMPARE(node.getRadius(), 40.0);
    QVERIFY(node.getENeighbors().isEmpty());
    QVERIFY(node.isVisible());
    node.resetVisible(false, false);
    node.setExists(true);
    node.best_backup();
    QVERIFY(node.getVisible());
}

void TestNode::names()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("Node 1"), true);
    QCOMPARE(node.nodeName(), QStringLiteral("Node 1"));
    node.setName(QStringLiteral("hub"));
    QCOMPARE(node.getName(), QStringLiteral("hub"));
    QCOMPARE(node.toolTip(), QStringLiteral("hub"));
    node.setNodeName(QStringLiteral("leaf"));
    QCOMPARE(node.nodeName(), QStringLiteral("leaf"));
    node.setToolTip(QStringLiteral("other"));
    const ItemImage painted(node);
    QVERIFY(!painted.painted().isEmpty());
    QCOMPARE(node.toolTip(), QStringLiteral("leaf"));
}

void TestNode::toolTipShowsTheNameAsItIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("Node 1");
    QTest::newRow("element") << QStringLiteral("<b>x</b>");
    QTest::newRow("entity") << QStringLiteral("&lt;b&gt;");
    QTest::newRow("graph6") << QStringLiteral("A_<&>");
}

void TestNode::toolTipShowsTheNameAsItIs()
{
    QFETCH(QString, name);
    Node node(0, 0, 10.0, 10.0, name, true);
    for (const QString &tip : {node.toolTip(), (node.setName(name), node.toolTip())}) {
        QTextDocument shown;
        if (Qt::mightBeRichText(tip)) {
            shown.setHtml(tip);
        } else {
            shown.setPlainText(tip);
        }
        QCOMPARE(shown.toPlainText(), name);
    }
    QCOMPARE(node.getName(), name);
}

void TestNode::toolTipOfALongNameIsItsBeginning()
{
    const QString longest(1000, QLatin1Char('n'));
    Node node(0, 0, 10.0, 10.0, longest, true);
    QCOMPARE(node.toolTip(), longest);
    const QString name(20000000, QLatin1Char('n'));
    node.setName(name);
    QCOMPARE(node.toolTip(), longest.left(999) + QChar(0x2026));
    const ItemImage painted(node);
    QVERIFY(!painted.painted().isEmpty());
    QCOMPARE(node.toolTip().size(), 1000);
    QCOMPARE(node.getName(), name);
}

void TestNode::existenceAndVisibility()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setExists(false);
    QVERIFY(node.getVisible()); // the display follows the best graph only
    node.best_backup();
    QVERIFY(!node.getVisible());
    QVERIFY(node.isVisible());
    node.updateVisible();
    QVERIFY(!node.isVisible());

    node.setExists(true);
    node.best_restore(); // takes the existence of the displayed graph
    node.best_backup();
    QVERIFY(!node.getVisible());
}

void TestNode::resetVisibleShowsAtOnceOnRequest()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.resetVisible(false, false);
    QVERIFY(!node.getVisible());
    QVERIFY(node.isVisible());
    node.best_backup(); // the vertex does not exist either
    QVERIFY(!node.getVisible());
    node.resetVisible(false, true);
    QVERIFY(!node.isVisible());
    node.resetVisible(true, true);
    QVERIFY(node.getVisible());
    QVERIFY(node.isVisible());
    node.best_backup();
    QVERIFY(node.getVisible());
}

void TestNode::positionFromAPointKeepsDepth()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setPosition(1, 2, 3);
    node.setPosition(QPointF(40, 50));
    QCOMPARE(node.pos(), QPointF(40, 50));
    QCOMPARE(node.getCoordX(), 40.0);
    QCOMPARE(node.getCoordY(), 50.0);
    QCOMPARE(node.getCoordZ(), 3.0);
    QCOMPARE(node.zValue(), 3.0);
}

void TestNode::positionFromTwoNumbersKeepsTheStackingOrder()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setPosition(40, 50);
    QCOMPARE(node.zValue(), 1.0);
    node.setPosition(1, 2, 3);
    node.setPosition(40, 50);
    QCOMPARE(node.pos(), QPointF(40, 50));
    QCOMPARE(node.getCoordX(), 40.0);
    QCOMPARE(node.getCoordY(), 50.0);
    QCOMPARE(node.getCoordZ(), 0.0);
    QCOMPARE(node.zValue(), 3.0);
}

void TestNode::positionFromThreeNumbersSetsTheStackingOrder()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setPosition(-1, -2, -3);
    QCOMPARE(node.pos(), QPointF(-1, -2));
    QCOMPARE(node.getCoordX(), -1.0);
    QCOMPARE(node.getCoordY(), -2.0);
    QCOMPARE(node.getCoordZ(), -3.0);
    QCOMPARE(node.zValue(), -3.0);
    node.setPosition(-1, -2, 0);
    QCOMPARE(node.zValue(), 0.0);
}

void TestNode::positionWithoutAnyIsTheOrigin()
{
    const Node node(40, 50, 10.0, 10.0, QStringLiteral("v"), true); // placed, but not by coordinates
    QCOMPARE(node.pos(), QPointF(40, 50));
    QCOMPARE(node.getCoordX(), 0.0);
    QCOMPARE(node.getCoordY(), 0.0);
    QCOMPARE(node.getCoordZ(), 0.0);
}

void TestNode::positionsAreFinite()
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    Node vertex(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    vertex.setPosition(1, 2, 3);
    for (const double value : {infinity, -infinity, notANumber}) {
        vertex.setPosition(QPointF(value, 7));
        vertex.setPosition(7, value);
        vertex.setPosition(value, 7, 7);
        QCOMPARE(vertex.pos(), QPointF(1, 2));
        QCOMPARE(vertex.getCoordX(), 1.0);
        QCOMPARE(vertex.getCoordY(), 2.0);
        QCOMPARE(vertex.getCoordZ(), 3.0);
        QCOMPARE(vertex.zValue(), 3.0);
    }
    vertex.setPosition(4, 5, notANumber);
    QCOMPARE(vertex.pos(), QPointF(4, 5));
    QVERIFY(std::isnan(vertex.getCoordZ()));
    QCOMPARE(vertex.zValue(), 3.0);
}

void TestNode::moveIsRelative()
{
    Node node(10, 20, 10.0, 10.0, QStringLiteral("v"), true);
    node.setPosition(10, 20, 30);
    node.move(1, -2);
    QCOMPARE(node.pos(), QPointF(11, 18));
    node.move(QPointF(100, 200));
    QCOMPARE(node.pos(), QPointF(111, 218));
    QCOMPARE(node.getCoordX(), 10.0); // the coordinates are those given last
    QCOMPARE(node.getCoordY(), 20.0);
    QCOMPARE(node.zValue(), 30.0);
}

void TestNode::edgesFollow_data()
{
    QTest::addColumn<bool>("interactive");
    QTest::newRow("interactive") << true;
    QTest::newRow("plain") << false;
}

void TestNode::edgesFollow()
{
    QFETCH(bool, interactive);
    Node a(0, 0, 10.0, 10.0, QStringLiteral("a"), interactive);
    Node b(0, 0, 10.0, 10.0, QStringLiteral("b"), interactive);
    Node c(0, 0, 10.0, 10.0, QStringLiteral("c"), interactive);
    Edge ab(&a, &b);
    Edge ac(&a, &c);
    a.addENeighbor(&ab);
    a.addENeighbor(&ac);
    QCOMPARE(a.getENeighbors(), (QList<Edge *>{&ab, &ac}));
    ab.resetVisible(true);
    ac.resetVisible(true);
    a.setPosition(30, 40);
    QCOMPARE(ab.length(), 50.0);
    QCOMPARE(ac.length(), 50.0);
    a.setPosition(QPointF(60, 80));
    QCOMPARE(ab.length(), 100.0);
    a.setPosition(6, 8, 3);
    QCOMPARE(ab.length(), 10.0);
    a.move(24, 32);
    QCOMPARE(ab.length(), 50.0);
    QCOMPARE(ac.length(), 50.0);
}

void TestNode::edgesFollowPlacesSetThroughTheItem()
{
    Node a(0, 0, 10.0, 10.0, QStringLiteral("a"), true);
    Node b(0, 0, 10.0, 10.0, QStringLiteral("b"), true);
    Edge ab(&a, &b);
    a.addENeighbor(&ab);
    ab.resetVisible(true);
    a.setPos(30, 40);
    QCOMPARE(ab.length(), 50.0);
}

void TestNode::boundingRectAndShape()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    QCOMPARE(node.boundingRect(), QRectF(-42, -42, 85, 85));
    QCOMPARE(node.shape().boundingRect(), QRectF(-40, -40, 80, 80));
    QVERIFY(node.shape().contains(QPointF(28, 28)));
    QVERIFY(!node.shape().contains(QPointF(29, 29)));
    node.setRadius(12.5);
    QCOMPARE(node.getRadius(), 12.5);
    QCOMPARE(node.boundingRect(), QRectF(-14.5, -14.5, 30, 30));
    node.setLabel(QStringLiteral("2.5")); // whose box is wider than the disc
    QCOMPARE(node.boundingRect(), QRectF(-14.5, -14.5, 30, 30));
    QCOMPARE(node.shape().boundingRect(), QRectF(-12.5, -12.5, 25, 25));
}

void TestNode::labelledVertexIsNotCached()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setLabel(QStringLiteral("2.5"));
    QCOMPARE(node.cacheMode(), QGraphicsItem::NoCache);
    node.setLabel(QString());
    QCOMPARE(node.cacheMode(), QGraphicsItem::DeviceCoordinateCache);
    Node plain(0, 0, 10.0, 10.0, QStringLiteral("v"), false);
    plain.setLabel(QString());
    QCOMPARE(plain.cacheMode(), QGraphicsItem::NoCache);
}

void TestNode::sizeRatioEnlarges()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setSizeRatio(1.0);
    QCOMPARE(node.boundingRect(), QRectF(-82, -82, 165, 165));
    node.setRadius(10);
    QCOMPARE(node.getRadius(), 10.0);
    QCOMPARE(node.boundingRect(), QRectF(-22, -22, 45, 45));
    QCOMPARE(node.shape().boundingRect(), QRectF(-20, -20, 40, 40));
    node.setSizeRatio(0.0);
    QCOMPARE(node.boundingRect(), QRectF(-12, -12, 25, 25));
}

void TestNode::colours_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QColor>("colour");
    const char *const table[] = {"#ffff00", "#00ffff", "#ff0000", "#00ff00", "#a0a0a4", "#ff00ff",
                                 "#ffffff", "#c0c0c0", "#0000ff", "#000080", "#008080", "#808080",
                                 "#008000", "#800080", "#800000", "#808000"};
    for (int index = 0; index < 16; ++index) {
        QTest::addRow("%d", index) << index << QColor(QLatin1String(table[index]));
    }
    QTest::newRow("16: yellow") << 16 << QColor(Qt::yellow);
    QTest::newRow("17: cyan") << 17 << QColor(Qt::cyan);
    QTest::newRow("-1: dark yellow") << -1 << QColor(Qt::darkYellow);
    QTest::newRow("-16: yellow") << -16 << QColor(Qt::yellow);
    QTest::newRow("least: yellow") << std::numeric_limits<int>::min() << QColor(Qt::yellow);
    QTest::newRow("greatest: dark yellow") << std::numeric_limits<int>::max() << QColor(Qt::darkYellow);
}

void TestNode::colours()
{
    QFETCH(int, index);
    QFETCH(QColor, colour);
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    QVERIFY(alike(ItemImage(node).at(-5, -5), Qt::yellow));
    node.setColor(index);
    const QColor centre = ItemImage(node).at(-5, -5);
    QVERIFY2(alike(centre, colour), qPrintable(centre.name()));
}

void TestNode::colourDarkensTowardsTheRim()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setColor(2);
    const ItemImage image(node);
    QVERIFY(alike(image.at(-5, -5), QColor(255, 0, 0)));
    QVERIFY(alike(image.at(38, 0), QColor(130, 0, 0)));
    QVERIFY(alike(image.at(-39, 0), QColor(130, 0, 0)));
    QVERIFY(alike(image.at(0, 38), QColor(130, 0, 0)));
}

void TestNode::outlines_data()
{
    QTest::addColumn<bool>("hilighted");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("underMouse");
    QTest::addColumn<QString>("outline");
    QTest::newRow("plain") << false << false << false << QStringLiteral("#000000 1");
    QTest::newRow("hilighted") << true << false << false << QStringLiteral("#ffff00 1");
    QTest::newRow("selected") << false << true << false << QStringLiteral("#0000ff 4");
    QTest::newRow("under the mouse") << false << false << true << QStringLiteral("#ff0000 4");
    QTest::newRow("selected, under the mouse") << false << true << true << QStringLiteral("#ff0000 4");
    QTest::newRow("hilighted, selected") << true << true << false << QStringLiteral("#0000ff 4");
}

void TestNode::outlines()
{
    QFETCH(bool, hilighted);
    QFETCH(bool, selected);
    QFETCH(bool, underMouse);
    QFETCH(QString, outline);
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    if (hilighted) {
        node.hilight();
    }
    node.setSelected(selected);
    if (underMouse) {
        Node::setNodeUnderMouse(&node);
    }
    QCOMPARE(outlineOf(node), outline);
}

void TestNode::hilightedGradient()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    const ItemImage before(node);
    node.hilight();
    const ItemImage image(node);
    QVERIFY(alike(image.at(2, 2), QColor(0, 255, 0)));
    QVERIFY(alike(image.at(-38, 0), QColor(255, 0, 0))); // more than the radius away from the centre at (3, 3)
    QVERIFY(alike(image.at(23, 3), QColor(132, 123, 0)));
    node.unhilight();
    QVERIFY(ItemImage(node) == before);
}

void TestNode::paintedRadiusIsTruncated()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setRadius(20.0);
    QCOMPARE(ItemImage(node).painted(), QRect(-20, -20, 41, 41));
    node.setRadius(20.9);
    QCOMPARE(ItemImage(node).painted(), QRect(-20, -20, 41, 41));
    node.setRadius(10.0);
    node.setSizeRatio(0.19);
    QCOMPARE(ItemImage(node).painted(), QRect(-11, -11, 23, 23));
}

void TestNode::labelBox()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setRadius(5);
    const QRect disc = ItemImage(node).painted();
    node.setLabel(QStringLiteral(" "));
    const ItemImage image(node);
    QCOMPARE(image.painted(), QRect(-41, -10, 83, 31)); // the outline runs along the far sides
    for (const QPoint corner : {QPoint(-41, -10), QPoint(41, -10), QPoint(-41, 20), QPoint(41, 20)}) {
        QCOMPARE(image.at(corner.x(), corner.y()), QColor(Qt::blue));
    }
    QVERIFY(image.unlike(Qt::white, QRect(-40, -9, 81, 29)).isEmpty());
    node.setLabel(QString());
    QCOMPARE(ItemImage(node).painted(), disc);
}

void TestNode::labelText()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setLabel(QStringLiteral("H"));
    const ItemImage image(node);
    const QRect text = image.unlike(Qt::white, QRect(-40, -9, 81, 29));
    QVERIFY2(text.left() >= -35 && text.left() <= -32, qPrintable(QString::number(text.left())));
    QCOMPARE(text.bottom(), 14); // the base line is at 15
    QVERIFY(text.height() >= 5 && text.height() <= 12);
    for (int x = text.left(); x <= text.right(); ++x) { // between white and blue
        QCOMPARE(image.at(x, 13).blue(), 255);
    }

    QImage canvas(100, 100, QImage::Format_RGB32);
    QPainter painter(&canvas);
    node.paint(&painter, nullptr, nullptr);
    QCOMPARE(painter.font().family(), QStringLiteral("Times"));
    QCOMPARE(painter.font().pointSize(), 8);
}

void TestNode::printModeLooksTheSame()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setLabel(QStringLiteral("3.5"));
    const ItemImage screen(node);
    node.setPrintMode(true);
    QVERIFY(ItemImage(node) == screen);
}

void TestNode::plainVertexPaintsNothing()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), false);
    node.setLabel(QStringLiteral("3.5"));
    node.setSelected(true);
    QVERIFY(ItemImage(node).painted().isEmpty());
    QCOMPARE(node.toolTip(), QString());
}

using Change = void (*)(Node &);
Q_DECLARE_METATYPE(Change)

void TestNode::changesOfTheLookRequestARepaint_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("colour") << Change([](Node &node) { node.setColor(3); });
    QTest::newRow("label") << Change([](Node &node) { node.setLabel(QStringLiteral("x")); });
    QTest::newRow("radius") << Change([](Node &node) { node.setRadius(40); });
    QTest::newRow("hilight") << Change([](Node &node) { node.hilight(); });
    QTest::newRow("unhilight") << Change([](Node &node) { node.unhilight(); });
    QTest::newRow("updateVisible") << Change([](Node &node) { node.updateVisible(); });
}

void TestNode::changesOfTheLookRequestARepaint()
{
    QFETCH(Change, change);
    Stage stage;
    const QList<QRectF> areas = repaints(stage.scene, [&] { change(stage.vertex); });
    QVERIFY(areas.contains(QRectF(58, 58, 85, 85)));
}

void TestNode::pressMarksTheVertex()
{
    Stage stage;
    stage.press({110, 95}, {500, 400});
    QCOMPARE(Node::nodeUnderMouse(), &stage.vertex);
    QCOMPARE(stage.vertex.getMousePressPos(), QPoint(500, 400));
    QVERIFY(stage.vertex.isSelected());
    stage.release({110, 95}, {500, 400});
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    QVERIFY(stage.vertex.isSelected());
    stage.press({110, 95}, {500, 400});
    QVERIFY(!stage.vertex.isSelected());
    stage.release({110, 95}, {500, 400});
}

void TestNode::pressAndRelease_data()
{
    QTest::addColumn<QPoint>("screenPos");
    QTest::addColumn<QPointF>("scenePos");
    QTest::addColumn<QPointF>("expected");
    QTest::addColumn<double>("z");
    // A scene unit is two pixels; the press is at (110, 95) in the scene and at (500, 400) on the screen.
    QTest::newRow("3 px") << QPoint(503, 400) << QPointF(111.5, 95) << QPointF(100, 100) << 1.0;
    QTest::newRow("5 px in both") << QPoint(505, 395) << QPointF(112.5, 92.5) << QPointF(100, 100) << 1.0;
    QTest::newRow("6 px right") << QPoint(506, 400) << QPointF(113, 95) << QPointF(113, 95) << 0.0;
    QTest::newRow("6 px up") << QPoint(500, 394) << QPointF(110, 92) << QPointF(110, 92) << 0.0;
    QTest::newRow("10 px") << QPoint(490, 400) << QPointF(105, 95) << QPointF(105, 95) << 0.0;
}

void TestNode::pressAndRelease()
{
    QFETCH(QPoint, screenPos);
    QFETCH(QPointF, scenePos);
    QFETCH(QPointF, expected);
    QFETCH(double, z);
    Stage stage;
    stage.press({110, 95}, {500, 400});
    stage.release(scenePos, screenPos);
    QVERIFY(stage.vertex.isSelected());
    QCOMPARE(stage.vertex.pos(), expected);
    QCOMPARE(stage.vertex.zValue(), z);
}

void TestNode::releaseRepaintsTheOutline()
{
    Stage stage;
    QGraphicsView view(&stage.scene);
    view.resize(450, 450);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view, patience));
    const auto outline = [&] {
        QCoreApplication::processEvents();
        return view.viewport()->grab().toImage().pixelColor(view.mapFromScene(QPointF(60, 100)));
    };
    stage.press({100, 100}, {500, 400});
    QCOMPARE(outline(), QColor(Qt::red));
    stage.release({100, 100}, {500, 400});
    QCOMPARE(outline(), QColor(Qt::blue));
}

void TestNode::mouseDragsTheVertex()
{
    Stage stage;
    stage.press({110, 95}, {500, 400});
    stage.moveTo({150, 105}, {540, 410});
    QCOMPARE(stage.vertex.pos(), QPointF(140, 110));
    stage.release({150, 105}, {540, 410});
    QCOMPARE(stage.vertex.pos(), QPointF(150, 105));
}

void TestNode::pressSelectsInTheSceneToo()
{
    Stage stage;
    stage.press({100, 100}, {500, 400});
    QCOMPARE(stage.scene.selectedItems(), (QList<QGraphicsItem *>{&stage.vertex}));
    Node other(300, 300, 10.0, 10.0, QStringLiteral("w"), true);
    stage.scene.addItem(&other);
    other.QGraphicsItem::setSelected(true);
    stage.release({100, 100}, {500, 400}); // a click leaves the clicked item as the only selected one
    QCOMPARE(stage.scene.selectedItems(), (QList<QGraphicsItem *>{&stage.vertex}));
}

void TestNode::doubleClickWritesALine()
{
    Stage stage;
    StderrCapture capture;
    stage.doubleClick({100, 100}, {500, 400});
    QCOMPARE(capture.take(), QByteArray("Double click\n"));
    QVERIFY(!stage.vertex.isSelected());
    QCOMPARE(stage.vertex.pos(), QPointF(100, 100));
    QVERIFY(dialogs().constFirst()->isHidden());
}

void TestNode::mousePressPosIsRounded()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.setMousePressPos(QPointF(3.6, -7.4));
    QCOMPARE(node.getMousePressPos(), QPoint(4, -7));
}

void TestNode::nodeUnderMouseToggles()
{
    const auto a = vertexAt(0, 0);
    const auto b = vertexAt(200, 0);
    Node::setNodeUnderMouse(a.get());
    QCOMPARE(Node::nodeUnderMouse(), a.get());
    Node::setNodeUnderMouse(b.get());
    QCOMPARE(Node::nodeUnderMouse(), b.get());
    Node::setNodeUnderMouse(b.get());
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    Node::setNodeUnderMouse(a.get());
    Node::setNodeUnderMouse(nullptr);
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    Node::setNodeUnderMouse(nullptr);
    QVERIFY(Node::nodeUnderMouse() == nullptr);
}

void TestNode::nodeUnderMouseRepaints()
{
    Stage stage;
    Node other(300, 300, 10.0, 10.0, QStringLiteral("w"), true);
    stage.scene.addItem(&other);
    const QRectF here(58, 58, 85, 85);
    const QRectF there(258, 258, 85, 85);
    const auto repainted = [&](Node *node) {
        QList<QRectF> areas = repaints(stage.scene, [&] { Node::setNodeUnderMouse(node); });
        std::sort(areas.begin(), areas.end(), [](const QRectF &a, const QRectF &b) { return a.x() < b.x(); });
        return areas;
    };
    QCOMPARE(repainted(&stage.vertex), (QList<QRectF>{here}));
    QCOMPARE(repainted(&other), (QList<QRectF>{here, there}));
    QCOMPARE(repainted(&other), (QList<QRectF>{there}));
    QCOMPARE(repainted(nullptr), QList<QRectF>());
}

void TestNode::deletedVertexIsNotUnderTheMouse()
{
    auto node = vertexAt(0, 0);
    const auto other = vertexAt(0, 0);
    Node::setNodeUnderMouse(node.get());
    node.reset();
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    node = vertexAt(0, 0);
    Node::setNodeUnderMouse(other.get());
    node.reset();
    QCOMPARE(Node::nodeUnderMouse(), other.get());
}

void TestNode::dialogIsToggled()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("hub"), true);
    QCOMPARE(dialogs().size(), 1);
    NodeDisplay *dialog = dialogs().constFirst();
    QCOMPARE(dialog->findChild<QLineEdit *>()->text(), QStringLiteral("hub"));
    QVERIFY(dialog->isHidden());
    node.toggleNodeDisplay();
    QVERIFY(dialog->isVisible());
    node.toggleNodeDisplay();
    QVERIFY(dialog->isHidden());
    node.toggleNodeDisplay();
    dialog->close();
    node.toggleNodeDisplay();
    QVERIFY(dialog->isVisible());
}

void TestNode::dialogListsTheValues()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), true);
    node.resetValues();
    node.setValue(QStringLiteral("degree"), 3);
    node.setValue(QStringLiteral("degree"), 2.5);
    const auto *table = dialogs().constFirst()->findChild<QTableWidget *>();
    QCOMPARE(table->rowCount(), 2);
    QCOMPARE(table->verticalHeaderItem(1)->text(), QStringLiteral("degree"));
    QCOMPARE(table->item(1, 0)->text(), QStringLiteral("2.5"));
    node.resetValues();
    QCOMPARE(table->rowCount(), 0);
}

void TestNode::plainVertexHasNoDialog()
{
    Node node(0, 0, 10.0, 10.0, QStringLiteral("v"), false);
    node.toggleNodeDisplay();
    node.setValue(QStringLiteral("degree"), 3);
    node.resetValues();
    QVERIFY(dialogs().isEmpty());
}

void TestNode::dialogGoesWithItsVertex()
{
    auto node = vertexAt(0, 0);
    node->toggleNodeDisplay();
    QCOMPARE(dialogs().size(), 1);
    node.reset();
    QVERIFY(dialogs().isEmpty());
}

void TestNode::displayWritesNameAndEdgeCount()
{
    Node a(0, 0, 10.0, 10.0, QStringLiteral("hub"), true);
    Node b(0, 0, 10.0, 10.0, QStringLiteral("leaf"), true);
    Edge first(&a, &b);
    Edge second(&b, &a);
    a.addENeighbor(&first);
    a.addENeighbor(&second);
    StderrCapture capture;
    a.display();
    b.display();
    QCOMPARE(capture.take(), QByteArray("Node: hub\n2\nNode: leaf\n0\n"));
}

QTEST_MAIN(TestNode)
#include "tst_node.moc"
