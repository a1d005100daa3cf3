// Printing the graph into PDF files: the page and what is drawn where, read back by poppler.

#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/fulldisk.h"
#include "support/runprogram.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QPainter>
#include <QtTest>

namespace
{
constexpr int margin = 50;
/// The side of the page in pixels at 300 dots per inch.
constexpr int pagePixels = 945;

/// The page of the file at the resolution at which it was printed: a pixel is a unit of the painter.
QImage rendered(const QString &pdf)
{
    const QString image = pdf + QStringLiteral("-page");
    outputOf(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("300"), QStringLiteral("-singlefile"),
                                          QStringLiteral("-png"), pdf, image});
    return QImage(image + QStringLiteral(".png"));
}

enum class Ink { Paper, Line, Disc, Label };

/// What is drawn around a point: the discs are yellow, the labels have blue frames, the edges are black.
Ink inkAt(const QImage &page, QPointF point)
{
    bool label = false;
    bool disc = false;
    bool line = false;
    for (int x = -2; x <= 2; ++x) {
        for (int y = -2; y <= 2; ++y) {
            const QColor colour(page.pixel(point.toPoint() + QPoint(x, y)));
            label = label || colour.blue() > colour.red() + 60;
            disc = disc || (colour.red() > colour.blue() + 60 && qAbs(colour.red() - colour.green()) < 20);
            line = line || colour.lightness() < 110;
        }
    }
    return label ? Ink::Label : disc ? Ink::Disc : line ? Ink::Line : Ink::Paper;
}

bool isBlank(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (QColor(image.pixel(x, y)) != Qt::white) {
                return false;
            }
        }
    }
    return true;
}

/// Where a vertex at the given shares of the width and the height of the drawing is printed.
QPointF onPage(double x, double y)
{
    const double side = pagePixels - 2 * margin;
    return {margin + x * side, margin + y * side};
}

/// The graph of a count-and-bits text, shown and published.
void fill(Graph &graph, const QString &countAndBits)
{
    graph.loadolm(countAndBits, true);
    graph.update_display();
}

/// An edge from the upper left to the lower right, and nothing else.
void fillDiagonal(Graph &graph)
{
    fill(graph, QStringLiteral("2 1"));
    graph.setPos(0, QPointF(0, 0));
    graph.setPos(1, QPointF(20, 20));
}

QImage whiteSquare(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}
} // namespace

class TestGraphPrinting : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void page_data();
    void page();
    void emptyGraph();
    void oneVertex();
    void verticesArePrintedLarger();
    void twoVertices();
    void tenVerticesOnACircle();
    void thirtyTwoVertices();
    void labels();
    void edgesAreUnderTheVertices();
    void onlyTheCurrentGraphIsPrinted();
    void selectionRectangleAndBackgroundAreNotPrinted();

    void dialog();
    void nameIsUsedAsEntered();
    void layoutIsRefittedAfterwards();
    void layoutIsRefittedIntoTheChosenCube();
    void itemsAreAsBeforeAfterwards();
    void cancelledDialogDoesNothing();
    void unwritableFileLeavesTheLayout_data();
    void unwritableFileLeavesTheLayout();
    void fullDiskKeepsTheOldFile();

    void print_intoASquare();
    void print_shifted();
    void print_whileTheBestGraphIsLocked();

private:
    /// Prints with the dialog and returns the file.
    QString printed(Graph &graph) const;

    TestFolder folder;
};

void TestGraphPrinting::init()
{
    qsrand(1);
    QFile::remove(folder.path("graph.pdf"));
}

QString TestGraphPrinting::printed(Graph &graph) const
{
    QString file = folder.path("graph.pdf");
    graph.setWD(folder.path());
    const driver::DialogAnswer answer = driver::DialogAnswer::withFile(file);
    graph.slot_print();
    if (!answer.done()) {
        qFatal("no dialog came up");
    }
    return file;
}

void TestGraphPrinting::page_data()
{
    QTest::addColumn<int>("vertices");
    for (const int vertices : {0, 1, 2, 10, 32}) {
        QTest::newRow(qPrintable(QString::number(vertices))) << vertices;
    }
}

