// The context menu of the viewer.

#include "graph.h"
#include "node.h"
#include "support/graphtext.h"
#include "support/patience.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDialog>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QWindow>
#include <QtTest>

#include <memory>

class TestGraphMenu : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void comesUpAtTheMouse();
    void comesUpByKeys();
    void staysAwayDuringADrag();
    void contents();
    void disabledEntries_data();
    void disabledEntries();
    void commands_data();
    void commands();
    void keysAreTextOnly();
    void everyEntryHasALetterOfItsOwn();
    void history();
    void addModes();
    void edgeMode();
    void layout();
    void ticksTellWhatIsInForce();
    void relabellingIsShownAndUndoable();
    void spin();
    void fileCommands_data();
    void fileCommands();

private:
    /// Asks for the menu and returns it.
    QMenu *open() const;
    /// Opens the menu and chooses an entry.
    void choose(const QString &text) const;

    std::unique_ptr<Graph> view;
};

namespace
{
/// The entries one a line, those of submenus indented: "[x]" is switched on, "[ ]" off, "-" in front is disabled, and
/// the key comes last.
QStringList describe(const QMenu *menu, const QString &indent = QString())
{
    QStringList lines;
    const QList<QAction *> actions = menu->actions();
    for (const QAction *action : actions) {
        const QStringList parts = action->text().remove(QLatin1Char('&')).split(QLatin1Char('\t'));
        QString line = indent + (action->isEnabled() ? QString() : QStringLiteral("-")) + parts.value(0);
        if (action->isCheckable()) {
            line += action->isChecked() ? QStringLiteral(" [x]") : QStringLiteral(" [ ]");
        }
        if (parts.size() > 1) {
            line += QStringLiteral(" (%1)").arg(parts.value(1));
        }
        lines.append(action->isSeparator() ? indent + QStringLiteral("---") : line);
        if (action->menu() != nullptr) {
            lines += describe(action->menu(), indent + QStringLiteral("    "));
        }
    }
    return lines;
}

/// The entry with that text, of the menu or one of its submenus; null when there is none.
QAction *findEntry(const QMenu *menu, const QString &text)
{
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        const QString shown = action->text().remove(QLatin1Char('&')).section(QLatin1Char('\t'), 0, 0);
        QAction *found = shown == text ? action : nullptr;
        if (found == nullptr && action->menu() != nullptr) {
            found = findEntry(action->menu(), text);
        }
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

QAction *entry(const QMenu *menu, const QString &text)
{
    QAction *found = findEntry(menu, text);
    if (found == nullptr) {
        qFatal("no entry \"%s\"", qPrintable(text));
    }
    return found;
}
} // namespace

// The path 0-1-2-3 with its inner vertices selected.
void TestGraphMenu::init()
{
    view = std::make_unique<Graph>(QStringLiteral("menu"), true);
    view->resize(400, 400);
    graphtext::set(*view, 4, QStringLiteral("0-1 1-2 2-3"), {1, 2});
    view->place_circle(300);
    view->show();
    view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(view.get(), patience));
}

void TestGraphMenu::cleanup()
{
    view.reset();
    QVERIFY(QApplication::activePopupWidget() == nullptr);
}

QMenu *TestGraphMenu::open() const
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(50, 60), view->viewport()->mapToGlobal(QPoint(50, 60)));
    QCoreApplication::sendEvent(view->viewport(), &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (menu == nullptr) {
        qFatal("no menu");
    }
    return menu;
}

void TestGraphMenu::choose(const QString &text) const
{
    QMenu *menu = open();
    QAction *chosen = entry(menu, text);
    menu->close();
    chosen->trigger();
}

void TestGraphMenu::comesUpAtTheMouse()
{
    QTest::mouseClick(view->windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(70, 40));
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() != nullptr, patience);
    QPointer<QWidget> menu = QApplication::activePopupWidget();
    QCOMPARE(menu->pos(), view->mapToGlobal(QPoint(70, 40)));
    QTest::keyClick(menu, Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(!menu->isVisible(), patience);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1 2"));
    open()->close();
    QVERIFY(menu.isNull()); // each menu takes the place of the last one
}

