// The mouse and the keyboard in the viewer, the selection and the undo history.

#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/graphtext.h"
#include "support/patience.h"
#include "support/signalrecorder.h"
#include "support/windowdriver.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDialog>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTime>
#include <QVBoxLayout>
#include <QWindow>
#include <QtTest>

#include <memory>

namespace
{
constexpr int longestClick = 400; // milliseconds: what takes more is a long press

QTime now(12, 0);

/// Far from all vertices.
const QPointF emptySpace(-150, -150);
const QPointF places[] = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};

QList<QDialog *> openDialogs()
{
    QList<QDialog *> dialogs;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        auto *dialog = qobject_cast<QDialog *>(widget);
        if (dialog != nullptr && dialog->isVisible()) {
            dialogs.append(dialog);
        }
    }
    return dialogs;
}

/// Lets time pass for the viewer.
void pass(int milliseconds)
{
    now = now.addMSecs(milliseconds);
}
} // namespace

/// Stands in front of the one of Qt.
QTime QTime::currentTime()
{
    return now;
}

using Command = void (Graph::*)();
Q_DECLARE_METATYPE(Command)

class TestGraphInteraction : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void quickClickOnEmptySpaceKeepsTheSelection();
    void longStillPressClearsTheSelection();
    void longPressThatMovesKeepsTheSelection();
    void rubberBandAddsToTheSelection();
    void clickTogglesAVertexOnce();
    void clickTakesTheTopmostVertex();
    void dragOfAnUnselectedVertex();
    void dragOfTheSelection();
    void dragIsNotUndoable();
    void edgesFollowADraggedVertexThatWasMovedBetweenSlots();
    void altClickJoinsTheSelection();
    void altOfTheMouseEventCounts();
    void edgeMode();
    void edgeModeIgnoresOtherInput();
    void pickedVertexThatLeftTheGraph();
    void cursors();
    void doubleClickOnAVertex();
    void doubleClickOnEmptySpace_data();
    void doubleClickOnEmptySpace();
    void slowDoubleClickKeepsTheSelection_data();
    void slowDoubleClickKeepsTheSelection();
    void secondPressOfADoubleClickMayBeLong();
    void rightButtonEditsNothing();

    void informationOfAVertex_data();
    void informationOfAVertex();
    void informationFollowsTheGraph();
    void informationOfAVertexThatIsGone();
    void nameAppliesWithDone();
    void newNameIsShownEverywhere();
    void nameThatIsNotGiven();
    void nameThatIsTooLongForTheLine();

    void claimsItsControlKeys();
    void shortcutsOfTheWindowGiveWay();
    void keys_data();
    void keys();
    void rotationKeys_data();
    void rotationKeys();
    void zoomKeys_data();
    void zoomKeys();
    void printKeyAsksForAFile();
    void everyKeyCounts_data();
    void everyKeyCounts();
    void keyDiscardsUnpublishedChanges();
    void heldModifiers();
    void focusLossReleasesTheModifiers();
    void controlOfTheKeyEventCounts();
    void aDialogEndsTheHoldOnControl();
    void edgeModeEndsARubberBand();

    void selectionSlots();
    void updateSlot();
    void bestRestore();
    void undoAndRedo();
    void undoOnAnEmptyHistory();
    void backupDropsWhatWasUndone();

    void rightClickDuringADrag();
    void rightClickDuringARubberBand();
    void rightClickDuringAChangeOfTheMode_data();
    void rightClickDuringAChangeOfTheMode();

private:
    QWindow *window() const { return frame->windowHandle(); }
    QPoint at(QPointF scenePoint) const { return view->viewport()->mapTo(frame.get(), view->mapFromScene(scenePoint)); }
    void move(QPointF to) const
    {
        QTest::mouseMove(window(), at(to));
        QCoreApplication::processEvents();
    }
    void press(QPointF point, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        move(point);
        QTest::mousePress(window(), Qt::LeftButton, modifiers, at(point));
    }
    void release(QPointF point) const { QTest::mouseRelease(window(), Qt::LeftButton, Qt::NoModifier, at(point)); }
    void click(QPointF point) const
    {
        press(point);
        release(point);
    }
    /// Presses soon enough after a click for a double-click.
    void pressAgain(QPointF point) const
    {
        QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval; // that QTest adds against double-clicks
        QTest::mousePress(window(), Qt::LeftButton, Qt::NoModifier, at(point));
    }
    /// Clicks twice at the pace of a slow hand; the second press lasts for @p hold.
    void doubleClickSlowly(QPointF point, int hold = 150) const
    {
        press(point);
        pass(150);
        release(point);
        pass(200);
        pressAgain(point);
        pass(hold);
        release(point);
    }
    /// Opens the information dialog of the vertex at @p point.
    QDialog *openInformation(QPointF point) const
    {
        move(point);
        QTest::mouseDClick(window(), Qt::LeftButton, Qt::NoModifier, at(point));
        return openDialogs().value(0);
    }
    /// Presses and releases the right button, which asks for the menu in between, and returns whether that came up.
    bool rightClickOpensTheMenu(QPointF point) const
    {
        const QPoint place = view->mapFromScene(point);
        QTest::mousePress(view->viewport(), Qt::RightButton, Qt::NoModifier, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(view->viewport(), &event);
        QWidget *menu = QApplication::activePopupWidget();
        const bool isOpen = menu != nullptr;
        if (isOpen) {
            menu->close();
        }
        QTest::mouseRelease(view->viewport(), Qt::RightButton, Qt::NoModifier, place);
        return isOpen;
    }
    QGraphicsRectItem *rubberBand() const;
    unsigned id() const { return view->getID(); }

    std::unique_ptr<QWidget> frame;
    Graph *view = nullptr;
    QLineEdit *other = nullptr;
};

namespace
{
/// What an information dialog lists: "Degree 2, Triangles 0".
QString listed(const QDialog *dialog)
{
    const auto *table = dialog->findChild<QTableWidget *>();
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        rows.append(table->verticalHeaderItem(row)->text() + QLatin1Char(' ') + table->item(row, 0)->text());
    }
    return rows.join(QStringLiteral(", "));
}

/// Replaces what an open dialog has in its name line.
void typeName(QDialog *dialog, const QString &name)
{
    auto *line = dialog->findChild<QLineEdit *>();
    line->selectAll();
    QTest::keyClicks(line, name);
}

