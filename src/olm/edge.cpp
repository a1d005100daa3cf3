#include "edge.h"

#include "node.h"

#include <QPainter>
#include <QPen>

#include <cmath>
#include <iostream>
#include <string>

namespace
{
/// Below everything else, until adjust() knows the vertices.
constexpr double initialZ = -10000.0;
constexpr double zBelowVertices = 0.1;
/// A line of at most this length is drawn as a point, in scene units.
constexpr double shortestLine = 5.0;
/// The room around the two ends for the box of the label and the width of the line.
constexpr double marginX = 20.0;
constexpr double marginY = 10.0;
constexpr double marginPen = 1.5;

std::string nameOf(const Node *end)
{
    return end != nullptr ? qPrintable(end->getName()) : "";
}
} // namespace

int Edge::edgeWidth = 2;

Edge::Edge(Node *sourceNode, Node *destNode) : source(sourceNode), dest(destNode)
{
    if (source != nullptr && dest != nullptr && source != dest) {
        setZValue(initialZ);
        adjust();
        setLine(QLineF(sourcePoint, destPoint));
    }
}

void Edge::adjust()
{
    if (!endsAreVisible()) {
        present = false;
        hide();
        return;
    }
    if (isVisible() != present) {
        setVisible(present);
    }
    if (present) {
        setZValue(qMin(source->zValue(), dest->zValue()) - zBelowVertices);
        const QPointF start = mapFromItem(source, 0, 0);
        const QPointF end = mapFromItem(dest, 0, 0);
        setEnds(start, QLineF(start, end).length() > shortestLine ? end : start);
    }
    update();
}

void Edge::resetVisible(bool shown)
{
    present = shown;
    adjust();
}

double Edge::length() const
{
    return QLineF(sourcePoint, destPoint).length();
}

void Edge::setLabel(const QString &text)
{
    label = text;
    update();
}

void Edge::setHilighted(bool on)
{
    hilighted = on;
    update();
}

QColor Edge::shownColor() const
{
    return hilighted ? Qt::red : Qt::black;
}

int Edge::shownWidth() const
{
    return hilighted ? edgeWidth + 2 : edgeWidth;
}

void Edge::display() const
{
    std::cerr << "Edge(" << nameOf(source) << " ; " << nameOf(dest) << ")" << std::endl;
}

QRectF Edge::boundingRect() const
{
    if (source == nullptr || dest == nullptr) {
        return {};
    }
    return QRectF(sourcePoint, destPoint)
        .normalized()
        .adjusted(-marginX - marginPen, -marginY - marginPen, marginX + marginPen, marginY + marginPen);
}

void Edge::paint(QPainter *painter, const QStyleOptionGraphicsItem * /*option*/, QWidget * /*widget*/)
{
    if (!endsAreVisible()) {
        present = false;
        return;
    }
    painter->setPen(QPen(shownColor(), shownWidth(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::white);
    if (sourcePoint == destPoint) {
        painter->drawPoint(sourcePoint); // Qt draws nothing for a line without length.
    } else {
        painter->drawLine(QLineF(sourcePoint, destPoint));
    }
    if (!label.isEmpty()) {
        const QPointF corner = QLineF(sourcePoint, destPoint).center() - QPointF(20, 10);
        painter->setPen(Qt::white);
        painter->drawRect(QRectF(corner, QSizeF(40, 20)));
        painter->setPen(Qt::black);
        painter->drawText(corner + QPointF(5, 15), label);
    }
}

void Edge::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    update();
    QGraphicsLineItem::mousePressEvent(event);
}

void Edge::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    update();
    QGraphicsLineItem::mouseReleaseEvent(event);
}

bool Edge::endsAreVisible() const
{
    return source != nullptr && dest != nullptr && source->getVisible() && dest->getVisible();
}

void Edge::setEnds(QPointF start, QPointF end)
{
    if (sourcePoint != start || destPoint != end) {
        prepareGeometryChange();
        sourcePoint = start;
        destPoint = end;
    }
}