/// And is left, or an entry of a submenu is chosen, by keys, too.
void TestGraphMenu::comesUpByKeys()
{
    QTest::keyClick(view.get(), Qt::Key_F10, Qt::ShiftModifier);
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() != nullptr, patience);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() == nullptr, patience);
    QTest::keyClick(view.get(), Qt::Key_F10);
    QVERIFY(QApplication::activePopupWidget() == nullptr);

    // What Qt sends to the widget with the keyboard for the key Menu.
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), view->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(view.get(), &event);
    QPointer<QWidget> menu = QApplication::activePopupWidget();
    QVERIFY(menu != nullptr);
    QTest::keyClick(menu, Qt::Key_S); // Select
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() != menu, patience);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_A); // All
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 2 3"));
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() == nullptr, patience);
}

// The menu would swallow the release of the button.
void TestGraphMenu::staysAwayDuringADrag()
{
    const QPoint places[] = {QPoint(5, 5), view->mapFromScene(view->node(0)->pos())};
    for (const QPoint &place : places) {
        QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place);
        QCoreApplication::sendEvent(view->viewport(), &event);
        QVERIFY(QApplication::activePopupWidget() == nullptr);
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }
}

void TestGraphMenu::contents()
{
    const QByteArray expected = "-Undo (Ctrl+Z)\n"
                                "-Redo (Ctrl+U)\n"
                                "---\n"
                                "Double-click adds\n"
                                "    Clique vertex [x]\n"
                                "    Bipartite vertex [ ]\n"
                                "    Tail vertex [ ]\n"
                                "Draw edges [ ]\n"
                                "---\n"
                                "Select\n"
                                "    All (Ctrl+A)\n"
                                "    None (Ctrl+O)\n"
                                "    Invert (Ctrl+I)\n"
                                "Edit\n"
                                "    Add vertex (Ctrl+V)\n"
                                "    Add clique vertex (K)\n"
                                "    Add bipartite vertex (B)\n"
                                "    Add tail vertex (T)\n"
                                "    Remove selected vertices (Ctrl+X)\n"
                                "    ---\n"
                                "    Join selected vertices (Ctrl+E)\n"
                                "    Separate selected vertices (Backspace)\n"
                                "    Complement selection (Ctrl+C)\n"
                                "    Cut selection off (Ctrl+K)\n"
                                "    ---\n"
                                "    Link all diametral pairs\n"
                                "    Link one diametral pair\n"
                                "Duplicate selection\n"
                                "    Copy (Ctrl+D)\n"
                                "    Copy linked to its source (Ctrl+L)\n"
                                "    False twins\n"
                                "    True twins\n"
                                "Layout\n"
                                "    Circle [x] (5)\n"
                                "    Spring (Kamada and Kawai) [ ] (6)\n"
                                "    Spring (Fruchterman and Reingold) [ ] (7)\n"
                                "    Planar [ ] (8)\n"
                                "    Levels from the selection [ ] (9)\n"
                                "    ---\n"
                                "    Random placement\n"
                                "    Reorganise\n"
                                "    Relabel\n"
                                "    Spin [ ]\n"
                                "Show\n"
                                "    Vertex numbers [ ] (1)\n"
                                "    Names [ ] (2)\n"
                                "    Degrees [ ] (3)\n"
                                "    Distances from the selected vertex [ ] (4)\n"
                                "    Nothing [x] (0)\n"
                                "---\n"
                                "Copy as graph6 (Ctrl+Ins)\n"
                                "Copy as picture (Ctrl+G)\n"
                                "Paste graph6 (Ins)\n"
                                "---\n"
                                "Open...\n"
                                "Save...\n"
                                "Import...\n"
                                "Export...\n"
                                "Export picture... (Ctrl+F)\n"
                                "Print... (Ctrl+P)";
    QMenu *menu = open();
    QCOMPARE(describe(menu).join(QLatin1Char('\n')), QString::fromLatin1(expected));
    menu->close();
}

