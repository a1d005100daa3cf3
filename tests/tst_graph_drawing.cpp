// How graphs leave and enter the viewer: the clipboard, pictures, what is dropped; and what layouts and labels show.

#include "drawing.h"
#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/fulldisk.h"
#include "support/graphtext.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPolygonF>
#include <QPushButton>
#include <QSpinBox>
#include <QUrl>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>
#include <memory>

class TestGraphDrawing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void drawingIsWhatIsShown();
    void marksAreNotDrawn();
    void farPlacesAreBroughtToThePage();

    void pictures_data();
    void pictures();
    void suffixOfTheFilterIsAdded();
    void suffixInCapitalsIsOne();
    void replacingIsAskedAbout();
    void pngIsAsAskedFor();
    void givingUpLeavesNoFile();
    void fullDiskKeepsTheOldPicture();
    void nextDialogStartsWhereThePictureIs();
    void noPictureOfNothing();

    void copiedGraph6();
    void copiedPicture();
    void pastedGraph6();
    void pasteIsOneStep();
    void wrongTextChangesNothing_data();
    void wrongTextChangesNothing();

    void droppedText();
    void droppedFiles_data();
    void droppedFiles();
    void droppedEdgeListWithoutTabs_data();
    void droppedEdgeListWithoutTabs();
    void droppedEdgeListWithSomeTabs();
    void whatIsNotForTheViewerIsIgnored();
    void whatMayOnlyBeMovedIsIgnored();
    void unreadableFileIsTold();

    void layoutsFillTheView_data();
    void layoutsFillTheView();
    void layoutsFillWhatIsSeen();
    void layoutFollows();
    void graphFromElsewhereStandsOnTheCircle();
    void levelsFromTheSelection();
    void notPlanar();

    void shownNumbers();
    void shownNames();
    void shownDegrees();
    void shownDistances();
    void distancesNeedASelection();
    void shownIsClearedWithTheGraph();

    void keysBrowse_data();
    void keysBrowse();

private:
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(view.get(), Qt::Key(key), modifiers);
    }
    QStringList labels() const;
    QString notice() const;
    /// Drops it in the middle of the view; whether it was taken.
    bool drop(const QMimeData &data) const;

    std::unique_ptr<Graph> view;
};

namespace
{
const char *const petersen = "IheA@GUAo";
const char *const cube = "G}?wo_"; // not the cube: any graph of eight vertices

/// Answers the file dialog with a path and one of its filters.
driver::DialogAnswer chooseFile(const QString &path, const QString &filter = {})
{
    return driver::DialogAnswer([=](QDialog *dialog) {
        auto *files = qobject_cast<QFileDialog *>(dialog);
        if (!filter.isEmpty()) {
            files->selectNameFilter(filter);
        }
        driver::chooseFile(files, path);
    });
}
} // namespace

// A path of four vertices in the lower right, the second one selected.
void TestGraphDrawing::init()
{
    view = std::make_unique<Graph>(QStringLiteral("drawing"), true);
    view->resize(500, 400);
    view->slot_set_node_radius(20);
    graphtext::set(*view, 4, QStringLiteral("0-1 1-2 2-3"), {1});
    for (int i = 0; i < 4; ++i) {
        view->setPos(i, 10.0 * i, 5.0 * i * i, 0);
    }
    view->show();
    view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(view.get(), patience));
}

void TestGraphDrawing::cleanup()
{
    view.reset();
    QApplication::clipboard()->clear();
}

QStringList TestGraphDrawing::labels() const
{
    QStringList texts;
    for (int i = 0; i < view->getNbNodes(); ++i) {
        texts.append(view->node(i)->getLabel());
    }
    return texts;
}

/// The line that the viewer shows; empty when it shows none.
QString TestGraphDrawing::notice() const
{
    const auto *label = view->findChild<QLabel *>(QStringLiteral("notice"));
    return label != nullptr ? label->text() : QString();
}