void TestGraphPrinting::page()
{
    QFETCH(int, vertices);
    Graph graph(QStringLiteral("graph"), true);
    graph.randomGraph(vertices);
    graph.changeBest();
    graph.update_display();
    graph.place_circle(300);
    graph.setLabels(QVector<double>(vertices, 0.5));
    const QString file = printed(graph);
    const QString info = QString::fromLatin1(outputOf(QStringLiteral("pdfinfo"), {file}));
    QVERIFY2(info.contains(QRegularExpression(QStringLiteral("^Pages: +1$"), QRegularExpression::MultilineOption)),
             qPrintable(info));
    // 80 mm are 226.77 pt; the page is whole points.
    QVERIFY2(info.contains(QRegularExpression(QStringLiteral("^Page size: +227 x 227 pts$"),
                                              QRegularExpression::MultilineOption)),
             qPrintable(info));
    // Two lines of heading and no raster image.
    QCOMPARE(outputOf(QStringLiteral("pdfimages"), {QStringLiteral("-list"), file}).count('\n'), 2);
}

void TestGraphPrinting::emptyGraph()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("0 "));
    const QImage page = rendered(printed(graph));
    QVERIFY(qAbs(page.width() - pagePixels) <= 1 && qAbs(page.height() - pagePixels) <= 1);
    QVERIFY(isBlank(page));
}

void TestGraphPrinting::oneVertex()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("1 "));
    const QImage page = rendered(printed(graph));
    QCOMPARE(inkAt(page, onPage(0, 0)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0, 0) + QPointF(35, 0)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0, 0) + QPointF(45, 0)), Ink::Paper);
    QVERIFY(isBlank(page.copy(margin + 45, 0, page.width() - margin - 45, page.height())));
    QVERIFY(isBlank(page.copy(0, margin + 45, page.width(), page.height() - margin - 45)));
}

void TestGraphPrinting::verticesArePrintedLarger()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("1 "));
    graph.slot_set_node_radius(10);
    const QImage page = rendered(printed(graph));
    QCOMPARE(inkAt(page, onPage(0, 0) + QPointF(35, 0)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0, 0) + QPointF(45, 0)), Ink::Paper);
    QCOMPARE(graph.node(0)->getRadius(), 10.0);
}

void TestGraphPrinting::twoVertices()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("2 1"));
    graph.setPos(0, QPointF(-7, -3));
    graph.setPos(1, QPointF(8, 20));
    const QImage page = rendered(printed(graph));
    QCOMPARE(inkAt(page, onPage(0, 0)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(1, 1)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.25, 0.25)), Ink::Line);
    QCOMPARE(inkAt(page, onPage(0.5, 0.5)), Ink::Line);
    QCOMPARE(inkAt(page, onPage(0, 1)), Ink::Paper);
    QCOMPARE(inkAt(page, onPage(1, 0)), Ink::Paper);
}

void TestGraphPrinting::tenVerticesOnACircle()
{
    Graph graph(QStringLiteral("graph"), true);
    // The edge 0-5, of 45 pairs.
    fill(graph,
         QStringLiteral("10 ") + QString(10, QLatin1Char('0')) + QLatin1Char('1') + QString(34, QLatin1Char('0')));
    graph.place_circle(300);
    const QImage page = rendered(printed(graph));
    // The circle is as wide as the page; its height is that of vertices 2 and 3 above vertices 7 and 8.
    QCOMPARE(inkAt(page, onPage(1, 0.5)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0, 0.5)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5 + 0.5 * 0.309017, 1)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5 - 0.5 * 0.309017, 1)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5 - 0.5 * 0.309017, 0)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5 + 0.5 * 0.309017, 0)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5, 0.5)), Ink::Line);
    QCOMPARE(inkAt(page, onPage(0.3, 0.5)), Ink::Line);
    QCOMPARE(inkAt(page, onPage(0.5, 0.25)), Ink::Paper);
    QCOMPARE(inkAt(page, onPage(0.5, 0.75)), Ink::Paper);
}

