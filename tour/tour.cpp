/// The guided tour: drives the real window through the main job, with real clicks and answered dialogs, and saves a
/// picture of the window after each step.
///
/// Usage: tavoline_tour DIRECTORY, started in the directory with the sample files.

#include "TAVmainwindow.h"
#include "applicationtitle.h"
#include "support/windowdriver.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QtTest>

#include <iostream>

namespace
{
class Tour
{
public:
    Tour(TAVMainWindow &mainWindow, const QDir &pictureDirectory) : window(mainWindow), pictures(pictureDirectory) {}

    void run()
    {
        save("start");
        loadDatabase();
        buildListFromFile();
        browse();
    }

private:
    void loadDatabase()
    {
        openFile(QStringLiteral("Load database"), QStringLiteral("connected-8.tav"), "choose-database");
        expect(driver::waitUntil([this] { return consoleText().contains(QStringLiteral("Data loaded : ")); }),
               "the database loads");
        save("database-loaded");
    }

    void buildListFromFile()
    {
        auto *name = window.findChild<QLineEdit *>(QStringLiteral("newListName"));
        QTest::keyClicks(name, QStringLiteral("regular"));
        openFile(QStringLiteral("From file."), QStringLiteral("regular-8.g6"), "choose-list");
        expect(consoleText().contains(QStringLiteral("List added : regular [ 17 element(s)]")), "the list is added");
        save("list-from-file");
    }

    void browse()
    {
        driver::click(&window, QStringLiteral("Visualization"));
        save("visualization");
        auto *position = window.findChild<QLabel *>(QStringLiteral("position"));
        driver::click(&window, QStringLiteral("=>>"));
        expect(position->text().startsWith(QStringLiteral("2/17 ")), "the first step shows the second graph");
        save("second-graph");
        driver::click(&window, QStringLiteral("=>>"));
        save("third-graph");
        for (int presses = 0; presses < 3; ++presses) {
            driver::click(&window, QStringLiteral("<<="));
        }
        expect(position->text().startsWith(QStringLiteral("17/17 ")), "stepping back wraps to the last graph");
        save("last-graph");
    }

    /// Presses a button and chooses a file in the dialog that it opens, of which a picture is saved.
    void openFile(const QString &button, const QString &file, const char *picture)
    {
        driver::DialogAnswer answer([&](QDialog *dialog) {
            savePicture(*dialog, picture);
            driver::chooseFile(qobject_cast<QFileDialog *>(dialog), QDir::current().filePath(file));
        });
        driver::click(&window, button);
        expect(answer.done(), "a file dialog came up");
    }

    QString consoleText() const { return window.findChild<QTextEdit *>(QStringLiteral("console"))->toPlainText(); }

    void save(const char *step) { savePicture(window, step); }

    void savePicture(QWidget &shown, const char *step)
    {
        QTest::qWait(100); // let layouts settle and everything repaint
        ++count;
        const QString file = QStringLiteral("%1-%2.png").arg(count, 2, 10, QLatin1Char('0')).arg(QLatin1String(step));
        expect(shown.grab().save(pictures.filePath(file)), "the picture is written");
        std::cout << qPrintable(pictures.filePath(file)) << std::endl;
    }

    static void expect(bool condition, const char *what)
    {
        if (!condition) {
            qFatal("the tour failed: %s", what);
        }
    }

    TAVMainWindow &window;
    QDir pictures;
    int count = 0;
};
} // namespace

int main(int argc, char *argv[])
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tavoline"));
    QApplication::setApplicationName(QLatin1String(applicationTitle));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments.at(1))) {
        std::cerr << "usage: tavoline_tour DIRECTORY" << std::endl;
        return 2;
    }
    // The user's own work directory neither changes the tour nor is changed by it.
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());

    auto *window = new TAVMainWindow; // deletes itself when it is closed
    window->show();
    if (!QTest::qWaitForWindowExposed(window)) {
        std::cerr << "the window is not shown" << std::endl;
        return 1;
    }
    Tour(*window, QDir(QDir(arguments.at(1)).absolutePath())).run();
    window->close();
    return 0;
}