bool TestGraphDrawing::drop(const QMimeData &data) const
{
    const QPoint middle = view->viewport()->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDragMoveEvent move(middle, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &move);
    QDropEvent event(middle, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &event);
    return move.isAccepted() && event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

void TestGraphDrawing::drawingIsWhatIsShown()
{
    view->setLabels({7, 8, 9, 10});
    view->setColors({0, 1, 8, 3});
    view->setSizes({0, 0, 0, 1});
    view->setELabels({{}, {2.5}}, true);
    view->setEHilight({{}, {1}}, true);
    const Drawing drawing = view->drawing();
    QCOMPARE(drawing.vertices.size(), 4);
    QCOMPARE(drawing.edges.size(), 3);
    QCOMPARE(drawing.vertices[2].place, QPointF(20, 20));
    QCOMPARE(drawing.vertices[2].radius, 20.0);
    QCOMPARE(drawing.vertices[3].radius, 40.0);
    QCOMPARE(drawing.vertices[2].colour, QColor(Qt::blue));
    QCOMPARE(drawing.vertices[0].label, QStringLiteral("7"));
    QCOMPARE(drawing.edges[0].from, 0);
    QCOMPARE(drawing.edges[0].to, 1);
    QCOMPARE(drawing.edges[0].label, QStringLiteral("2.5"));
    QCOMPARE(drawing.edges[0].colour, QColor(Qt::red));
    QCOMPARE(drawing.edges[0].width, 4.0);
    QCOMPARE(drawing.edges[1].colour, QColor(Qt::black));
    QCOMPARE(drawing.edges[1].width, 2.0);
    view->addEdge(0, 3); // is not shown yet
    QCOMPARE(view->drawing().edges.size(), 3);
}

/// The picture in the clipboard is the same with and without a selection and a rubber band.
void TestGraphDrawing::marksAreNotDrawn()
{
    view->slot_unselect_all();
    view->slot_copy_picture();
    const QImage plain = QApplication::clipboard()->image();
    view->slot_select_all();
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    QTest::mouseMove(view->viewport(), QPoint(300, 300));
    view->slot_copy_picture();
    QCOMPARE(QApplication::clipboard()->image(), plain);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 300));
}

void TestGraphDrawing::farPlacesAreBroughtToThePage()
{
    view->setPos(0, 1e308, -1e308, 0);
    view->setPos(1, -1e308, 1e308, 0);
    const QRectF extent = view->drawing().extent();
    QVERIFY(extent.width() <= 1300 && extent.height() <= 1300);
    QVERIFY(extent.width() > 1000);
}

void TestGraphDrawing::pictures_data()
{
    QTest::addColumn<QByteArray>("beginning");
    QTest::newRow("svg") << QByteArray("<?xml");
    QTest::newRow("pdf") << QByteArray("%PDF-");
    QTest::newRow("tex") << QByteArray("\\documentclass");
    QTest::newRow("dot") << QByteArray("graph {");
}

void TestGraphDrawing::pictures()
{
    QFETCH(QByteArray, beginning);
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("picture.") + QLatin1String(QTest::currentDataTag()));
    const driver::DialogAnswer answer = chooseFile(path);
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(answer.done());
    QVERIFY(contents(path).startsWith(beginning));
    QCOMPARE(folder.files().size(), 1);
}

void TestGraphDrawing::suffixOfTheFilterIsAdded()
{
    const TestFolder folder;
    const driver::DialogAnswer answer = chooseFile(folder.path("figure.1"), QStringLiteral("TikZ (*.tex)"));
    view->slot_export_picture();
    QVERIFY(answer.done());
    QCOMPARE(folder.files(), words({"figure.1.tex"}));
    const driver::DialogAnswer second = chooseFile(folder.path("plain"));
    view->slot_export_picture();
    QVERIFY(second.done());
    QCOMPARE(folder.files(), words({"figure.1.tex", "plain.svg"}));
}