void TestGraphMenu::disabledEntries_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("disabled");
    const QString history = QStringLiteral("Undo, Redo, ");
    const QString copies = QStringLiteral("Copy, Copy linked to its source, False twins, True twins");
    const QString additions = QStringLiteral("Add vertex, Add clique vertex, Add bipartite vertex, Add tail vertex, ");
    const QString pairs = QStringLiteral("Join selected vertices, Separate selected vertices, Complement selection, ");
    const QString diameter = QStringLiteral("Link all diametral pairs, Link one diametral pair, ");
    const QString levels = QStringLiteral("Levels from the selection, ");
    const QString distances = QStringLiteral("Distances from the selected vertex");
    const QString none =
        history + QStringLiteral("None, Remove selected vertices, ") + pairs + QStringLiteral("Cut selection off, ");
    QTest::newRow("nothing selected") << 4 << 0 << none + copies + QStringLiteral(", ") + levels + distances;
    QTest::newRow("one selected") << 4 << 1 << history + pairs.left(pairs.size() - 2);
    QTest::newRow("two selected") << 4 << 2 << history.left(history.size() - 2);
    QTest::newRow("no room for copies") << 31 << 2 << history + copies;
    QTest::newRow("no room") << 32 << 2 << history + additions + copies;
    QTest::newRow("one vertex") << 1 << 0
                                << none + diameter + copies + QStringLiteral(", ") + levels +
                                       QStringLiteral("Reorganise, Relabel, ") + distances;
    QTest::newRow("no vertex") << 0 << 0
                               << history + QStringLiteral("All, None, Invert, Remove selected vertices, ") + pairs +
                                      QStringLiteral("Cut selection off, ") + diameter + copies +
                                      QStringLiteral(", Circle, Spring (Kamada and Kawai), ") +
                                      QStringLiteral("Spring (Fruchterman and Reingold), Planar, ") + levels +
                                      QStringLiteral("Random placement, Reorganise, Relabel, ") +
                                      QStringLiteral("Vertex numbers, Names, Degrees, ") + distances +
                                      QStringLiteral(", Copy as graph6, Copy as picture, Export picture");
}

void TestGraphMenu::disabledEntries()
{
    QFETCH(int, n);
    QFETCH(int, selected);
    graphtext::set(*view, n, QString());
    for (int i = 0; i < selected; ++i) {
        view->node(i)->setSelected(true);
    }
    view->node(31)->setSelected(n < 32); // A slot beyond the graph does not count.
    QMenu *menu = open();
    QStringList disabled;
    for (const QString &line : describe(menu)) {
        const QString text = line.trimmed();
        if (text.startsWith(QLatin1Char('-')) && text != QLatin1String("---")) {
            // Without its state, its key and what tells that a dialog follows.
            disabled.append(text.mid(1).remove(QRegularExpression(QStringLiteral("\\.\\.\\.| \\[.\\]| \\([^ )]*\\)"))));
        }
    }
    menu->close();
    QTEST(disabled.join(QStringLiteral(", ")), "disabled");
}

void TestGraphMenu::commands_data()
{
    QTest::addColumn<QString>("edges");
    QTest::addColumn<QString>("selected");
    const auto row = [](const char *text, const char *edges, const char *selected) {
        QTest::newRow(text) << QString::fromLatin1(edges) << QString::fromLatin1(selected);
    };
    row("All", "0-1 1-2 2-3", "0 1 2 3");
    row("None", "0-1 1-2 2-3", "");
    row("Invert", "0-1 1-2 2-3", "0 3");
    row("Add vertex", "0-1 1-2 2-3", "1 2");
    row("Add clique vertex", "0-1 1-2 2-3 1-4 2-4", "1 2 4");
    row("Add bipartite vertex", "0-1 1-2 2-3 1-4 2-4", "1 2");
    row("Add tail vertex", "0-1 1-2 2-3 1-4 2-4", "4");
    row("Remove selected vertices", "", "");
    row("Join selected vertices", "0-1 1-2 2-3", "1 2");
    row("Separate selected vertices", "0-1 2-3", "1 2");
    row("Complement selection", "0-1 2-3", "1 2");
    row("Cut selection off", "1-2", "1 2");
    row("Link all diametral pairs", "0-1 1-2 0-3 2-3", "1 2");
    row("Link one diametral pair", "0-1 1-2 0-3 2-3", "1 2");
    row("Copy", "0-1 1-2 2-3 4-5", "4 5");
    row("Copy linked to its source", "0-1 1-2 2-3 1-4 2-5 4-5", "4 5");
    row("False twins", "0-1 1-2 2-3 0-4 2-4 1-5 3-5 4-5", "4 5");
    row("True twins", "0-1 1-2 2-3 0-4 1-4 2-4 1-5 2-5 3-5 4-5", "4 5");
}

