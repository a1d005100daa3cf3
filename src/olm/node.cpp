#include "node.h"

#include "edge.h"
#include "nodedisplay.h"
#include "shortened.h"

#include <QFont>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRadialGradient>
#include <QTextDocument>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace
{
constexpr double initialRadius = 40.0;
/// A release at least this far, in pixels along an axis, from the press puts the vertex there.
constexpr int dragDistance = 6;
constexpr int emphasisWidth = 4;
/// Beyond any screen, and well within the range of int.
constexpr double farAway = 1e6;
const QRectF labelBox(QPointF(-41, -10), QPointF(41, 20));

/// QGraphicsScene would neither draw nor find an item at any other place.
bool isPlace(double x, double y)
{
    return std::isfinite(x) && std::isfinite(y);
}
} // namespace

QVector<QColor> Node::NodeColor;
int Node::NbNodeColors = 0;
Node *Node::node_under_mouse = nullptr;

Node::Node(double x, double y, double /*width*/, double /*height*/, QString nodeName, bool isInteractive)
    : name(std::move(nodeName))
    , drawRadius(initialRadius)
    , interactive(isInteractive)
    , radius(initialRadius)
{
    if (interactive) {
        setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
        setCacheMode(DeviceCoordinateCache);
        setZValue(1.0);
        setName(name);
        setPos(x, y);
        nodeDisplay = std::make_unique<NodeDisplay>(name);
        nodeDisplay->hide();
        QObject::connect(nodeDisplay.get(), &NodeDisplay::nameChosen, nodeDisplay.get(), [this](const QString &chosen) {
            setName(chosen);
            if (renamed) {
                renamed();
            }
        });
    }
}

Node::~Node()
{
    if (node_under_mouse == this) {
        node_under_mouse = nullptr;
    }
}

void Node::initColors()
{
    if (!NodeColor.isEmpty()) {
        return;
    }
    NodeColor = {Qt::yellow,    Qt::cyan,        Qt::red,     Qt::green,     Qt::gray,     Qt::magenta,
                 Qt::white,     Qt::lightGray,   Qt::blue,    Qt::darkBlue,  Qt::darkCyan, Qt::darkGray,
                 Qt::darkGreen, Qt::darkMagenta, Qt::darkRed, Qt::darkYellow};
    NbNodeColors = NodeColor.size();
}

// QToolTip takes a text that looks like HTML for HTML: a name from a file must be shown as it is.
void Node::setName(const QString &text)
{
    if (name != text && isNodeDisplayShown()) {
        nodeDisplay->setNodeName(text);
    }
    name = text;
    if (interactive) {
        const QString tip = shortened(name);
        setToolTip(Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip) : tip);
    }
}

void Node::setPosition(QPointF point)
{
    if (!isPlace(point.x(), point.y())) {
        return;
    }
    coordX = point.x();
    coordY = point.y();
    setPos(point);
    adjustEdges();
}

void Node::setPosition(double x, double y)
{
    if (isPlace(x, y)) {
        coordZ = 0.0;
        setPosition(QPointF(x, y));
    }
}

void Node::setPosition(double x, double y, double z)
{
    if (!isPlace(x, y)) {
        return;
    }
    coordZ = z;
    // The depth of a flat drawing is NaN after a fit in space. QGraphicsScene sorts the items by depth and cannot have
    // it.
    if (std::isfinite(z)) {
        setZValue(z);
    }
    setPosition(QPointF(x, y));
}

void Node::move(double dx, double dy)
{
    moveBy(dx, dy);
    adjustEdges();
}

void Node::resetVisible(bool shown, bool now)
{
    visible = shown;
    exists = shown;
    if (now) {
        updateVisible();
    }
}

void Node::updateVisible()
{
    setVisible(visible);
    update();
}

void Node::hilight()
{
    hilighted = true;
    update();
}

void Node::unhilight()
{
    hilighted = false;
    update();
}

void Node::setColor(int index)
{
    color = index;
    update();
}

void Node::setLabel(const QString &text)
{
    label = text;
    if (interactive) {
        // Qt cuts a cached item off at its bounding rectangle, which is smaller than the box of the label.
        setCacheMode(label.isEmpty() ? DeviceCoordinateCache : NoCache);
    }
    update();
}

void Node::setRadius(double value)
{
    prepareGeometryChange();
    radius = value;
    drawRadius = radius * (1.0 + sizeRatio);
    update();
}

void Node::setSizeRatio(double value)
{
    prepareGeometryChange();
    sizeRatio = value;
    drawRadius = radius * (1.0 + sizeRatio);
}

void Node::setMousePressPos(QPointF point)
{
    mousePressPos = QPoint(qRound(qBound(-farAway, point.x(), farAway)), qRound(qBound(-farAway, point.y(), farAway)));
}

