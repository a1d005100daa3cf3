// The model of the viewer's graph, its display and the decoration of its items.

#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/closeto.h"
#include "support/graphtext.h"
#include "support/itemimage.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/stderrcapture.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <limits>
#include <random>

using graphtext::build;

namespace
{
const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

QGraphicsScene *sceneOf(const Graph &graph)
{
    return static_cast<const QGraphicsView &>(graph).scene();
}

QByteArray displayed(Graph &graph)
{
    StderrCapture errors;
    graph.display();
    return errors.take();
}

/// The drawn radius of a vertex, read off its bounding square.
double drawnRadius(const Graph &graph, int i)
{
    return (graph.node(i)->boundingRect().width() - 5) / 2;
}

/// What a vertex looks like on which @p change was made.
ItemImage vertexImage(const std::function<void(Node &)> &change)
{
    Node vertex(0, 0, 10.0, 10.0, QStringLiteral("reference"), true);
    vertex.setRadius(40);
    change(vertex);
    return ItemImage(vertex);
}

ItemImage labelledVertex(const char *label)
{
    return vertexImage([label](Node &vertex) { vertex.setLabel(QString::fromLatin1(label)); });
}

ItemImage colouredVertex(int color)
{
    return vertexImage([color](Node &vertex) { vertex.setColor(color); });
}

/// A graph on three vertices, 0 and 2 joined to 1, with the vertices at places where the edges are easy to tell apart.
class Path : public Graph
{
public:
    Path() : Graph(QStringLiteral("path"), true)
    {
        build(*this, 3, {{0, 1}, {1, 2}});
        setPos(0, 0.0, 0.0, 0.0);
        setPos(1, 100.0, 0.0, 0.0);
        setPos(2, 100.0, 100.0, 0.0);
    }

    ItemImage image(int i, int j) const { return ItemImage(*edgeItem(i, j)); }
};

/// What the edge i, j of the path looks like after @p change.
ItemImage edgeImage(int i, int j, const std::function<void(Edge &)> &change)
{
    Path path;
    change(*path.edgeItem(i, j));
    return path.image(i, j);
}

ItemImage labelledEdge(int i, int j, const char *label)
{
    return edgeImage(i, j, [label](Edge &edge) { edge.setLabel(QString::fromLatin1(label)); });
}

/// An operation that takes a number for each edge and decorates the edges or takes that back.
using Decorate = void (Graph::*)(const QVector<QVector<double>> &, bool);

/// The graph as plain arrays, to compare long sequences of operations with.
struct PlainGraph {
    int n = 0;
    unsigned id = 0;
    bool a[32][32] = {};
    int bestN = 0;
    bool best[32][32] = {};

    bool isVertex(int i) const { return i >= 0 && i < n; }
    bool edge(int i, int j) const { return isVertex(i) && isVertex(j) && i != j && (a[i][j] || a[j][i]); }
    bool bestEdge(int i, int j) const
    {
        return i >= 0 && i < bestN && j >= 0 && j < bestN && i != j && (best[i][j] || best[j][i]);
    }

    bool addNode()
    {
        if (n >= 32) {
            return false;
        }
        ++n;
        ++id;
        return true;
    }

    bool remNode()
    {
        if (n == 0) {
            return false;
        }
        --n;
        for (int i = 0; i < n; ++i) {
            remEdge(i, n);
        }
        ++id;
        return true;
    }

    bool remNode(int k)
    {
        if (!isVertex(k)) {
            return false;
        }
        --n;
        const int last = n;
        if (k != last) {
            for (int i = 0; i < last; ++i) {
                if (i != k) {
                    a[k][i] = a[last][i];
                }
            }
            for (int i = 0; i < last; ++i) {
                if (i != k) {
                    a[i][k] = a[i][last];
                }
            }
        }
        for (int i = 0; i < last; ++i) {
            remEdge(last, i);
        }
        ++id;
        return true;
    }

    bool addEdge(int i, int j)
    {
        ++id;
        if (!isVertex(i) || !isVertex(j) || i == j) {
            return false;
        }
        a[i][j] = a[j][i] = true;
        return true;
    }

    bool remEdge(int i, int j)
    {
        if (i < 0 || i > 31 || j < 0 || j > 31) {
            return false;
        }
        ++id;
        const bool was = a[i][j] || a[j][i];
        a[i][j] = a[j][i] = false;
        return was;
    }

    void invert()
    {
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                a[i][j] = !a[i][j];
            }
        }
    }

    void clear()
    {
        for (int i = 0; i < 32; ++i) {
            for (int j = i + 1; j < 32; ++j) {
                remEdge(i, j);
            }
        }
        n = 0;
    }

    int degree(int i) const
    {
        int count = 0;
        for (int j = 0; isVertex(i) && j < n; ++j) {
            count += a[i][j] || a[j][i];
        }
        return count;
    }

    int edgeCount() const
    {
        int count = 0;
        for (int i = 0; i < n; ++i) {
            for (int j = i + 1; j < n; ++j) {
                count += a[i][j];
            }
        }
        return count;
    }

    void backup()
    {
        bestN = n;
        for (int i = 0; i < 32; ++i) {
            std::copy(std::begin(a[i]), std::end(a[i]), std::begin(best[i]));
        }
    }

    QByteArray display() const
    {
        QByteArray text = "ID = " + QByteArray::number(int(id)) + "\n--best graph--\n";
        for (const auto *matrix : {&best, &a}) {
            if (matrix == &a) {
                text += "--cur graph--\n";
            }
            for (int i = 0; i < n; ++i) {
                for (int j = 0; j < n; ++j) {
                    text += (*matrix)[i][j] ? "1 " : "0 ";
                }
                text += "\n";
            }
        }
        return text + "-------\n";
    }
};

/// Whether every reading operation tells the same about both, and what differs when not.
QString difference(Graph &graph, const PlainGraph &plain)
{
    if (graph.getNbNodes() != plain.n || graph.getID() != int(plain.id)) {
        return QStringLiteral("count %1 or counter %2").arg(graph.getNbNodes()).arg(graph.getID());
    }
    if (graph.getNbEdges() != plain.edgeCount()) {
        return QStringLiteral("%1 edges").arg(graph.getNbEdges());
    }
    for (int i = -1; i <= 32; ++i) {
        if (graph.degree(i) != plain.degree(i)) {
            return QStringLiteral("degree of %1").arg(i);
        }
        for (int j = -1; j <= 32; ++j) {
            if (graph.edge(i, j) != plain.edge(i, j) || graph.bestEdge(i, j) != plain.bestEdge(i, j)) {
                return QStringLiteral("edge %1, %2").arg(i).arg(j);
            }
        }
    }
    return QString();
}

QColor pixelAt(QWidget &widget, QPoint position)
{
    return widget.grab().toImage().pixelColor(position);
}

