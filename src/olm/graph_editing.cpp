#include "graph.h"
#include "node.h"

#include <QFocusEvent>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QMutexLocker>

#include <algorithm>

namespace
{
constexpr double zoomFactor = 1.1;

// A press on empty space clears the selection when it lasts longer than this, in milliseconds, and moves less than
// this, the square of a distance in scene units.
constexpr int longPress = 400;
constexpr double stillDistanceSquared = 25.0;

struct KeyCommand {
    int key;
    void (Graph::*command)();
};

/// The keys that mean something to the viewer together with Control.
const KeyCommand controlCommands[] = {
    {Qt::Key_P, &Graph::slot_print},
    {Qt::Key_X, &Graph::slot_remv},
    {Qt::Key_K, &Graph::slot_remcut},
    {Qt::Key_O, &Graph::slot_unselect_all},
    {Qt::Key_Minus, &Graph::slot_unselect_all},
    {Qt::Key_E, &Graph::slot_adde},
    {Qt::Key_V, &Graph::slot_addv},
    {Qt::Key_C, &Graph::slot_complement},
    {Qt::Key_A, &Graph::slot_select_all},
    {Qt::Key_I, &Graph::slot_invert_selection},
    {Qt::Key_R, &Graph::slot_update},
    {Qt::Key_Z, &Graph::slot_undo},
    {Qt::Key_U, &Graph::slot_redo},
    {Qt::Key_D, &Graph::slot_duplicate},
    {Qt::Key_L, &Graph::slot_duplicate_link},
    {Qt::Key_Insert, &Graph::slot_copy_graph6},
    {Qt::Key_G, &Graph::slot_copy_picture},
    {Qt::Key_F, &Graph::slot_export_picture},
};

/// The keys without Control, except those that move the drawing: moveView() has them.
const KeyCommand plainCommands[] = {
    {Qt::Key_R, &Graph::signal_start_vns},
    {Qt::Key_H, &Graph::signal_stop_vns},
    {Qt::Key_Space, &Graph::signal_load_next},
    {Qt::Key_Backspace, &Graph::slot_reme},
    {Qt::Key_T, &Graph::addTail},
    {Qt::Key_B, &Graph::addBip},
    {Qt::Key_K, &Graph::addK},
    {Qt::Key_M, &Graph::signal_place_graph},
    {Qt::Key_PageDown, &Graph::signal_next_graph},
    {Qt::Key_PageUp, &Graph::signal_previous_graph},
    {Qt::Key_Home, &Graph::signal_first_graph},
    {Qt::Key_End, &Graph::signal_last_graph},
    {Qt::Key_Insert, &Graph::slot_paste_graph6},
    {Qt::Key_5, &Graph::slot_layout_circle},
    {Qt::Key_6, &Graph::slot_layout_kamada_kawai},
    {Qt::Key_7, &Graph::slot_layout_fruchterman_reingold},
    {Qt::Key_8, &Graph::slot_layout_planar},
    {Qt::Key_9, &Graph::slot_layout_levels},
    {Qt::Key_1, &Graph::slot_show_numbers},
    {Qt::Key_2, &Graph::slot_show_names},
    {Qt::Key_3, &Graph::slot_show_degrees},
    {Qt::Key_4, &Graph::slot_show_distances},
    {Qt::Key_0, &Graph::slot_show_nothing},
};

/// The entry of @p commands that @p matches, null when there is none.
template<int size, typename Matches> const KeyCommand *findCommand(const KeyCommand (&commands)[size], Matches matches)
{
    const auto *found = std::find_if(std::begin(commands), std::end(commands), matches);
    return found == std::end(commands) ? nullptr : found;
}

template<int size> const KeyCommand *commandOfKey(const KeyCommand (&commands)[size], int key)
{
    return findCommand(commands, [key](const KeyCommand &entry) { return entry.key == key; });
}

bool isControlCommand(const QKeyEvent *event)
{
    return event->modifiers().testFlag(Qt::ControlModifier) && commandOfKey(controlCommands, event->key()) != nullptr;
}

/// The right button belongs to the menu; it edits nothing.
bool isForMenu(const QMouseEvent *event)
{
    return event->button() == Qt::RightButton;
}

/// The rectangle with these two points as opposite corners.
QRectF spanned(QPointF a, QPointF b)
{
    return QRectF(a, b).normalized();
}
} // namespace

// Before Qt takes a key for a shortcut of the window it sends this event to the widget with the keyboard focus. The
// viewer accepts it for its own keys, and gets them.
bool Graph::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isControlCommand(static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return QGraphicsView::event(event);
}

// The mouse. The handlers do not call those of QGraphicsView, which would hand the events on to the items: dragging and
// selecting vertices is done here.

void Graph::mousePressEvent(QMouseEvent *event)
{
    if (isForMenu(event)) {
        return;
    }
    rubberBanding = true;
    pressTime = QTime::currentTime();
    pressScenePos = mapToScene(event->pos());
    if (edgeEditMode) {
        drawEdgeAt(pressScenePos);
    } else {
        pressAt(pressScenePos, altHeld || event->modifiers().testFlag(Qt::AltModifier));
    }
}

