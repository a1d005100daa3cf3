// Operations on the viewer: the bytes of an input are operations, each followed by its arguments.

#include "fuzztarget.h"
#include "node.h"
#include "pictures.h"
#include "viewerchecks.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <vector>

namespace
{
constexpr int maxOperations = 40;
constexpr int viewSize = 400;

enum class Effect {
    None,     ///< leaves the current graph as it is, or publishes it
    Changes,  ///< may make the current graph differ from the best graph
    Copies,   ///< the same, and the vertex items may differ from both
    Publishes ///< makes the best graph the same as the current graph
};

struct Operation {
    Effect effect;
    void (*apply)(Graph &graph, InputBytes &input);
};

/// The number of a slot, or one up to two below or above them.
int slot(InputBytes &input)
{
    return input.below(Graph::MAX_NODES + 4) - 2;
}

double coordinate(InputBytes &input)
{
    return (input.byte() - 128) * 7.5;
}

template<typename Result, Result (Graph::*Member)()> void call(Graph &graph, InputBytes &)
{
    (graph.*Member)();
}

template<void (Graph::*Command)()> constexpr Operation command(Effect effect = Effect::None)
{
    return {effect, call<void, Command>};
}

void pressKey(Graph &graph, InputBytes &input)
{
    // All keys with a meaning, except P, which opens a dialog. That of F is closed at once.
    constexpr int keys[] = {
        Qt::Key_X,      Qt::Key_K,     Qt::Key_O,   Qt::Key_E,      Qt::Key_V,         Qt::Key_C,     Qt::Key_A,
        Qt::Key_I,      Qt::Key_R,     Qt::Key_Z,   Qt::Key_U,      Qt::Key_D,         Qt::Key_L,     Qt::Key_Right,
        Qt::Key_H,      Qt::Key_Left,  Qt::Key_Up,  Qt::Key_Down,   Qt::Key_Plus,      Qt::Key_Minus, Qt::Key_T,
        Qt::Key_B,      Qt::Key_Space, Qt::Key_M,   Qt::Key_Alt,    Qt::Key_Backspace, Qt::Key_F,     Qt::Key_Control,
        Qt::Key_6,      Qt::Key_7,     Qt::Key_5,   Qt::Key_8,      Qt::Key_9,         Qt::Key_G,     Qt::Key_PageDown,
        Qt::Key_PageUp, Qt::Key_Home,  Qt::Key_End, Qt::Key_Insert, Qt::Key_0,         Qt::Key_1,     Qt::Key_2,
        Qt::Key_3,      Qt::Key_4,     Qt::Key_F10};
    const int key = keys[input.below(std::size(keys))];
    const int choice = input.byte();
    const Qt::KeyboardModifiers modifiers = (choice & 1) != 0   ? Qt::ControlModifier
                                            : (choice & 4) != 0 ? Qt::ShiftModifier
                                                                : Qt::NoModifier;
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&graph, &press);
    if ((choice & 2) != 0) {
        QKeyEvent release(QEvent::KeyRelease, key, modifiers);
        QApplication::sendEvent(&graph, &release);
    }
}

/// Sends a mouse event at a vertex or anywhere.
template<Qt::MouseButton Button> void useMouse(Graph &graph, InputBytes &input)
{
    constexpr QEvent::Type types[] = {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease,
                                      QEvent::MouseButtonDblClick};
    const QEvent::Type type = types[input.below(std::size(types))];
    const Qt::KeyboardModifiers modifiers = input.below(2) != 0 ? Qt::AltModifier : Qt::NoModifier;
    const Node *vertex = graph.node(slot(input));
    const QPoint place =
        vertex != nullptr ? graph.mapFromScene(vertex->pos()) : QPoint(input.byte() * 2 - 50, input.byte() * 2 - 50);
    QMouseEvent event(type, place, Button, Button, modifiers);
    QApplication::sendEvent(graph.viewport(), &event);
}

void turnWheel(Graph &graph, InputBytes &input)
{
    const QPoint place(viewSize / 2, viewSize / 2);
    QWheelEvent event(place, place, QPoint(), QPoint(0, (input.byte() - 128) * 15), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(graph.viewport(), &event);
}

/// Triggers an entry of the context menu, unless it is one that asks for a file.
void useMenu(Graph &graph, InputBytes &input)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(input.byte(), input.byte()));
    QApplication::sendEvent(graph.viewport(), &event);
    const int number = input.byte();
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
        menu->close();
        const QList<QAction *> entries = menu->findChildren<QAction *>();
        QAction *entry = entries[number % entries.size()];
        if (!entry->text().contains(QLatin1String("..."))) {
            entry->trigger();
        }
    }
}

/// Lets a timer of the view expire; when it has none, sends the event of a timer that was stopped.
void letTimerExpire(Graph &graph, InputBytes &input)
{
    int id = input.byte();
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&graph);
    if (!timers.isEmpty()) {
        id = timers[id % timers.size()].timerId;
    }
    QTimerEvent event(id);
    QApplication::sendEvent(&graph, &event);
}