/// What is on the screen, with whatever was left there by earlier paintings; QWidget::grab() paints anew instead.
QImage onScreen(const Graph &graph)
{
    return graph.screen()->grabWindow(graph.winId()).toImage();
}

bool show(Graph &graph)
{
    graph.show();
    return QTest::qWaitForWindowExposed(&graph, patience);
}

/// A path on three vertices whose labels are wider than the discs, on a gray background.
class LabelledPath : public Graph
{
public:
    LabelledPath() : Graph(latin1("labelled"), true)
    {
        build(*this, 3, {{0, 1}, {1, 2}});
        setPos(0, -100.0, -60.0, 0.0);
        setPos(1, 0.0, 60.0, 0.0);
        setPos(2, 100.0, -60.0, 0.0);
        slot_set_node_radius(20.0);
        setLabels({1.5, -0.333333333, 1234567.0});
        setELabels({{}, {-1.23456e-17}, {0.0, 2.5}}, true);
        setViolated(true);
        update_display();
        resize(400, 300);
    }
};

using Change = std::function<void(Graph &)>;

/// What a labelled path looks like that was changed before it was drawn for the first time.
QImage drawnAfter(const Change &change)
{
    LabelledPath graph;
    change(graph);
    return show(graph) ? onScreen(graph) : QImage();
}
} // namespace

Q_DECLARE_METATYPE(Decorate)
Q_DECLARE_METATYPE(Change)

class TestGraphModel : public QObject
{
    Q_OBJECT

private slots:
    void startsAsARandomGraphOnTenVertices();
    void constructionFollowsTheRandomNumbers();
    void interactiveGraphHasAPreparedScene();
    void originStaysInTheMiddleWithoutScrollBars();
    void sceneRectangleStays();
    void plainGraphHasNoScene();
    void itemAccessorsStopAtTheSlots();

    void addNodeStopsAtTheLastSlot();
    void addNodeTakesOverTheRowOfItsSlot();
    void addNodeStartsAtDepthZero();
    void removingTheLastVertex();
    void removingAnInnerVertexMovesTheLastOne();
    void aVertexAddedAfterARemovalHasNoEdges();
    void refusedRemovals();
    void edgesAndTheirCounter();
    void toggledEntryCountsBothWays();
    void invertGivesTheComplement();
    void degreeCountsASetDiagonal();
    void clearLeavesTheBestGraphAlone();
    void modesWithoutAScene();
    void cloneHoldsTheCurrentGraphOnly();
    void copyOfItselfChangesNothing();
    void randomGraphSizes_data();
    void randomGraphSizes();
    void operationsAgreeWithPlainArrays();

    void displayFollowsTheBestGraph();
    void vertexExistsForItsEdgesOnceTheBestGraphHasIt();
    void displayReadsTheLowerTriangle();
    void changeBestPublishes();
    void displayWritesBothMatrices();
    void lockedBestGraphLetsTheCurrentOneBeRead();
    void backgroundTellsAViolation();
    void edgesLieUnderVertices();

    void placesOfVertices();
    void labels();
    void labelIsShownBeyondTheBoundingRectangle();
    void changeLeavesNoTraceOfALabel_data();
    void changeLeavesNoTraceOfALabel();
    void edgeLabels();
    void edgeHighlights();
    void decoratedEdgesAreCurrentOnesThatAreShown_data();
    void decoratedEdgesAreCurrentOnesThatAreShown();
    void colours();
    void sizes_data();
    void sizes();
    void nodeRadius();
    void highlightsOneVertex();

    void countsOutsideTheSlots_data();
    void countsOutsideTheSlots();
};

void TestGraphModel::startsAsARandomGraphOnTenVertices()
{
    qsrand(1);
    for (const bool interactive : {true, false}) {
        const Graph graph(latin1("fresh"), interactive);
        QCOMPARE(graph.getNbNodes(), 10);
        int edgeCount = 0;
        for (int i = 0; i < 32; ++i) {
            QCOMPARE(graph.node(i)->getVisible(), i < 10);
            for (int j = 0; j < 32; ++j) {
                QCOMPARE(graph.bestEdge(i, j), graph.edge(i, j));
                edgeCount += j > i && graph.edge(i, j) ? 1 : 0;
            }
        }
        QCOMPARE(graph.getNbEdges(), edgeCount);
        QVERIFY(edgeCount > 0 && edgeCount < 45);
    }
}

void TestGraphModel::constructionFollowsTheRandomNumbers()
{
    qsrand(2024);
    const Graph graph(latin1("replayed"), true);
    qsrand(2024);
    const QPointF origin = graph.mapToScene(QPoint(0, 0));
    for (int i = 0; i < 32; ++i) {
        const double x = qrand() % 2000 / 10.0;
        const double y = qrand() % 2000 / 10.0;
        QCOMPARE(graph.node(i)->getName(), QStringLiteral("Node %1").arg(i + 1));
        if (i >= 10) {
            QCOMPARE(graph.node(i)->pos(), QPointF(x, y));
        } else {
            QCOMPARE(graph.node(i)->pos(), origin);
        }
    }
    const int firstId = qrand();
    // 496 removals of clear(), 10 vertices, 45 pairs.
    QCOMPARE(graph.getID(), firstId + 496 + 10 + 45);
    for (int i = 0; i < 10; ++i) {
        for (int j = i + 1; j < 10; ++j) {
            QCOMPARE(graph.edge(i, j), qrand() % 2 == 1);
        }
    }
}

void TestGraphModel::interactiveGraphHasAPreparedScene()
{
    Graph graph(latin1("scene"), true);
    QGraphicsScene *scene = sceneOf(graph);
    QVERIFY(scene != nullptr);
    QCOMPARE(scene->parent(), &graph);
    QCOMPARE(scene->items().size(), 32 + 496 + 1);
    QCOMPARE(graph.contextMenuPolicy(), Qt::CustomContextMenu);
    QCOMPARE(graph.cacheMode(), QGraphicsView::CacheBackground);
    QVERIFY(graph.renderHints().testFlag(QPainter::Antialiasing));
    QCOMPARE(graph.backgroundBrush(), QBrush(Qt::white));
    QVERIFY(graph.hasMouseTracking());

    QList<QGraphicsRectItem *> rectangles;
    for (QGraphicsItem *item : scene->items()) {
        if (auto *rectangle = qgraphicsitem_cast<QGraphicsRectItem *>(item)) {
            rectangles.append(rectangle);
        }
    }
    QCOMPARE(rectangles.size(), 1);
    QVERIFY(!rectangles[0]->isVisible());
    QCOMPARE(rectangles[0]->brush(), QBrush(Qt::yellow));
    QCOMPARE(rectangles[0]->pen().color(), QColor(Qt::red));
    QCOMPARE(rectangles[0]->zValue(), 1000.0);
    QCOMPARE(rectangles[0]->opacity(), 0.5);
}