void pressDone(QDialog *dialog)
{
    QTest::mouseClick(dialog->findChild<QPushButton *>(), Qt::LeftButton);
}
} // namespace

// The path 0-1-2-3 on the corners of a square, beside another widget that can take the focus.
void TestGraphInteraction::init()
{
    frame = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(frame.get());
    view = new Graph(QStringLiteral("interaction"), true);
    other = new QLineEdit;
    layout->addWidget(view);
    layout->addWidget(other);
    frame->resize(500, 500);
    view->slot_set_node_radius(10);
    graphtext::set(*view, 4, QStringLiteral("0-1 1-2 2-3"));
    for (int i = 0; i < 4; ++i) {
        view->node(i)->setPosition(places[i].x(), places[i].y(), 0.0);
    }
    frame->show();
    frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(frame.get(), patience));
    view->setFocus();
    move(QPointF(-100, -100)); // A move that ends where the last test ended is none.
    move(emptySpace);
}

void TestGraphInteraction::cleanup()
{
    frame.reset();
    QCOMPARE(graphtext::living(), 0);
}

QGraphicsRectItem *TestGraphInteraction::rubberBand() const
{
    const QList<QGraphicsItem *> items = static_cast<QGraphicsView *>(view)->scene()->items();
    for (QGraphicsItem *item : items) {
        if (auto *rectangle = qgraphicsitem_cast<QGraphicsRectItem *>(item)) {
            return rectangle;
        }
    }
    qFatal("no rubber band");
}

void TestGraphInteraction::quickClickOnEmptySpaceKeepsTheSelection()
{
    graphtext::select(*view, {1, 2});
    SignalRecorder recorder(*view);
    press(emptySpace);
    pass(longestClick);
    release(emptySpace);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1 2"));
    QCOMPARE(recorder.recorded(), QStringList());
}

void TestGraphInteraction::longStillPressClearsTheSelection()
{
    graphtext::select(*view, {1, 2});
    SignalRecorder recorder(*view);
    const unsigned before = id();
    press(emptySpace);
    pass(longestClick + 1);
    release(emptySpace + QPointF(4, 2));
    QCOMPARE(graphtext::selection(*view), QString());
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("interactive_graph_changed")}));
    QCOMPARE(id() - before, 1U);
}

void TestGraphInteraction::longPressThatMovesKeepsTheSelection()
{
    graphtext::select(*view, {1, 2});
    press(emptySpace);
    pass(longestClick + 1);
    release(emptySpace + QPointF(4, 3)); // 5 units away
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1 2"));
}

void TestGraphInteraction::rubberBandAddsToTheSelection()
{
    graphtext::select(*view, {3});
    QVERIFY(!rubberBand()->isVisible());
    press(QPointF(130, -30));
    QVERIFY(rubberBand()->isVisible());
    QCOMPARE(rubberBand()->rect(), QRectF(130, -30, 0, 0));
    move(QPointF(-40, 30));
    QCOMPARE(rubberBand()->rect(), QRectF(-40, -30, 170, 60));
    QCOMPARE(graphtext::selection(*view), QStringLiteral("3"));
    release(QPointF(-40, 30));
    QVERIFY(!rubberBand()->isVisible());
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 3"));
    QCOMPARE(rubberBand()->brush().color(), QColor(Qt::yellow));
    QCOMPARE(rubberBand()->pen().color(), QColor(Qt::red));

    move(QPointF(50, 50));
    QCOMPARE(rubberBand()->rect(), QRectF(-40, -30, 170, 60));
    QVERIFY(!rubberBand()->isVisible());
}

void TestGraphInteraction::clickTogglesAVertexOnce()
{
    SignalRecorder recorder(*view);
    const unsigned before = id();
    click(places[2]);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("2"));
    QCOMPARE(view->getLastClickedNode(), 2);
    click(places[1]);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1 2"));
    QCOMPARE(view->getLastClickedNode(), 1);
    click(places[2]);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1"));
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(view->node(i)->pos(), places[i]);
    }
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    QCOMPARE(recorder.recorded(), QStringList());
    QCOMPARE(id(), before);
}

void TestGraphInteraction::clickTakesTheTopmostVertex()
{
    view->node(0)->setPosition(0, 0, 1);
    view->node(3)->setPosition(5, 0, 2);
    click(QPointF(2, 0));
    QCOMPARE(graphtext::selection(*view), QStringLiteral("3"));
}

void TestGraphInteraction::dragOfAnUnselectedVertex()
{
    graphtext::select(*view, {0, 3});
    view->node(1)->setPosition(100, 0, 25);
    press(QPointF(102, 1));
    QCOMPARE(Node::nodeUnderMouse(), view->node(1));
    QVERIFY(!rubberBand()->isVisible());
    move(QPointF(150, -20));
    QCOMPARE(view->node(1)->pos(), QPointF(150, -20));
    QCOMPARE(view->node(1)->getCoordZ(), 0.0);
    move(QPointF(130, 0));
    release(QPointF(130, 0));
    QCOMPARE(view->node(1)->pos(), QPointF(130, 0));
    QCOMPARE(view->edgeItem(0, 1)->length(), 130.0);
    QCOMPARE(view->node(0)->pos(), places[0]);
    QCOMPARE(view->node(3)->pos(), places[3]);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 3"));
    QVERIFY(Node::nodeUnderMouse() == nullptr);

    move(QPointF(0, 50));
    QCOMPARE(view->node(1)->pos(), QPointF(130, 0));
    click(QPointF(130, 0));
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 3"));
}

void TestGraphInteraction::dragOfTheSelection()
{
    graphtext::select(*view, {0, 1, 2});
    view->node(2)->setPosition(100, 100, 25);
    press(places[1]);
    move(QPointF(90, -40));
    move(QPointF(80, -30));
    release(QPointF(80, -30));
    QCOMPARE(view->node(0)->pos(), QPointF(-20, -30));
    QCOMPARE(view->node(1)->pos(), QPointF(80, -30));
    QCOMPARE(view->node(2)->pos(), QPointF(80, 70));
    QCOMPARE(view->node(2)->getCoordZ(), 25.0);
    QCOMPARE(view->node(3)->pos(), places[3]);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 2"));
}