/// Opens a graph file with a number of vertices around the limits, at any places, with any neighbours.
void openFile(Graph &graph, InputBytes &input)
{
    const int count = slot(input);
    QByteArray text = QByteArray::number(count) + '\n';
    for (int i = 0; i < count; ++i) {
        text += 'v' + QByteArray::number(i) + '\t' + QByteArray::number(coordinate(input)) + "\t0\n";
    }
    for (int i = 0; i < count * count; ++i) {
        text += input.below(2) != 0 ? "1\t" : "0\t";
    }
    graph.open(MemoryFile(std::string_view(text.constData(), text.size())).path());
}

/// Imports an edge list of up to 40 lines and as many labels as there are slots, or a few more.
void importFile(Graph &graph, InputBytes &input)
{
    QByteArray text;
    for (int lines = input.below(41); lines > 0; --lines) {
        text += QByteArray::number(slot(input)) + '\t' + QByteArray::number(slot(input)) + '\n';
    }
    graph.import_el(MemoryFile(std::string_view(text.constData(), text.size())).path());
}

void draw(Graph &graph, InputBytes &)
{
    QImage image(64, 64, QImage::Format_RGB32);
    QPainter painter(&image);
    graph.render(&painter);
    graph.print(&painter, 64);
}

/// Draws what is shown as each picture, and requires that it has the vertices and the edges.
void drawPictures(Graph &graph, InputBytes &input)
{
    const Drawing drawing = graph.drawing();
    require(svg(drawing).count("<circle") == drawing.vertices.size(), "the picture has all vertices");
    require(tikz(drawing).count("\\draw[") == drawing.edges.size(), "the picture has all edges");
    require(dot(drawing).count("pos=") == drawing.vertices.size(), "the picture has all vertices");
    require(!png(drawing, 1 + input.byte(), input.below(2) != 0).isEmpty(), "there is a picture");
    require(pdf(drawing).endsWith("%%EOF\n"), "the page is complete");
}

/// Small enough for many a second.
void copyPicture(Graph &graph, InputBytes &)
{
    graph.scaleCoords(50, 50);
    graph.slot_copy_picture();
}

/// Any text, or a graph on few vertices.
QString smallGraph(InputBytes &input)
{
    const int order = 2 + input.below(6);
    QString text{QChar(63 + order)};
    for (int i = (order * (order - 1) / 2 + 5) / 6; i > 0; --i) {
        text += QChar(63 + input.below(64));
    }
    if (input.below(4) == 0) {
        text += QChar(input.byte());
    }
    return text;
}

void pasteText(Graph &graph, InputBytes &input)
{
    QApplication::clipboard()->setText(smallGraph(input));
    graph.slot_paste_graph6();
}

void dropText(Graph &graph, InputBytes &input)
{
    QMimeData data;
    data.setText(smallGraph(input));
    const QPoint place(input.byte(), input.byte());
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(graph.viewport(), &enter);
    require(enter.isAccepted(), "a text may be dropped");
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(graph.viewport(), &drop);
}

QVector<double> numbers(InputBytes &input)
{
    QVector<double> values(input.below(Graph::MAX_NODES + 4));
    for (double &value : values) {
        value = coordinate(input) / (1 + input.below(3));
    }
    return values;
}

/// Copies another graph, then the graph itself.
void copyOther(Graph &graph, InputBytes &input)
{
    Graph other(QStringLiteral("other"), false);
    other.randomGraph(input.below(Graph::MAX_NODES + 1));
    graph.copy(&other);
    graph.copy(&graph);
}

void toggleOneWay(Graph &graph, InputBytes &input)
{
    const int i = input.below(Graph::MAX_NODES);
    const int j = input.below(Graph::MAX_NODES);
    graph.toggleEdge(i, j);
    require(graph.edge(i, j) == graph.edge(j, i), "an edge has no direction");
    graph.toggleEdge(j, i); // back to symmetry
}