/// However small the view is or becomes: the drawing is around the origin.
void TestGraphModel::originStaysInTheMiddleWithoutScrollBars()
{
    Graph graph(latin1("middle"), true);
    const auto middle = [&] { return graph.mapToScene(graph.viewport()->rect()).boundingRect().center(); };
    graph.resize(300, 300);
    graph.show();
    for (const QSize &size : {QSize(300, 300), QSize(60, 300), QSize(300, 60), QSize(700, 500), QSize(300, 300)}) {
        graph.resize(size);
        QCoreApplication::processEvents();
        QVERIFY(qAbs(middle().x()) <= 1.0 && qAbs(middle().y()) <= 1.0);
        QVERIFY(!graph.horizontalScrollBar()->isVisible());
        QVERIFY(!graph.verticalScrollBar()->isVisible());
    }
}

void TestGraphModel::sceneRectangleStays()
{
    Graph graph(latin1("rectangle"), true);
    QCOMPARE(sceneOf(graph)->sceneRect(), QRectF(-600, -600, 1200, 1200));
    build(graph, 2, {{0, 1}});
    graph.setPos(0, QPointF(5000, -7000));
    graph.node(31)->setPos(-9000, 9000);
    QCOMPARE(sceneOf(graph)->sceneRect(), QRectF(-600, -600, 1200, 1200));
    QCOMPARE(graph.sceneRect(), QRectF(-600, -600, 1200, 1200));
}

void TestGraphModel::plainGraphHasNoScene()
{
    const Graph graph(latin1("plain"), false);
    QVERIFY(sceneOf(graph) == nullptr);
    QVERIFY(graph.node(31)->scene() == nullptr);
    QVERIFY(graph.edgeItem(31, 30)->scene() == nullptr);
}

void TestGraphModel::itemAccessorsStopAtTheSlots()
{
    const Graph graph(latin1("items"), false);
    QVERIFY(graph.node(-1) == nullptr);
    QVERIFY(graph.node(32) == nullptr);
    QVERIFY(graph.edgeItem(0, 32) == nullptr);
    QVERIFY(graph.edgeItem(-1, 0) == nullptr);
    QVERIFY(graph.edgeItem(5, 5) == nullptr);
    QCOMPARE(graph.edgeItem(4, 7), graph.edgeItem(7, 4));
    QCOMPARE(graph.edgeItem(4, 7)->from(), graph.node(7));
    QCOMPARE(graph.edgeItem(4, 7)->to(), graph.node(4));
    for (int i = 0; i < 32; ++i) {
        QCOMPARE(graph.node(i)->getENeighbors().size(), 31);
    }
}

void TestGraphModel::addNodeStopsAtTheLastSlot()
{
    Graph graph(latin1("full"), true);
    graph.randomGraph(31);
    const int before = graph.getID();
    QVERIFY(graph.addNode());
    QCOMPARE(graph.getNbNodes(), 32);
    QCOMPARE(graph.getID(), before + 1);
    QVERIFY(!graph.addNode());
    QCOMPARE(graph.getNbNodes(), 32);
    QCOMPARE(graph.getID(), before + 1);
}

void TestGraphModel::addNodeTakesOverTheRowOfItsSlot()
{
    Graph graph(latin1("stale"), false);
    build(graph, 3, {{0, 1}, {0, 2}});
    graph.toggleEdge(1, 3); // Slot 3 holds no vertex yet.
    QVERIFY(!graph.edge(1, 3));
    QVERIFY(graph.addNode());
    QVERIFY(graph.edge(1, 3));
    QVERIFY(!graph.edge(0, 3));
}

void TestGraphModel::addNodeStartsAtDepthZero()
{
    Graph graph(latin1("depth"), true);
    build(graph, 3, {});
    graph.setPos(2, 1.0, 2.0, 7.0);
    graph.remNode();
    QVERIFY(graph.addNode());
    QCOMPARE(graph.node(2)->getCoordZ(), 0.0);
    QCOMPARE(graph.node(2)->zValue(), 0.0);
    QVERIFY(graph.addNode());
    QCOMPARE(graph.node(3)->getCoordZ(), 0.0);
    QCOMPARE(graph.node(3)->zValue(), 0.0);
}

void TestGraphModel::removingTheLastVertex()
{
    Graph graph(latin1("last"), false);
    build(graph, 3, {{0, 1}, {1, 2}});
    const int before = graph.getID();
    QVERIFY(graph.remNode());
    QCOMPARE(graph.getNbNodes(), 2);
    QCOMPARE(graph.getID(), before + 2 + 1);
    QVERIFY(graph.addNode());
    QVERIFY(!graph.edge(1, 2));
    QVERIFY(graph.edge(0, 1));
}

void TestGraphModel::removingAnInnerVertexMovesTheLastOne()
{
    Graph graph(latin1("inner"), true);
    build(graph, 5, {{0, 1}, {1, 2}, {2, 4}, {0, 4}, {3, 1}});
    graph.setPos(1, 11.0, 12.0, 13.0);
    graph.setPos(4, 41.0, 42.0, 43.0);
    const int before = graph.getID();
    QVERIFY(graph.remNode(1));
    QCOMPARE(graph.getID(), before + 4 + 1);
    graph.changeBest();
    graph.update_display();
    QCOMPARE(graph.getNbNodes(), 4);
    QCOMPARE(displayed(graph), "ID = " + QByteArray::number(graph.getID()) +
                                   "\n"
                                   "--best graph--\n"
                                   "0 1 0 0 \n"
                                   "1 0 1 0 \n"
                                   "0 1 0 0 \n"
                                   "0 0 0 0 \n"
                                   "--cur graph--\n"
                                   "0 1 0 0 \n"
                                   "1 0 1 0 \n"
                                   "0 1 0 0 \n"
                                   "0 0 0 0 \n"
                                   "-------\n");
    QCOMPARE(graph.node(1)->pos(), QPointF(11.0, 12.0));
    QCOMPARE(graph.node(1)->getName(), latin1("Node 2"));
    QVERIFY(graph.node(1)->isVisible());
    QVERIFY(!graph.node(4)->isVisible());
    QVERIFY(graph.edgeItem(1, 2)->isVisible());
    QVERIFY(!graph.edgeItem(4, 2)->isVisible());
}

/// Whichever vertex of a complete graph was removed, what comes to the slot that was freed is joined to nobody.
void TestGraphModel::aVertexAddedAfterARemovalHasNoEdges()
{
    for (int removed = 0; removed < 6; ++removed) {
        Graph graph(latin1("again"), false);
        graph.clear();
        for (int i = 0; i < 6; ++i) {
            QVERIFY(graph.addNode());
        }
        for (int j = 1; j < 6; ++j) {
            for (int i = 0; i < j; ++i) {
                QVERIFY(graph.addEdge(i, j));
            }
        }
        QVERIFY(graph.remNode(removed));
        QCOMPARE(graph.getNbEdges(), 10);
        QVERIFY(graph.addNode());
        QCOMPARE(graph.getNbNodes(), 6);
        QCOMPARE(graph.getNbEdges(), 10);
        QCOMPARE(graph.degree(5), 0);
        for (int i = 0; i < 5; ++i) {
            QVERIFY(!graph.edge(i, 5) && !graph.edge(5, i));
            QCOMPARE(graph.degree(i), 4);
        }
    }
}

