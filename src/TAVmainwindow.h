#ifndef TAVOLINE_TAVMAINWINDOW_H
#define TAVOLINE_TAVMAINWINDOW_H

#include <QMainWindow>

class QAction;
class QMenu;
class QToolBar;
class TAVMainWidget;

/// The main window: four actions, a menu, a tool bar and the About box around the central widget. It deletes itself
/// when it is closed, once its dialogs are gone.
class TAVMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    TAVMainWindow();
    ~TAVMainWindow() override;

public slots:
    /// Opens the About box.
    void about();

protected:
    bool event(QEvent *event) override;

private:
    void createActions();
    void createMenus();
    void createToolbars();

    TAVMainWidget *mainWidget;
    QAction *loadAct = nullptr;
    QAction *clearAct = nullptr;
    QAction *exitAct = nullptr;
    QAction *aboutAct = nullptr;
    QMenu *menu = nullptr;
    QToolBar *toolbar = nullptr;
};

#endif