const std::vector<Operation> &operations()
{
    static const std::vector<Operation> all = {
        // The model.
        {Effect::Changes, call<bool, static_cast<bool (Graph::*)()>(&Graph::addNode)>},
        {Effect::Changes, call<bool, static_cast<bool (Graph::*)()>(&Graph::remNode)>},
        {Effect::Changes, [](Graph &graph, InputBytes &input) { graph.remNode(slot(input)); }},
        {Effect::Changes, [](Graph &graph, InputBytes &input) { graph.addEdge(slot(input), slot(input)); }},
        {Effect::Changes, [](Graph &graph, InputBytes &input) { graph.remEdge(slot(input), slot(input)); }},
        {Effect::Changes, toggleOneWay},
        {Effect::Copies, copyOther},
        {Effect::Changes, [](Graph &graph, InputBytes &input) { graph.randomGraph(slot(input)); }},
        {Effect::Changes, [](Graph &graph, InputBytes &input) { graph.perturb(input.below(40)); }},
        command<&Graph::clear>(Effect::Changes),
        command<&Graph::invert>(Effect::Changes),
        command<&Graph::relabel>(Effect::Changes),
        command<&Graph::slot_reorganize>(Effect::Changes),
        command<&Graph::best_backup>(Effect::Publishes),
        command<&Graph::best_restore>(Effect::Publishes),
        command<&Graph::changeBest>(Effect::Publishes),
        {Effect::None, [](Graph &graph, InputBytes &) { delete graph.clone(); }},
        // Texts.
        {Effect::Publishes, [](Graph &graph, InputBytes &) { graph.loadolm(graph.graphData(), true); }},
        {Effect::Changes, [](Graph &graph, InputBytes &) { graph.loadCurrentGraph(graph.graphData()); }},
        {Effect::Changes, [](Graph &graph, InputBytes &) { graph.loadg6(graph.g6currentGraphData(), true); }},
        // Editing.
        command<&Graph::backup>(),
        command<&Graph::slot_undo>(),
        command<&Graph::slot_redo>(),
        command<&Graph::slot_select_all>(),
        command<&Graph::slot_unselect_all>(),
        command<&Graph::slot_invert_selection>(),
        {Effect::None,
         [](Graph &graph, InputBytes &input) { graph.node(input.below(Graph::MAX_NODES))->toggleSelected(); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setEdgeEditMode(input.below(2) != 0); }},
        command<&Graph::slot_set_add_k>(),
        command<&Graph::slot_set_add_bip>(),
        command<&Graph::slot_set_add_tail>(),
        {Effect::Changes, pressKey},
        {Effect::Changes, useMouse<Qt::LeftButton>},
        // Commands.
        command<&Graph::addK>(),
        command<&Graph::addBip>(),
        command<&Graph::addTail>(),
        command<&Graph::slot_adde>(),
        command<&Graph::slot_reme>(),
        command<&Graph::slot_remcut>(),
        command<&Graph::slot_addv>(),
        command<&Graph::slot_remv>(),
        command<&Graph::slot_complement>(),
        command<&Graph::slot_duplicate>(),
        command<&Graph::slot_duplicate_link>(),
        command<&Graph::slot_duplicate_twins>(),
        command<&Graph::slot_duplicate_link_twins>(),
        command<&Graph::slot_link_diameter>(),
        command<&Graph::slot_link_one_diameter>(),
        // Places and looks.
        command<&Graph::update_display>(),
        command<&Graph::center>(),
        command<&Graph::slot_randomPosition>(),
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.place_circle(coordinate(input)); }},
        {Effect::None,
         [](Graph &graph, InputBytes &input) { graph.setPos(slot(input), coordinate(input), coordinate(input), 1); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.rotate(coordinate(input), coordinate(input), 1); }},
        {Effect::None,
         [](Graph &graph, InputBytes &input) { graph.scaleCoords(coordinate(input), coordinate(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.scaleCoords(coordinate(input), 5, 0); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.slot_rescale_graph(input.byte()); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.scaleView(coordinate(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.slot_set_node_radius(coordinate(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setLabels(numbers(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setColors(numbers(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setSizes(numbers(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setELabels({numbers(input)}, true); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setEHilight({{}, numbers(input)}, true); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.hilight(slot(input)); }},
        {Effect::None, [](Graph &graph, InputBytes &input) { graph.setViolated(input.below(2) != 0); }},
        {Effect::None, draw},
        // What else a user does.
        {Effect::Changes, useMouse<Qt::RightButton>},
        {Effect::None, turnWheel},
        {Effect::Changes, useMenu},
        {Effect::None, letTimerExpire},
        {Effect::Changes, openFile},
        {Effect::Changes, importFile},
        // Pictures, layouts, and what is written on the vertices.
        {Effect::None, drawPictures},
        command<&Graph::slot_copy_graph6>(),
        {Effect::None, copyPicture},
        {Effect::Changes, pasteText},
        command<&Graph::slot_layout_circle>(),
        command<&Graph::slot_layout_kamada_kawai>(),
        command<&Graph::slot_layout_fruchterman_reingold>(),
        command<&Graph::slot_layout_planar>(),
        command<&Graph::slot_layout_levels>(),
        command<&Graph::slot_follow_layout>(),
        command<&Graph::slot_show_numbers>(),
        command<&Graph::slot_show_names>(),
        command<&Graph::slot_show_degrees>(),
        command<&Graph::slot_show_distances>(),
        command<&Graph::slot_show_nothing>(),
        {Effect::Changes, dropText},
    };
    return all;
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startViewerTarget(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    InputBytes input(data, size);
    qsrand(1);
    Graph graph(QStringLiteral("graph"), true);
    graph.resize(viewSize, viewSize);
    bool published = true;
    bool itemsFollow = true;
    bool emitted = false;
    QObject::connect(&graph, &Graph::signal_best_graph_changed, [&] { emitted = true; });
    for (int count = 0; count < maxOperations && !input.atEnd(); ++count) {
        const Operation &operation = operations()[input.below(int(operations().size()))];
        emitted = false;
        operation.apply(graph, input);
        published = emitted || operation.effect == Effect::Publishes || (published && operation.effect == Effect::None);
        itemsFollow = published || (itemsFollow && operation.effect != Effect::Copies);
        requireCount(graph);
        requireSound(graph);
        if (itemsFollow) {
            requireItemsInStep(graph);
        }
        if (published) {
            requirePublished(graph);
        }
    }
    return 0;
}