void TestGraphModel::refusedRemovals()
{
    Graph graph(latin1("refused"), false);
    build(graph, 2, {{0, 1}});
    int before = graph.getID();
    QVERIFY(!graph.remNode(-1));
    QVERIFY(!graph.remNode(2));
    QVERIFY(!graph.remNode(40));
    QCOMPARE(graph.getID(), before);
    QCOMPARE(graph.getNbNodes(), 2);
    graph.clear();
    before = graph.getID();
    QVERIFY(!graph.remNode());
    QVERIFY(!graph.remNode(0));
    QCOMPARE(graph.getID(), before);
    QCOMPARE(graph.getNbNodes(), 0);
}

void TestGraphModel::edgesAndTheirCounter()
{
    Graph graph(latin1("edges"), false);
    build(graph, 4, {});
    int id = graph.getID();
    QVERIFY(graph.addEdge(0, 3));
    QVERIFY(graph.addEdge(3, 0));
    QVERIFY(!graph.addEdge(2, 2));
    QVERIFY(!graph.addEdge(0, 4));
    QVERIFY(!graph.addEdge(-1, 0));
    QCOMPARE(graph.getID(), id + 5);
    QVERIFY(graph.edge(0, 3));
    QVERIFY(graph.edge(3, 0));
    QVERIFY(!graph.edge(2, 2));
    QCOMPARE(graph.getNbEdges(), 1);
    id = graph.getID();
    QVERIFY(!graph.remEdge(40, 1));
    QVERIFY(!graph.remEdge(1, -1));
    QCOMPARE(graph.getID(), id);
    QVERIFY(graph.remEdge(3, 0));
    QVERIFY(!graph.remEdge(3, 0));
    QVERIFY(!graph.remEdge(20, 21));
    QCOMPARE(graph.getID(), id + 3);
    QCOMPARE(graph.getNbEdges(), 0);
}

void TestGraphModel::toggledEntryCountsBothWays()
{
    Graph graph(latin1("toggle"), false);
    build(graph, 2, {});
    const int id = graph.getID();
    graph.toggleEdge(1, 0);
    QVERIFY(graph.edge(0, 1));
    QVERIFY(graph.edge(1, 0));
    QCOMPARE(graph.degree(0), 1);
    QCOMPARE(graph.getNbEdges(), 0); // Only the upper triangle is counted.
    graph.toggleEdge(0, 1);
    QCOMPARE(graph.getNbEdges(), 1);
    graph.toggleEdge(1, 0);
    graph.toggleEdge(0, 1);
    QVERIFY(!graph.edge(0, 1));
    QCOMPARE(graph.getID(), id);
}

void TestGraphModel::invertGivesTheComplement()
{
    Graph graph(latin1("invert"), false);
    build(graph, 5, {{0, 1}, {1, 2}, {3, 4}});
    const int id = graph.getID();
    graph.invert();
    QCOMPARE(graph.getNbEdges(), 7);
    QVERIFY(!graph.edge(0, 1));
    QVERIFY(graph.edge(0, 2));
    QVERIFY(!graph.edge(2, 2));
    graph.invert();
    QCOMPARE(graph.getNbEdges(), 3);
    QVERIFY(graph.edge(0, 1));
    QVERIFY(graph.edge(3, 4));
    QCOMPARE(graph.getID(), id);
}

void TestGraphModel::degreeCountsASetDiagonal()
{
    Graph graph(latin1("degree"), false);
    build(graph, 3, {{0, 1}, {0, 2}, {1, 2}});
    QCOMPARE(graph.degree(0), 2);
    QCOMPARE(graph.degree(3), 0);
    QCOMPARE(graph.degree(-1), 0);
    graph.invert();
    QCOMPARE(graph.degree(0), 1);
}

void TestGraphModel::clearLeavesTheBestGraphAlone()
{
    Graph graph(latin1("clear"), true);
    build(graph, 3, {{0, 1}, {1, 2}});
    const int id = graph.getID();
    graph.clear();
    QCOMPARE(graph.getNbNodes(), 0);
    QCOMPARE(graph.getNbEdges(), 0);
    QCOMPARE(graph.getID(), id + 496);
    QVERIFY(graph.bestEdge(0, 1));
    QVERIFY(graph.bestEdge(1, 2));
    graph.update_display();
    QVERIFY(graph.node(2)->isVisible());
}

/// Without a scene there is no rubber band that a change of the mode could end.
void TestGraphModel::modesWithoutAScene()
{
    Graph graph(latin1("model"), false);
    build(graph, 3, {{0, 1}});
    graph.setEdgeEditMode(true);
    graph.setEdgeEditMode(false);
    QCOMPARE(graph.getNbNodes(), 3);
    QVERIFY(graph.edge(0, 1));
}

void TestGraphModel::cloneHoldsTheCurrentGraphOnly()
{
    Graph graph(latin1("original"), true);
    build(graph, 7, {{0, 1}, {2, 6}, {5, 6}});
    graph.addEdge(3, 4);
    const QScopedPointer<Graph> clone(graph.clone());
    QVERIFY(sceneOf(*clone) == nullptr);
    QCOMPARE(clone->getNbNodes(), 7);
    QCOMPARE(clone->getNbEdges(), 4);
    for (int i = 0; i < 7; ++i) {
        for (int j = 0; j < 7; ++j) {
            QCOMPARE(clone->edge(i, j), graph.edge(i, j));
        }
    }
    clone->addEdge(0, 6);
    QVERIFY(!graph.edge(0, 6));
}

void TestGraphModel::copyOfItselfChangesNothing()
{
    Graph graph(latin1("self"), false);
    build(graph, 3, {{0, 1}});
    const int id = graph.getID();
    graph.copy(&graph);
    QCOMPARE(graph.getNbNodes(), 3);
    QCOMPARE(graph.getNbEdges(), 1);
    QVERIFY(graph.edge(0, 1));
    QCOMPARE(graph.getID(), id + 1);
}

void TestGraphModel::randomGraphSizes_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<int>("expected");
    QTest::newRow("-3") << -3 << 0;
    QTest::newRow("0") << 0 << 0;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("20") << 20 << 20;
    QTest::newRow("32") << 32 << 32;
    QTest::newRow("100") << 100 << 32;
}

void TestGraphModel::randomGraphSizes()
{
    QFETCH(int, n);
    Graph graph(latin1("random"), true);
    graph.loadg6(latin1("}"), false); // Counts 62 vertices.
    graph.randomGraph(n);
    QTEST(graph.getNbNodes(), "expected");
}