void TestGraphInteraction::dragIsNotUndoable()
{
    view->backup();
    const int before = graphtext::living();
    press(places[1]);
    move(QPointF(150, 0));
    release(QPointF(150, 0));
    QCOMPARE(graphtext::living(), before);
    view->slot_undo();
    QCOMPARE(view->node(1)->pos(), QPointF(150, 0));
}

void TestGraphInteraction::edgesFollowADraggedVertexThatWasMovedBetweenSlots()
{
    graphtext::select(*view, {0});
    view->slot_remv(); // 1-2 2-3 with vertex 3 in slot 0
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-2 1-2"));
    QCOMPARE(view->node(0)->pos(), places[3]);
    press(places[3]);
    move(QPointF(100, 130));
    release(QPointF(100, 130));
    QCOMPARE(view->edgeItem(0, 2)->length(), 30.0);
    QCOMPARE(view->edgeItem(1, 2)->length(), 100.0);
}

void TestGraphInteraction::altClickJoinsTheSelection()
{
    view->backup();
    const int before = graphtext::living();
    graphtext::select(*view, {0, 1});
    QTest::keyPress(view, Qt::Key_Alt);
    SignalRecorder recorder(*view);
    press(places[3]);
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("best_graph_changed")}));
    QVERIFY(rubberBand()->isVisible());
    release(places[3]);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 0-3 1-3 2-3"));
    QCOMPARE(graphtext::selection(*view), QStringLiteral("3"));
    QVERIFY(graphtext::published(*view));
    QVERIFY(view->edgeItem(0, 3)->isVisible());
    QCOMPARE(view->getLastClickedNode(), 0);
    QCOMPARE(graphtext::living(), before);
    QTest::keyRelease(view, Qt::Key_Alt);
    click(places[0]);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 3"));
}

void TestGraphInteraction::altOfTheMouseEventCounts()
{
    graphtext::select(*view, {0});
    press(places[3], Qt::AltModifier);
    release(places[3]);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 0-3 2-3"));
    QCOMPARE(graphtext::selection(*view), QStringLiteral("3"));
}

void TestGraphInteraction::edgeMode()
{
    view->backup();
    graphtext::select(*view, {0});
    view->setEdgeEditMode(true);
    SignalRecorder recorder(*view);
    const int before = graphtext::living();
    click(places[1]);
    QCOMPARE(Node::nodeUnderMouse(), view->node(1));
    QCOMPARE(recorder.take(), QStringList());
    click(places[3]);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 1-3 2-3"));
    QVERIFY(view->edgeItem(1, 3)->isVisible());
    QCOMPARE(recorder.take(), (QStringList{QStringLiteral("best_graph_changed")}));
    QCOMPARE(graphtext::living(), before + 1);
    QCOMPARE(Node::nodeUnderMouse(), view->node(1));
    click(places[0]);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("1-2 1-3 2-3"));
    QCOMPARE(graphtext::living(), before + 2);

    click(places[1]);
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    click(emptySpace);
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    click(places[2]);
    QCOMPARE(Node::nodeUnderMouse(), view->node(2));
    view->setEdgeEditMode(false);
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0"));

    view->slot_undo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 1-3 2-3"));
    view->slot_undo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
}

void TestGraphInteraction::edgeModeIgnoresOtherInput()
{
    move(QPointF(-120, 40));
    const QPointF mouse = view->mapToScene(view->mapFromScene(QPointF(-120, 40)));
    view->setEdgeEditMode(true);
    press(QPointF(-20, -20));
    QVERIFY(!rubberBand()->isVisible());
    move(QPointF(120, 20));
    pass(longestClick + 1);
    release(QPointF(120, 20));
    QTest::mouseDClick(window(), Qt::LeftButton, Qt::NoModifier, at(emptySpace));
    QCOMPARE(view->getNbNodes(), 4);
    QCOMPARE(graphtext::selection(*view), QString());
    press(places[1]);
    move(QPointF(150, 0));
    QCOMPARE(view->node(1)->pos(), places[1]);
    view->setEdgeEditMode(false);
    view->addNode();
    QCOMPARE(view->node(4)->pos(), mouse);
}

void TestGraphInteraction::pickedVertexThatLeftTheGraph()
{
    view->setEdgeEditMode(true);
    click(places[3]);
    view->remNode();
    view->changeBest();
    view->update_display();
    click(places[0]);
    QCOMPARE(Node::nodeUnderMouse(), view->node(0));
    click(places[2]);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 0-2 1-2"));
}

void TestGraphInteraction::cursors()
{
    QVERIFY(view->viewport()->hasMouseTracking());
    QCOMPARE(view->viewport()->cursor().shape(), Qt::ArrowCursor);
    move(places[0]);
    QCOMPARE(view->viewport()->cursor().shape(), Qt::OpenHandCursor);
    press(places[0]);
    QCOMPARE(view->viewport()->cursor().shape(), Qt::ClosedHandCursor);
    move(QPointF(-50, 0));
    QCOMPARE(view->viewport()->cursor().shape(), Qt::ClosedHandCursor);
    release(QPointF(-50, 0));
    QCOMPARE(view->viewport()->cursor().shape(), Qt::OpenHandCursor);
    move(emptySpace);
    QCOMPARE(view->viewport()->cursor().shape(), Qt::ArrowCursor);
    click(emptySpace);
    QCOMPARE(view->viewport()->cursor().shape(), Qt::OpenHandCursor);
}

void TestGraphInteraction::doubleClickOnAVertex()
{
    QCOMPARE(openDialogs().size(), 0);
    move(places[2]);
    QTest::mouseDClick(window(), Qt::LeftButton, Qt::NoModifier, at(places[2]));
    QCOMPARE(openDialogs().size(), 1);
    QCOMPARE(openDialogs().constFirst()->windowTitle(), QStringLiteral("Node information"));
    QCOMPARE(openDialogs().constFirst()->findChild<QLineEdit *>()->text(), QStringLiteral("Node 3"));
    QCOMPARE(view->getNbNodes(), 4);
    QTest::mouseDClick(window(), Qt::LeftButton, Qt::NoModifier, at(places[2]));
    QCOMPARE(openDialogs().size(), 0);
}

