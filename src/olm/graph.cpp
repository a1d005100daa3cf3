#include "graph.h"

#include "edge.h"
#include "node.h"
#include "random.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QMutexLocker>

#include <algorithm>
#include <iostream>

namespace
{
/// The scene reaches this far from the origin; what stands beyond it is seen by zooming out.
constexpr double sceneExtent = 600.0;

/// A random coordinate from 0.0 to 199.9 in steps of 0.1.
double randomCoordinate()
{
    return (qrand() % 2000) / 10.0;
}

void writeMatrix(const QVector<QVector<bool>> &matrix, int size)
{
    for (int i = 0; i < size; ++i) {
        for (int j = 0; j < size; ++j) {
            std::cerr << matrix[i][j] << " ";
        }
        std::cerr << std::endl;
    }
}
} // namespace

Graph::Graph(QString graphName, bool withScene) : name(std::move(graphName)), interactive(withScene)
{
    Node::initColors();
    if (interactive) {
        createScene();
    }
    createItems();
    resetSizes();
    id = qrand();
    bestId = id - 1;
    displayedId = id - 2;
    randomGraph(10);
    best_backup();
    update_display();
    setViolated(false);
}

Graph::~Graph()
{
    qDeleteAll(history);
    if (scene != nullptr) {
        return; // QGraphicsScene deletes its items.
    }
    for (int i = 0; i < MAX_NODES; ++i) {
        for (int j = 0; j < i; ++j) {
            delete edges[i][j];
        }
    }
    qDeleteAll(nodes);
}

void Graph::createScene()
{
    scene = new QGraphicsScene(this);
    selectionRect = new QGraphicsRectItem;
    selectionRect->hide();
    selectionRect->setBrush(Qt::yellow);
    selectionRect->setPen(QPen(Qt::red));
    selectionRect->setZValue(1000);
    selectionRect->setOpacity(0.5);
    scene->addItem(selectionRect);
    // QGraphicsView shows the middle of the scene, which must be the origin: the drawing is around it. Without a
    // rectangle of its own the scene would grow with its items, hidden ones too, and its middle would move.
    scene->setSceneRect(-sceneExtent, -sceneExtent, 2 * sceneExtent, 2 * sceneExtent);
    setScene(scene);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setResizeAnchor(AnchorViewCenter);
    centerOn(0, 0);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &Graph::showMenu);
    setCacheMode(CacheBackground);
    setRenderHint(QPainter::Antialiasing);
    // QGraphicsView otherwise repaints the bounding rectangles of changed items only. Labels reach beyond them.
    setViewportUpdateMode(FullViewportUpdate);
    setBackgroundBrush(Qt::white);
    setMouseTracking(true);
    connect(this, &Graph::signal_best_graph_changed, this, &Graph::clearWhatIsOutdated);
}

void Graph::createItems()
{
    const QMutexLocker bestLocker(&bestLock);
    const QMutexLocker currentLocker(&currentLock);
    edges.fill(QVector<Edge *>(MAX_NODES, nullptr), MAX_NODES);
    adjacency.fill(QVector<bool>(MAX_NODES, true), MAX_NODES);
    for (int i = 0; i < MAX_NODES; ++i) {
        adjacency[i][i] = false;
    }
    bestAdjacency = adjacency;

    for (int i = 0; i < MAX_NODES; ++i) {
        const double x = randomCoordinate();
        const double y = randomCoordinate();
        auto *vertex = new Node(x, y, 10.0, 10.0, QStringLiteral("Node %1").arg(i + 1), interactive);
        vertex->whenRenamed([this] { refreshNames(); });
        nodes.append(vertex);
        if (interactive) {
            scene->addItem(vertex);
        }
        for (int j = 0; j < i; ++j) {
            auto *pair = new Edge(vertex, nodes[j]);
            edges[i][j] = pair;
            edges[j][i] = pair;
            if (interactive) {
                scene->addItem(pair);
            }
            pair->resetVisible(bestAdjacency[i][j]);
            vertex->addENeighbor(pair);
            nodes[j]->addENeighbor(pair);
        }
    }
}

Node *Graph::node(int slot) const
{
    return isSlot(slot) ? nodes[slot] : nullptr;
}

Edge *Graph::edgeItem(int i, int j) const
{
    return isSlot(i) && isSlot(j) ? edges[i][j] : nullptr;
}

// The current graph.

int Graph::getNbEdges() const
{
    const QMutexLocker locker(&currentLock);
    const int n = usedSlots(nbNodes);
    int count = 0;
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            count += adjacency[i][j] ? 1 : 0;
        }
    }
    return count;
}

Graph *Graph::clone() const
{
    auto *graph = new Graph(QStringLiteral("Clone"), false);
    graph->copy(this);
    return graph;
}

// The counter starts at a random number, so that it may pass the greatest int. It then goes on at the least one.
void Graph::countChange()
{
    id = int(unsigned(id) + 1U);
}

void Graph::setNbNodes(int count)
{
    nbNodes = count;
    for (int i = 0; i < MAX_NODES; ++i) {
        nodes[i]->setExists(i < nbNodes);
    }
}

bool Graph::addNode()
{
    const int added = usedSlots(nbNodes);
    if (added == MAX_NODES) {
        return false;
    }
    const QPointF place = mapToScene(lastMousePos);
    nodes[added]->setPosition(place.x(), place.y(), 0.0);
    setNbNodes(added + 1);
    countChange();
    update_display();
    return true;
}

bool Graph::remNode()
{
    const int last = usedSlots(nbNodes) - 1;
    if (last < 0) {
        return false;
    }
    setNbNodes(last);
    for (int i = 0; i < last; ++i) {
        remEdge(i, last);
    }
    countChange();
    update_display();
    return true;
}