void TestGraphPrinting::thirtyTwoVertices()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("32 ") + QString(496, QLatin1Char('0')));
    // On a grid of 8 x 4, in which only the neighbours 0-1 and 30-31 are joined.
    for (int i = 0; i < 32; ++i) {
        const int column = i % 8;
        const int row = i / 8;
        graph.setPos(i, QPointF(column, row));
    }
    graph.addEdge(0, 1);
    graph.addEdge(30, 31);
    graph.changeBest();
    graph.update_display();
    const QImage page = rendered(printed(graph));
    for (int i = 0; i < 32; ++i) {
        const int column = i % 8;
        const int row = i / 8;
        QCOMPARE(inkAt(page, onPage(column / 7.0, row / 3.0)), Ink::Disc);
        if (column < 7) {
            const bool joined = i == 0 || i == 30;
            QCOMPARE(inkAt(page, onPage((column + 0.5) / 7.0, row / 3.0)), joined ? Ink::Line : Ink::Paper);
        }
    }
}

void TestGraphPrinting::labels()
{
    Graph graph(QStringLiteral("graph"), true);
    fillDiagonal(graph);
    graph.setLabels({12, -0.25});
    graph.setELabels({{}, {7.5}}, true);
    const QString file = printed(graph);
    const QString text = QString::fromLatin1(outputOf(QStringLiteral("pdftotext"), {file, QStringLiteral("-")}));
    QStringList words = text.simplified().split(QLatin1Char(' '));
    words.sort();
    QCOMPARE(words, (QStringList{QStringLiteral("-0.25"), QStringLiteral("12"), QStringLiteral("7.5")}));
    const QImage page = rendered(file);
    for (const QPointF vertex : {onPage(0, 0), onPage(1, 1)}) {
        QCOMPARE(inkAt(page, vertex + QPointF(0, -10)), Ink::Label);
        QCOMPARE(inkAt(page, vertex + QPointF(0, 20)), Ink::Label);
        QCOMPARE(inkAt(page, vertex + QPointF(-41, 5)), Ink::Label);
        QCOMPARE(inkAt(page, vertex + QPointF(41, 5)), Ink::Label);
        QCOMPARE(inkAt(page, vertex + QPointF(0, -25)), Ink::Disc);
    }
}

void TestGraphPrinting::edgesAreUnderTheVertices()
{
    Graph graph(QStringLiteral("graph"), true);
    // Vertex 0 lies on the edge 1-2.
    fill(graph, QStringLiteral("3 001"));
    graph.setPos(0, QPointF(0, 0));
    graph.setPos(1, QPointF(-10, -10));
    graph.setPos(2, QPointF(10, 10));
    const QImage page = rendered(printed(graph));
    QCOMPARE(inkAt(page, onPage(0.5, 0.5)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5, 0.5) + QPointF(15, 15)), Ink::Disc);
    QCOMPARE(inkAt(page, onPage(0.5, 0.5) + QPointF(40, 40)), Ink::Line);
}

void TestGraphPrinting::onlyTheCurrentGraphIsPrinted()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("3 100"));
    graph.setPos(0, QPointF(0, 0));
    graph.setPos(1, QPointF(10, 0));
    graph.setPos(2, QPointF(0, 10));
    // Not published: 0-2 takes the place of 0-1.
    graph.remEdge(0, 1);
    graph.addEdge(0, 2);
    const QImage page = rendered(printed(graph));
    QCOMPARE(inkAt(page, onPage(0.5, 0)), Ink::Paper);
    QCOMPARE(inkAt(page, onPage(0, 0.5)), Ink::Line);
    // The display still shows the best graph.
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
    QVERIFY(!graph.edgeItem(0, 2)->isVisible());
}

void TestGraphPrinting::selectionRectangleAndBackgroundAreNotPrinted()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("0 "));
    graph.setViolated(true);
    for (QGraphicsItem *item : static_cast<QGraphicsView &>(graph).scene()->items()) {
        item->show();
    }
    QVERIFY(isBlank(rendered(printed(graph))));
}