void TestGraphInteraction::doubleClickOnEmptySpace_data()
{
    QTest::addColumn<Command>("setMode");
    QTest::addColumn<QString>("selected");
    QTest::newRow("at first") << Command(nullptr) << "0 1 4";
    QTest::newRow("clique") << &Graph::slot_set_add_k << "0 1 4";
    QTest::newRow("bipartite") << &Graph::slot_set_add_bip << "0 1";
    QTest::newRow("tail") << &Graph::slot_set_add_tail << "4";
}

void TestGraphInteraction::doubleClickOnEmptySpace()
{
    QFETCH(Command, setMode);
    if (setMode != nullptr) {
        view->slot_set_add_tail();
        (view->*setMode)();
    }
    graphtext::select(*view, {0, 1});
    SignalRecorder recorder(*view);
    QTest::mouseDClick(window(), Qt::LeftButton, Qt::NoModifier, at(emptySpace));
    QCOMPARE(view->getNbNodes(), 5);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3 0-4 1-4"));
    QTEST(graphtext::selection(*view), "selected");
    QCOMPARE(view->node(4)->pos(), emptySpace);
    QVERIFY(view->node(4)->isVisible());
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("best_graph_changed")}));
    QCOMPARE(openDialogs().size(), 0);
}

void TestGraphInteraction::slowDoubleClickKeepsTheSelection_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QString>("selected");
    QTest::newRow("empty space") << emptySpace << "0 1 4";
    QTest::newRow("vertex") << places[2] << "0 1 2"; // the first click selects it
}

/// The release comes more than the time of a long press after the first press, and after a command that took its time.
void TestGraphInteraction::slowDoubleClickKeepsTheSelection()
{
    QFETCH(QPointF, point);
    const int vertices = point == emptySpace ? 5 : 4;
    graphtext::select(*view, {0, 1});
    connect(view, &Graph::signal_best_graph_changed, this, [] { pass(1000); });
    doubleClickSlowly(point);
    QCOMPARE(view->getNbNodes(), vertices);
    QCOMPARE(openDialogs().size(), 5 - vertices);
    QTEST(graphtext::selection(*view), "selected");
}

void TestGraphInteraction::secondPressOfADoubleClickMayBeLong()
{
    graphtext::select(*view, {0, 1});
    doubleClickSlowly(emptySpace, longestClick + 1);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3 0-4 1-4"));
    QCOMPARE(graphtext::selection(*view), QString()); // as after any long press
}

void TestGraphInteraction::informationOfAVertex_data()
{
    QTest::addColumn<int>("vertices");
    QTest::addColumn<QString>("edges");
    QTest::addColumn<QString>("information"); // of vertex 1
    QTest::newRow("path") << 4 << "0-1 1-2 2-3"
                          << "Degree 2, Eccentricity 2, Triangles 0, Neighbours Node 1, Node 3";
    QTest::newRow("complete graph") << 4 << "0-1 0-2 0-3 1-2 1-3 2-3"
                                    << "Degree 3, Eccentricity 1, Triangles 3, Neighbours Node 1, Node 3, Node 4";
    QTest::newRow("two triangles with a common edge")
        << 4 << "0-1 1-2 0-2 1-3 0-3"
        << "Degree 3, Eccentricity 1, Triangles 2, Neighbours Node 1, Node 3, Node 4";
    QTest::newRow("triangle and a vertex") << 4 << "0-1 1-2 0-2"
                                           << "Degree 2, Eccentricity infinite, Triangles 1, Neighbours Node 1, Node 3";
    QTest::newRow("isolated") << 4 << "2-3"
                              << "Degree 0, Eccentricity infinite, Triangles 0, Neighbours none";
    QTest::newRow("no edge") << 2 << ""
                             << "Degree 0, Eccentricity infinite, Triangles 0, Neighbours none";
    QTest::newRow("star with 32 vertices, a leaf")
        << 32
        << "0-1 0-2 0-3 0-4 0-5 0-6 0-7 0-8 0-9 0-10 0-11 0-12 0-13 0-14 0-15 0-16 0-17 0-18 0-19 0-20 0-21 "
           "0-22 0-23 0-24 0-25 0-26 0-27 0-28 0-29 0-30 0-31"
        << "Degree 1, Eccentricity 2, Triangles 0, Neighbours Node 1";
}

void TestGraphInteraction::informationOfAVertex()
{
    QFETCH(int, vertices);
    QFETCH(QString, edges);
    graphtext::set(*view, vertices, edges);
    for (int i = 0; i < vertices; ++i) {
        view->node(i)->setPosition(i < 4 ? places[i] : emptySpace);
    }
    view->update_display();
    const QDialog *dialog = openInformation(places[1]);
    QVERIFY(dialog != nullptr);
    QTEST(listed(dialog), "information");
}

void TestGraphInteraction::informationFollowsTheGraph()
{
    const QDialog *dialog = openInformation(places[1]);
    view->addEdge(1, 3); // not published: the shown graph does not have it
    view->update_display();
    QCOMPARE(listed(dialog), QStringLiteral("Degree 2, Eccentricity 2, Triangles 0, Neighbours Node 1, Node 3"));
    view->changeBest();
    view->update_display();
    QCOMPARE(listed(dialog),
             QStringLiteral("Degree 3, Eccentricity 1, Triangles 1, Neighbours Node 1, Node 3, Node 4"));
    view->remNode();
    view->changeBest();
    view->update_display();
    QCOMPARE(listed(dialog), QStringLiteral("Degree 2, Eccentricity 1, Triangles 0, Neighbours Node 1, Node 3"));
}

void TestGraphInteraction::informationOfAVertexThatIsGone()
{
    const QPointer<QDialog> dialog = openInformation(places[3]);
    QVERIFY(dialog != nullptr);
    view->remNode();
    view->changeBest();
    view->update_display();
    QCOMPARE(openDialogs().size(), 0);

    // One that is still shown.
    click(places[2]);
    view->remNode();
    view->changeBest();
    pressAgain(places[2]);
    QCOMPARE(openDialogs().size(), 1);
    QCOMPARE(listed(openDialogs().constFirst()), QString());
}