void TestGraphModel::operationsAgreeWithPlainArrays()
{
    std::mt19937 random(31);
    const auto below = [&random](int n) { return int(random() % n); };
    const auto index = [&below] { return below(36) - 2; };
    for (int sequence = 0; sequence < 20; ++sequence) {
        Graph graph(latin1("checked"), sequence % 2 == 0);
        PlainGraph plain;
        graph.clear();
        graph.best_backup();
        plain.id = graph.getID();
        for (int i = 0; i < sequence; ++i) {
            graph.addNode();
            plain.addNode();
        }
        for (int step = 0; step < 300; ++step) {
            const int i = index();
            const int j = index();
            const int operation = below(100);
            if (operation < 45) {
                QCOMPARE(graph.addEdge(i, j), plain.addEdge(i, j));
            } else if (operation < 65) {
                QCOMPARE(graph.remEdge(i, j), plain.remEdge(i, j));
            } else if (operation < 77) {
                QCOMPARE(graph.addNode(), plain.addNode());
            } else if (operation < 80) {
                QCOMPARE(graph.remNode(), plain.remNode());
            } else if (operation < 85) {
                QCOMPARE(graph.remNode(i), plain.remNode(i));
            } else if (operation < 88) {
                graph.invert();
                plain.invert();
            } else if (operation < 93) {
                graph.best_backup();
                plain.backup();
            } else if (operation < 98) {
                const int row = below(32);
                const int column = below(32);
                graph.toggleEdge(row, column);
                plain.a[row][column] = !plain.a[row][column];
            } else if (operation == 98) {
                graph.update_display();
            } else if (step % 7 == 0) {
                graph.clear();
                plain.clear();
            }
            const QString problem = difference(graph, plain);
            QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("sequence %1, step %2, operation %3: %4")
                                                       .arg(sequence)
                                                       .arg(step)
                                                       .arg(operation)
                                                       .arg(problem)));
        }
        // The matrices as they are stored, diagonals included.
        graph.best_backup();
        plain.backup();
        QCOMPARE(displayed(graph), plain.display());
    }
}

void TestGraphModel::displayFollowsTheBestGraph()
{
    Graph graph(latin1("shown"), true);
    build(graph, 3, {{0, 1}});
    graph.addNode();
    graph.addEdge(1, 2);
    graph.remEdge(0, 1);
    graph.update_display();
    QVERIFY(!graph.node(3)->isVisible());
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
    QVERIFY(!graph.edgeItem(1, 2)->isVisible());
    graph.best_backup();
    QVERIFY(!graph.edgeItem(1, 2)->isVisible());
    graph.update_display();
    QVERIFY(graph.node(3)->isVisible());
    QVERIFY(!graph.node(4)->isVisible());
    QVERIFY(!graph.edgeItem(0, 1)->isVisible());
    QVERIFY(graph.edgeItem(1, 2)->isVisible());
    QVERIFY(graph.bestEdge(2, 1));
    QVERIFY(!graph.bestEdge(0, 1));
}

/// The item of an edge is drawn between vertices whose getVisible() holds, before the display is updated, too.
void TestGraphModel::vertexExistsForItsEdgesOnceTheBestGraphHasIt()
{
    Graph graph(latin1("exists"), true);
    build(graph, 3, {{0, 1}});
    graph.addNode();
    QVERIFY(!graph.node(3)->getVisible());
    graph.best_backup();
    QVERIFY(graph.node(3)->getVisible());
    QVERIFY(!graph.node(3)->isVisible());
    graph.remNode();
    QVERIFY(graph.node(3)->getVisible());
    graph.best_backup();
    QVERIFY(!graph.node(3)->getVisible());
}

void TestGraphModel::displayReadsTheLowerTriangle()
{
    Graph graph(latin1("triangle"), true);
    build(graph, 2, {});
    graph.toggleEdge(0, 1);
    graph.best_backup();
    graph.update_display();
    QVERIFY(graph.bestEdge(0, 1));
    QVERIFY(!graph.edgeItem(0, 1)->isVisible());
    graph.toggleEdge(0, 1);
    graph.toggleEdge(1, 0);
    graph.best_backup();
    graph.update_display();
    QVERIFY(graph.bestEdge(0, 1));
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
}

void TestGraphModel::changeBestPublishes()
{
    Graph graph(latin1("publish"), false);
    build(graph, 2, {});
    graph.addEdge(0, 1);
    const int id = graph.getID();
    QSignalSpy published(&graph, &Graph::signal_best_graph_changed);
    QSignalSpy edited(&graph, &Graph::signal_interactive_graph_changed);
    QVERIFY(!graph.bestEdge(0, 1));
    graph.best_backup();
    QCOMPARE(published.size(), 0);
    graph.changeBest();
    QVERIFY(graph.bestEdge(0, 1));
    QCOMPARE(graph.getID(), id + 1);
    QCOMPARE(published.size(), 1);
    QCOMPARE(edited.size(), 0);
}

void TestGraphModel::displayWritesBothMatrices()
{
    Graph graph(latin1("display"), false);
    build(graph, 3, {{0, 1}, {1, 2}});
    graph.remEdge(0, 1);
    graph.toggleEdge(0, 2);
    QCOMPARE(displayed(graph), "ID = " + QByteArray::number(graph.getID()) +
                                   "\n"
                                   "--best graph--\n"
                                   "0 1 0 \n"
                                   "1 0 1 \n"
                                   "0 1 0 \n"
                                   "--cur graph--\n"
                                   "0 0 1 \n"
                                   "0 0 1 \n"
                                   "0 1 0 \n"
                                   "-------\n");
    graph.remNode();
    // Both matrices are cut at the vertex count of the current graph.
    QCOMPARE(displayed(graph), "ID = " + QByteArray::number(graph.getID()) +
                                   "\n"
                                   "--best graph--\n"
                                   "0 1 \n"
                                   "1 0 \n"
                                   "--cur graph--\n"
                                   "0 0 \n"
                                   "0 0 \n"
                                   "-------\n");
}

void TestGraphModel::lockedBestGraphLetsTheCurrentOneBeRead()
{
    Graph graph(latin1("lock"), false);
    build(graph, 2, {{0, 1}});
    graph.lock();
    QVERIFY(graph.edge(0, 1));
    QVERIFY(graph.remEdge(0, 1));
    graph.unlock();
    QVERIFY(graph.bestEdge(0, 1));
}