void TestGraphDrawing::suffixInCapitalsIsOne()
{
    const TestFolder folder;
    const driver::DialogAnswer answer = chooseFile(folder.path("a.SVG"), QStringLiteral("PDF (*.pdf)"));
    view->slot_export_picture();
    QVERIFY(answer.done());
    QCOMPARE(folder.files(), QStringList{QStringLiteral("a.SVG")});
    QVERIFY(contents(folder.path("a.SVG")).contains("<svg"));
}

void TestGraphDrawing::replacingIsAskedAbout()
{
    const TestFolder folder;
    folder.write("old.dot", "old");
    for (const bool replace : {false, true}) {
        bool asked = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (auto *question = qobject_cast<QMessageBox *>(dialog)) {
                QVERIFY(question->text().startsWith(QLatin1String("old.dot already exists.")));
                asked = true;
                question->button(replace ? QMessageBox::Yes : QMessageBox::No)->click();
            } else if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
                if (asked) {
                    files->reject();
                } else {
                    files->selectNameFilter(QStringLiteral("DOT (*.dot)"));
                    driver::chooseFile(files, folder.path("old"));
                }
            }
        });
        timer.start(20);
        view->slot_export_picture();
        QVERIFY(asked);
        QCOMPARE(contents(folder.path("old.dot")).startsWith("old"), !replace);
    }
    QCOMPARE(folder.files(), words({"old.dot"}));
}

void TestGraphDrawing::pngIsAsAskedFor()
{
    for (const bool transparent : {false, true}) {
        const TestFolder folder;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
                driver::chooseFile(files, folder.path("picture.png"));
            } else if (dialog != nullptr) {
                QCOMPARE(dialog->findChild<QSpinBox *>()->value(), 1200);
                QCOMPARE(dialog->findChild<QSpinBox *>()->maximum(), 10000);
                QVERIFY(!dialog->findChild<QCheckBox *>()->isChecked());
                dialog->findChild<QSpinBox *>()->setValue(333);
                dialog->findChild<QCheckBox *>()->setChecked(transparent);
                dialog->accept();
            }
        });
        timer.start(20);
        view->slot_export_picture();
        const QImage picture(folder.path("picture.png"));
        QCOMPARE(picture.width(), 333);
        QCOMPARE(picture.pixelColor(0, 0).alpha(), transparent ? 0 : 255);
    }
}

void TestGraphDrawing::givingUpLeavesNoFile()
{
    const TestFolder folder;
    view->setWD(folder.path());
    const driver::DialogAnswer cancelling = driver::DialogAnswer::cancelling();
    view->slot_export_picture();
    QVERIFY(cancelling.done());
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
            driver::chooseFile(files, folder.path("picture.png"));
        } else if (dialog != nullptr) {
            dialog->reject();
        }
    });
    timer.start(20);
    view->slot_export_picture();
    QCOMPARE(folder.files(), QStringList());
}

void TestGraphDrawing::fullDiskKeepsTheOldPicture()
{
    const TestFolder folder;
    const QString path = folder.write("nowhere.svg", "old");
    QString told;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
            const bool question = box->standardButtons().testFlag(QMessageBox::Yes);
            told = question ? told : box->windowTitle() + QLatin1String(": ") + box->text();
            box->button(question ? QMessageBox::Yes : QMessageBox::Ok)->click();
        } else if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
            driver::chooseFile(files, path);
        }
    });
    timer.start(20);
    {
        const FullDisk disk;
        view->slot_export_picture();
    }
    QCOMPARE(told, QStringLiteral("Warning: Failed to export picture."));
    QCOMPARE(contents(path), QByteArray("old"));
    QCOMPARE(folder.files(), words({"nowhere.svg"}));
}

void TestGraphDrawing::nextDialogStartsWhereThePictureIs()
{
    const TestFolder folder;
    const driver::DialogAnswer answer = chooseFile(folder.path("picture.svg"));
    view->slot_export_picture();
    QVERIFY(answer.done());
    QString start;
    const driver::DialogAnswer cancelling([&](QDialog *dialog) {
        start = qobject_cast<QFileDialog *>(dialog)->directory().path();
        dialog->reject();
    });
    view->slot_export_picture();
    QCOMPARE(start, folder.path());
}

