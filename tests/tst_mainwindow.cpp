// The main window: actions, menu, tool bar, About box and shortcuts.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "support/literals.h"
#include "support/loadgate.h"
#include "support/mainwindowfixture.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QSignalSpy>
#include <QSlider>
#include <QTextEdit>
#include <QToolBar>
#include <QUrl>
#include <QtTest>

#include <memory>

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void titleAndSmallestSize();
    void comesBackAsItWasLeft_data();
    void comesBackAsItWasLeft();
    void comesBackMaximized();
    void toolBarComesBack();
    void neverComesBackOffScreen_data();
    void neverComesBackOffScreen();
    void actions_data();
    void actions();
    void menuHoldsAboutOnly();
    void toolBarOrder();
    void actionsMenuAndToolBarAreMadeOnRequest();
    void iconsAreInTheResources();
    void aboutBox();
    void f1OpensAboutFromAnywhere_data();
    void f1OpensAboutFromAnywhere();
    void openAndClearShortcutsWorkFromAnywhere_data();
    void openAndClearShortcutsWorkFromAnywhere();
    void shortcutsWorkWithoutTheToolBar();
    void viewerKeepsItsControlKeys();
    void browsingGivesTheViewerTheKeys_data();
    void browsingGivesTheViewerTheKeys();
    void browsingWithTheKeyboard();
    void droppedDatabaseIsLoaded_data();
    void droppedDatabaseIsLoaded();
    void otherDropsAreRefused_data();
    void otherDropsAreRefused();
    void droppedTextIsAName();
    void droppedFileThatCannotBeRead();
    void dropDuringALoad();
    void exitClosesAndDeletesTheWindow();
    void windowOutlivesTheDialogOfItsCommands();
};

namespace
{
QAction *action(const MainWindowFixture &fixture, const QString &text)
{
    const QList<QAction *> actions = fixture.window->findChildren<QAction *>();
    for (QAction *candidate : actions) {
        if (candidate->text() == text) {
            return candidate;
        }
    }
    return nullptr;
}

QRect screen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

/// Closes the window, and opens one with the same settings.
void reopen(MainWindowFixture &fixture)
{
    fixture.window->close();
    QTRY_VERIFY_WITH_TIMEOUT(fixture.window.isNull(), patience);
    fixture.window = new TAVMainWindow;
    fixture.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window, patience));
}

/// The widgets in which the keyboard focus may be.
void addFocusRows()
{
    QTest::addColumn<QString>("focus");
    QTest::newRow("name line") << QStringLiteral("newListName");
    QTest::newRow("console") << QStringLiteral("console");
    QTest::newRow("load button") << QString();
}

QWidget *focusIn(const MainWindowFixture &fixture, const QString &name)
{
    auto *widget = fixture.window->findChild<QWidget *>(name);
    if (name.isEmpty()) {
        widget = driver::button(fixture.window, QStringLiteral("Load database"));
    }
    widget->setFocus();
    return widget;
}

/// A fixture whose viewer is shown and has the keyboard focus.
void showViewer(MainWindowFixture &fixture)
{
    QVERIFY(fixture.load(fixture.write(QStringLiteral("small.tav"), "@\nA_\t0\n")));
    fixture.press(QStringLiteral("Visualization"));
    fixture.window->activateWindow(); // which the dialog was
    QVERIFY(QTest::qWaitForWindowActive(fixture.window, patience));
    fixture.view()->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(fixture.view()->hasFocus(), patience);
}

/// Drags onto the middle of a widget and drops, as the window system tells it; the action that was accepted, none when
/// the drag was refused.
Qt::DropAction drop(QWidget *target, const QMimeData &data, Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction)
{
    const QPoint place = target->rect().center();
    QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    if (!enter.isAccepted()) {
        return Qt::IgnoreAction;
    }
    QDropEvent dropped(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &dropped);
    return dropped.isAccepted() ? dropped.dropAction() : Qt::IgnoreAction;
}

/// The data of files that are dragged from a file manager.
std::unique_ptr<QMimeData> draggedFiles(const QStringList &files)
{
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> urls;
    for (const QString &file : files) {
        urls.append(QUrl::fromLocalFile(file));
    }
    data->setUrls(urls);
    data->setText(files.join(QLatin1Char('\n'))); // for who cannot do with files
    return data;
}

