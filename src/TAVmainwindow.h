#ifndef TAVOLINE_TAVMAINWINDOW_H
#define TAVOLINE_TAVMAINWINDOW_H

#include <QMainWindow>

class QAction;
class QMenu;
class QToolBar;
class TAVMainWidget;

/// The main window: four actions, a menu, a tool bar and the About box around the central widget. It deletes itself
/// when it is closed, once its dialogs are gone. A database file that is dropped onto it is loaded. It comes back where
/// and as large as it was when it was closed last, as far as the screen allows, with the tool bar where that was.
class TAVMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    TAVMainWindow();
    ~TAVMainWindow() override;

    /// Loads the database of a file that was named on the command line or dropped.
    void loadDatabase(const QString &file);
    /// Lets the file dialogs start in @p directory, without a change of the settings.
    void setWorkDir(const QString &directory);

    // The steps of the constructor, in this order; nothing else calls them.

    /// Creates the four actions and connects them to the central widget, the application and the window.
    void createActions();
    /// Makes the actions those of the window, and adds the menu, which holds the About box, to the menu bar.
    void createMenus();
    /// Adds the tool bar with all actions.
    void createToolbars();

public slots:
    /// Opens the About box.
    void about();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    TAVMainWidget *mainWidget;
    QAction *loadAct = nullptr;
    QAction *clearAct = nullptr;
    QAction *exitAct = nullptr;
    QAction *aboutAct = nullptr;
    QMenu *menu = nullptr;
    QToolBar *toolbar = nullptr;
};

#endif