void TestGraphDrawing::noPictureOfNothing()
{
    view->clear();
    view->changeBest();
    view->update_display();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    view->slot_export_picture(); // no dialog
    view->slot_copy_picture();
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
}

void TestGraphDrawing::copiedGraph6()
{
    press(Qt::Key_Insert, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("Ch"));
}

void TestGraphDrawing::copiedPicture()
{
    press(Qt::Key_G, Qt::ControlModifier);
    const QMimeData *data = QApplication::clipboard()->mimeData();
    const QSizeF size = view->drawing().extent().size() * 2;
    const QImage picture = QApplication::clipboard()->image();
    QVERIFY(qAbs(picture.width() - size.width()) <= 1 && qAbs(picture.height() - size.height()) <= 1);
    QVERIFY(data->data(QStringLiteral("image/svg+xml")).contains("<circle"));
}

void TestGraphDrawing::pastedGraph6()
{
    QApplication::clipboard()->setText(QStringLiteral(" \n%1\r\n").arg(QLatin1String(petersen)));
    SignalRecorder recorder(*view);
    press(Qt::Key_Insert, Qt::ShiftModifier);
    QCOMPARE(recorder.take(), words({"interactive_graph_changed", "best_graph_changed", "interactive_graph_changed"}));
    QCOMPARE(view->g6currentGraphData(), latin1(petersen));
    QCOMPARE(view->getNbEdges(), 15);
    QVERIFY(graphtext::published(*view));
    QCOMPARE(view->node(0)->pos(), QPointF(100, 0));
    QVERIFY(qAbs(QLineF(QPointF(), view->node(7)->pos()).length() - 100) < 1e-6);
    QCOMPARE(notice(), QString());
}

void TestGraphDrawing::pasteIsOneStep()
{
    QApplication::clipboard()->setText(latin1(petersen));
    view->slot_paste_graph6();
    view->slot_undo();
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    view->slot_redo();
    QCOMPARE(view->g6currentGraphData(), latin1(petersen));
    // After an edit, which is in the history, it takes one step, too.
    view->slot_select_all();
    view->slot_complement();
    const QString edited = view->g6currentGraphData();
    QApplication::clipboard()->setText(QStringLiteral("A_"));
    view->slot_paste_graph6();
    view->slot_undo();
    QCOMPARE(view->g6currentGraphData(), edited);
    view->slot_undo();
    QCOMPARE(view->g6currentGraphData(), latin1(petersen));
}

void TestGraphDrawing::wrongTextChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
    row("nothing", QString());
    row("no graph6", QStringLiteral("hello, world"));
    row("too short", QStringLiteral("IheA@GUA"));
    row("too long", QStringLiteral("IheA@GUAo?"));
    row("two", QStringLiteral("A_\nA_"));
    row("one vertex", QStringLiteral("@"));
    row("thirty-two vertices", QLatin1Char('_') + QString(83, QLatin1Char('?')));
    row("not Latin-1", QStringLiteral("A\u20ac"));
    row("huge", QString(10000, QLatin1Char('A')));
}

void TestGraphDrawing::wrongTextChangesNothing()
{
    QFETCH(QString, text);
    const QPointF place = view->node(3)->pos();
    QApplication::clipboard()->setText(text);
    SignalRecorder recorder(*view);
    view->slot_paste_graph6();
    QVERIFY2(notice().startsWith(QLatin1String("This is no graph6 string of 2 to 31 vertices:")), qPrintable(notice()));
    QVERIFY(notice().size() < 120);
    QVERIFY(!notice().contains(QLatin1Char('\n')));
    const QStringList signalled = recorder.take();
    QCOMPARE(signalled.size(), 1);
    QVERIFY(signalled.first().startsWith(QLatin1String("console This is no graph6")));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    QCOMPARE(graphtext::selection(*view), QStringLiteral("1"));
    QCOMPARE(view->node(3)->pos(), place);
    view->slot_adde();
    QCOMPARE(notice(), QString());
}

