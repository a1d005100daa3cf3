#include "TAVmainwindow.h"

#include "TAVmainwidget.h"
#include "applicationtitle.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QEvent>
#include <QIcon>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QToolBar>
#include <QUrl>

namespace
{
constexpr QSize smallestSize(800, 800);

QString geometryKey()
{
    return QStringLiteral("geometry");
}

QString stateKey()
{
    return QStringLiteral("state");
}

/// The text of the About box: HTML, in which runs of blanks do not show.
QString aboutText()
{
    return QStringLiteral("This applications was developed in Qt 5 and C++.<br><br>    Version : <br>") +
           QLatin1String(applicationTitle) +
           QStringLiteral("<br><br>    Authors  :<br>    The Tavoline developers<br><i>tavoline@tavoline.example</i>"
                          "<br><br>    Disclaimer :<br>    This software is provided 'as is',"
                          "    without any guarantee made as to its suitability or fitness for any particular"
                          "    use. It may contain bugs, so use this tool at your own risk. Author"
                          "    takes no responsibility for any damage that may unintentionally be caused"
                          "    through its use.");
}

/// Gives an action a tool tip, in which %1 is its shortcut.
void explain(QAction *action, const QString &tip)
{
    action->setToolTip(tip.arg(action->shortcut().toString(QKeySequence::NativeText)));
}

/// The one database file that is dragged; empty when it is anything else.
QString draggedDatabase(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    const QString file = urls.size() == 1 ? urls.first().toLocalFile() : QString();
    return file.endsWith(QLatin1String(".tav"), Qt::CaseInsensitive) ? file : QString();
}
} // namespace

TAVMainWindow::TAVMainWindow() : mainWidget(new TAVMainWidget(this))
{
    // The linker takes an object out of a static library only when something refers to it: this refers to the icons.
    Q_INIT_RESOURCE(resources);
    // Where a pixel of the window is several of the screen, QIcon makes pixmaps for those of the screen only when it is
    // told to.
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    setAttribute(Qt::WA_DeleteOnClose);
    createActions();
    createMenus();
    createToolbars();
    setCentralWidget(mainWidget);
    setWindowTitle(tr(applicationTitle));
    setMinimumSize(smallestSize);
    setAcceptDrops(true);
    if (restoreGeometry(QSettings().value(geometryKey()).toByteArray()) && !isMaximized()) {
        // Qt puts the window on a screen; one that has become smaller may still be too small for it.
        setGeometry(geometry().intersected(screen()->availableVirtualGeometry()));
    }
    restoreState(QSettings().value(stateKey()).toByteArray());
}

TAVMainWindow::~TAVMainWindow()
{
    delete loadAct;
    delete clearAct;
    delete exitAct;
    delete aboutAct;
    delete toolbar;
}

void TAVMainWindow::loadDatabase(const QString &file)
{
    mainWidget->loadDatabase(file);
}

void TAVMainWindow::setWorkDir(const QString &directory)
{
    mainWidget->setWorkDir(directory);
}

void TAVMainWindow::about()
{
    QMessageBox::about(this, tr("About ") + QLatin1String(applicationTitle), aboutText());
}

bool TAVMainWindow::event(QEvent *event)
{
    // With a large font a panel can need more room than the smallest size has.
    if (event->type() == QEvent::LayoutRequest) {
        setMinimumSize(layout()->totalMinimumSize().expandedTo(smallestSize));
    }
    // The end of a session closes the window also while a dialog is up. The command that opened the dialog has it on
    // its stack and is still running: the window is deleted when the dialog is gone.
    const QDialog *dialog = event->type() == QEvent::DeferredDelete ? findChild<QDialog *>() : nullptr;
    if (dialog != nullptr) {
        connect(dialog, &QObject::destroyed, this, &QObject::deleteLater);
        return true;
    }
    return QMainWindow::event(event);
}

void TAVMainWindow::closeEvent(QCloseEvent *event)
{
    QSettings().setValue(geometryKey(), saveGeometry());
    QSettings().setValue(stateKey(), saveState());
    QMainWindow::closeEvent(event);
}

// Only a copy is accepted: a file manager would delete the file that it has moved.
void TAVMainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->possibleActions().testFlag(Qt::CopyAction) && !draggedDatabase(event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void TAVMainWindow::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    loadDatabase(draggedDatabase(event->mimeData()));
}

void TAVMainWindow::createActions()
{
    loadAct = new QAction(QIcon(QStringLiteral(":/images/open.png")), tr("&Load database"), this);
    loadAct->setShortcut(tr("Ctrl+O"));
    loadAct->setStatusTip(tr("Open Data"));
    explain(loadAct, tr("Loads a database file in place of the database that is loaded (%1)."));
    connect(loadAct, &QAction::triggered, mainWidget, &TAVMainWidget::slot_open);

    clearAct = new QAction(QIcon(QStringLiteral(":/images/new.png")), tr("&Clear"), this);
    clearAct->setShortcut(tr("Ctrl+D"));
    clearAct->setStatusTip(tr("Clear Data"));
    explain(clearAct, tr("Empties the database and keeps the lists (%1)."));
    connect(clearAct, &QAction::triggered, mainWidget, &TAVMainWidget::slot_clear);

    exitAct = new QAction(QIcon(QStringLiteral(":/images/quit.png")), tr("&Exit"), this);
    exitAct->setShortcut(tr("Ctrl+Q"));
    exitAct->setStatusTip(tr("Quit"));
    explain(exitAct, tr("Ends the program; lists and invariants that are not saved are lost (%1)."));
    connect(exitAct, &QAction::triggered, qApp, &QApplication::closeAllWindows);

    aboutAct = new QAction(QIcon(QStringLiteral(":/images/help.png")), tr("&About"), this);
    aboutAct->setShortcut(tr("F1"));
    aboutAct->setStatusTip(tr("Some information on the software"));
    explain(aboutAct, tr("Tells the version and the authors of the program (%1)."));
    connect(aboutAct, &QAction::triggered, this, &TAVMainWindow::about);
}

void TAVMainWindow::createMenus()
{
    // Qt ignores the shortcut of an action whose widgets are all hidden, and the user can hide the tool bar: the
    // actions are the window's, too.
    addActions({loadAct, clearAct, exitAct, aboutAct});
    menuBar()->setAccessibleName(tr("Menu bar"));
    menu = menuBar()->addMenu(tr("&Menu"));
    menu->addAction(aboutAct);
}

void TAVMainWindow::createToolbars()
{
    toolbar = addToolBar(tr("Main"));
    toolbar->setObjectName(QStringLiteral("main")); // by which its place is found in the settings
    toolbar->setAccessibleName(tr("Main"));
    toolbar->addSeparator();
    toolbar->addAction(exitAct);
    toolbar->addSeparator();
    toolbar->addAction(loadAct);
    toolbar->addAction(clearAct);
    toolbar->addSeparator();
    toolbar->addAction(aboutAct);
}
