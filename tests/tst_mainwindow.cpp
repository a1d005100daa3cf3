// The main window: actions, menu, tool bar, About box and shortcuts.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "support/mainwindowfixture.h"
#include "support/patience.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QSignalSpy>
#include <QSlider>
#include <QTextEdit>
#include <QToolBar>
#include <QtTest>

#include <memory>

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void titleAndSmallestSize();
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
} // namespace

void TestMainWindow::titleAndSmallestSize()
{
    const MainWindowFixture fixture;
    QCOMPARE(fixture.window->windowTitle(), QStringLiteral("Tavoline version 0.2.1 alpha"));
    QCOMPARE(fixture.window->minimumSize(), QSize(800, 800));
    fixture.window->resize(300, 300);
    QTRY_COMPARE_WITH_TIMEOUT(fixture.window->size().boundedTo(QSize(800, 800)), QSize(800, 800), patience);
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
    for (const char *control : {"=>>", "<<=", "zoom"}) {
        QTest::addRow("%s, from the viewer", control) << true << QString::fromLatin1(control);
        QTest::addRow("%s, from elsewhere", control) << false << QString::fromLatin1(control);
    }
}

/// Ctrl+D after a click that steps through the list, or zooms, is that of the viewer: the database stays.
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