QWidget *dropTarget(const MainWindowFixture &fixture, const QString &name)
{
    if (name == QLatin1String("tool bar")) {
        return fixture.window->findChild<QToolBar *>();
    }
    if (name == QLatin1String("viewer")) {
        return fixture.view()->viewport();
    }
    auto *widget = fixture.window->findChild<QWidget *>(name);
    auto *console = qobject_cast<QTextEdit *>(widget);
    return console != nullptr ? console->viewport() : widget;
}

bool dataLoads(const QSignalSpy &loaded)
{
    return driver::waitUntil([&] { return !loaded.isEmpty(); });
}
} // namespace

void TestMainWindow::titleAndSmallestSize()
{
    const MainWindowFixture fixture;
    QCOMPARE(fixture.window->windowTitle(), QStringLiteral("Tavoline version 0.2.1 alpha"));
    QCOMPARE(fixture.window->minimumSize(), QSize(800, 800));
    fixture.window->resize(300, 300);
    QTRY_COMPARE_WITH_TIMEOUT(fixture.window->size().boundedTo(QSize(800, 800)), QSize(800, 800), patience);
}

void TestMainWindow::comesBackAsItWasLeft_data()
{
    QTest::addColumn<QRect>("place");
    QTest::newRow("small") << QRect(170, 90, 800, 800);
    QTest::newRow("large") << QRect(30, 40, 1200, 1000);
    QTest::newRow("wide") << QRect(30, 40, 1200, 800);
}

/// On a screen that is too small it comes back smaller.
void TestMainWindow::comesBackAsItWasLeft()
{
    QFETCH(QRect, place);
    MainWindowFixture fixture;
    fixture.window->setGeometry(place);
    QCoreApplication::processEvents();
    reopen(fixture);
    if (screen().contains(place)) {
        QTRY_COMPARE_WITH_TIMEOUT(fixture.window->geometry(), place, patience);
    } else {
        QCOMPARE(fixture.window->size().boundedTo(place.size()), fixture.window->size());
    }
}

void TestMainWindow::comesBackMaximized()
{
    MainWindowFixture fixture;
    fixture.window->showMaximized();
    QCoreApplication::processEvents();
    reopen(fixture);
    QVERIFY(fixture.window->isMaximized());
}

void TestMainWindow::toolBarComesBack()
{
    MainWindowFixture fixture;
    fixture.window->addToolBar(Qt::LeftToolBarArea, fixture.window->findChild<QToolBar *>());
    reopen(fixture);
    auto *bar = fixture.window->findChild<QToolBar *>();
    QCOMPARE(fixture.window->toolBarArea(bar), Qt::LeftToolBarArea);
    QVERIFY(bar->isVisible());
    bar->hide();
    reopen(fixture);
    bar = fixture.window->findChild<QToolBar *>();
    QVERIFY(bar->isHidden());
    bar->toggleViewAction()->trigger();
    QVERIFY(bar->isVisible());
}

void TestMainWindow::neverComesBackOffScreen_data()
{
    QTest::addColumn<QRect>("place");
    QTest::newRow("right") << QRect(5000, 0, 800, 800);
    QTest::newRow("below") << QRect(0, 4000, 800, 800);
    QTest::newRow("left and above") << QRect(-3000, -3000, 900, 900);
    QTest::newRow("larger than the screen") << QRect(-100, -100, 9000, 9000);
}

void TestMainWindow::neverComesBackOffScreen()
{
    QFETCH(QRect, place);
    MainWindowFixture fixture;
    fixture.window->setGeometry(place);
    QCoreApplication::processEvents();
    reopen(fixture);
    // On a screen that is smaller than the smallest window, that and the frame are all that is seen in part.
    const QRect room(screen().topLeft(), screen().size().expandedTo(QSize(840, 840)));
    const QRect found = fixture.window->geometry();
    QVERIFY2(room.contains(found), qPrintable(QStringLiteral("%1 x %2 at (%3, %4)")
                                                  .arg(found.width())
                                                  .arg(found.height())
                                                  .arg(found.x())
                                                  .arg(found.y())));
    QCOMPARE(fixture.window->minimumSize(), QSize(800, 800));
}

