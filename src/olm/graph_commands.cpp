#include "distances.h"
#include "edge.h"
#include "graph.h"
#include "node.h"

#include <QMutexLocker>

#include <utility>

namespace
{
/// Where a copy stands beside its source, in scene units.
const QPointF copyOffset(-10, 10);

/// Calls apply(i, j) for all pairs i < j of @p vertices, which are sorted.
template<typename Apply> void forEachPair(const QVector<int> &vertices, Apply apply)
{
    for (int b = 1; b < vertices.size(); ++b) {
        for (int a = 0; a < b; ++a) {
            apply(vertices[a], vertices[b]);
        }
    }
}
} // namespace

/// Publishes and shows the current graph and records it for undo.
void Graph::commit()
{
    changeBest();
    update_display();
    backup();
}

/// Clears all entries of @p slot, which may be left over from an earlier vertex; currentLock is held.
void Graph::clearEntries(int slot)
{
    for (int i = 0; i < MAX_NODES; ++i) {
        adjacency[slot][i] = false;
        adjacency[i][slot] = false;
    }
}

/// The selected ones of the first @p count vertices.
QVector<int> Graph::selectedVertices(int count) const
{
    QVector<int> selected;
    for (int i = 0; i < usedSlots(count); ++i) {
        if (nodes[i]->isSelected()) {
            selected.append(i);
        }
    }
    return selected;
}

// New vertices.

void Graph::addJoinedVertex(NewVertex kind)
{
    const int added = usedSlots(nbNodes);
    if (added == MAX_NODES) {
        return;
    }
    const QPointF place = mapToScene(lastMousePos);
    setNbNodes(added + 1);
    nodes[added]->setPosition(place.x(), place.y(), 0.0);
    nodes[added]->setSelected(kind == NewVertex::Clique);
    for (int i = 0; i <= added; ++i) {
        setEdge(i, added, nodes[i]->isSelected());
    }
    for (Node *vertex : qAsConst(nodes)) {
        if (kind == NewVertex::Tail) {
            vertex->setSelected(vertex == nodes[added]);
        }
        vertex->update();
    }
    changeBest();
    backup();
    update_display();
}

void Graph::addK()
{
    addJoinedVertex(NewVertex::Clique);
}

void Graph::addBip()
{
    addJoinedVertex(NewVertex::Bipartite);
}

void Graph::addTail()
{
    addJoinedVertex(NewVertex::Tail);
}

void Graph::slot_addv()
{
    addNode();
    commit();
}

// Edges of the selection.

void Graph::slot_adde()
{
    forEachPair(selectedVertices(bestNbNodes), [this](int i, int j) { addEdge(i, j); });
    commit();
}

void Graph::slot_complement()
{
    forEachPair(selectedVertices(bestNbNodes), [this](int i, int j) { setEdge(i, j, !edge(i, j)); });
    commit();
}

void Graph::slot_reme()
{
    forEachPair(selectedVertices(nbNodes), [this](int i, int j) { remEdge(i, j); });
    commit();
}

void Graph::slot_remcut()
{
    const int n = usedSlots(nbNodes);
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (nodes[i]->isSelected() != nodes[j]->isSelected()) {
                remEdge(i, j);
            }
        }
    }
    commit();
}

// Removal of the selection.

void Graph::slot_remv()
{
    best_restore();
    {
        const QMutexLocker locker(&currentLock);
        nbNodes = usedSlots(nbNodes);
        for (int v = nbNodes - 1; v >= 0; --v) {
            if (nodes[v]->isSelected()) {
                clearEntries(v);
                fillHole(v, nbNodes - 1);
                --nbNodes;
            }
        }
        for (int i = 0; i < MAX_NODES; ++i) {
            for (int j = i + 1; j < MAX_NODES; ++j) {
                if (j >= nbNodes) {
                    adjacency[i][j] = false;
                    adjacency[j][i] = false;
                }
                edges[i][j]->setOrig(nodes[i]);
                edges[i][j]->setDest(nodes[j]);
                edges[i][j]->resetVisible(adjacency[i][j]);
            }
        }
    }
    commit();
}

/// Moves vertex @p last, with its item, into the cleared @p slot; currentLock is held.
void Graph::fillHole(int slot, int last)
{
    if (slot == last) {
        return;
    }
    adjacency[slot] = adjacency[last];
    for (int i = 0; i < MAX_NODES; ++i) {
        adjacency[i][slot] = adjacency[i][last];
    }
    // The edge items stay with their slots: the moved vertex gets those of its new slot.
    nodes[slot]->exchangeENeighbors(*nodes[last]);
    std::swap(nodes[slot], nodes[last]);
}

// Duplication of the selection.

void Graph::duplicate(bool asTwins, bool linked)
{
    const int first = usedSlots(nbNodes);
    const QVector<int> sources = selectedVertices(first);
    const int count = sources.size();
    if (count == 0 || first + count > MAX_NODES) {
        return;
    }
    setNbNodes(first + count);
    for (int m = 0; m < count; ++m) {
        Node *copied = nodes[first + m];
        const QPointF place = nodes[sources[m]]->pos() + copyOffset;
        copied->setPosition(place.x(), place.y(), 0.0);
        copied->setSelected(true);
        const QMutexLocker locker(&currentLock);
        clearEntries(first + m);
    }
    for (int a = 0; a < count; ++a) {
        for (int b = 0; b < count; ++b) {
            setEdge(first + a, first + b, edge(sources[a], sources[b]));
        }
        for (int w = 0; asTwins && w < first; ++w) {
            setEdge(first + a, w, edge(sources[a], w));
        }
        if (linked) {
            addEdge(sources[a], first + a);
        }
    }
    for (const int source : sources) {
        nodes[source]->setSelected(false);
    }
    countChange();
    commit();
}

void Graph::slot_duplicate()
{
    duplicate(false, false);
}

void Graph::slot_duplicate_link()
{
    duplicate(false, true);
}

void Graph::slot_duplicate_twins()
{
    duplicate(true, false);
}

void Graph::slot_duplicate_link_twins()
{
    duplicate(true, true);
}

// The diameter.

void Graph::linkDiametralPairs(bool onlyOne)
{
    const int n = usedSlots(nbNodes);
    const Distances distance = distances(n, MAX_NODES, [this](int i, int j) { return edge(i, j); });
    const int diameter = largestDistance(distance);
    // In a disconnected graph of MAX_NODES vertices no distance is above n: it passes as one of that diameter.
    if (diameter > n) {
        emit signal_console(QStringLiteral("Link diameter impossible : Disconnected graph"), false, 0, Qt::blue);
    } else if (diameter == 1) {
        emit signal_console(QStringLiteral("Link diameter impossible : Complete graph"), false, 0, Qt::blue);
    } else if (onlyOne) {
        const auto [i, j] = diametralPair(distance);
        if (i >= 0) {
            addEdge(i, j);
        }
    } else {
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < i; ++j) {
                if (distance[i][j] == diameter) {
                    addEdge(i, j);
                }
            }
        }
    }
    countChange();
    commit();
}

void Graph::slot_link_diameter()
{
    linkDiametralPairs(false);
}

void Graph::slot_link_one_diameter()
{
    linkDiametralPairs(true);
}