void TestGraphInteraction::nameAppliesWithDone()
{
    QDialog *dialog = openInformation(places[1]);
    typeName(dialog, QStringLiteral("middle <b>"));
    QCOMPARE(view->node(1)->getName(), QStringLiteral("Node 2"));
    pressDone(dialog);
    QVERIFY(dialog->isHidden());
    QCOMPARE(view->node(1)->getName(), QStringLiteral("middle <b>"));
    const QDialog *neighbour = openInformation(places[0]);
    QCOMPARE(listed(neighbour), QStringLiteral("Degree 1, Eccentricity 3, Triangles 0, Neighbours middle <b>"));

    // The name line shows what the name becomes in another way, too.
    view->node(0)->setName(QStringLiteral("first"));
    QCOMPARE(neighbour->findChild<QLineEdit *>()->text(), QStringLiteral("first"));

    // A tab or a line end would be another field, or line, in a file.
    QTest::mouseClick(neighbour->findChild<QPushButton *>(), Qt::LeftButton);
    dialog = openInformation(places[3]);
    auto *line = dialog->findChild<QLineEdit *>();
    line->setText(QStringLiteral("a\tb\nc\rd"));
    line->setModified(true);
    pressDone(dialog);
    QCOMPARE(view->node(3)->getName(), QStringLiteral("a b c d"));
}

/// In the other dialogs and on the drawing.
void TestGraphInteraction::newNameIsShownEverywhere()
{
    const QDialog *neighbour = openInformation(places[0]);
    view->slot_show_names();
    openInformation(places[1]);
    const QList<QDialog *> dialogs = openDialogs();
    QCOMPARE(dialogs.size(), 2);
    QDialog *dialog = dialogs[0] == neighbour ? dialogs[1] : dialogs[0];
    typeName(dialog, QStringLiteral("middle"));
    pressDone(dialog);
    QCOMPARE(listed(neighbour), QStringLiteral("Degree 1, Eccentricity 3, Triangles 0, Neighbours middle"));
    QCOMPARE(view->node(1)->getLabel(), QStringLiteral("middle"));
}

void TestGraphInteraction::nameThatIsNotGiven()
{
    QDialog *dialog = openInformation(places[1]);
    typeName(dialog, QStringLiteral("other"));
    QTest::keyClick(dialog, Qt::Key_Escape);
    QVERIFY(dialog->isHidden());
    QCOMPARE(view->node(1)->getName(), QStringLiteral("Node 2"));
    dialog = openInformation(places[1]);
    QCOMPARE(dialog->findChild<QLineEdit *>()->text(), QStringLiteral("Node 2"));
    pressDone(dialog);
    QCOMPARE(view->node(1)->getName(), QStringLiteral("Node 2"));
}

void TestGraphInteraction::nameThatIsTooLongForTheLine()
{
    const QString name(100000, QLatin1Char('n'));
    view->node(1)->setName(name);
    pressDone(openInformation(places[1]));
    QCOMPARE(view->node(1)->getName(), name);
}

void TestGraphInteraction::rightButtonEditsNothing()
{
    graphtext::select(*view, {1});
    view->setContextMenuPolicy(Qt::PreventContextMenu);
    for (const QPointF &point : {places[0], emptySpace}) {
        move(point);
        QTest::mousePress(window(), Qt::RightButton, Qt::NoModifier, at(point));
        QVERIFY(!rubberBand()->isVisible());
        QVERIFY(Node::nodeUnderMouse() == nullptr);
        QTest::mouseRelease(window(), Qt::RightButton, Qt::NoModifier, at(point));
        QTest::mouseDClick(window(), Qt::RightButton, Qt::NoModifier, at(point));
    }
    QCOMPARE(view->getNbNodes(), 4);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1"));
    QCOMPARE(openDialogs().size(), 0);
}

void TestGraphInteraction::claimsItsControlKeys()
{
    Graph graph(QStringLiteral("keys"), true);
    const auto isClaimed = [&graph](char key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
        event.ignore();
        QCoreApplication::sendEvent(&graph, &event);
        return event.isAccepted();
    };
    for (const char key : QByteArray("PXK-OEVCAIRZUDL")) {
        QVERIFY2(isClaimed(key, Qt::ControlModifier), QByteArray(1, key).constData());
        QVERIFY2(isClaimed(key, Qt::ControlModifier | Qt::ShiftModifier), QByteArray(1, key).constData());
        QVERIFY2(!isClaimed(key, Qt::NoModifier), QByteArray(1, key).constData());
        QVERIFY2(!isClaimed(key, Qt::AltModifier), QByteArray(1, key).constData());
    }
    for (const char key : QByteArray("QNH+BTM")) {
        QVERIFY2(!isClaimed(key, Qt::ControlModifier), QByteArray(1, key).constData());
    }
}

