#include "graph.h"
#include "node.h"

#include <QKeyEvent>

#include <algorithm>

namespace
{
/// The keys that mean something to the viewer together with Control.
const int controlKeys[] = {Qt::Key_P, Qt::Key_X, Qt::Key_K, Qt::Key_Minus, Qt::Key_O, Qt::Key_E, Qt::Key_V, Qt::Key_C,
                           Qt::Key_A, Qt::Key_I, Qt::Key_R, Qt::Key_Z,     Qt::Key_U, Qt::Key_D, Qt::Key_L};

bool isControlCommand(const QKeyEvent *event)
{
    return event->modifiers().testFlag(Qt::ControlModifier) &&
           std::find(std::begin(controlKeys), std::end(controlKeys), event->key()) != std::end(controlKeys);
}
} // namespace

// The viewer's own keys win over the shortcuts of the window around it while the viewer has the keyboard.
bool Graph::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isControlCommand(static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return QGraphicsView::event(event);
}

void Graph::slot_unselect_all()
{
    for (Node *vertex : qAsConst(nodes)) {
        if (vertex->isSelected()) {
            vertex->setSelected(false);
            vertex->update();
        }
    }
    countChange();
    emit signal_interactive_graph_changed();
}
