/// The guided tour: drives the real window through the main job, with real clicks and answered dialogs, and saves a
/// picture of the window after each step.
///
/// Usage: tavoline_tour DIRECTORY, started in the directory with the sample files.

#include "TAVmainwindow.h"
#include "applicationtitle.h"
#include "graph.h"
#include "node.h"
#include "nodedisplay.h"
#include "support/darktheme.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QToolBar>
#include <QToolTip>
#include <QUrl>
#include <QWindow>
#include <QtTest>

#include <algorithm>
#include <iostream>
#include <memory>

namespace
{
class Tour
{
public:
    Tour(TAVMainWindow &mainWindow, const QDir &pictureDirectory) : window(mainWindow), pictures(pictureDirectory) {}

    void run()
    {
        startWithFile();
        save("start");
        lookAround();
        loadDatabase();
        buildListFromFile();
        browse();
        compareInvariants();
        combineLists();
        browseTheResult();
        editTheGraph();
        saveAndPrintTheGraph();
        findCounterexample();
        drawTheCounterexample();
        replaceAGraphFile();
        bringGraphsIn();
        compareLayouts();
        const QPalette usualColours = QApplication::palette();
        QApplication::setPalette(darkTheme());
        showAllModes(QStringLiteral("dark"));
        lookAtVertex(*window.findChild<Graph *>(), "dark-node-information");
        QApplication::setPalette(usualColours);
        QFont large = QApplication::font();
        large.setPointSizeF(2 * large.pointSizeF());
        QApplication::setFont(large);
        showAllModes(QStringLiteral("large"));
    }

private:
    void showAllModes(const QString &look)
    {
        for (const char *mode : {"Lists manipulation", "Invariants manipulation", "Visualization"}) {
            driver::click(&window, QLatin1String(mode));
            save(qPrintable(look + QLatin1Char('-') +
                            QString::fromLatin1(mode).section(QLatin1Char(' '), 0, 0).toLower()));
        }
    }