void TestGraphInteraction::shortcutsOfTheWindowGiveWay()
{
    QWidget window;
    QAction open;
    open.setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
    QAction quit;
    quit.setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    window.addActions({&open, &quit});
    QVBoxLayout layout(&window);
    Graph graph(QStringLiteral("keys"), true);
    QWidget field;
    field.setFocusPolicy(Qt::StrongFocus);
    layout.addWidget(&graph);
    layout.addWidget(&field);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    QSignalSpy opened(&open, &QAction::triggered);
    QSignalSpy closed(&quit, &QAction::triggered);

    graph.setFocus();
    QTest::keyClick(&graph, Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&graph, Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(opened.size(), 0);
    QCOMPARE(closed.size(), 1);
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(opened.size(), 1);
}

void TestGraphInteraction::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("edges");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("recorded");
    const QString path = QStringLiteral("0-1 1-2 2-3");
    const QString best = QStringLiteral("best_graph_changed ");
    const QString changed = QStringLiteral("interactive_graph_changed ");
    const auto control = [](char key, int n, const QString &edges, const char *selected, const QString &recorded) {
        QTest::addRow("Ctrl+%c", key) << int(key) << int(Qt::ControlModifier) << n << edges
                                      << QString::fromLatin1(selected) << recorded;
    };
    control('X', 2, QString(), "", best);
    control('K', 4, QStringLiteral("1-2"), "1 2", best);
    control('-', 4, path, "", changed);
    control('O', 4, path, "", changed);
    control('E', 4, path, "1 2", best);
    control('V', 5, path, "1 2", best);
    control('C', 4, QStringLiteral("0-1 2-3"), "1 2", best);
    control('A', 4, path, "0 1 2 3", changed);
    control('I', 4, path, "0 3", changed);
    control('R', 4, path, "1 2", changed);
    control('Z', 2, QStringLiteral("0-1"), "1", best);
    control('U', 3, QStringLiteral("0-2"), "1 2", best);
    control('D', 6, QStringLiteral("0-1 1-2 2-3 4-5"), "4 5", best);
    control('L', 6, QStringLiteral("0-1 1-2 2-3 1-4 2-5 4-5"), "4 5", best);
    const auto plain = [](const char *name, int key, int n, const QString &edges, const char *selected,
                          const QString &recorded) {
        QTest::addRow("%s", name) << key << int(Qt::NoModifier) << n << edges << QString::fromLatin1(selected)
                                  << recorded;
    };
    plain("R", Qt::Key_R, 4, path, "1 2", QStringLiteral("start_vns "));
    plain("H", Qt::Key_H, 4, path, "1 2", QStringLiteral("stop_vns "));
    plain("Space", Qt::Key_Space, 4, path, "1 2", QStringLiteral("load_next "));
    plain("M", Qt::Key_M, 4, path, "1 2", QStringLiteral("place_graph "));
    plain("Backspace", Qt::Key_Backspace, 4, QStringLiteral("0-1 2-3"), "1 2", best);
    plain("T", Qt::Key_T, 5, QStringLiteral("0-1 1-2 2-3 1-4 2-4"), "4", best);
    plain("B", Qt::Key_B, 5, QStringLiteral("0-1 1-2 2-3 1-4 2-4"), "1 2", best);
    plain("K", Qt::Key_K, 5, QStringLiteral("0-1 1-2 2-3 1-4 2-4"), "1 2 4", best);
    for (const char key : {'X', 'O', 'E', 'V', 'C', 'A', 'I', 'Z', 'U', 'D', 'L', 'P'}) {
        QTest::addRow("%c", key) << int(key) << int(Qt::NoModifier) << 4 << path << QStringLiteral("1 2") << QString();
    }
    for (const char key : {'H', ' ', 'M', 'T', 'B', '+'}) {
        QTest::addRow("Ctrl+%c", key) << int(key) << int(Qt::ControlModifier) << 4 << path << QStringLiteral("1 2")
                                      << QString();
    }
    QTest::newRow("Shift+K") << int(Qt::Key_K) << int(Qt::ShiftModifier) << 5 << QStringLiteral("0-1 1-2 2-3 1-4 2-4")
                             << QStringLiteral("1 2 4") << best;
}

// The history has the states 0-1 and 0-2 around a present state that equals the path in all but the record.
void TestGraphInteraction::keys()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    graphtext::set(*view, 2, QStringLiteral("0-1"));
    view->backup();
    graphtext::set(*view, 4, QStringLiteral("0-1 1-2 2-3"));
    view->backup();
    graphtext::set(*view, 3, QStringLiteral("0-2"));
    view->backup();
    view->slot_undo();
    graphtext::select(*view, {1, 2});
    if (modifier == Qt::ControlModifier) {
        QTest::keyPress(view, Qt::Key_Control);
    }
    SignalRecorder recorder(*view);
    QTest::sendKeyEvent(QTest::Press, view, Qt::Key(key), QString(),
                        Qt::KeyboardModifiers(modifier) & Qt::ShiftModifier);
    QTEST(view->getNbNodes(), "n");
    QTEST(graphtext::edges(*view), "edges");
    QTEST(graphtext::selection(*view), "selected");
    QFETCH(QString, recorded);
    const QStringList words = (recorded + QStringLiteral("interactive_graph_changed")).split(QLatin1Char(' '));
    QStringList seen = recorder.recorded();
    if (modifier == Qt::ShiftModifier) {
        seen.removeFirst(); // the press of Shift itself
    }
    QCOMPARE(seen, words);
    QVERIFY(graphtext::published(*view));
    QTest::keyRelease(view, Qt::Key_Control);
}

void TestGraphInteraction::rotationKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<QString>("place0"); // of (100, 0, 0)
    QTest::addColumn<QString>("place1"); // of (0, 100, 0)
    const int none = Qt::NoModifier;
    const int alt = Qt::AltModifier;
    QTest::newRow("Right") << int(Qt::Key_Right) << none << "99.8795 0 -4.90677"
                           << "0 100 0";
    QTest::newRow("Left") << int(Qt::Key_Left) << none << "99.8795 0 4.90677"
                          << "0 100 0";
    QTest::newRow("Up") << int(Qt::Key_Up) << none << "100 0 0"
                        << "0 99.8795 4.90677";
    QTest::newRow("Down") << int(Qt::Key_Down) << none << "100 0 0"
                          << "0 99.8795 -4.90677";
    QTest::newRow("Alt+Right") << int(Qt::Key_Right) << alt << "99.8795 4.90677 0"
                               << "-4.90677 99.8795 0";
    QTest::newRow("Alt+Left") << int(Qt::Key_Left) << alt << "99.8795 -4.90677 0"
                              << "4.90677 99.8795 0";
    QTest::newRow("Alt+Up") << int(Qt::Key_Up) << alt << "100 0 0"
                            << "0 99.8795 4.90677";
    QTest::newRow("Ctrl+Right") << int(Qt::Key_Right) << int(Qt::ControlModifier) << "100 0 0"
                                << "0 100 0";
}

void TestGraphInteraction::rotationKeys()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    const QPointF cross[] = {{100, 0}, {0, 100}, {-100, 0}, {0, -100}};
    for (int i = 0; i < 4; ++i) {
        view->node(i)->setPosition(cross[i].x(), cross[i].y(), 0.0);
    }
    const auto place = [this](int i) {
        const Node *vertex = view->node(i);
        const auto text = [](double value) { return QString::number(qAbs(value) < 1e-9 ? 0.0 : value, 'g', 6); };
        return text(vertex->pos().x()) + QLatin1Char(' ') + text(vertex->pos().y()) + QLatin1Char(' ') +
               text(vertex->getCoordZ());
    };
    QTest::keyClick(view, Qt::Key(key), Qt::KeyboardModifiers(modifier));
    QTEST(place(0), "place0");
    QTEST(place(1), "place1");
}

