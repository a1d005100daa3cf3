#ifndef TAVOLINE_OLM_EDGE_H
#define TAVOLINE_OLM_EDGE_H

#include <QColor>
#include <QGraphicsLineItem>
#include <QPointF>
#include <QString>

class Node;

/// The item of one pair of vertices, drawn as a line between them while the pair is an edge of the displayed graph.
class Edge : public QGraphicsLineItem
{
public:
    Edge(Node *source, Node *dest);

    Node *from() const { return source; }
    Node *to() const { return dest; }
    void setOrig(Node *node) { source = node; }
    void setDest(Node *node) { dest = node; }

    /// Moves the line to its vertices. To be called when one of them has moved or was shown or hidden.
    void adjust();
    /// Whether the pair is an edge of the displayed graph; a pair with a hidden vertex never is.
    void resetVisible(bool shown);
    /// The length of the drawn line, in scene units. Nothing in this program calls it.
    double length() const;

    /// The text drawn at the middle of the line.
    void setLabel(const QString &text);
    /// Draws the line thick and red.
    void setHilighted(bool on);
    /// The pen width, in scene units, of all edges. Nothing in this program calls it.
    static void setEdgeWidth(int width) { edgeWidth = width; }

    // What is shown of the edge.

    QString getLabel() const { return label; }
    QColor shownColor() const;
    int shownWidth() const;

    /// Writes the names of the ends to the standard error stream; a missing end has an empty name. For a debugger:
    /// nothing in this program calls it.
    void display() const;

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    // For scenes in other views: Graph hands no mouse event on to its items.

    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;

private:
    bool endsAreVisible() const;
    void setEnds(QPointF start, QPointF end);

    Node *source;
    Node *dest;
    QPointF sourcePoint;
    QPointF destPoint;
    bool present = false;
    QString label;
    bool hilighted = false;

    static int edgeWidth;
};

#endif