void TestGraphModel::backgroundTellsAViolation()
{
    Graph graph(latin1("violated"), true);
    build(graph, 0, {});
    graph.resize(200, 200);
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    QCOMPARE(pixelAt(*graph.viewport(), {20, 20}), QColor(Qt::white));
    graph.setViolated(true);
    QCOMPARE(pixelAt(*graph.viewport(), {20, 20}), QColor(Qt::gray));
    graph.setViolated(true);
    QCOMPARE(graph.backgroundBrush(), QBrush(Qt::gray));
    graph.setViolated(false);
    QCOMPARE(pixelAt(*graph.viewport(), {20, 20}), QColor(Qt::white));
}

void TestGraphModel::edgesLieUnderVertices()
{
    Graph graph(latin1("layers"), true);
    build(graph, 2, {{0, 1}});
    graph.setPos(0, -100.0, 0.0, 0.0);
    graph.setPos(1, 100.0, 0.0, 0.0);
    graph.slot_set_node_radius(30.0);
    graph.resize(500, 300);
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    // Off the centre, where the gradient of a vertex is still close to its own colour, yellow.
    const QColor vertex = pixelAt(*graph.viewport(), graph.mapFromScene(QPointF(-100, 0)));
    QVERIFY2(vertex.red() > 200 && vertex.green() > 200 && vertex.blue() < 60, qPrintable(vertex.name()));
    QCOMPARE(pixelAt(*graph.viewport(), graph.mapFromScene(QPointF(0, 0))), QColor(Qt::black));
    QCOMPARE(pixelAt(*graph.viewport(), graph.mapFromScene(QPointF(0, 50))), QColor(Qt::white));
}

void TestGraphModel::placesOfVertices()
{
    Graph graph(latin1("places"), true);
    build(graph, 2, {});
    const QPointF unused = graph.node(2)->pos();
    graph.setPos(0, QPointF(5.5, -6.5));
    graph.setPos(1, 1.0, 2.0, 3.0);
    graph.setPos(2, 7.0, 8.0, 9.0);
    graph.setPos(-1, QPointF(1.0, 1.0));
    graph.setPos(32, QPointF(1.0, 1.0));
    QCOMPARE(graph.node(0)->pos(), QPointF(5.5, -6.5));
    QCOMPARE(graph.node(1)->pos(), QPointF(1.0, 2.0));
    QCOMPARE(graph.node(1)->getCoordZ(), 3.0);
    QCOMPARE(graph.node(2)->pos(), unused);
}

void TestGraphModel::labels()
{
    Graph graph(latin1("labels"), true);
    build(graph, 2, {});
    graph.slot_set_node_radius(40.0);
    graph.setLabels({-9.9e-7, 1e-6, 1234567.0, -0.333333333});
    QCOMPARE(ItemImage(*graph.node(0)), labelledVertex("0"));
    QCOMPARE(ItemImage(*graph.node(1)), labelledVertex("1e-06"));
    QCOMPARE(ItemImage(*graph.node(2)), labelledVertex("1.23457e+06"));
    QCOMPARE(ItemImage(*graph.node(3)), labelledVertex("-0.333333"));
    QCOMPARE(ItemImage(*graph.node(4)), labelledVertex(""));
    QVERIFY(labelledVertex("0") != labelledVertex("1e-06"));
    QVERIFY(labelledVertex("0") != labelledVertex(""));
    graph.setLabels({2.0});
    QCOMPARE(ItemImage(*graph.node(0)), labelledVertex("2"));
    QCOMPARE(ItemImage(*graph.node(3)), labelledVertex("-0.333333"));
    graph.setLabels({});
    QCOMPARE(ItemImage(*graph.node(0)), labelledVertex(""));
    QCOMPARE(ItemImage(*graph.node(3)), labelledVertex(""));
    graph.setLabels(QVector<double>(40, 3.0));
    QCOMPARE(ItemImage(*graph.node(31)), labelledVertex("3"));
    graph.resetLabels();
    QCOMPARE(ItemImage(*graph.node(31)), labelledVertex(""));
}

void TestGraphModel::labelIsShownBeyondTheBoundingRectangle()
{
    LabelledPath graph;
    QVERIFY(show(graph));
    const auto colour = [&graph](double x, double y) {
        return onScreen(graph).pixelColor(graph.mapFromScene(graph.node(1)->pos() + QPointF(x, y)));
    };
    QVERIFY(!graph.node(1)->boundingRect().contains(QPointF(38, 17)));
    QTRY_COMPARE_WITH_TIMEOUT(colour(38, 17), QColor(Qt::white), patience);
    QCOMPARE(colour(-38, -7), QColor(Qt::white));
    QCOMPARE(colour(44, 17), QColor(Qt::gray));
    QCOMPARE(colour(-44, -7), QColor(Qt::gray));
}

void TestGraphModel::changeLeavesNoTraceOfALabel_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("vertex moved a little", [](Graph &graph) { graph.setPos(1, QPointF(12, 65)); });
    row("vertex moved far", [](Graph &graph) { graph.setPos(1, QPointF(-80, 90)); });
    row("vertex moved out of sight", [](Graph &graph) { graph.setPos(1, QPointF(0, 500)); });
    row("vertex relabelled", [](Graph &graph) { graph.setLabels({1.5, 7.0}); });
    row("labels reset", [](Graph &graph) { graph.resetLabels(); });
    row("radius", [](Graph &graph) { graph.slot_set_node_radius(12.0); });
    row("size ratio", [](Graph &graph) { graph.setSizes({0.0, 1.0, 2.0}); });
    row("colour", [](Graph &graph) { graph.setColors({1.0, 2.0, 3.0}); });
    row("selection", [](Graph &graph) { graph.slot_select_all(); });
    row("vertex removed", [](Graph &graph) {
        graph.remNode();
        graph.changeBest();
        graph.update_display();
    });
    row("layout", [](Graph &graph) { graph.place_circle(120.0); });
    row("zoom", [](Graph &graph) { graph.scaleView(0.8); });
    row("edge relabelled", [](Graph &graph) { graph.setELabels({{}, {1.0}, {0.0, 2.0}}, true); });
    row("edge without label", [](Graph &graph) { graph.setELabels({}, false); });
}

void TestGraphModel::changeLeavesNoTraceOfALabel()
{
    QFETCH(Change, change);
    const QImage before = drawnAfter([](Graph &) {});
    const QImage after = drawnAfter(change);
    QVERIFY(before != after);
    LabelledPath graph;
    QVERIFY(show(graph));
    QTRY_COMPARE_WITH_TIMEOUT(onScreen(graph), before, patience);
    change(graph);
    QTRY_COMPARE_WITH_TIMEOUT(onScreen(graph), after, patience);
}