void TestGraphMenu::commands()
{
    choose(QString::fromLatin1(QTest::currentDataTag()));
    QTEST(graphtext::edges(*view), "edges");
    QTEST(graphtext::selection(*view), "selected");
    QVERIFY(graphtext::published(*view));
}

void TestGraphMenu::keysAreTextOnly()
{
    QMenu *menu = open();
    const QList<QAction *> actions = menu->findChildren<QAction *>();
    QVERIFY(!actions.isEmpty());
    for (const QAction *action : actions) {
        QVERIFY(action->shortcut().isEmpty());
    }
    menu->close();
}

/// In the menu and in each of its submenus.
void TestGraphMenu::everyEntryHasALetterOfItsOwn()
{
    QMenu *menu = open();
    QList<QMenu *> menus = menu->findChildren<QMenu *>();
    QCOMPARE(menus.size(), 6);
    menus.append(menu);
    for (const QMenu *each : qAsConst(menus)) {
        QStringList letters;
        const QList<QAction *> actions = each->actions();
        for (const QAction *action : actions) {
            if (!action->isSeparator()) {
                letters.append(QKeySequence::mnemonic(action->text()).toString());
            }
        }
        QVERIFY2(!letters.contains(QString()), qPrintable(letters.join(QLatin1Char(' '))));
        QCOMPARE(letters.removeDuplicates(), 0);
    }
    menu->close();
}

void TestGraphMenu::history()
{
    view->backup();
    choose(QStringLiteral("Cut selection off"));
    QMenu *menu = open();
    QVERIFY(entry(menu, QStringLiteral("Undo"))->isEnabled());
    QVERIFY(!entry(menu, QStringLiteral("Redo"))->isEnabled());
    menu->close();
    choose(QStringLiteral("Undo"));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    menu = open();
    QVERIFY(!entry(menu, QStringLiteral("Undo"))->isEnabled());
    QVERIFY(entry(menu, QStringLiteral("Redo"))->isEnabled());
    menu->close();
    choose(QStringLiteral("Redo"));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("1-2"));
}

void TestGraphMenu::addModes()
{
    const QStringList modes{QStringLiteral("Clique vertex"), QStringLiteral("Bipartite vertex"),
                            QStringLiteral("Tail vertex")};
    const QStringList selections{QStringLiteral("1 2 4"), QStringLiteral("1 2"), QStringLiteral("4")};
    for (const int mode : {2, 1, 0}) {
        graphtext::set(*view, 4, QStringLiteral("0-1"), {1, 2});
        view->place_circle(100);
        choose(modes[mode]);
        QMenu *menu = open();
        for (int other = 0; other < 3; ++other) {
            QCOMPARE(entry(menu, modes[other])->isChecked(), other == mode);
        }
        menu->close();
        QTest::mouseDClick(view->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-4 2-4"));
        QCOMPARE(graphtext::selection(*view), selections[mode]);
    }
}

void TestGraphMenu::edgeMode()
{
    const auto clickVertex = [this](int i) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->mapFromScene(view->node(i)->pos()));
    };
    choose(QStringLiteral("Draw edges"));
    clickVertex(0);
    QMenu *menu = open(); // a picked vertex is no drag
    QVERIFY(entry(menu, QStringLiteral("Draw edges"))->isChecked());
    menu->close();
    clickVertex(3);
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 0-3 2-3"));
    choose(QStringLiteral("Draw edges"));
    clickVertex(0);
    QCOMPARE(graphtext::selection(*view), QStringLiteral("0 1 2"));
}