    /// Another window, as it is after a start with a file: one that is there, and one that is not. Then a database is
    /// dropped onto it.
    void startWithFile()
    {
        const QPointer<TAVMainWindow> other = new TAVMainWindow;
        other->show();
        expect(QTest::qWaitForWindowExposed(other), "a second window is shown");
        const auto *console = other->findChild<QTextEdit *>(QStringLiteral("console"));
        const auto hasLoaded = [console] { return console->toPlainText().contains(QStringLiteral("Data loaded : ")); };
        other->loadDatabase(QStringLiteral("connected-8.tav"));
        expect(driver::waitUntil(hasLoaded), "the database of the command line loads");
        savePicture(*other, "start-with-file");
        other->findChild<QTextEdit *>(QStringLiteral("console"))->clear();
        other->loadDatabase(QStringLiteral("missing.tav"));
        expect(console->toPlainText() == QLatin1String("Unable to open file :missing.tav"),
               "a line tells what is wrong");
        savePicture(*other, "unreadable-file");
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QDir::current().filePath(QStringLiteral("connected-8.tav")))});
        drop(*other->findChild<QWidget *>(QStringLiteral("modePanel")), data);
        expect(driver::waitUntil(hasLoaded), "the dropped database loads");
        savePicture(*other, "dropped-database");
        other->close();
        expect(driver::waitUntil([&] { return other.isNull(); }), "the second window is gone");
    }

    static void drop(QWidget &target, const QMimeData &data)
    {
        const QPoint middle = target.rect().center();
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&target, &enter);
        expect(enter.isAccepted(), "the drag is welcome");
        QDropEvent event(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&target, &event);
    }

    void lookAround()
    {
        savePicture(*window.findChild<QToolBar *>(), "tool-bar");
        savePicture(*panel("modePanel"), "mode-panel");
        const driver::DialogAnswer answer([this](QDialog *dialog) {
            savePicture(*dialog, "about");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        driver::click(&window, QStringLiteral("About"));
        expect(answer.done(), "the About box came up");
    }

    void loadDatabase()
    {
        openFile(QStringLiteral("Load database"), QStringLiteral("connected-8.tav"), "choose-database");
        expect(driver::waitUntil([this] { return consoleText().contains(QStringLiteral("Data loaded : ")); }),
               "the database loads");
        save("database-loaded");
    }

    void buildListFromFile()
    {
        nameList(QStringLiteral("regular"));
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
        savePicture(*panel("visualizationPanel"), "viewer-panel");
        driver::click(&window, QStringLiteral("=>>"));
        save("third-graph");
        for (int presses = 0; presses < 3; ++presses) {
            driver::click(&window, QStringLiteral("<<="));
        }
        expect(position->text().startsWith(QStringLiteral("17/17 ")), "stepping back wraps to the last graph");
        save("last-graph");
    }

    /// Finds the graphs without a graph below them whose average distance is smaller: the complete graphs.
    void compareInvariants()
    {
        driver::click(&window, QStringLiteral("Invariants manipulation"));
        openFile(QStringLiteral("Load I1"), QStringLiteral("connected-8.averagedistance.txt"), "choose-invariant");
        driver::click(&window, QStringLiteral("I2 = Min sub I1"));
        nameList(QStringLiteral("nowhere-smaller"));
        driver::click(&window, QStringLiteral("List I1 <= I2"));
        save("i1-against-derived-i2");
        nameList(QStringLiteral("somewhere-no-larger"));
        driver::click(&window, QStringLiteral("List I1 >= I2"));
        driver::click(&window, QStringLiteral("I2 <- I1"));
        nameList(QStringLiteral("complete"));
        driver::click(&window, QStringLiteral("List I1 >= I2 (all subs)"));
        expect(consoleText().contains(QStringLiteral("List added : complete [ 6 element(s)]")),
               "six graphs have no graph below them with a smaller average distance");
        save("comparison-list");
        savePicture(*panel("invariantsPanel"), "invariants-panel");
        savePicture(*panel("comparisonPanel"), "comparison-panel");
        showTip(QStringLiteral("List I1 <= I2 (all subs)"), "tool-tip");
    }

    /// The window with the tool tip of a button, as the screen shows them.
    void showTip(const QString &text, const char *picture)
    {
        auto *button = driver::button(&window, text);
        const QPoint middle = button->rect().center();
        QHelpEvent rest(QEvent::ToolTip, middle, button->mapToGlobal(middle));
        QApplication::sendEvent(button, &rest);
        expect(QToolTip::isVisible(), "the tool tip is shown");
        QTest::qWait(settlingTime);
        const QRect place = window.geometry();
        write(window.screen()->grabWindow(0, place.x(), place.y(), place.width(), place.height()), picture);
        QToolTip::hideText();
    }

    void combineLists()
    {
        driver::click(&window, QStringLiteral("Lists manipulation"));
        nameList(QStringLiteral("both"));
        choose("unionFirst", "regular");
        choose("unionSecond", "complete");
        driver::click(&window, QStringLiteral("Union of"));
        expect(consoleText().contains(QStringLiteral("List added : both [ 22 element(s)]")),
               "one of the complete graphs is one of the regular graphs on eight vertices");
        save("union");
        savePicture(*panel("listsPanel"), "lists-panel");
        choose("saveChoice", "both");
        const QString file = results.filePath(QStringLiteral("both.g6"));
        chooseFile(QStringLiteral("Save GraphList :"), file, "save-list");
        expect(QFile::exists(file), "the list is saved");
    }

    void browseTheResult()
    {
        driver::click(&window, QStringLiteral("Visualization"));
        choose("browseChoice", "both");
        driver::click(&window, QStringLiteral("=>>"));
        expect(window.findChild<QLabel *>(QStringLiteral("position"))->text().contains(QStringLiteral("/22 ")),
               "the union is browsed");
        save("browse-union");
    }

    void editTheGraph()
    {
        auto *view = window.findChild<Graph *>();
        view->setFocus();
        for (const int vertex : {0, 1}) {
            QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                              view->mapFromScene(view->node(vertex)->position()));
        }
        QTest::mouseMove(view->viewport(), view->mapFromScene(QPointF(190, 90)));
        QTest::qWait(50); // the move must arrive first, as the new vertex appears under the mouse
        QTest::keyClick(view, Qt::Key_K);
        expect(view->getNbNodes() == 9 && view->degree(8) == 2, "K joins a new vertex to the two that are selected");
        save("clique-vertex");
        QTest::keyClick(view, Qt::Key_D, Qt::ControlModifier);
        expect(view->getNbNodes() == 12, "the selection is duplicated");
        save("duplicate");
        const QString before = view->g6currentGraphData();
        const bool joined = view->edge(9, 11);
        QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
        expect(view->edge(9, 11) != joined, "the selection is complemented");
        save("complement");
        QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
        expect(view->g6currentGraphData() == before, "undo takes the complement back");
        save("undo");
        lookAtVertex(*view, "node-information");
        doubleClickSlowly(*view, QPointF(-150, -120));
        expect(view->getNbNodes() == 13, "a slow double-click adds a vertex");
        expect(view->node(9)->isSelected(), "it keeps the selection");
        save("slow-double-click");
        QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
    }

    /// With the events of the screen, so that Qt finds out by itself that it is one.
    void doubleClickSlowly(Graph &view, QPointF scenePoint)
    {
        constexpr int pace = 150; // milliseconds
        QWindow *screenWindow = window.windowHandle();
        const QPoint place = view.viewport()->mapTo(&window, view.mapFromScene(scenePoint));
        QTest::mouseMove(screenWindow, place);
        QTest::mousePress(screenWindow, Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseRelease(screenWindow, Qt::LeftButton, Qt::NoModifier, place, pace);
        QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval; // that QTest adds against double-clicks
        QTest::mousePress(screenWindow, Qt::LeftButton, Qt::NoModifier, place, pace);
        QTest::mouseRelease(screenWindow, Qt::LeftButton, Qt::NoModifier, place, pace);
    }

    void lookAtVertex(Graph &view, const char *picture)
    {
        const QPoint place = view.mapFromScene(view.node(3)->position());
        QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
        const QWidgetList shown = QApplication::topLevelWidgets();
        const auto information = std::find_if(shown.begin(), shown.end(), [](const QWidget *widget) {
            return widget->isVisible() && qobject_cast<const NodeDisplay *>(widget) != nullptr;
        });
        expect(information != shown.end(), "a double-click on a vertex shows what is known about it");
        savePicture(**information, picture);
        driver::click(*information, QStringLiteral("Done"));
        QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }

    void saveAndPrintTheGraph()
    {
        auto *view = window.findChild<Graph *>();
        emit view->customContextMenuRequested(view->viewport()->rect().center());
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        expect(menu != nullptr, "the context menu opens");
        savePicture(*menu, "context-menu");
        const QString graphFile = results.filePath(QStringLiteral("edited.golm3"));
        const driver::DialogAnswer saving = driver::DialogAnswer::withFile(graphFile);
        const QList<QAction *> entries = menu->actions();
        for (QAction *entry : entries) {
            if (entry->text().remove(QLatin1Char('&')) == QLatin1String("Save...")) {
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(entry).center());
                break;
            }
        }
        expect(saving.done() && QFile::exists(graphFile), "the graph is saved");

        const QString page = results.filePath(QStringLiteral("edited.pdf"));
        const driver::DialogAnswer printing = driver::DialogAnswer::withFile(page);
        QTest::keyClick(view, Qt::Key_P, Qt::ControlModifier);
        expect(printing.done() && QFile::exists(page), "the graph is printed");
        save("printed");
    }

    /// Finds the graphs whose average distance grows whenever a vertex is deleted and the rest is connected. One might
    /// think that only cycles are of this kind; the third graph is not one.
    void findCounterexample()
    {
        driver::click(&window, QStringLiteral("Lists manipulation"));
        nameList(QStringLiteral("always-larger"));
        choose("exceptFirst", "nowhere-smaller");
        choose("exceptSecond", "somewhere-no-larger");
        driver::click(&window, QStringLiteral("GraphList"));
        expect(consoleText().contains(QStringLiteral("List added : always-larger [ 28 element(s)]")),
               "the difference of two lists is added");
        save("difference");
        driver::click(&window, QStringLiteral("Visualization"));
        choose("browseChoice", "always-larger");
        const auto *position = window.findChild<QLabel *>(QStringLiteral("position"));
        const QString counterexample = QStringLiteral("3/28 EUZO");
        for (int presses = 0; presses < 28 && position->text() != counterexample; ++presses) {
            driver::click(&window, QStringLiteral("<<="));
        }
        expect(position->text() == counterexample, "the third graph is the first counterexample");
        save("counterexample");
    }

    /// Draws the counterexample so that its structure shows, and writes a picture of it.
    void drawTheCounterexample()
    {
        auto *view = window.findChild<Graph *>();
        view->setFocus();
        QTest::keyClick(view, Qt::Key_6);
        expect(view->node(0)->position() != QPointF(100, 0), "the springs move the vertices from the circle");
        save("springs");
        view->slot_unselect_all();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          view->mapFromScene(view->node(0)->position()));
        QTest::keyClick(view, Qt::Key_9);
        QTest::keyClick(view, Qt::Key_4);
        expect(view->node(0)->getLabel() == QLatin1String("0"), "the distances from the selected vertex are shown");
        save("levels-and-distances");
        QTest::keyClick(view, Qt::Key_Insert, Qt::ControlModifier);
        expect(QApplication::clipboard()->text() == view->g6currentGraphData(), "the graph is in the clipboard");
        const QString picture = results.filePath(QStringLiteral("counterexample.tex"));
        const driver::DialogAnswer writing = driver::DialogAnswer::withFile(picture);
        QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
        expect(writing.done() && QFile::exists(picture), "the picture is written");
        QTest::keyClick(view, Qt::Key_Home);
        const auto *position = window.findChild<QLabel *>(QStringLiteral("position"));
        expect(position->text().startsWith(QLatin1String("1/28 ")), "Home shows the first graph of the list");
        expect(view->node(0)->getLabel().isEmpty(), "the distances were those of another graph");
        save("layout-in-force");
    }

    /// Saves under a name without suffix, which gets one: that file is there already.
    void replaceAGraphFile()
    {
        auto *view = window.findChild<Graph *>();
        std::unique_ptr<driver::DialogAnswer> toTheQuestion;
        const driver::DialogAnswer answer([&](QDialog *dialog) {
            toTheQuestion = std::make_unique<driver::DialogAnswer>([&](QDialog *question) {
                savePicture(*question, "replace-question");
                driver::click(question, QStringLiteral("Yes"));
            });
            driver::chooseFile(qobject_cast<QFileDialog *>(dialog), results.filePath(QStringLiteral("edited")));
        });
        view->slot_save();
        expect(answer.done() && toTheQuestion->done(), "the user is asked before a file is replaced");
    }

    /// Edge lists and a dropped graph.
    void bringGraphsIn()
    {
        auto *view = window.findChild<Graph *>();
        std::unique_ptr<driver::DialogAnswer> toTheMessage;
        const driver::DialogAnswer blanks([&](QDialog *dialog) {
            toTheMessage = std::make_unique<driver::DialogAnswer>([&](QDialog *message) {
                savePicture(*message, "edge-list-message");
                QTest::keyClick(message, Qt::Key_Escape);
            });
            driver::chooseFile(qobject_cast<QFileDialog *>(dialog), written("blanks.edgelist", "a b\nb c\nc a\n"));
        });
        view->slot_import_graph();
        expect(blanks.done() && toTheMessage->done(), "a message tells what an edge list must hold");

        const driver::DialogAnswer tabs = driver::DialogAnswer::withFile(
            written("prism.edgelist", "# a prism\na\tb\nb\tc\nc\ta\nd\te\ne\tf\nf\td\na\td\nb\te\nc\tf\n"));
        view->slot_import_graph();
        expect(tabs.done() && view->getNbEdges() == 9, "the edge list is imported");
        save("import-on-circle");

        QMimeData petersen;
        petersen.setText(QStringLiteral("IheA@GUAo"));
        drop(*view->viewport(), petersen);
        expect(view->getNbEdges() == 15, "the dropped graph is shown");
        save("dropped-graph");
    }

    /// The path of a new file among the results.
    QString written(const char *name, const QByteArray &text) const
    {
        QFile file(results.filePath(QLatin1String(name)));
        expect(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "the file is written");
        return file.fileName();
    }

    /// Two layouts of one graph, which is not of the list.
    void compareLayouts()
    {
        auto *view = window.findChild<Graph *>();
        view->slot_unselect_all();
        const QString cube = QStringLiteral("Gr`HOk");
        QApplication::clipboard()->setText(cube);
        QTest::keyClick(view, Qt::Key_Insert);
        expect(view->g6currentGraphData() == cube, "the cube is pasted");
        QTest::keyClick(view, Qt::Key_6);
        savePicture(*view, "spring-layout");
        const QPointF place = view->node(0)->position();
        QTest::keyClick(view, Qt::Key_8);
        expect(view->node(0)->position() != place, "the cube is planar");
        savePicture(*view, "planar-layout");
    }

    void nameList(const QString &name)
    {
        auto *edit = window.findChild<QLineEdit *>(QStringLiteral("newListName"));
        edit->clear();
        QTest::keyClicks(edit, name);
    }

    void choose(const char *chooser, const char *list)
    {
        window.findChild<QComboBox *>(QLatin1String(chooser))->setCurrentText(QLatin1String(list));
    }

    /// Chooses one of the sample files.
    void openFile(const QString &button, const QString &file, const char *picture)
    {
        chooseFile(button, QDir::current().filePath(file), picture);
    }

    /// Presses a button and chooses a file in the dialog that it opens, of which a picture is saved.
    void chooseFile(const QString &button, const QString &path, const char *picture)
    {
        const driver::DialogAnswer answer([&](QDialog *dialog) {
            savePicture(*dialog, picture);
            driver::chooseFile(qobject_cast<QFileDialog *>(dialog), path);
        });
        driver::click(&window, button);
        expect(answer.done(), "a file dialog came up");
    }

    QWidget *panel(const char *name) const { return window.findChild<QWidget *>(QLatin1String(name)); }

    QString consoleText() const { return window.findChild<QTextEdit *>(QStringLiteral("console"))->toPlainText(); }

    void save(const char *step) { savePicture(window, step); }

    void savePicture(QWidget &shown, const char *step)
    {
        QTest::qWait(settlingTime);
        write(shown.grab(), step);
    }

    void write(const QPixmap &picture, const char *step)
    {
        ++count;
        const QString file = QStringLiteral("%1-%2.png").arg(count, 2, 10, QLatin1Char('0')).arg(QLatin1String(step));
        expect(picture.save(pictures.filePath(file)), "the picture is written");
        std::cout << qPrintable(pictures.filePath(file)) << std::endl;
    }

    static void expect(bool condition, const char *what)
    {
        if (!condition) {
            qFatal("the tour failed: %s", what);
        }
    }

    /// Milliseconds until layouts have settled and all widgets are painted.
    static constexpr int settlingTime = 100;

    TAVMainWindow &window;
    QDir pictures;
    QTemporaryDir scratch;
    QDir results{scratch.path()};
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
    // Settings of its own: the tour neither uses nor changes those of the user.
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