void TestGraphModel::edgeLabels()
{
    Path path;
    const ItemImage unjoined = path.image(2, 0);
    path.setELabels({{}, {1e-6}, {9.0, 2.5}}, true);
    QCOMPARE(path.image(1, 0), labelledEdge(1, 0, "0"));
    QCOMPARE(path.image(2, 1), labelledEdge(2, 1, "2.5"));
    QCOMPARE(path.image(2, 0), unjoined);
    QVERIFY(labelledEdge(2, 1, "2.5") != labelledEdge(2, 1, ""));

    path.remEdge(1, 2);
    path.setELabels({{}, {1.1e-6}, {9.0, 7.0}}, true);
    QCOMPARE(path.image(1, 0), labelledEdge(1, 0, "1.1e-06"));
    QCOMPARE(path.image(2, 1), labelledEdge(2, 1, "2.5"));

    path.setELabels({}, false);
    QCOMPARE(path.image(1, 0), labelledEdge(1, 0, ""));
    QCOMPARE(path.image(2, 1), labelledEdge(2, 1, "2.5"));

    path.addEdge(1, 2);
    path.setELabels({{}, {4.0}, {4.0}}, true);
    QCOMPARE(path.image(1, 0), labelledEdge(1, 0, "4"));
    QCOMPARE(path.image(2, 1), labelledEdge(2, 1, ""));
}

void TestGraphModel::edgeHighlights()
{
    const auto highlighted = [](int i, int j) { return edgeImage(i, j, [](Edge &edge) { edge.setHilighted(true); }); };
    const auto plain = [](int i, int j) { return edgeImage(i, j, [](Edge &edge) { edge.setHilighted(false); }); };
    QVERIFY(highlighted(1, 0) != plain(1, 0));
    Path path;
    path.setEHilight({{}, {1.0}, {1.0, 0.999999}}, true);
    QCOMPARE(path.image(1, 0), highlighted(1, 0));
    QCOMPARE(path.image(2, 1), plain(2, 1));
    path.setEHilight({{}, {notANumber}, {0.0, 0.9999991}}, true);
    QCOMPARE(path.image(1, 0), plain(1, 0));
    QCOMPARE(path.image(2, 1), highlighted(2, 1));
    path.setEHilight({{}, {1.0}}, true);
    QCOMPARE(path.image(1, 0), highlighted(1, 0));
    QCOMPARE(path.image(2, 1), plain(2, 1));
    path.setEHilight({{}, {1.0}, {1.0, 1.0}}, false);
    QCOMPARE(path.image(1, 0), plain(1, 0));
}

void TestGraphModel::decoratedEdgesAreCurrentOnesThatAreShown_data()
{
    QTest::addColumn<Decorate>("decorate");
    QTest::newRow("labels") << &Graph::setELabels;
    QTest::newRow("highlights") << &Graph::setEHilight;
}

void TestGraphModel::decoratedEdgesAreCurrentOnesThatAreShown()
{
    QFETCH(Decorate, decorate);
    const QVector<QVector<double>> ones = {{}, {1}, {1, 1}, {1, 1, 1}};

    Path longer;
    longer.addNode();
    longer.addEdge(2, 3);
    longer.setPos(3, 0.0, 100.0, 0.0);
    (longer.*decorate)(ones, true);
    longer.changeBest();
    longer.update_display();
    const ItemImage decorated = longer.image(2, 1);
    const ItemImage undecorated = longer.image(3, 2);
    (longer.*decorate)({}, false);
    QVERIFY(longer.image(2, 1) != decorated);
    QCOMPARE(longer.image(3, 2), undecorated);
    (longer.*decorate)(ones, true);
    QCOMPARE(longer.image(2, 1), decorated);
    QVERIFY(longer.image(3, 2) != undecorated);

    Path shorter;
    const ItemImage first = shorter.image(1, 0);
    const ItemImage second = shorter.image(2, 1);
    shorter.remNode();
    (shorter.*decorate)(ones, true);
    QVERIFY(shorter.image(1, 0) != first);
    QCOMPARE(shorter.image(2, 1), second);
    shorter.best_restore();
    shorter.addEdge(1, 2);
    (shorter.*decorate)(ones, true);
    shorter.remNode();
    (shorter.*decorate)({}, false);
    QCOMPARE(shorter.image(1, 0), first);
    QCOMPARE(shorter.image(2, 1), decorated);
}

void TestGraphModel::colours()
{
    Graph graph(latin1("colours"), true);
    graph.slot_set_node_radius(40.0);
    graph.setColors({2.9, 3.0, -0.5, notANumber, 1e300, 17.0});
    QCOMPARE(ItemImage(*graph.node(0)), colouredVertex(2));
    QCOMPARE(ItemImage(*graph.node(1)), colouredVertex(3));
    QCOMPARE(ItemImage(*graph.node(2)), colouredVertex(0));
    QCOMPARE(ItemImage(*graph.node(3)), colouredVertex(0));
    QCOMPARE(ItemImage(*graph.node(4)), colouredVertex(std::numeric_limits<int>::max()));
    QCOMPARE(ItemImage(*graph.node(5)), colouredVertex(1));
    QVERIFY(colouredVertex(2) != colouredVertex(3));
    graph.setColors({4.0});
    QCOMPARE(ItemImage(*graph.node(0)), colouredVertex(4));
    QCOMPARE(ItemImage(*graph.node(1)), colouredVertex(3));
    graph.setColors({});
    QCOMPARE(ItemImage(*graph.node(1)), colouredVertex(0));
    graph.setColors(QVector<double>(40, -infinity));
    QCOMPARE(ItemImage(*graph.node(31)), colouredVertex(std::numeric_limits<int>::min()));
    graph.resetColors();
    QCOMPARE(ItemImage(*graph.node(31)), colouredVertex(0));
}

void TestGraphModel::sizes_data()
{
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<QVector<double>>("ratios");
    QTest::newRow("in proportion") << QVector<double>{1, 3, 2, 5} << QVector<double>{0, 0.5, 0.25, 1};
    QTest::newRow("all equal") << QVector<double>{7, 7, 7} << QVector<double>{0, 0, 0};
    QTest::newRow("nearly equal") << QVector<double>{0, 9e-7} << QVector<double>{0, 9e-7};
    QTest::newRow("empty") << QVector<double>{} << QVector<double>{0, 0};
    QTest::newRow("not a number") << QVector<double>{notANumber, 0, 4, notANumber} << QVector<double>{0, 0, 1, 0};
    QTest::newRow("only not a number") << QVector<double>{notANumber, notANumber} << QVector<double>{0, 0};
    QTest::newRow("infinite") << QVector<double>{infinity, 0, -1} << QVector<double>{0, 0, 0};
    QTest::newRow("huge") << QVector<double>{1e300, -1e300} << QVector<double>{1, 0};
    QTest::newRow("more than the range holds") << QVector<double>{1.7e308, -1.7e308} << QVector<double>{0, 0};
    QTest::newRow("beyond the starting bounds") << QVector<double>{2e12, 3e12} << QVector<double>{0.5, 1};
}