void TestMainWindow::actions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QString>("statusTip");
    QTest::newRow("load") << "&Load database"
                          << "Ctrl+O"
                          << "Open Data";
    QTest::newRow("clear") << "&Clear"
                           << "Ctrl+D"
                           << "Clear Data";
    QTest::newRow("exit") << "&Exit"
                          << "Ctrl+Q"
                          << "Quit";
    QTest::newRow("about") << "&About"
                           << "F1"
                           << "Some information on the software";
}

void TestMainWindow::actions()
{
    QFETCH(QString, text);
    const MainWindowFixture fixture;
    const QAction *found = action(fixture, text);
    QVERIFY(found != nullptr);
    QTEST(found->shortcut().toString(), "shortcut");
    QTEST(found->statusTip(), "statusTip");
    QVERIFY(!found->icon().isNull());
    QCOMPARE(found->parent(), fixture.window.data());
}

void TestMainWindow::menuHoldsAboutOnly()
{
    const MainWindowFixture fixture;
    const QList<QAction *> menus = fixture.window->menuBar()->actions();
    QCOMPARE(menus.size(), 1);
    QCOMPARE(menus.first()->text(), QStringLiteral("&Menu"));
    const QList<QAction *> entries = menus.first()->menu()->actions();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first()->text(), QStringLiteral("&About"));
}

void TestMainWindow::toolBarOrder()
{
    const MainWindowFixture fixture;
    const auto *bar = fixture.window->findChild<QToolBar *>();
    QCOMPARE(bar->windowTitle(), QStringLiteral("Main"));
    QStringList order;
    const QList<QAction *> entries = bar->actions();
    for (const QAction *entry : entries) {
        order.append(entry->isSeparator() ? QStringLiteral("|") : entry->text());
    }
    QCOMPARE(order, (QStringList{QStringLiteral("|"), QStringLiteral("&Exit"), QStringLiteral("|"),
                                 QStringLiteral("&Load database"), QStringLiteral("&Clear"), QStringLiteral("|"),
                                 QStringLiteral("&About")}));
}

void TestMainWindow::actionsMenuAndToolBarAreMadeOnRequest()
{
    const MainWindowFixture fixture;
    const QList<QAction *> former = fixture.window->actions();
    QCOMPARE(former.size(), 4);
    fixture.window->createActions();
    fixture.window->createMenus();
    fixture.window->createToolbars();
    QCOMPARE(fixture.window->actions().size(), 8);
    const QList<QToolBar *> bars = fixture.window->findChildren<QToolBar *>();
    QCOMPARE(bars.size(), 2);
    QCOMPARE(fixture.window->menuBar()->actions().size(), 2);
    QCOMPARE(bars.last()->actions().size(), bars.first()->actions().size());
    for (QAction *made : fixture.window->actions()) {
        QCOMPARE(bars.first()->actions().contains(made), former.contains(made));
        QCOMPARE(bars.last()->actions().contains(made), !former.contains(made));
    }
    QCOMPARE(fixture.window->menuBar()->actions().last()->menu()->actions(),
             (QList<QAction *>{fixture.window->actions().last()}));
}

void TestMainWindow::iconsAreInTheResources()
{
    const MainWindowFixture fixture;
    const char *const names[] = {"images/open", "images/new",   "images/quit",       "images/help",
                                 "images/save", "images/build", "images/clustering", "src/images/paragraph"};
    for (const char *name : names) {
        const QImage image(QStringLiteral(":/%1.png").arg(QLatin1String(name)));
        QVERIFY2(!image.isNull(), name);
        QVERIFY2(image.width() >= 24 && image.width() == image.height(), name);
    }
}