void Graph::drawEdgeAt(QPointF point)
{
    for (const int d : verticesAt(point)) {
        const int picked = nodes.indexOf(Node::nodeUnderMouse());
        // The picked vertex may have been removed meanwhile.
        if (isVertex(picked) && picked != d) {
            setEdge(d, picked, !edge(d, picked));
            commit();
            break;
        }
        Node::setNodeUnderMouse(nodes[d]);
    }
    rubberBanding = false;
}

void Graph::pressAt(QPointF point, bool alt)
{
    for (Node *vertex : qAsConst(nodes)) {
        if (vertex->isSelected()) {
            vertex->setMousePressPos(vertex->pos());
        }
    }
    for (const int i : verticesAt(point)) {
        if (!alt) {
            setCursor(Qt::ClosedHandCursor);
            Node::setNodeUnderMouse(nodes[i]);
            lastClickedNode = i;
            rubberBanding = false;
            nodes[i]->update();
            return;
        }
        joinSelectionTo(i);
    }
    selectionRect->setRect(QRectF(point, QSizeF(0, 0)));
    selectionRect->show();
}

void Graph::joinSelectionTo(int vertex)
{
    for (int j = 0; j < MAX_NODES; ++j) {
        if (j != vertex && nodes[j]->isSelected()) {
            addEdge(vertex, j);
        }
        nodes[j]->setSelected(j == vertex);
    }
    changeBest();
    update_display();
}

void Graph::mouseMoveEvent(QMouseEvent *event)
{
    if (edgeEditMode) {
        return;
    }
    lastMousePos = event->pos();
    const QPointF point = mapToScene(event->pos());
    if (rubberBanding) {
        selectionRect->setRect(spanned(pressScenePos, point));
    }
    if (pressedVertex() != nullptr) {
        setCursor(Qt::ClosedHandCursor);
        dragTo(point);
    } else {
        setCursor(verticesAt(point).isEmpty() ? Qt::ArrowCursor : Qt::OpenHandCursor);
    }
    update_display();
}

void Graph::dragTo(QPointF point)
{
    Node *dragged = pressedVertex();
    nodeMoved = true;
    if (!dragged->isSelected()) {
        dragged->setPosition(point.x(), point.y(), 0.0);
        return;
    }
    const QPointF delta = point - dragged->getMousePressPos();
    for (Node *vertex : qAsConst(nodes)) {
        if (vertex->isSelected()) {
            vertex->setPosition(vertex->getMousePressPos() + delta);
        }
    }
}

void Graph::mouseReleaseEvent(QMouseEvent *event)
{
    if (edgeEditMode || isForMenu(event)) {
        return;
    }
    Node *pressed = pressedVertex();
    if (!rubberBanding && pressed != nullptr && !nodeMoved) {
        pressed->toggleSelected();
    }
    const QPointF moved = mapToScene(event->pos()) - pressScenePos;
    if (pressed == nullptr && pressTime.msecsTo(QTime::currentTime()) > longPress &&
        QPointF::dotProduct(moved, moved) < stillDistanceSquared) {
        slot_unselect_all();
    }
    nodeMoved = false;
    if (rubberBanding) {
        for (const int i : verticesAmong(scene->items(selectionRect->rect()))) {
            nodes[i]->setSelected(true);
        }
    }
    rubberBanding = false;
    selectionRect->hide();
    Node::setNodeUnderMouse(nullptr);
    setCursor(Qt::OpenHandCursor);
    update_display();
}

void Graph::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (edgeEditMode || isForMenu(event)) {
        return;
    }
    const QVector<int> vertices = verticesAt(pressScenePos);
    if (vertices.isEmpty()) {
        addJoinedVertex(addMode);
    } else {
        describeVertex(vertices.first());
        nodes[vertices.first()]->toggleNodeDisplay();
    }
    // The second press of a double-click comes as the double-click only. Its release must not take the time since the
    // first press, nor what the command took, for that of a long press.
    pressTime = QTime::currentTime();
}

/// The slots of the vertex items among @p items, in their order.
QVector<int> Graph::verticesAmong(const QList<QGraphicsItem *> &items) const
{
    QVector<int> vertices;
    for (const QGraphicsItem *item : items) {
        const auto found = std::find(nodes.cbegin(), nodes.cend(), item);
        if (found != nodes.cend()) {
            vertices.append(int(found - nodes.cbegin()));
        }
    }
    return vertices;
}

/// The vertices shown at @p point, the topmost first.
QVector<int> Graph::verticesAt(QPointF point) const
{
    return verticesAmong(scene->items(point, Qt::IntersectsItemShape, Qt::DescendingOrder));
}

/// The pressed or picked vertex item, null when it belongs to another graph.
Node *Graph::pressedVertex() const
{
    Node *node = Node::nodeUnderMouse();
    return nodes.contains(node) ? node : nullptr;
}

// The keyboard.