void TestGraphModel::sizes()
{
    QFETCH(QVector<double>, values);
    QFETCH(QVector<double>, ratios);
    Graph graph(latin1("sizes"), true);
    graph.slot_set_node_radius(10.0);
    graph.setSizes({0, 1});
    QCOMPARE(drawnRadius(graph, 1), 20.0);
    graph.setSizes(values);
    for (int i = 0; i < ratios.size(); ++i) {
        QVERIFY2(isClose(drawnRadius(graph, i), 10 * (1 + ratios[i])),
                 qPrintable(QStringLiteral("vertex %1: %2").arg(i).arg(drawnRadius(graph, i))));
    }
    graph.setSizes(QVector<double>(40, 1.0));
    graph.resetSizes();
    QCOMPARE(drawnRadius(graph, 0), 10.0);
    QCOMPARE(drawnRadius(graph, 31), 10.0);
}

void TestGraphModel::nodeRadius()
{
    Graph graph(latin1("radius"), true);
    QCOMPARE(drawnRadius(graph, 0), 40.0);
    QCOMPARE(drawnRadius(graph, 31), 40.0);
    graph.slot_set_node_radius(20.0);
    for (int i = 0; i < 32; ++i) {
        QCOMPARE(graph.node(i)->getRadius(), 20.0);
        QCOMPARE(drawnRadius(graph, i), 20.0);
    }
}

void TestGraphModel::highlightsOneVertex()
{
    const ItemImage highlighted = vertexImage([](Node &vertex) { vertex.hilight(); });
    const ItemImage plain = vertexImage([](Node &) {});
    QVERIFY(highlighted != plain);
    Graph graph(latin1("highlight"), true);
    QSignalSpy spy(&graph, &Graph::signal_hilight_node);
    graph.hilight(3);
    QCOMPARE(ItemImage(*graph.node(3)), highlighted);
    QCOMPARE(ItemImage(*graph.node(2)), plain);
    graph.hilight(31);
    QCOMPARE(ItemImage(*graph.node(3)), plain);
    QCOMPARE(ItemImage(*graph.node(31)), highlighted);
    graph.hilight(-1);
    QCOMPARE(ItemImage(*graph.node(31)), plain);
    graph.hilight(99);
    QCOMPARE(spy, (QList<QVariantList>{{3}, {31}, {-1}, {99}}));
}

void TestGraphModel::countsOutsideTheSlots_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("interactive");
    for (const bool interactive : {true, false}) {
        const QByteArray kind = interactive ? "scene, " : "plain, ";
        QTest::newRow((kind + "62").constData()) << latin1("}") << 62 << interactive;
        QTest::newRow((kind + "33").constData()) << latin1("`") << 33 << interactive;
        QTest::newRow((kind + "-63").constData()) << QString() << -63 << interactive;
    }
}

/// Every operation stays within the slots, whatever count a text left behind; the sanitizers watch.
void TestGraphModel::countsOutsideTheSlots()
{
    QFETCH(QString, text);
    QFETCH(int, count);
    QFETCH(bool, interactive);
    const int used = count > 32 ? 32 : 0;
    using Operation = std::function<void(Graph &)>;
    const QVector<double> many(70, 1.5);
    const QVector<QVector<double>> manyRows(70, many);
    const std::initializer_list<std::pair<const char *, Operation>> operations = {
        {"addNode", [used](Graph &graph) { QCOMPARE(graph.addNode(), used < 32); }},
        {"remNode", [used](Graph &graph) { QCOMPARE(graph.remNode(), used > 0); }},
        {"remNode(k)",
         [used](Graph &graph) {
             QVERIFY(!graph.remNode(40));
             QVERIFY(!graph.remNode(-1));
             QCOMPARE(graph.remNode(5), used > 0);
         }},
        {"addEdge",
         [used](Graph &graph) {
             QVERIFY(!graph.addEdge(40, 1));
             QVERIFY(!graph.addEdge(-5, -6));
             QCOMPARE(graph.addEdge(31, 0), used == 32);
         }},
        {"edge",
         [](Graph &graph) {
             QVERIFY(!graph.edge(40, 41));
             QVERIFY(!graph.edge(-40, -41));
             QVERIFY(!graph.bestEdge(40, 41));
             QCOMPARE(graph.degree(40), 0);
             QCOMPARE(graph.degree(-40), 0);
             graph.degree(31);
         }},
        {"getNbEdges", [used](Graph &graph) { QVERIFY(graph.getNbEdges() <= used * (used - 1) / 2); }},
        {"clear",
         [](Graph &graph) {
             graph.clear();
             QCOMPARE(graph.getNbNodes(), 0);
         }},
        {"invert", [](Graph &graph) { graph.invert(); }},
        {"randomGraph",
         [](Graph &graph) {
             graph.randomGraph(12);
             QCOMPARE(graph.getNbNodes(), 12);
         }},
        {"copy",
         [](Graph &graph) {
             const QScopedPointer<Graph> clone(graph.clone());
             QCOMPARE(clone->getNbNodes(), graph.getNbNodes());
             graph.copy(clone.data());
         }},
        {"display", [](Graph &graph) { QVERIFY(!displayed(graph).isEmpty()); }},
        {"setPos",
         [](Graph &graph) {
             for (const int i : {-63, -1, 0, 31, 32, 61, 62}) {
                 graph.setPos(i, QPointF(1, 2));
                 graph.setPos(i, 1, 2, 3);
             }
         }},
        {"decorations",
         [&](Graph &graph) {
             graph.setLabels(many);
             graph.setELabels(manyRows, true);
             graph.setELabels({}, true);
             graph.setEHilight(manyRows, true);
             graph.setEHilight({}, true);
             graph.setColors(many);
             graph.setSizes(many);
             graph.hilight(40);
         }},
        {"place_circle", [](Graph &graph) { graph.place_circle(200); }},
        {"fits",
         [](Graph &graph) {
             graph.center();
             graph.rotate(0.1, 0.2, 0.3);
             graph.scaleCoords(100, 100);
             graph.scaleCoords(100, 100, 100);
             graph.scaleCoords(100);
             graph.slot_randomPosition();
         }},
        {"reorganize", [](Graph &graph) { graph.reorganize(); }},
        {"relabel", [](Graph &graph) { graph.relabel(); }},
        {"perturb", [](Graph &graph) { graph.perturb(50); }},
        {"graph6",
         [](Graph &graph) {
             StderrCapture errors;
             graph.g6currentGraphData();
         }},
    };
    for (const auto &operation : operations) {
        Graph graph(latin1("hostile"), interactive);
        graph.randomGraph(9);
        graph.slot_randomPosition();
        QVERIFY(!graph.loadg6(text, false));
        QCOMPARE(graph.getNbNodes(), count);
        for (int published = 0; published < 2; ++published) {
            operation.second(graph);
            QVERIFY2(!QTest::currentTestFailed(), operation.first);
            graph.loadg6(text, false);
            graph.best_backup();
            graph.update_display();
        }
    }
}

QTEST_MAIN(TestGraphModel)
#include "tst_graph_model.moc"