void TestGraphInteraction::zoomKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<double>("scale");
    QTest::newRow("plus") << int(Qt::Key_Plus) << int(Qt::NoModifier) << 1.1;
    QTest::newRow("minus") << int(Qt::Key_Minus) << int(Qt::NoModifier) << 1 / 1.1;
    QTest::newRow("Ctrl+minus") << int(Qt::Key_Minus) << int(Qt::ControlModifier) << 1.0;
    QTest::newRow("Ctrl+plus") << int(Qt::Key_Plus) << int(Qt::ControlModifier) << 1.0;
}

void TestGraphInteraction::zoomKeys()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    QTest::keyClick(view, Qt::Key(key), Qt::KeyboardModifiers(modifier));
    QTEST(view->transform().m11(), "scale");
    QTEST(view->transform().m22(), "scale");
}

void TestGraphInteraction::printKeyAsksForAFile()
{
    QString title;
    const driver::DialogAnswer answer([&title](QDialog *dialog) {
        title = dialog->windowTitle();
        dialog->reject();
    });
    QTest::keyClick(view, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(answer.done());
    QCOMPARE(title, QStringLiteral("Save  graphs as "));
}

void TestGraphInteraction::everyKeyCounts_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("an unknown key") << int(Qt::Key_F5);
    QTest::newRow("Control") << int(Qt::Key_Control);
    QTest::newRow("Alt") << int(Qt::Key_Alt);
    QTest::newRow("plus") << int(Qt::Key_Plus);
    QTest::newRow("Up") << int(Qt::Key_Up);
}

void TestGraphInteraction::everyKeyCounts()
{
    QFETCH(int, key);
    SignalRecorder recorder(*view);
    const unsigned before = id();
    QTest::keyPress(view, Qt::Key(key));
    QCOMPARE(id() - before, 1U);
    QTest::keyRelease(view, Qt::Key(key));
    QCOMPARE(id() - before, 1U);
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("interactive_graph_changed")}));
}

void TestGraphInteraction::keyDiscardsUnpublishedChanges()
{
    const unsigned before = id();
    view->addEdge(0, 3);
    view->remEdge(0, 1);
    view->addNode();
    QTest::keyClick(view, Qt::Key_F5);
    QCOMPARE(view->getNbNodes(), 4);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    QCOMPARE(id() - before, 1U);
}

void TestGraphInteraction::heldModifiers()
{
    graphtext::select(*view, {1, 2});
    QTest::keyPress(view, Qt::Key_Control);
    QTest::keyPress(view, Qt::Key_I);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 3"));
    QTest::keyRelease(view, Qt::Key_I);
    QTest::keyPress(view, Qt::Key_A);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 2 3"));
    QTest::keyRelease(view, Qt::Key_A);
    QTest::keyRelease(view, Qt::Key_Control);
    QTest::keyClick(view, Qt::Key_O);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 2 3"));
}

void TestGraphInteraction::focusLossReleasesTheModifiers()
{
    graphtext::select(*view, {1, 2});
    QTest::keyPress(view, Qt::Key_Control);
    QTest::keyPress(view, Qt::Key_Alt);
    other->setFocus();
    view->setFocus();
    QTest::keyClick(view, Qt::Key_B); // nothing with Control
    QCOMPARE(view->getNbNodes(), 5);
    click(places[0]); // a toggle, and no edges, without Alt
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 2"));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3 1-4 2-4"));
}

// The key was pressed before the view got the keyboard.
void TestGraphInteraction::controlOfTheKeyEventCounts()
{
    graphtext::select(*view, {1, 2});
    QKeyEvent press(QEvent::KeyPress, Qt::Key_K, Qt::ControlModifier);
    QCoreApplication::sendEvent(view, &press);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("1-2"));
    QTest::keyClick(view, Qt::Key_K); // its release may have gone elsewhere: it counted for that key only
    QCOMPARE(graphtext::edges(*view), QStringLiteral("1-2 1-4 2-4"));
}

void TestGraphInteraction::aDialogEndsTheHoldOnControl()
{
    frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(frame.get(), patience));
    view->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(view->hasFocus(), patience);
    graphtext::select(*view, {1, 2});
    const driver::DialogAnswer answer([](QDialog *dialog) {
        dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(dialog, patience));
        dialog->reject();
    });
    QTest::keyPress(view, Qt::Key_Control);
    QTest::keyPress(view, Qt::Key_P); // opens the dialog, which gets the release
    QVERIFY(answer.done());
    QTest::keyClick(view, Qt::Key_K);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3 1-4 2-4"));
    QCOMPARE(view->getNbNodes(), 5);
}

void TestGraphInteraction::edgeModeEndsARubberBand()
{
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    view->setEdgeEditMode(true);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    const QList<QGraphicsItem *> items = static_cast<QGraphicsView &>(*view).scene()->items();
    for (const QGraphicsItem *item : items) {
        QVERIFY(dynamic_cast<const QGraphicsRectItem *>(item) == nullptr || !item->isVisible());
    }
}

void TestGraphInteraction::selectionSlots()
{
    view->backup();
    graphtext::select(*view, {1, 31});
    SignalRecorder recorder(*view);
    const unsigned before = id();
    const int living = graphtext::living();
    const auto selectedSlots = [this]() {
        int count = 0;
        for (int i = 0; i < Graph::MAX_NODES; ++i) {
            count += view->node(i)->isSelected() ? 1 : 0;
        }
        return count;
    };
    view->slot_invert_selection();
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 2 3"));
    QCOMPARE(selectedSlots(), 30);
    view->slot_select_all();
    QCOMPARE(selectedSlots(), 32);
    view->slot_unselect_all();
    QCOMPARE(selectedSlots(), 0);
    QCOMPARE(id() - before, 3U);
    const QString changed = QStringLiteral("interactive_graph_changed");
    QCOMPARE(recorder.recorded(), (QStringList{changed, changed, changed}));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    QCOMPARE(graphtext::living(), living);
}

void TestGraphInteraction::updateSlot()
{
    view->addEdge(0, 2);
    SignalRecorder recorder(*view);
    const unsigned before = id();
    view->slot_update();
    QCOMPARE(id() - before, 1U);
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("interactive_graph_changed")}));
    QVERIFY(!view->bestEdge(0, 2));
}