bool Graph::remNode(int k)
{
    if (!isVertex(k)) {
        return false;
    }
    const int last = usedSlots(nbNodes) - 1;
    {
        const QMutexLocker locker(&currentLock);
        setNbNodes(last);
        for (int i = 0; i < last; ++i) {
            if (i != k) {
                adjacency[k][i] = adjacency[last][i];
            }
        }
        for (int i = 0; i < last; ++i) {
            if (i != k) {
                adjacency[i][k] = adjacency[i][last];
            }
        }
    }
    for (int i = 0; i < last; ++i) {
        remEdge(last, i);
    }
    countChange();
    update_display();
    return true;
}

bool Graph::addEdge(int i, int j)
{
    const QMutexLocker locker(&currentLock);
    countChange();
    if (!isVertex(i) || !isVertex(j) || i == j) {
        return false;
    }
    adjacency[i][j] = true;
    adjacency[j][i] = true;
    return true;
}

bool Graph::remEdge(int i, int j)
{
    if (!isSlot(i) || !isSlot(j)) {
        return false;
    }
    const QMutexLocker locker(&currentLock);
    countChange();
    if (!adjacency[i][j] && !adjacency[j][i]) {
        return false;
    }
    adjacency[i][j] = false;
    adjacency[j][i] = false;
    return true;
}

void Graph::setEdge(int i, int j, bool joined)
{
    if (joined) {
        addEdge(i, j);
    } else {
        remEdge(i, j);
    }
}

void Graph::toggleEdge(int i, int j)
{
    currentLock.lock();
    if (!isSlot(i) || !isSlot(j)) {
        return; // The lock stays held, on purpose: no caller may get here.
    }
    adjacency[i][j] = !adjacency[i][j];
    currentLock.unlock();
}

bool Graph::edge(int i, int j) const
{
    const QMutexLocker locker(&currentLock);
    return isVertex(i) && isVertex(j) && i != j && (adjacency[i][j] || adjacency[j][i]);
}

int Graph::degree(int i) const
{
    const QMutexLocker locker(&currentLock);
    if (!isVertex(i)) {
        return 0;
    }
    int count = 0;
    for (int j = 0; j < usedSlots(nbNodes); ++j) {
        count += adjacency[i][j] || adjacency[j][i] ? 1 : 0;
    }
    return count;
}

void Graph::clear()
{
    for (int i = 0; i < MAX_NODES; ++i) {
        for (int j = i + 1; j < MAX_NODES; ++j) {
            remEdge(i, j);
        }
    }
    setNbNodes(0);
}

void Graph::copy(const Graph *other)
{
    nbNodes = other->getNbNodes();
    const int n = usedSlots(nbNodes);
    // Read before the lock is taken: edge() locks the other graph, which may be this one.
    QVector<QVector<bool>> joined(n, QVector<bool>(n));
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            joined[i][j] = other->edge(i, j);
        }
    }
    const QMutexLocker locker(&currentLock);
    for (int i = 0; i < n; ++i) {
        std::copy(joined[i].cbegin(), joined[i].cend(), adjacency[i].begin());
    }
    countChange();
}

void Graph::invert()
{
    const int n = usedSlots(nbNodes);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            toggleEdge(i, j);
        }
    }
}

void Graph::randomGraph(int n)
{
    clear();
    while (nbNodes < n && addNode()) {
    }
    while (nbNodes > n && remNode()) {
    }
    for (int i = 0; i < nbNodes; ++i) {
        for (int j = i + 1; j < nbNodes; ++j) {
            setEdge(i, j, is_odd(qrand()));
        }
    }
}

// The best graph and the display.

bool Graph::bestEdge(int i, int j) const
{
    const QMutexLocker locker(&bestLock);
    const int n = usedSlots(bestNbNodes);
    return i >= 0 && j >= 0 && i < n && j < n && i != j && (bestAdjacency[i][j] || bestAdjacency[j][i]);
}

void Graph::best_backup()
{
    const QMutexLocker bestLocker(&bestLock);
    const QMutexLocker currentLocker(&currentLock);
    bestAdjacency = adjacency;
    bestNbNodes = nbNodes;
    for (int i = 0; i < MAX_NODES; ++i) {
        nodes[i]->setExists(i < bestNbNodes);
        nodes[i]->best_backup();
    }
    bestId = id;
}

void Graph::update_display()
{
    const bool isNew = displayedId != bestId;
    showBestGraph();
    if (isNew) {
        clearWhatIsOutdated();
        refreshInformation();
    }
}

void Graph::showBestGraph()
{
    const QMutexLocker bestLocker(&bestLock);
    const QMutexLocker currentLocker(&currentLock);
    for (int i = 0; i < MAX_NODES; ++i) {
        nodes[i]->resetVisible(i < bestNbNodes, true);
        nodes[i]->best_backup();
        for (int j = 0; j < i; ++j) {
            edges[i][j]->resetVisible(bestAdjacency[i][j]);
        }
        nodes[i]->updateVisible();
    }
    displayedId = bestId;
}

void Graph::changeBest()
{
    countChange();
    best_backup();
    emit signal_best_graph_changed();
}

void Graph::setViolated(bool value)
{
    if (violated == value) {
        return;
    }
    violated = value;
    setBackgroundBrush(violated ? Qt::gray : Qt::white);
    viewport()->update();
}

void Graph::display()
{
    const QMutexLocker bestLocker(&bestLock);
    const QMutexLocker currentLocker(&currentLock);
    const int n = usedSlots(nbNodes);
    std::cerr << "ID = " << id << std::endl << "--best graph--" << std::endl;
    writeMatrix(bestAdjacency, n);
    std::cerr << "--cur graph--" << std::endl;
    writeMatrix(adjacency, n);
    std::cerr << "-------" << std::endl;
}