void TestGraphDrawing::droppedText()
{
    QMimeData data;
    data.setText(QStringLiteral(" %1\n").arg(latin1(petersen)));
    QVERIFY(drop(data));
    QCOMPARE(view->g6currentGraphData(), latin1(petersen));
    data.setText(QStringLiteral("no"));
    QVERIFY(drop(data));
    QVERIFY(!notice().isEmpty());
    QCOMPARE(view->g6currentGraphData(), latin1(petersen));
}

void TestGraphDrawing::droppedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("edges");
    QTest::newRow("graph.g6") << QByteArray("BW\nC~\n") << "0-2 1-2";
    QTest::newRow("graph.golm3") << QByteArray("3\na\t1\t2\nb\t30\t4\nc\t5\t60\n0\t1\t0\t1\t0\t0\t0\t0\t0\t") << "0-1";
    QTest::newRow("graph.edgelist") << QByteArray("a\tb\nb\tc\n") << "0-1 1-2";
    QTest::newRow("GRAPH.G6") << QByteArray("BW\n") << "0-2 1-2";
    QTest::newRow("GRAPH.EdgeList") << QByteArray("a\tb\nb\tc\n") << "0-1 1-2";
}

void TestGraphDrawing::droppedFiles()
{
    QFETCH(QByteArray, content);
    const TestFolder folder;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.write(QTest::currentDataTag(), content))});
    QVERIFY(drop(data));
    QTRY_COMPARE_WITH_TIMEOUT(view->getNbNodes(), 3, patience);
    QTEST(graphtext::edges(*view), "edges");
    QVERIFY(view->node(1)->pos() != view->node(2)->pos());
    QVERIFY(view->node(2)->isVisible());
}

void TestGraphDrawing::droppedEdgeListWithoutTabs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("blanks") << QByteArray("a b\nb c\n");
    QTest::newRow("nothing") << QByteArray();
}

/// A box tells what was expected, and the graph stays as it is.
void TestGraphDrawing::droppedEdgeListWithoutTabs()
{
    QFETCH(QByteArray, content);
    const TestFolder folder;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.write("graph.edgelist", content))});
    QString told;
    const driver::DialogAnswer answer([&](QDialog *box) {
        told = qobject_cast<QMessageBox *>(box)->text();
        box->reject();
    });
    QVERIFY(drop(data));
    QTRY_VERIFY_WITH_TIMEOUT(answer.done(), patience);
    QCOMPARE(told, QStringLiteral("There is no edge in this file: a line must hold the labels of two vertices with a "
                                  "tab between them."));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
    QVERIFY(view->node(3)->isVisible());
}

/// The window loads a database.
/// The line about what was passed over takes the place of the one about the graph before.
void TestGraphDrawing::droppedEdgeListWithSomeTabs()
{
    view->slot_unselect_all();
    press(Qt::Key_9);
    QVERIFY(notice().startsWith(QLatin1String("Levels")));
    const TestFolder folder;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.write("graph.edgelist", "# two edges\na\tb\nc\td\n"))});
    QVERIFY(drop(data));
    QTRY_COMPARE_WITH_TIMEOUT(graphtext::edges(*view), QStringLiteral("0-1 2-3"), patience);
    QCOMPARE(notice(), QStringLiteral("Lines without a tab between two labels, passed over: 1"));
}

void TestGraphDrawing::whatIsNotForTheViewerIsIgnored()
{
    const TestFolder folder;
    QMimeData database;
    database.setUrls({QUrl::fromLocalFile(folder.write("some.tav", "A_\n"))});
    database.setText(QStringLiteral("file:///some.tav"));
    QVERIFY(!drop(database));
    QMimeData two;
    two.setUrls({QUrl::fromLocalFile(folder.write("a.g6", "A_\n")), QUrl::fromLocalFile(folder.write("b.g6", "A_\n"))});
    QVERIFY(!drop(two));
    QMimeData elsewhere;
    elsewhere.setUrls({QUrl(QStringLiteral("https://graphs.example/a.g6"))});
    QVERIFY(!drop(elsewhere));
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
}

