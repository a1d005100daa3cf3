// The program's window with settings of its own, and how a user works with it.
#ifndef TAVOLINE_TESTS_MAINWINDOWFIXTURE_H
#define TAVOLINE_TESTS_MAINWINDOWFIXTURE_H

#include "TAVmainwindow.h"
#include "testfiles.h"

#include <QPointer>
#include <QStringList>

#include <functional>

class Graph;
class QComboBox;
class QFileDialog;
class QProgressBar;
class TAVMainWidget;

/// The program's window, shown and active, with settings and a work directory of its own.
class MainWindowFixture
{
public:
    /// @p savedWorkDir is the work directory in the settings, as if stored by an earlier run; by default the fixture's
    /// own directory.
    explicit MainWindowFixture(const QString &savedWorkDir = QString());
    /// Closes the window if it is still there.
    ~MainWindowFixture();
    MainWindowFixture(const MainWindowFixture &) = delete;
    MainWindowFixture &operator=(const MainWindowFixture &) = delete;

    /// Presses a button and chooses @p file in the file dialog that comes up; @p then, if any, is called after the
    /// choice and before the program learns of it.
    void pressAndChoose(const QString &button, const QString &file, const std::function<void()> &then = {});
    /// Presses a button and cancels the dialog that comes up.
    void pressAndCancel(const QString &button);
    /// Presses a button that opens no dialog.
    void press(const QString &button);
    /// Loads a database with the button of the mode panel, waits for the outcome and returns whether it was loaded.
    bool load(const QString &file, const std::function<void()> &then = {});
    /// Builds a list from a file with the button of the lists panel.
    void addList(const QString &name, const QString &file);
    /// Types the name of the next list.
    void typeListName(const QString &name);

    /// The lines of the console.
    QStringList console() const;
    void clearConsole();
    QWidget *panel(const char *name) const;
    QComboBox *combo(const char *name) const;
    QProgressBar *progressBar() const;
    QString positionText() const;
    TAVMainWidget *widget() const;
    Graph *view() const;
    /// A path in the fixture's own, empty folder.
    QString path(const QString &name) const { return folder.path(name); }
    /// Writes a file in that folder and returns its path.
    QString write(const QString &name, const QByteArray &bytes) const { return folder.write(name, bytes); }

    QPointer<TAVMainWindow> window;

private:
    TestFolder folder;
};

#endif