void TestGraphInteraction::bestRestore()
{
    const unsigned before = id();
    view->remNode();
    view->toggleEdge(0, 2);
    view->best_restore();
    QCOMPARE(id(), before);
    QCOMPARE(view->getNbNodes(), 4);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    view->node(3)->best_backup();
    view->node(4)->best_backup();
    QVERIFY(view->node(3)->getVisible());
    QVERIFY(!view->node(4)->getVisible());
}

void TestGraphInteraction::undoAndRedo()
{
    view->slot_adde(); // entry 0: the path
    graphtext::select(*view, {0, 2});
    view->slot_adde();
    graphtext::select(*view, {0, 3});
    view->slot_adde();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 0-2 1-2 0-3 2-3"));
    SignalRecorder recorder(*view);
    view->slot_undo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 0-2 1-2 2-3"));
    QVERIFY(graphtext::published(*view));
    QVERIFY(!view->edgeItem(0, 3)->isVisible());
    QCOMPARE(recorder.take(), (QStringList{QStringLiteral("best_graph_changed")}));
    view->slot_undo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));

    view->addEdge(1, 3);
    view->changeBest();
    recorder.take();
    view->slot_undo(); // at entry 0 it restores entry 0
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    QCOMPARE(recorder.take(), (QStringList{QStringLiteral("best_graph_changed")}));

    view->slot_redo();
    view->slot_redo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 0-2 1-2 0-3 2-3"));
    view->addEdge(1, 3);
    view->changeBest();
    view->slot_redo(); // at the last entry it restores that entry
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 0-2 1-2 0-3 2-3"));
}

void TestGraphInteraction::undoOnAnEmptyHistory()
{
    SignalRecorder recorder(*view);
    const unsigned before = id();
    view->slot_undo(); // to -2
    QCOMPARE(recorder.recorded(), QStringList());
    QCOMPARE(id(), before);
    view->slot_redo(); // to -1
    view->slot_redo(); // stays there
    view->slot_undo();
    view->slot_undo();
    QCOMPARE(recorder.recorded(), QStringList());

    view->backup();
    view->addEdge(0, 3);
    view->changeBest();
    view->backup();
    view->slot_undo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    view->slot_redo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 0-3 2-3"));
}

void TestGraphInteraction::backupDropsWhatWasUndone()
{
    const int before = graphtext::living();
    for (int n = 5; n <= 7; ++n) {
        graphtext::set(*view, n, QString());
        view->backup();
    }
    QCOMPARE(graphtext::living(), before + 3);
    view->slot_undo();
    view->slot_undo();
    graphtext::set(*view, 10, QString());
    view->backup();
    QCOMPARE(graphtext::living(), before + 2);
    view->slot_redo();
    QCOMPARE(view->getNbNodes(), 10);
    view->slot_undo();
    QCOMPARE(view->getNbNodes(), 5);
}

/// The vertex stays with the mouse until the left button is released, and a drag is still no click.
void TestGraphInteraction::rightClickDuringADrag()
{
    press(places[1]);
    move(QPointF(120, 20));
    QVERIFY(!rightClickOpensTheMenu(QPointF(120, 20)));
    QCOMPARE(Node::nodeUnderMouse(), view->node(1));
    QCOMPARE(view->viewport()->cursor().shape(), Qt::ClosedHandCursor);
    move(QPointF(140, 40));
    QCOMPARE(view->node(1)->pos(), QPointF(140, 40));
    release(QPointF(140, 40));
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    QCOMPARE(graphtext::selection(*view), QString());
    move(QPointF(120, -40));
    QCOMPARE(view->node(1)->pos(), QPointF(140, 40));
    QVERIFY(rightClickOpensTheMenu(QPointF(120, -40)));
}

/// A press without a move, too: what the right button does is not the end of the click.
void TestGraphInteraction::rightClickDuringARubberBand()
{
    graphtext::select(*view, {3});
    press(QPointF(130, -30));
    pass(longestClick + 1);
    QVERIFY(!rightClickOpensTheMenu(QPointF(130, -30)));
    QVERIFY(rubberBand()->isVisible());
    QCOMPARE(graphtext::selection(*view), QStringLiteral("3"));
    move(QPointF(80, 30));
    QVERIFY(!rightClickOpensTheMenu(QPointF(80, 30)));
    QVERIFY(rubberBand()->isVisible());
    QCOMPARE(graphtext::selection(*view), QStringLiteral("3"));
    move(QPointF(-40, 30));
    QCOMPARE(rubberBand()->rect(), QRectF(-40, -30, 170, 60));
    release(QPointF(-40, 30));
    QVERIFY(!rubberBand()->isVisible());
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 3"));
    QVERIFY(rightClickOpensTheMenu(QPointF(-40, 30)));
}

void TestGraphInteraction::rightClickDuringAChangeOfTheMode_data()
{
    QTest::addColumn<QPointF>("pressed");
    QTest::addColumn<QPointF>("moved");
    QTest::newRow("a drag") << places[1] << QPointF(150, 0);
    QTest::newRow("a rubber band") << QPointF(130, -30) << QPointF(-40, 30);
}

/// The left button is down while edges are switched on, and off again: nothing goes on from what it had begun.
void TestGraphInteraction::rightClickDuringAChangeOfTheMode()
{
    QFETCH(QPointF, pressed);
    QFETCH(QPointF, moved);
    graphtext::select(*view, {2});
    press(pressed);
    move(moved);
    const QPointF left = view->node(1)->pos();
    view->setEdgeEditMode(true);
    QVERIFY(!rubberBand()->isVisible());
    QVERIFY(rightClickOpensTheMenu(emptySpace)); // nothing is being dragged any more
    move(QPointF(50, 50));
    release(QPointF(50, 50));
    QVERIFY(!rubberBand()->isVisible());
    QVERIFY(Node::nodeUnderMouse() == nullptr);
    view->setEdgeEditMode(false);
    QVERIFY(rightClickOpensTheMenu(emptySpace));
    move(QPointF(60, 60));
    QVERIFY(!rubberBand()->isVisible());
    QCOMPARE(view->node(1)->pos(), left);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("2"));
    click(places[0]); // a click, not the end of the drag
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 2"));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
}

QTEST_MAIN(TestGraphInteraction)
#include "tst_graph_interaction.moc"