/// The program from which it comes would delete it.
void TestGraphDrawing::whatMayOnlyBeMovedIsIgnored()
{
    QMimeData data;
    data.setText(latin1(petersen));
    QDragEnterEvent enter(QPoint(9, 9), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    QVERIFY(!enter.isAccepted());
}

void TestGraphDrawing::unreadableFileIsTold()
{
    const TestFolder folder;
    for (const char *name : {"gone.g6", "gone.golm3"}) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(folder.path(name))});
        QStringList boxes;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                boxes.append(box->text());
                box->accept();
            }
        });
        timer.start(20);
        QVERIFY(drop(data));
        QTRY_VERIFY_WITH_TIMEOUT(boxes.contains(QStringLiteral("Failed to load graph.")), patience);
    }
    QCOMPARE(graphtext::edges(*view), QStringLiteral("0-1 1-2 2-3"));
}

void TestGraphDrawing::layoutsFillTheView_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("bothWays");
    QTest::newRow("Kamada and Kawai") << int(Qt::Key_6) << false;
    QTest::newRow("Fruchterman and Reingold") << int(Qt::Key_7) << false;
    QTest::newRow("planar") << int(Qt::Key_8) << true;
    QTest::newRow("levels") << int(Qt::Key_9) << true;
}

/// Every vertex is in the view, and the drawing reaches from one margin to the other; a key carries it out, twice with
/// the same result, and publishes it.
void TestGraphDrawing::layoutsFillTheView()
{
    QFETCH(int, key);
    QFETCH(bool, bothWays);
    view->loadg6(latin1(cube), true);
    view->changeBest();
    view->update_display();
    SignalRecorder recorder(*view);
    press(key);
    QCOMPARE(recorder.take(), words({"best_graph_changed", "interactive_graph_changed"}));
    QPolygonF places;
    for (int i = 0; i < view->getNbNodes(); ++i) {
        places.append(view->node(i)->pos());
        const QRect around(view->mapFromScene(places.last()) - QPoint(20, 20), QSize(40, 40));
        QVERIFY(view->viewport()->rect().contains(around));
        QCOMPARE(view->node(i)->getCoordZ(), 0.0);
    }
    const QRectF extent = places.boundingRect();
    const QSizeF room = QSizeF(view->viewport()->size()) - QSizeF(90, 90);
    const bool wide = qAbs(extent.width() - room.width()) < 2;
    const bool high = qAbs(extent.height() - room.height()) < 2;
    QVERIFY(bothWays ? wide && high : wide || high);
    QVERIFY(qAbs(extent.center().x()) < 1 && qAbs(extent.center().y()) < 1);
    view->slot_randomPosition();
    view->rotate(0.5, 1, 0);
    press(key);
    for (int i = 0; i < view->getNbNodes(); ++i) {
        QCOMPARE(view->node(i)->pos(), places[i]);
        QCOMPARE(view->node(i)->getCoordZ(), 0.0);
    }
}