void TestMainWindow::aboutBox()
{
    const MainWindowFixture fixture;
    QString title;
    QString text;
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        title = dialog->windowTitle();
        text = qobject_cast<QMessageBox *>(dialog)->text();
        dialog->accept();
    });
    fixture.window->about();
    QVERIFY(answer.done());
    QCOMPARE(title, QStringLiteral("About Tavoline version 0.2.1 alpha"));
    const QString start = QStringLiteral("This applications was developed in Qt 5 and C++.<br><br>    Version : <br>"
                                         "Tavoline version 0.2.1 alpha<br><br>    Authors  :<br>    ");
    const QString end = QStringLiteral(
        "<br><br>    Disclaimer :<br>    This software is provided 'as is',    without any guarantee made as to its "
        "suitability or fitness for any particular    use. It may contain bugs, so use this tool at your own risk. "
        "Author    takes no responsibility for any damage that may unintentionally be caused    through its use.");
    QCOMPARE(text.left(start.size()), start);
    QCOMPARE(text.right(end.size()), end);
    QVERIFY(text.contains(QStringLiteral("<i>")));
}

void TestMainWindow::f1OpensAboutFromAnywhere_data()
{
    addFocusRows();
    QTest::newRow("viewer") << QStringLiteral("viewer");
}

void TestMainWindow::f1OpensAboutFromAnywhere()
{
    QFETCH(QString, focus);
    MainWindowFixture fixture;
    QWidget *focused = fixture.view();
    if (focus == QLatin1String("viewer")) {
        showViewer(fixture);
    } else {
        focused = focusIn(fixture, focus);
    }
    QString title;
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        title = dialog->windowTitle();
        dialog->accept();
    });
    QTest::keyClick(focused, Qt::Key_F1);
    QVERIFY(answer.done());
    QCOMPARE(title, QStringLiteral("About Tavoline version 0.2.1 alpha"));
}

void TestMainWindow::openAndClearShortcutsWorkFromAnywhere_data()
{
    addFocusRows();
}