void Node::toggleNodeDisplay()
{
    if (nodeDisplay) {
        nodeDisplay->setNodeName(name);
        nodeDisplay->setVisible(!nodeDisplay->isVisible());
    }
}

bool Node::isNodeDisplayShown() const
{
    return nodeDisplay != nullptr && nodeDisplay->isVisible();
}

void Node::setValue(const QString &valueName, double value)
{
    if (nodeDisplay) {
        nodeDisplay->setValue(valueName, value);
    }
}

void Node::setText(const QString &valueName, const QString &text)
{
    if (nodeDisplay) {
        nodeDisplay->setText(valueName, text);
    }
}

void Node::resetValues()
{
    if (nodeDisplay) {
        nodeDisplay->resetValues();
    }
}

void Node::setNodeUnderMouse(Node *node)
{
    Node *previous = node_under_mouse;
    node_under_mouse = node == previous ? nullptr : node;
    for (Node *changed : {previous, node}) {
        if (changed != nullptr) {
            changed->update();
        }
    }
}

void Node::display() const
{
    std::cerr << "Node: " << qPrintable(name) << std::endl << eNeighbors.size() << std::endl;
}

QRectF Node::boundingRect() const
{
    return QRectF(-drawRadius - 2.0, -drawRadius - 2.0, 2.0 * drawRadius + 5.0, 2.0 * drawRadius + 5.0);
}

QPainterPath Node::shape() const
{
    QPainterPath path;
    path.addEllipse(QRectF(-drawRadius, -drawRadius, 2.0 * drawRadius, 2.0 * drawRadius));
    return path;
}

void Node::paint(QPainter *painter, const QStyleOptionGraphicsItem * /*option*/, QWidget * /*widget*/)
{
    if (!interactive) {
        return;
    }
    setName(name);
    paintDisc(painter);
    paintLabel(painter);
}

QVariant Node::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionHasChanged) {
        adjustEdges();
    }
    return QGraphicsEllipseItem::itemChange(change, value);
}

void Node::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    node_under_mouse = this;
    mousePressPos = event->screenPos();
    toggleSelected();
    update();
    QGraphicsEllipseItem::mousePressEvent(event);
}

void Node::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    node_under_mouse = nullptr;
    const QPoint moved = event->screenPos() - mousePressPos;
    if (std::abs(moved.x()) >= dragDistance || std::abs(moved.y()) >= dragDistance) {
        setPosition(event->scenePos().x(), event->scenePos().y(), 0.0);
    }
    update(); // without the outline of the vertex under the mouse
    QGraphicsEllipseItem::mouseReleaseEvent(event);
}

void Node::mouseDoubleClickEvent(QGraphicsSceneMouseEvent * /*event*/)
{
    std::cerr << "Double click" << std::endl;
}

void Node::adjustEdges()
{
    for (Edge *edge : qAsConst(eNeighbors)) {
        edge->adjust();
    }
}

void Node::paintDisc(QPainter *painter) const
{
    const int d = int(drawRadius);
    painter->setBrush(fill());
    painter->setPen(outline());
    painter->drawEllipse(-d, -d, 2 * d, 2 * d);
}

void Node::paintLabel(QPainter *painter) const
{
    painter->setFont(QFont(QStringLiteral("Times"), 8));
    if (label.isEmpty()) {
        return;
    }
    painter->setBrush(Qt::white);
    painter->setPen(Qt::blue);
    painter->drawRect(labelBox);
    painter->drawText(labelBox.topLeft() + QPointF(7, 25), label);
}

QColor Node::shownColor() const
{
    initColors();
    const int index = (color % NbNodeColors + NbNodeColors) % NbNodeColors;
    return NodeColor.at(index);
}

QBrush Node::fill() const
{
    constexpr int lighter = 120;
    constexpr int darker = 200;
    QRadialGradient gradient(-3, -3, drawRadius);
    if (marked || hilighted) {
        gradient.setCenter(3, 3);
        gradient.setFocalPoint(2, 2);
        gradient.setColorAt(0, marked ? QColor(Qt::green).lighter(lighter) : QColor(Qt::green));
        gradient.setColorAt(1, marked ? QColor(Qt::red).lighter(lighter) : QColor(Qt::red));
    } else {
        gradient.setCenter(0, 0);
        gradient.setFocalPoint(-5, -5);
        gradient.setColorAt(0, shownColor());
        gradient.setColorAt(1, shownColor().darker(darker));
    }
    return gradient;
}

QPen Node::outline() const
{
    if (node_under_mouse == this) {
        return QPen(Qt::red, emphasisWidth);
    }
    if (selected) {
        return QPen(Qt::blue, emphasisWidth);
    }
    if (marked) {
        return QPen(Qt::blue);
    }
    return QPen(hilighted ? Qt::yellow : Qt::black);
}