/// Of a part that is zoomed in, of a view that was moved or has another form, and with large vertices.
void TestGraphDrawing::layoutsFillWhatIsSeen()
{
    const auto isSeen = [this] {
        for (int i = 0; i < view->getNbNodes(); ++i) {
            const double radius = view->node(i)->shownRadius();
            const QRectF disc(view->node(i)->pos() - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
            if (!view->viewport()->rect().contains(view->mapFromScene(disc).boundingRect())) {
                return false;
            }
        }
        return true;
    };
    const auto width = [this] { return qAbs(view->node(0)->pos().x() - view->node(3)->pos().x()); };
    press(Qt::Key_6);
    const double usualWidth = width();
    QVERIFY(isSeen());
    view->scaleView(1.5);
    press(Qt::Key_6);
    QVERIFY(isSeen());
    QVERIFY(width() < usualWidth);
    view->scaleView(1 / 1.5);
    const QPointF middle = view->viewport()->rect().center();
    QWheelEvent wheel(middle, view->viewport()->mapToGlobal(middle.toPoint()), {}, QPoint(0, 360), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view->viewport(), &wheel);
    press(Qt::Key_8);
    QVERIFY(isSeen());
    view->slot_set_node_radius(60);
    press(Qt::Key_8);
    QVERIFY(isSeen());
}

void TestGraphDrawing::layoutFollows()
{
    SignalRecorder recorder(*view);
    const auto showNext = [&](const char *name) {
        recorder.take();
        view->loadg6(latin1(name), true);
        view->place_circle(200);
        view->changeBest();
        view->update_display();
        view->slot_follow_layout();
    };
    const auto isOnCircle = [this] {
        return qAbs(QLineF(QPointF(), view->node(1)->pos()).length() - 100) < 1e-6 && view->node(0)->pos().x() == 100;
    };
    showNext(cube);
    QVERIFY(isOnCircle());
    press(Qt::Key_8);
    showNext(cube);
    QVERIFY(!isOnCircle());
    QCOMPARE(recorder.take(), words({"best_graph_changed"})); // from the step, not from the layout
    showNext(petersen);
    QVERIFY(isOnCircle()); // not planar
    QCOMPARE(notice(), QStringLiteral("The graph is not planar."));
    showNext(cube);
    QVERIFY(!isOnCircle());
    QCOMPARE(notice(), QString());
    press(Qt::Key_5);
    QVERIFY(isOnCircle());
    showNext(cube);
    QVERIFY(isOnCircle());
}

/// The menu then shows that the circle is in force.
void TestGraphDrawing::graphFromElsewhereStandsOnTheCircle()
{
    const auto isChecked = [this](const char *entry) {
        emit view->customContextMenuRequested({});
        QWidget *menu = QApplication::activePopupWidget();
        const QList<QAction *> actions = menu->findChildren<QAction *>();
        const auto found = std::find_if(actions.cbegin(), actions.cend(), [entry](const QAction *action) {
            return action->text().startsWith(QLatin1String(entry));
        });
        menu->close();
        return (*found)->isChecked();
    };
    press(Qt::Key_8);
    QVERIFY(isChecked("&Planar"));
    QApplication::clipboard()->setText(QStringLiteral("C~"));
    view->slot_paste_graph6();
    QVERIFY(isChecked("&Circle"));
    QVERIFY(QLineF(view->node(1)->pos(), QPointF(0, 100)).length() < 1e-5);
    press(Qt::Key_8);
    const TestFolder folder;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.write("graph.edgelist", "a\tb\nc\td\n"))});
    QVERIFY(drop(data));
    QTRY_COMPARE_WITH_TIMEOUT(graphtext::edges(*view), QStringLiteral("0-1 2-3"), patience);
    QVERIFY(isChecked("&Circle"));
    QVERIFY(QLineF(view->node(1)->pos(), QPointF(0, 100)).length() < 1e-5);
}

void TestGraphDrawing::levelsFromTheSelection()
{
    press(Qt::Key_9);
    const auto y = [this](int i) { return view->node(i)->pos().y(); };
    QVERIFY(y(1) < y(0) && y(0) < y(3));
    QVERIFY(qAbs(y(0) - y(2)) < 1e-6);
    view->node(3)->setSelected(true);
    press(Qt::Key_9);
    QVERIFY(qAbs(y(1) - y(3)) < 1e-6 && y(3) < y(2));
    view->node(3)->setSelected(false);
    press(Qt::Key_9);
    view->slot_unselect_all();
    const QPointF place = view->node(2)->pos();
    press(Qt::Key_9);
    QCOMPARE(view->node(2)->pos(), place);
    QCOMPARE(notice(), QStringLiteral("Levels are counted from selected vertices, and none is selected."));
}

void TestGraphDrawing::notPlanar()
{
    view->loadg6(QStringLiteral("D~{"), true);
    view->place_circle(200);
    view->changeBest();
    const QPointF place = view->node(2)->pos();
    SignalRecorder recorder(*view);
    view->slot_layout_planar();
    QCOMPARE(recorder.take(), words({"console The graph is not planar. false 0 #0000ff"}));
    QCOMPARE(notice(), QStringLiteral("The graph is not planar."));
    QCOMPARE(view->node(2)->pos(), place);
}