void TestMainWindow::openAndClearShortcutsWorkFromAnywhere()
{
    QFETCH(QString, focus);
    const MainWindowFixture fixture;
    QWidget *focused = focusIn(fixture, focus);
    const QSignalSpy empty(fixture.widget()->getManager(), &TAVManager::signal_database_empty);

    QTest::keyClick(focused, Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(empty.count(), 1);

    const driver::DialogAnswer answer = driver::DialogAnswer::cancelling();
    QTest::keyClick(focused, Qt::Key_O, Qt::ControlModifier);
    QVERIFY(answer.done());
}

void TestMainWindow::shortcutsWorkWithoutTheToolBar()
{
    const MainWindowFixture fixture;
    fixture.window->findChild<QToolBar *>()->hide();
    const QSignalSpy empty(fixture.widget()->getManager(), &TAVManager::signal_database_empty);
    QTest::keyClick(focusIn(fixture, QStringLiteral("newListName")), Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(empty.count(), 1);
}

void TestMainWindow::viewerKeepsItsControlKeys()
{
    MainWindowFixture fixture;
    showViewer(fixture);
    const QSignalSpy empty(fixture.widget()->getManager(), &TAVManager::signal_database_empty);
    const driver::DialogAnswer answer = driver::DialogAnswer::cancelling();

    QTest::keyClick(fixture.view(), Qt::Key_D, Qt::ControlModifier);
    QTest::keyClick(fixture.view(), Qt::Key_O, Qt::ControlModifier);
    QCoreApplication::processEvents();
    QCOMPARE(empty.count(), 0);
    QVERIFY(!answer.done());
}

void TestMainWindow::browsingGivesTheViewerTheKeys_data()
{
    QTest::addColumn<bool>("viewerHasTheKeys"); // before the click
    QTest::addColumn<QString>("control");
    for (const char *control : {"=>>", "<<=", "zoom", "position"}) {
        QTest::addRow("%s, from the viewer", control) << true << QString::fromLatin1(control);
        QTest::addRow("%s, from elsewhere", control) << false << QString::fromLatin1(control);
    }
}

/// Ctrl+D after a click that steps through the list, zooms, or marks the name of the graph, is that of the viewer: the
/// database stays.
void TestMainWindow::browsingGivesTheViewerTheKeys()
{
    QFETCH(bool, viewerHasTheKeys);
    QFETCH(QString, control);
    MainWindowFixture fixture;
    showViewer(fixture);
    fixture.widget()->getManager()->addList(QStringLiteral("list"), {QStringLiteral("A_"), QStringLiteral("Bw")});
    if (viewerHasTheKeys) {
        QTest::mouseClick(fixture.view()->viewport(), Qt::LeftButton);
    } else {
        fixture.press(QStringLiteral("Visualization"));
        QVERIFY(!fixture.view()->hasFocus());
    }
    const QSignalSpy empty(fixture.widget()->getManager(), &TAVManager::signal_database_empty);
    const QSignalSpy moves(qApp, &QApplication::focusChanged);
    if (control == QLatin1String("zoom")) {
        auto *zoom = fixture.window->findChild<QSlider *>(control);
        QTest::mouseClick(zoom, Qt::LeftButton, Qt::NoModifier, zoom->rect().center());
    } else if (control == QLatin1String("position")) {
        fixture.widget()->slot_next_graph();
        auto *position = fixture.window->findChild<QLabel *>(control);
        QTest::mouseClick(position, Qt::LeftButton);
        QTest::mouseDClick(position, Qt::LeftButton);
        QVERIFY(position->hasSelectedText());
    } else {
        fixture.press(control);
        QVERIFY(!fixture.positionText().isEmpty());
    }
    QCOMPARE(QApplication::focusWidget(), fixture.view());
    QCOMPARE(moves.count(), viewerHasTheKeys ? 0 : 1);
    const int vertices = fixture.view()->getNbNodes();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(fixture.view()->getNbNodes(), 2 * vertices);
    QCOMPARE(empty.count(), 0);
}

/// With Tab the keyboard comes to the buttons and the slider, and stays there.
void TestMainWindow::browsingWithTheKeyboard()
{
    MainWindowFixture fixture;
    showViewer(fixture);
    fixture.widget()->getManager()->addList(QStringLiteral("list"), {QStringLiteral("A_"), QStringLiteral("Bw")});
    auto *zoom = fixture.window->findChild<QSlider *>(QStringLiteral("zoom"));
    QSet<QWidget *> wanted{zoom, driver::button(fixture.window, QStringLiteral("=>>")),
                           driver::button(fixture.window, QStringLiteral("<<="))};
    const int stops = fixture.window->findChildren<QWidget *>().size();
    for (int i = 0; i < stops && !wanted.isEmpty(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget *reached = QApplication::focusWidget();
        if (!wanted.remove(reached)) {
            continue;
        }
        if (reached == zoom) {
            QTest::keyClick(reached, Qt::Key_Right);
            QCOMPARE(zoom->value(), 301);
        } else {
            QTest::keyClick(reached, Qt::Key_Space);
            QVERIFY(!fixture.positionText().isEmpty());
        }
        QCOMPARE(QApplication::focusWidget(), reached);
    }
    QVERIFY(wanted.isEmpty());
}

void TestMainWindow::droppedDatabaseIsLoaded_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("name");
    for (const char *target : {"modePanel", "tool bar", "console", "newListName", "visualizationPanel", "viewer"}) {
        QTest::newRow(target) << QString::fromLatin1(target) << "small.tav";
    }
    QTest::newRow("capitals") << "modePanel"
                              << "SMALL.TAV";
    QTest::newRow("odd name") << "modePanel"
                              << "50% #1 \u00e9.tav";
}

void TestMainWindow::droppedDatabaseIsLoaded()
{
    QFETCH(QString, target);
    QFETCH(QString, name);
    MainWindowFixture fixture;
    showViewer(fixture);
    fixture.clearConsole();
    const QString file = fixture.write(name, "@\nA_\t0\nBw\t1\n");
    const QSignalSpy loaded(fixture.widget()->getManager(), &TAVManager::signal_database_loaded);
    // What a file manager moves, it deletes.
    QCOMPARE(drop(dropTarget(fixture, target), *draggedFiles({file})), Qt::CopyAction);
    QVERIFY(!fixture.panel("listsPanel")->isEnabled()); // as after the button
    QVERIFY(dataLoads(loaded));
    QCOMPARE(fixture.console(),
             words({"Loading data ... please wait.", "3 lines.", "Data loaded : 3 nodes and 2 links."}));
    QVERIFY(QFile::exists(file));
    QVERIFY(fixture.panel("newListName")->property("text").toString().isEmpty());
}

void TestMainWindow::otherDropsAreRefused_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::newRow("text") << QStringList();
    QTest::newRow("list") << words({"/tmp/list.g6"});
    QTest::newRow("no suffix") << words({"/tmp/tav"});
    QTest::newRow("two databases") << words({"/tmp/a.tav", "/tmp/b.tav"});
}

void TestMainWindow::otherDropsAreRefused()
{
    QFETCH(QStringList, files);
    const MainWindowFixture fixture;
    const auto data = draggedFiles(files);
    if (files.isEmpty()) {
        data->clear();
        data->setText(QStringLiteral("/tmp/a.tav"));
    }
    QCOMPARE(drop(fixture.panel("modePanel"), *data), Qt::IgnoreAction);
    data->clear();
    data->setUrls({QUrl(QStringLiteral("https://tavoline.example/a.tav"))});
    QCOMPARE(drop(fixture.panel("modePanel"), *data), Qt::IgnoreAction);
    QCOMPARE(drop(fixture.panel("modePanel"), *draggedFiles({example("connected-8.tav")}), Qt::MoveAction),
             Qt::IgnoreAction);
    QCOMPARE(fixture.console(), QStringList());
}

void TestMainWindow::droppedTextIsAName()
{
    const MainWindowFixture fixture;
    QMimeData data;
    data.setText(QStringLiteral("text.tav"));
    QVERIFY(drop(fixture.panel("newListName"), data) != Qt::IgnoreAction);
    QCOMPARE(fixture.panel("newListName")->property("text").toString(), QStringLiteral("text.tav"));
}

/// It empties the database, as the button does.
void TestMainWindow::droppedFileThatCannotBeRead()
{
    MainWindowFixture fixture;
    showViewer(fixture);
    fixture.clearConsole();
    const QSignalSpy empty(fixture.widget()->getManager(), &TAVManager::signal_database_empty);
    const QString missing = fixture.path(QStringLiteral("missing.tav"));
    drop(fixture.panel("modePanel"), *draggedFiles({missing}));
    QTRY_COMPARE_WITH_TIMEOUT(empty.count(), 1, patience);
    QCOMPARE(fixture.console(), QStringList{QStringLiteral("Unable to open file :") + missing});
    QVERIFY(!fixture.panel("listsPanel")->isEnabled());
}

/// It takes the place of the load, as the button does.
void TestMainWindow::dropDuringALoad()
{
    MainWindowFixture fixture;
    const QString small = fixture.write(QStringLiteral("small.tav"), "@\nA_\t0\n");
    const QSignalSpy loaded(fixture.widget()->getManager(), &TAVManager::signal_database_loaded);
    LoadGate gate(*fixture.widget()->getManager(), 2);
    drop(fixture.panel("modePanel"), *draggedFiles({example("connected-8.tav")}));
    QVERIFY(gate.waitForLoad());
    QCoreApplication::sendPostedEvents();
    fixture.clearConsole();
    drop(fixture.panel("modePanel"), *draggedFiles({small}));
    QVERIFY(dataLoads(loaded));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(fixture.console(),
             words({"Loading data ... please wait.", "2 lines.", "Data loaded : 2 nodes and 1 links."}));
}

void TestMainWindow::exitClosesAndDeletesTheWindow()
{
    const MainWindowFixture fixture;
    action(fixture, QStringLiteral("&Exit"))->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(fixture.window.isNull(), patience);
}

// The end of a session closes the dialog and then the window; the command goes on and opens another dialog.
void TestMainWindow::windowOutlivesTheDialogOfItsCommands()
{
    MainWindowFixture fixture;
    showViewer(fixture);
    bool windowWasThere = false;
    std::unique_ptr<driver::DialogAnswer> warning;
    const driver::DialogAnswer sessionEnd([&](QDialog *) {
        warning = std::make_unique<driver::DialogAnswer>([&](QDialog *box) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            windowWasThere = !fixture.window.isNull();
            box->reject();
        });
        QApplication::closeAllWindows();
    });
    fixture.view()->slot_save();
    QVERIFY(warning->done());
    QVERIFY(windowWasThere);
    QTRY_VERIFY_WITH_TIMEOUT(fixture.window.isNull(), patience);
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
