#ifndef TAVOLINE_OLM_NODE_H
#define TAVOLINE_OLM_NODE_H

#include <QColor>
#include <QGraphicsEllipseItem>
#include <QList>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <utility>

class Edge;
class NodeDisplay;

/// The item of one vertex slot: its name, place and look, and the edge lines that hang on it.
class Node : public QGraphicsEllipseItem
{
public:
    /// A vertex at (x, y) in scene units; the third and fourth arguments are ignored. Only an @p interactive vertex can
    /// be moved, is painted, and has an information dialog.
    Node(double x, double y, double, double, QString name, bool interactive);
    ~Node() override;
    Node(const Node &) = delete;
    Node &operator=(const Node &) = delete;

    /// Fills the table of vertex colours; a second call has no effect.
    static void initColors();

    /// Attaches an edge, which follows the vertex from now on.
    void addENeighbor(Edge *edge) { eNeighbors.append(edge); }
    QList<Edge *> getENeighbors() const { return eNeighbors; }
    /// Takes over the attached edges of @p other, which gets those of this vertex.
    void exchangeENeighbors(Node &other) { eNeighbors.swap(other.eNeighbors); }

    QString getName() const { return name; }
    QString nodeName() const { return name; }
    void setName(const QString &text);
    void setNodeName(const QString &text) { setName(text); }

    // Places, in scene units. The attached edges follow. A place that is not finite in x and y is refused.

    /// Moves to the point; the third coordinate and the stacking order stay.
    void setPosition(QPointF point);
    /// Moves to (x, y, 0); the stacking order stays.
    void setPosition(double x, double y);
    /// Moves to (x, y, z), and to z in the stacking order when it is finite.
    void setPosition(double x, double y, double z);
    /// Moves the item by the offset; the coordinates stay those that were given last. Nothing in this program calls it.
    void move(double dx, double dy);
    void move(QPointF offset) { move(offset.x(), offset.y()); }
    QPointF position() const { return pos(); }
    double getCoordX() const { return coordX; }
    double getCoordY() const { return coordY; }
    double getCoordZ() const { return coordZ; }

    // Whether the slot belongs to the current graph (exists) and to the displayed one (visible).

    void setExists(bool value) { exists = value; }
    bool getVisible() const { return visible; }
    /// Sets both flags, and shows the result when @p now.
    void resetVisible(bool shown, bool now);
    /// Shows or hides the item as its flag says.
    void updateVisible();
    /// The displayed graph takes over the current one's flag.
    void best_backup() { visible = exists; }
    /// The current graph takes over the displayed one's flag.
    void best_restore() { exists = visible; }

    // The look. The selection is the editor's own, not that of QGraphicsScene.

    void setSelected(bool value) { selected = value; }
    bool isSelected() const { return selected; }
    void toggleSelected() { selected = !selected; }
    void hilight();
    void unhilight();
    /// Chooses a colour of the table: entry @p index modulo the number of entries.
    void setColor(int index);
    /// The short text in a box on the vertex, none when empty. The box may reach beyond the bounding rectangle: the
    /// view must repaint as a whole, as Graph does.
    void setLabel(const QString &text);
    void setRadius(double value);
    double getRadius() const { return radius; }
    /// Enlarges the vertex by that share of its radius, 0 by default.
    void setSizeRatio(double value);
    /// Tells that the vertex is painted for a printer, where it looks the same.
    void setPrintMode(bool on) { printMode = on; }

    /// Where a drag began: for Graph the vertex's place in the scene, for the item's own handlers a place on the
    /// screen.
    QPoint getMousePressPos() const { return mousePressPos; }
    /// Rounds to whole numbers, from -1 000 000 to 1 000 000.
    void setMousePressPos(QPointF point);

    /// Shows or hides the information dialog, if there is one. Its name line is that of the vertex when it is shown,
    /// and gives the vertex another name with "Done".
    void toggleNodeDisplay();
    bool isNodeDisplayShown() const;
    /// Lets @p notify be called after the user has given the vertex another name there.
    void whenRenamed(std::function<void()> notify) { renamed = std::move(notify); }

    // What is shown of the vertex, besides its name.

    QString getLabel() const { return label; }
    QColor shownColor() const;
    /// With the relative size.
    double shownRadius() const { return drawRadius; }

    /// Adds a row to the information dialog.
    void setValue(const QString &valueName, double value);
    void setText(const QString &valueName, const QString &text);
    /// Removes the rows.
    void resetValues();

    /// The one vertex item, of whatever graph, that is pressed, or picked as the end of an edge; null when there is
    /// none.
    static Node *nodeUnderMouse() { return node_under_mouse; }
    /// Makes @p node that item, or none when it was it already.
    static void setNodeUnderMouse(Node *node);

    /// Writes the name and the number of attached edges to the standard error stream. For a debugger: nothing in this
    /// program calls it.
    void display() const;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

    // For scenes in other views: Graph hands no mouse event on to its items.

    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

private:
    void adjustEdges();
    void paintDisc(QPainter *painter) const;
    void paintLabel(QPainter *painter) const;
    QBrush fill() const;
    QPen outline() const;

    QList<Edge *> eNeighbors;
    bool visible = true;
    QString name;
    QString label;
    int color = 0;
    double sizeRatio = 0.0;
    double drawRadius;
    double coordX = 0.0;
    double coordY = 0.0;
    double coordZ = 0.0;
    bool interactive;
    double radius;
    bool exists = true;
    bool selected = false;
    bool marked = false; // a second emphasis; nothing in this program sets it
    bool hilighted = false;
    QPoint mousePressPos;
    bool printMode = false; // nothing reads it
    std::unique_ptr<NodeDisplay> nodeDisplay;
    std::function<void()> renamed;

    static QVector<QColor> NodeColor;
    static int NbNodeColors;
    static Node *node_under_mouse;
};

#endif