void TestGraphDrawing::shownNumbers()
{
    press(Qt::Key_1);
    QCOMPARE(labels(), words({"0", "1", "2", "3"}));
    press(Qt::Key_0);
    QCOMPARE(labels(), words({"", "", "", ""}));
}

void TestGraphDrawing::shownNames()
{
    view->node(2)->setName(QStringLiteral("a name that is too long for a box"));
    press(Qt::Key_2);
    QCOMPARE(labels(), (QStringList{QStringLiteral("Node 1"), QStringLiteral("Node 2"),
                                    QStringLiteral("a name that i\u2026"), QStringLiteral("Node 4")}));
    view->node(1)->setName(QStringLiteral("b"));
    view->changeBest(); // as after a file with the same graph
    QCOMPARE(labels()[1], QStringLiteral("b"));
}

void TestGraphDrawing::shownDegrees()
{
    press(Qt::Key_3);
    QCOMPARE(labels(), words({"1", "2", "2", "1"}));
    QCOMPARE(view->node(0)->shownRadius(), 20.0);
    QCOMPARE(view->node(1)->shownRadius(), 40.0);
    press(Qt::Key_1);
    QCOMPARE(view->node(1)->shownRadius(), 20.0);
}

void TestGraphDrawing::shownDistances()
{
    view->slot_addv(); // a vertex that cannot be reached
    press(Qt::Key_4);
    QCOMPARE(labels(), words({"1", "0", "1", "2", "inf"}));
    QCOMPARE(view->node(1)->shownColor(), QColor(Qt::yellow));
    QCOMPARE(view->node(2)->shownColor(), QColor(Qt::cyan));
    QCOMPARE(view->node(3)->shownColor(), QColor(Qt::red));
    QCOMPARE(view->node(4)->shownColor(), QColor(Qt::darkGray));
    view->node(3)->setSelected(true);
    view->slot_show_distances();
    QCOMPARE(labels(), words({"1", "0", "1", "0", "inf"}));
    view->slot_show_nothing();
    QCOMPARE(view->node(2)->shownColor(), QColor(Qt::yellow));
}

void TestGraphDrawing::distancesNeedASelection()
{
    view->slot_unselect_all();
    press(Qt::Key_1);
    press(Qt::Key_4);
    QCOMPARE(labels(), words({"0", "1", "2", "3"}));
    QCOMPARE(notice(), QStringLiteral("Distances are those from selected vertices, and none is selected."));
}

void TestGraphDrawing::shownIsClearedWithTheGraph()
{
    view->slot_show_degrees();
    view->slot_layout_circle(); // the same graph
    QCOMPARE(labels(), words({"1", "2", "2", "1"}));
    view->addEdge(0, 3);
    QCOMPARE(labels(), words({"1", "2", "2", "1"})); // not shown yet
    view->changeBest();
    QCOMPARE(labels(), words({"", "", "", ""}));
    QCOMPARE(view->node(1)->shownRadius(), 20.0);
    // Labels from elsewhere are not the menu's to clear.
    view->setLabels({5, 5, 5, 5});
    view->addEdge(0, 2);
    view->changeBest();
    QCOMPARE(labels(), words({"5", "5", "5", "5"}));
}

void TestGraphDrawing::keysBrowse_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("next_graph") << int(Qt::Key_PageDown);
    QTest::newRow("previous_graph") << int(Qt::Key_PageUp);
    QTest::newRow("first_graph") << int(Qt::Key_Home);
    QTest::newRow("last_graph") << int(Qt::Key_End);
}

void TestGraphDrawing::keysBrowse()
{
    QFETCH(int, key);
    SignalRecorder recorder(*view);
    press(key);
    QCOMPARE(recorder.take(), words({QTest::currentDataTag(), "interactive_graph_changed"}));
}

QTEST_MAIN(TestGraphDrawing)
#include "tst_graph_drawing.moc"