void TestGraphPrinting::dialog()
{
    Graph graph(QStringLiteral("graph"), true);
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("sub")));
    graph.setWD(folder.path());
    QStringList seen;
    for (const QString &name : {folder.path("sub/first.pdf"), folder.path("second.pdf")}) {
        const driver::DialogAnswer answer([&](QDialog *shown) {
            auto *fileDialog = qobject_cast<QFileDialog *>(shown);
            QCOMPARE(fileDialog->acceptMode(), QFileDialog::AcceptSave);
            seen.append(fileDialog->windowTitle() + QLatin1Char('|') + fileDialog->directory().path() +
                        QLatin1Char('|') + fileDialog->nameFilters().join(QLatin1Char(';')));
            driver::chooseFile(fileDialog, name);
        });
        graph.slot_print();
        QVERIFY(QFile::exists(name));
    }
    QCOMPARE(seen, (QStringList{QStringLiteral("Save  graphs as |%1|*.pdf").arg(folder.path()),
                                QStringLiteral("Save  graphs as |%1/sub|*.pdf").arg(folder.path())}));
}

void TestGraphPrinting::nameIsUsedAsEntered()
{
    Graph graph(QStringLiteral("graph"), true);
    const driver::DialogAnswer answer = driver::DialogAnswer::withFile(folder.path("plain"));
    graph.slot_print();
    QCOMPARE(contents(folder.path("plain")).left(5), QByteArray("%PDF-"));
    QVERIFY(!QFile::exists(folder.path("plain.pdf")));
}

void TestGraphPrinting::layoutIsRefittedAfterwards()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("3 101"));
    graph.setPos(0, 1000, 2000, 5);
    graph.setPos(1, 1010, 2020, 6);
    graph.setPos(2, 1020, 2005, 7);
    printed(graph);
    // Printing made the drawing square and flat; it then fills the usual cube, whose side is 300.
    QCOMPARE(graph.node(0)->position(), QPointF(-150, -150));
    QCOMPARE(graph.node(1)->position(), QPointF(0, 150));
    QCOMPARE(graph.node(2)->position(), QPointF(150, -75));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(graph.node(i)->getCoordZ(), -150.0);
    }
}

void TestGraphPrinting::layoutIsRefittedIntoTheChosenCube()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("3 101"));
    graph.slot_rescale_graph(200);
    graph.setPos(0, 1000, 2000, 5);
    graph.setPos(1, 1010, 2020, 6);
    graph.setPos(2, 1020, 2005, 7);
    printed(graph);
    QCOMPARE(graph.node(0)->position(), QPointF(-100, -100));
    QCOMPARE(graph.node(1)->position(), QPointF(0, 100));
    QCOMPARE(graph.node(2)->position(), QPointF(100, -50));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(graph.node(i)->getCoordZ(), -100.0);
    }
}

void TestGraphPrinting::itemsAreAsBeforeAfterwards()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("2 1"));
    graph.slot_set_node_radius(7);
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    printed(graph);
    QCOMPARE(graph.node(0)->getRadius(), 7.0);
    QCOMPARE(graph.node(1)->getRadius(), 7.0);
    QCOMPARE(graph.node(1)->boundingRect(), QRectF(-9, -9, 19, 19));
    QVERIFY(graph.edgeItem(0, 1)->isVisible());
    QCOMPARE(graph.getID(), id);
    QCOMPARE(recorder.take(), QStringList());
}

void TestGraphPrinting::cancelledDialogDoesNothing()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("2 1"));
    graph.setPos(0, 1, 2, 3);
    graph.setPos(1, 4, 5, 6);
    graph.setWD(folder.path());
    const driver::DialogAnswer answer = driver::DialogAnswer::cancelling();
    graph.slot_print();
    QVERIFY(answer.done());
    QCOMPARE(graph.node(0)->position(), QPointF(1, 2));
    QCOMPARE(graph.node(1)->position(), QPointF(4, 5));
    QCOMPARE(graph.node(1)->getCoordZ(), 6.0);
    graph.autosave();
    QVERIFY(QFile::remove(folder.path(".olmgr")));
}