void Graph::keyPressEvent(QKeyEvent *event)
{
    best_restore();
    altHeld = altHeld || event->key() == Qt::Key_Alt;
    ctrlHeld = ctrlHeld || event->key() == Qt::Key_Control;
    // Alt or Control may have been pressed, and may be released, while another widget has the focus. Then it counts for
    // this key only.
    const bool alt = altHeld || event->modifiers().testFlag(Qt::AltModifier);
    const bool control = ctrlHeld || event->modifiers().testFlag(Qt::ControlModifier);
    const KeyCommand *entry =
        control ? commandOfKey(controlCommands, event->key()) : commandOfKey(plainCommands, event->key());
    if (entry != nullptr) {
        (this->*entry->command)();
    } else if (event->key() == Qt::Key_F10 && event->modifiers().testFlag(Qt::ShiftModifier)) {
        showMenu({}); // Qt asks for a menu on the key Menu alone, and many keyboards have none
    } else if (!control) {
        moveView(event->key(), alt);
    }
    slot_update();
}

void Graph::moveView(int key, bool alt)
{
    switch (key) {
    case Qt::Key_Right:
    case Qt::Key_Left: {
        const double angle = key == Qt::Key_Right ? rotationStep : -rotationStep;
        rotate(0, alt ? 0 : angle, alt ? angle : 0);
        break;
    }
    case Qt::Key_Up:
        rotate(rotationStep, 0, 0);
        break;
    case Qt::Key_Down:
        rotate(-rotationStep, 0, 0);
        break;
    case Qt::Key_Minus:
        scaleView(1 / zoomFactor);
        break;
    case Qt::Key_Plus:
        scaleView(zoomFactor);
        break;
    default:
        break;
    }
}

void Graph::keyReleaseEvent(QKeyEvent *event)
{
    altHeld = altHeld && event->key() != Qt::Key_Alt;
    ctrlHeld = ctrlHeld && event->key() != Qt::Key_Control;
}

void Graph::focusOutEvent(QFocusEvent *event)
{
    releaseModifiers();
    QGraphicsView::focusOutEvent(event);
}

/// Forgets that Alt or Control is held: the widget that has the focus now, a dialog for example, gets its release.
void Graph::releaseModifiers()
{
    altHeld = false;
    ctrlHeld = false;
}

/// The key of @p command as text, empty when it has none.
QString Graph::keyText(Command command)
{
    const auto matches = [command](const KeyCommand &entry) { return entry.command == command; };
    if (const KeyCommand *entry = findCommand(controlCommands, matches)) {
        return QKeySequence(int(Qt::CTRL) + entry->key).toString(QKeySequence::NativeText);
    }
    if (const KeyCommand *entry = findCommand(plainCommands, matches)) {
        return QKeySequence(entry->key).toString(QKeySequence::NativeText);
    }
    return {};
}

// The selection. It is kept for the items of all slots, also of those beyond the graph.

void Graph::slot_select_all()
{
    for (Node *vertex : qAsConst(nodes)) {
        vertex->setSelected(true);
        vertex->update();
    }
    slot_update();
}

void Graph::slot_unselect_all()
{
    for (Node *vertex : qAsConst(nodes)) {
        if (vertex->isSelected()) {
            vertex->setSelected(false);
            vertex->update();
        }
    }
    slot_update();
}

void Graph::slot_invert_selection()
{
    for (Node *vertex : qAsConst(nodes)) {
        vertex->toggleSelected();
        vertex->update();
    }
    slot_update();
}

void Graph::setEdgeEditMode(bool on)
{
    Node::setNodeUnderMouse(nullptr);
    // A button may be down. Its release comes in the other mode, and ends no drag.
    rubberBanding = false;
    nodeMoved = false;
    if (selectionRect != nullptr) {
        selectionRect->hide();
    }
    edgeEditMode = on;
}

void Graph::slot_update()
{
    countChange();
    emit signal_interactive_graph_changed();
}

// The history. Its entry at historyIndex is the present state.

void Graph::best_restore()
{
    const QMutexLocker bestLocker(&bestLock);
    const QMutexLocker currentLocker(&currentLock);
    id = bestId;
    adjacency = bestAdjacency;
    setNbNodes(bestNbNodes);
}

void Graph::backup()
{
    // slot_undo() leaves the index at -2 when the history is empty.
    while (history.size() > qMax(historyIndex + 1, 0)) {
        delete history.takeLast();
    }
    history.append(clone());
    historyIndex = history.size() - 1;
}

/// Makes the current graph the present state of the history, unless it is: a command that replaces the whole graph can
/// then be undone.
void Graph::recordPresentState()
{
    const bool recorded = historyIndex >= 0 && historyIndex < history.size() &&
                          history[historyIndex]->currentGraphData() == currentGraphData();
    if (!recorded) {
        backup();
    }
}

void Graph::slot_undo()
{
    if (historyIndex != 0) {
        --historyIndex;
    }
    restoreFromHistory();
}

void Graph::slot_redo()
{
    if (historyIndex < history.size() - 1) {
        ++historyIndex;
    }
    restoreFromHistory();
}

void Graph::restoreFromHistory()
{
    if (historyIndex >= 0 && historyIndex < history.size()) {
        copy(history[historyIndex]);
        changeBest();
        update_display();
    }
}