void TestGraphMenu::layout()
{
    SignalRecorder recorder(*view);
    view->addEdge(0, 3);
    choose(QStringLiteral("Circle"));
    QCOMPARE(view->node(0)->pos(), QPointF(100, 0));
    QVERIFY(qAbs(view->node(1)->pos().x()) < 1e-6);
    QVERIFY(qAbs(view->node(1)->pos().y() - 100) < 1e-6);
    QVERIFY(view->bestEdge(0, 3));
    QCOMPARE(recorder.take(), (QStringList{QStringLiteral("best_graph_changed")}));

    choose(QStringLiteral("Random placement"));
    for (int i = 0; i < 4; ++i) {
        QVERIFY(QLineF(QPointF(), view->node(i)->pos()).length() <= 150.0);
    }
    QVERIFY(view->node(0)->pos() != QPointF(100, 0));
    QCOMPARE(recorder.take(), QStringList());

    // A diagonal of the square becomes one of its sides.
    graphtext::set(*view, 4, QStringLiteral("0-2"));
    view->place_circle(200);
    recorder.take();
    choose(QStringLiteral("Reorganise"));
    QCOMPARE(recorder.take(),
             (QStringList{QStringLiteral("console Reorganize : length = 141.421 false 2 #0000ff"),
                          QStringLiteral("interactive_graph_changed"), QStringLiteral("best_graph_changed")}));
    QVERIFY(!view->bestEdge(0, 2));
    QVERIFY(graphtext::published(*view));
}

/// One of the layouts, and one of what is shown.
void TestGraphMenu::ticksTellWhatIsInForce()
{
    const QStringList layouts{QStringLiteral("Circle"), QStringLiteral("Spring (Kamada and Kawai)"),
                              QStringLiteral("Spring (Fruchterman and Reingold)"), QStringLiteral("Planar"),
                              QStringLiteral("Levels from the selection")};
    const QStringList shown{QStringLiteral("Vertex numbers"), QStringLiteral("Names"), QStringLiteral("Degrees"),
                            QStringLiteral("Distances from the selected vertex"), QStringLiteral("Nothing")};
    const auto isTickedAlone = [this](const QStringList &entries, const QString &text) {
        QMenu *menu = open();
        bool alone = true;
        for (const QString &each : entries) {
            alone = alone && entry(menu, each)->isChecked() == (each == text);
        }
        menu->close();
        return alone;
    };
    for (const QStringList &entries : {layouts, shown}) {
        for (const QString &text : entries) {
            choose(text);
            QVERIFY2(isTickedAlone(entries, text), qPrintable(text));
        }
    }
    choose(QStringLiteral("Degrees"));
    choose(QStringLiteral("Add vertex")); // another graph, of which nothing is shown yet
    QVERIFY(isTickedAlone(shown, QStringLiteral("Nothing")));
    QVERIFY(isTickedAlone(layouts, QStringLiteral("Levels from the selection")));
}

void TestGraphMenu::relabellingIsShownAndUndoable()
{
    view->backup();
    bool changed = false;
    for (int attempt = 0; attempt < 20 && !changed; ++attempt) {
        choose(QStringLiteral("Relabel"));
        QVERIFY(graphtext::published(*view));
        QCOMPARE(view->getNbEdges(), 3);
        changed = graphtext::edges(*view) != QLatin1String("0-1 1-2 2-3");
        choose(QStringLiteral("Undo"));
        QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    }
    QVERIFY(changed);
}

void TestGraphMenu::spin()
{
    choose(QStringLiteral("Spin"));
    QMenu *menu = open();
    QVERIFY(entry(menu, QStringLiteral("Spin"))->isChecked());
    menu->close();
    QTRY_VERIFY_WITH_TIMEOUT(view->node(0)->getCoordZ() != 0.0, patience);
    choose(QStringLiteral("Spin"));
    menu = open();
    QVERIFY(!entry(menu, QStringLiteral("Spin"))->isChecked());
    menu->close();
}

void TestGraphMenu::fileCommands_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("Open...") << "Choose graph to load";
    QTest::newRow("Save...") << "Save graph as";
    QTest::newRow("Import...") << "Choose graph to import";
    QTest::newRow("Export...") << "Export graph as";
    QTest::newRow("Export picture...") << "Export picture as";
    QTest::newRow("Print...") << "Save  graphs as ";
}

void TestGraphMenu::fileCommands()
{
    QStringList titles;
    QTimer closer;
    connect(&closer, &QTimer::timeout, this, [&titles]() {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            titles.append(dialog->windowTitle());
            dialog->reject();
        }
    });
    closer.start(10);
    choose(QString::fromLatin1(QTest::currentDataTag()));
    QTEST(titles.value(0), "title");
}

QTEST_MAIN(TestGraphMenu)
#include "tst_graph_menu.moc"