void TestGraphPrinting::unwritableFileLeavesTheLayout_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("missing directory") << QStringLiteral("missing/graph.pdf");
    QTest::newRow("below a file") << QStringLiteral("/dev/null/graph.pdf");
}

void TestGraphPrinting::unwritableFileLeavesTheLayout()
{
    QFETCH(QString, file);
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("2 1"));
    graph.setPos(0, 1, 2, 3);
    graph.setPos(1, 4, 5, 6);
    const driver::DialogAnswer answer = driver::DialogAnswer::withFile(folder.path(file));
    graph.slot_print();
    QVERIFY(answer.done());
    QVERIFY(!QFile::exists(folder.path(file)));
    QCOMPARE(graph.node(0)->position(), QPointF(1, 2));
    QCOMPARE(graph.node(1)->position(), QPointF(4, 5));
    QCOMPARE(graph.node(1)->getCoordZ(), 6.0);
}

void TestGraphPrinting::fullDiskKeepsTheOldFile()
{
    Graph graph(QStringLiteral("graph"), true);
    fill(graph, QStringLiteral("2 1"));
    const QString old = printed(graph);
    const QByteArray bytes = contents(old);
    const driver::DialogAnswer answer([&](QDialog *shown) {
        auto *dialog = qobject_cast<QFileDialog *>(shown);
        dialog->setOption(QFileDialog::DontConfirmOverwrite);
        driver::chooseFile(dialog, old);
    });
    {
        const FullDisk disk;
        graph.slot_print();
    }
    QVERIFY(answer.done());
    QCOMPARE(contents(old), bytes);
    QCOMPARE(QDir(folder.path()).entryList({QStringLiteral("graph.pdf.*")}, QDir::AllEntries | QDir::Hidden),
             QStringList());
}

void TestGraphPrinting::print_intoASquare()
{
    Graph graph(QStringLiteral("graph"), true);
    fillDiagonal(graph);
    QImage image = whiteSquare(300);
    QPainter painter(&image);
    graph.print(&painter, 300);
    QCOMPARE(inkAt(image, QPointF(50, 50)), Ink::Disc);
    QCOMPARE(inkAt(image, QPointF(250, 250)), Ink::Disc);
    QCOMPARE(inkAt(image, QPointF(150, 150)), Ink::Line);
    QCOMPARE(inkAt(image, QPointF(50, 250)), Ink::Paper);
    // The painter is where it was; the vertices stay where they were put for the drawing.
    QVERIFY(painter.transform().isIdentity());
    QCOMPARE(graph.node(0)->position(), QPointF(-100, -100));
    QCOMPARE(graph.node(1)->position(), QPointF(100, 100));
    QCOMPARE(graph.node(1)->getCoordZ(), 0.0);
}

void TestGraphPrinting::print_shifted()
{
    Graph graph(QStringLiteral("graph"), true);
    fillDiagonal(graph);
    QImage image = whiteSquare(500);
    QPainter painter(&image);
    graph.print(&painter, 300, 120, 30);
    QCOMPARE(inkAt(image, QPointF(170, 80)), Ink::Disc);
    QCOMPARE(inkAt(image, QPointF(370, 280)), Ink::Disc);
    QCOMPARE(inkAt(image, QPointF(270, 180)), Ink::Line);
    QCOMPARE(inkAt(image, QPointF(50, 50)), Ink::Paper);
}

void TestGraphPrinting::print_whileTheBestGraphIsLocked()
{
    Graph graph(QStringLiteral("graph"), true);
    fillDiagonal(graph);
    QImage image = whiteSquare(300);
    QPainter painter(&image);
    graph.lock();
    graph.print(&painter, 300);
    graph.unlock();
    QCOMPARE(inkAt(image, QPointF(50, 50)), Ink::Disc);
    QCOMPARE(inkAt(image, QPointF(250, 250)), Ink::Disc);
    QCOMPARE(inkAt(image, QPointF(150, 150)), Ink::Line);
    QCOMPARE(inkAt(image, QPointF(50, 250)), Ink::Paper);
}

QTEST_MAIN(TestGraphPrinting)
#include "tst_graph_printing.moc"
