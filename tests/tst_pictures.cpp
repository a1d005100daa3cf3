// The pictures of a drawing, each read back by a program that it is for.

#include "pictures.h"
#include "support/literals.h"
#include "support/matches.h"
#include "support/runprogram.h"
#include "support/testfiles.h"

#include <QLineF>
#include <QPainter>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void extentHoldsEverything();
    void inkIsReadable();

    void svgHasEverything();
    void svgKeepsEveryCharacter();
    void pngHasTheWidth_data();
    void pngHasTheWidth();
    void pngHasEverything();
    void pngIsTransparent();
    void pngOfAHighDrawingIsNarrower();
    void pdfIsCroppedToTheDrawing();
    void pdfHasEverything();
    void latexSetsTheTikzPicture();
    void latexSetsEveryLabel();
    void everyFormatShowsTheSame_data();
    void everyFormatShowsTheSame();
    void labelsOfEdgesAreReadable_data();
    void labelsOfEdgesAreReadable();
    void neatoKeepsThePlaces();
    void neatoKeepsEveryCharacter();
    void emptyDrawing();
};

namespace
{
/// What means something in XML, in TeX or in DOT, and a few letters.
const QString oddLabel = text("a<b>&\"'\\N{}$x$#%_^~|\u00e9");

/// A square of 200 with one diagonal: 4 discs in colours, one of them labelled, and 5 edges, one red and one labelled.
Drawing square()
{
    Drawing drawing;
    drawing.vertices = {{{-100, -100}, 20, Qt::yellow, QStringLiteral("one")},
                        {{100, -100}, 20, Qt::cyan, {}},
                        {{100, 100}, 20, Qt::red, {}},
                        {{-100, 100}, 40, Qt::darkBlue, {}}};
    drawing.edges = {{0, 1, Qt::black, 2, {}},
                     {1, 2, Qt::black, 2, {}},
                     {2, 3, Qt::red, 4, {}},
                     {3, 0, Qt::black, 2, QStringLiteral("7")},
                     {0, 2, Qt::black, 2, {}}};
    return drawing;
}

/// Two discs with the label, and an edge with it between them.
Drawing labelled(const QString &label)
{
    Drawing drawing;
    drawing.vertices = {{{0, 0}, 20, Qt::white, label}, {{0, 100}, 20, Qt::white, label}};
    drawing.edges = {{0, 1, Qt::black, 2, label}};
    return drawing;
}

struct SvgContent {
    int circles = 0;
    int lines = 0;
    QStringList texts;
    QStringList fills;
    QStringList strokes;
    QStringList widths;
    bool wellFormed = false;
};

SvgContent readSvg(const QByteArray &bytes)
{
    SvgContent content;
    QXmlStreamReader reader(bytes);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement()) {
            continue;
        }
        if (reader.name() == QLatin1String("circle")) {
            ++content.circles;
            content.fills.append(reader.attributes().value(QLatin1String("fill")).toString());
        } else if (reader.name() == QLatin1String("line")) {
            ++content.lines;
            content.strokes.append(reader.attributes().value(QLatin1String("stroke")).toString());
            content.widths.append(reader.attributes().value(QLatin1String("stroke-width")).toString());
        } else if (reader.name() == QLatin1String("text")) {
            content.texts.append(reader.readElementText());
        }
    }
    content.wellFormed = !reader.hasError();
    return content;
}

QString writeTo(const TestFolder &folder, const char *name, const QByteArray &bytes)
{
    return folder.write(name, bytes);
}

/// The first page of a PDF file, a pixel to a unit of the drawing.
QImage rendered(const TestFolder &folder, const QByteArray &bytes)
{
    const QString pdfPath = writeTo(folder, "page.pdf", bytes);
    const QString picture = folder.path("page");
    outputOf(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("96"), QStringLiteral("-singlefile"),
                                          QStringLiteral("-png"), pdfPath, picture});
    return QImage(picture + QStringLiteral(".png"));
}

QString textOfPdf(const QString &path)
{
    return QString::fromUtf8(outputOf(QStringLiteral("pdftotext"), {path, QStringLiteral("-")}));
}

/// The words on the page, sorted.
QStringList wordsOfPdf(const QString &path)
{
    QStringList found = textOfPdf(path).simplified().split(QLatin1Char(' '));
    found.sort();
    return found;
}

/// The colour of the picture at a place of square(), whose extent begins at @p origin.
QColor colourAt(const QImage &picture, QPointF place, QPointF origin)
{
    return picture.pixelColor((place - origin).toPoint());
}

/// Sets the document and returns the path of its page.
QString set(const TestFolder &folder, const QByteArray &document)
{
    writeTo(folder, "picture.tex", document);
    const ToolResult run = runProgram(
        QStringLiteral(PDFLATEX_PROGRAM),
        {QStringLiteral("-halt-on-error"), QStringLiteral("-interaction=nonstopmode"), QStringLiteral("picture.tex")},
        {}, folder.path());
    if (run.status != 0) {
        qFatal("pdflatex: %s", run.output.constData());
    }
    return folder.path("picture.pdf");
}

/// The smallest rectangle that holds all that is not white.
QRect inkedPart(const QImage &picture)
{
    QRect part;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qGreen(picture.pixel(x, y)) < 128 || qBlue(picture.pixel(x, y)) < 128) {
                part |= QRect(x, y, 1, 1);
            }
        }
    }
    return part;
}

/// The lines that neato writes with -Tplain, split at blanks.
QList<QList<QByteArray>> plainNeato(const QByteArray &dotText)
{
    QList<QList<QByteArray>> lines;
    const QList<QByteArray> output =
        outputOf(QStringLiteral(NEATO_PROGRAM), {QStringLiteral("-n"), QStringLiteral("-Tplain")}, dotText).split('\n');
    for (const QByteArray &line : output) {
        lines.append(line.split(' '));
    }
    return lines;
}

/// A unit of a drawing is a 96th of an inch.
QString dotsPerInch(double pixelsToUnit)
{
    return QString::number(96 * pixelsToUnit);
}

/// The page of the PDF file @p path in pixels.
QImage pageOf(const QString &path, double pixelsToUnit)
{
    return QImage::fromData(
        outputOf(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), dotsPerInch(pixelsToUnit), path}));
}
} // namespace

void TestPictures::extentHoldsEverything()
{
    QCOMPARE(square().extent(), QRectF(QPointF(-142.5, -122.5), QPointF(122.5, 142.5)));
    const QString label(60, QLatin1Char('m'));
    const QRectF wide = labelled(label).extent();
    QVERIFY(wide.width() > 400 && wide.width() < 900);
    QVERIFY(qAbs(wide.center().x()) < 2);
    Drawing edgeLabel = labelled({});
    edgeLabel.edges[0].label = label;
    QVERIFY(edgeLabel.extent().width() > 400);
}

void TestPictures::inkIsReadable()
{
    QCOMPARE(Drawing::inkOn(Qt::yellow), QColor(Qt::black));
    QCOMPARE(Drawing::inkOn(Qt::white), QColor(Qt::black));
    QCOMPARE(Drawing::inkOn(Qt::darkBlue), QColor(Qt::white));
    QCOMPARE(Drawing::inkOn(Qt::red), QColor(Qt::white));
    QCOMPARE(Drawing::inkOn(Qt::green), QColor(Qt::black));
    QCOMPARE(Drawing::inkOn(Qt::magenta), QColor(Qt::black));
    // In TikZ it is the colour of each label.
    Drawing named = square();
    named.vertices[3].label = QStringLiteral("dark");
    const QString document = QString::fromLatin1(tikz(named));
    QVERIFY(document.contains(QLatin1String("[text=black]center:{one}")));
    QVERIFY(document.contains(QLatin1String("[text=white]center:{dark}")));
}

void TestPictures::svgHasEverything()
{
    const SvgContent content = readSvg(svg(square()));
    QVERIFY(content.wellFormed);
    QCOMPARE(content.circles, 4);
    QCOMPARE(content.fills, words({"#ffff00", "#00ffff", "#ff0000", "#000080"}));
    QCOMPARE(content.lines, 5);
    QCOMPARE(content.strokes, words({"#000000", "#000000", "#ff0000", "#000000", "#000000"}));
    QVERIFY(svg(square()).contains("<text x=\"-100\" y=\"-96.15\" fill=\"#000000\">one<")); // a third of a letter down
    QCOMPARE(content.widths, words({"2", "2", "4", "2", "2"}));
    QCOMPARE(content.texts, words({"7", "one"}));
    QVERIFY(svg(square()).contains("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"265\" height=\"265\" "
                                   "viewBox=\"-142.5 -122.5 265 265\">"));
}

void TestPictures::svgKeepsEveryCharacter()
{
    QCOMPARE(readSvg(svg(labelled(oddLabel))).texts, (QStringList{oddLabel, oddLabel, oddLabel}));
    QString impossible = QStringLiteral("x");
    for (ushort code = 0; code < 32; ++code) {
        impossible += QChar(code);
    }
    impossible += QChar(0xFFFE);
    const SvgContent content = readSvg(svg(labelled(impossible)));
    QVERIFY(content.wellFormed);
    QCOMPARE(content.circles, 2);
}

void TestPictures::pngHasTheWidth_data()
{
    QTest::addColumn<int>("width");
    for (const int width : {1, 265, 1000, 3001}) {
        QTest::addRow("%d", width) << width;
    }
}

void TestPictures::pngHasTheWidth()
{
    QFETCH(int, width);
    const QImage picture = QImage::fromData(png(square(), width, false), "PNG");
    QCOMPARE(picture.size(), QSize(width, width));
    QVERIFY(!picture.hasAlphaChannel());
}

void TestPictures::pngHasEverything()
{
    const QImage picture = QImage::fromData(png(square(), 265, false));
    const QPointF origin = square().extent().topLeft();
    const auto at = [&](double x, double y) { return colourAt(picture, QPointF(x, y), origin); };
    QCOMPARE(at(-100, -112), QColor(Qt::yellow)); // above the label
    QCOMPARE(at(100, -100), QColor(Qt::cyan));
    QCOMPARE(at(100, 100), QColor(Qt::red));
    QCOMPARE(at(-100, 70), QColor(Qt::darkBlue)); // the larger disc
    QVERIFY(at(0, -100).lightness() < 140);
    QVERIFY(at(50, 50).lightness() < 140);
    QVERIFY(at(0, 100).red() > 200 && at(0, 100).green() < 100);
    QCOMPARE(at(60, -40), QColor(Qt::white));
    // A label in white letters on a dark disc is there, too.
    Drawing named = square();
    named.vertices[3].label = QStringLiteral("MMMM");
    const QImage withLabel = QImage::fromData(png(named, 265, false));
    QVERIFY(withLabel != picture);
    int white = 0;
    for (int x = -118; x < -82; ++x) {
        white += colourAt(withLabel, QPointF(x, 100), origin).lightness() > 180 ? 1 : 0;
    }
    QVERIFY(white > 3);
}

void TestPictures::pngIsTransparent()
{
    const QImage picture = QImage::fromData(png(square(), 265, true));
    QVERIFY(picture.hasAlphaChannel());
    QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(colourAt(picture, QPointF(100, 100), square().extent().topLeft()), QColor(Qt::red));
}

/// Otherwise two vertices one above the other could take any amount of memory.
void TestPictures::pngOfAHighDrawingIsNarrower()
{
    Drawing high = labelled({});
    high.vertices[1].place.setY(2000);
    const QImage picture = QImage::fromData(png(high, 9000, true));
    QCOMPARE(picture.height(), mostPixels);
    QCOMPARE(picture.width(), 220);
}

void TestPictures::pdfIsCroppedToTheDrawing()
{
    const TestFolder folder;
    const QString path = writeTo(folder, "page.pdf", pdf(square()));
    const QString information = QString::fromUtf8(outputOf(QStringLiteral("pdfinfo"), {path}));
    QVERIFY2(information.contains(QRegularExpression(QStringLiteral("Pages: +1\n"))), qPrintable(information));
    QVERIFY2(information.contains(QRegularExpression(QStringLiteral("Page size: +199 x 199 pts"))),
             qPrintable(information));
}

void TestPictures::pdfHasEverything()
{
    const TestFolder folder;
    const QImage picture = rendered(folder, pdf(square()));
    const QPointF origin = square().extent().topLeft();
    const auto at = [&](double x, double y) { return colourAt(picture, QPointF(x, y), origin); };
    QCOMPARE(at(-100, -112), QColor(Qt::yellow));
    QCOMPARE(at(100, -100), QColor(Qt::cyan));
    QCOMPARE(at(100, 100), QColor(Qt::red));
    QCOMPARE(at(-100, 70), QColor(Qt::darkBlue));
    QVERIFY(at(0, -100).lightness() < 140);
    QVERIFY(at(0, 100).red() > 200 && at(0, 100).green() < 100);
    QCOMPARE(at(60, -40), QColor(Qt::white));
    QCOMPARE(wordsOfPdf(folder.path("page.pdf")), words({"7", "one"}));
}

/// The page has as many circles and lines as the drawing has vertices and edges.
void TestPictures::latexSetsTheTikzPicture()
{
    const QByteArray document = tikz(square());
    QCOMPARE(allMatches(QString::fromLatin1(document), "(\\\\node\\[vertex)").size(), 4);
    QCOMPARE(allMatches(QString::fromLatin1(document), "(\\\\draw\\[)").size(), 5);
    const TestFolder folder;
    const QString page = set(folder, document);
    outputOf(QStringLiteral("pdftocairo"), {QStringLiteral("-svg"), page, folder.path("page.svg")});
    int circles = 0;
    int lines = 0;
    QXmlStreamReader reader(contents(folder.path("page.svg")));
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("path")) {
            const QXmlStreamAttributes attributes = reader.attributes();
            const bool stroked = attributes.value(QLatin1String("style")).contains(QLatin1String("stroke-width"));
            const bool curved = attributes.value(QLatin1String("d")).contains(QLatin1Char('C'));
            circles += stroked && curved ? 1 : 0;
            lines += stroked && !curved ? 1 : 0;
        }
    }
    QVERIFY(!reader.hasError());
    QCOMPARE(circles, 4);
    QCOMPARE(lines, 5);
    QCOMPARE(wordsOfPdf(page), words({"7", "one"}));
}

/// What means something to TeX is read again from the page; other letters than those of Latin-1 become question marks.
void TestPictures::latexSetsEveryLabel()
{
    const TestFolder folder;
    const QString special = QStringLiteral("a{b}$c$d#e%f&h");
    const QString read = textOfPdf(set(folder, tikz(labelled(special))));
    QVERIFY2(read.contains(special), qPrintable(read));
    QString all;
    for (ushort code = 1; code < 0x180; ++code) {
        all += QChar(code);
    }
    const QString page = textOfPdf(set(folder, tikz(labelled(all + QChar(0x221E)))));
    QVERIFY2(page.contains(QLatin1String("XYZ")), qPrintable(page));
}

void TestPictures::everyFormatShowsTheSame_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"png", "transparent png", "pdf", "tex", "dot"}) {
        QTest::newRow(format) << QString::fromLatin1(format);
    }
}

/// Colours and widths, sizes and places, seen on the picture that a reader of the format makes.
void TestPictures::everyFormatShowsTheSame()
{
    QFETCH(QString, format);
    constexpr double scale = 3;
    Drawing shown = square();
    shown.vertices.append({{0, 0}, 20, Qt::green, {}}); // on an edge between others
    const TestFolder folder;
    QImage picture;
    if (format == QLatin1String("pdf")) {
        picture = pageOf(writeTo(folder, "page.pdf", pdf(shown)), scale);
    } else if (format == QLatin1String("tex")) {
        picture = pageOf(set(folder, tikz(shown)), scale);
    } else if (format == QLatin1String("dot")) {
        const QByteArray rows = outputOf(
            QStringLiteral(NEATO_PROGRAM),
            {QStringLiteral("-n"), QStringLiteral("-Gdpi=") + dotsPerInch(scale), QStringLiteral("-Tpng")}, dot(shown));
        picture = QImage::fromData(rows);
    } else {
        const QImage painted =
            QImage::fromData(png(shown, qRound(shown.extent().width() * scale), format.startsWith(QLatin1Char('t'))));
        picture = QImage(painted.size(), QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter(&picture).drawImage(0, 0, painted);
    }
    picture = picture.convertToFormat(QImage::Format_RGB32);
    const QRect inked = inkedPart(picture);
    const QRectF ink = shown.extent().adjusted(2, 2, -2, -2); // the margin is white
    QVERIFY(qAbs(inked.width() - ink.width() * scale) < 5);
    QVERIFY(qAbs(inked.height() - ink.height() * scale) < 5);

    const auto at = [&](double x, double y) {
        return picture.pixelColor(inked.topLeft() + ((QPointF(x, y) - ink.topLeft()) * scale).toPoint());
    };
    QCOMPARE(at(-100, -113), QColor(Qt::yellow)); // above the label
    QCOMPARE(at(100, -100), QColor(Qt::cyan));
    QCOMPARE(at(100, 100), QColor(Qt::red));
    QCOMPARE(at(-100, 70), QColor(Qt::darkBlue)); // the larger disc
    QCOMPARE(at(0, 0), QColor(Qt::green));        // the edge runs under it
    QCOMPARE(at(60, -40), QColor(Qt::white));
    /// How many units of a line of the picture are not white.
    const auto thickness = [&](QPointF from, QPointF to) {
        const int steps = qRound(QLineF(from, to).length() * scale);
        int dark = 0;
        for (int i = 0; i <= steps; ++i) {
            const QPointF point = from + (to - from) * i / steps;
            dark += at(point.x(), point.y()).green() < 128 ? 1 : 0;
        }
        return dark / scale;
    };
    QVERIFY(qAbs(thickness({0, -110}, {0, -90}) - 2) < 0.7); // an edge
    QVERIFY(qAbs(thickness({0, 90}, {0, 110}) - 4) < 0.7);   // one that is highlighted
    QVERIFY(at(0, 100).red() > 200 && at(0, 100).green() < 100);
    QVERIFY(at(0, -100).red() < 100);
    double widest = 0;                // the upper stroke of the 7 on an edge
    for (int y = -20; y <= 20; ++y) { // neato centres it between the discs
        widest = std::max(widest, thickness({-120, double(y)}, {-80, double(y)}));
    }
    QVERIFY2(widest > 3, qPrintable(QString::number(widest)));
    if (format != QLatin1String("dot")) {
        QVERIFY(thickness({-100, -10}, {-100, 10}) < 18); // white around it
    }
}

void TestPictures::labelsOfEdgesAreReadable_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"png", "pdf", "tex", "svg"}) {
        QTest::newRow(format) << QString::fromLatin1(format);
    }
}

/// No edge is seen above the point of a number, which would look like a colon, and none that comes later runs over it.
void TestPictures::labelsOfEdgesAreReadable()
{
    QFETCH(QString, format);
    constexpr double scale = 10;
    Drawing cross;
    cross.vertices = {{{-100, 0}, 20, Qt::white, {}},
                      {{100, 0}, 20, Qt::white, {}},
                      {{0, -100}, 20, Qt::white, {}},
                      {{0, 100}, 20, Qt::white, {}}};
    cross.edges = {{0, 1, Qt::black, 2, QStringLiteral("1.1")}, {2, 3, Qt::black, 2, {}}};
    const TestFolder folder;
    QImage picture;
    if (format == QLatin1String("pdf")) {
        picture = pageOf(writeTo(folder, "page.pdf", pdf(cross)), scale);
    } else if (format == QLatin1String("tex")) {
        picture = pageOf(set(folder, tikz(cross)), scale);
    } else if (format == QLatin1String("png")) {
        picture = QImage::fromData(png(cross, qRound(cross.extent().width() * scale), false));
    } else {
        const QByteArray bytes = svg(cross);
        QVERIFY(bytes.lastIndexOf("<line") < bytes.indexOf("<rect") && bytes.indexOf("<rect") < bytes.indexOf("<text"));
        return;
    }
    const QPoint middle = inkedPart(picture).center();
    for (int y = -2; y <= 1; ++y) {
        QVERIFY(picture.pixelColor(middle + QPoint(0, qRound(y * scale))).lightness() > 200);
    }
}

void TestPictures::neatoKeepsThePlaces()
{
    int nodes = 0;
    QVector<QPointF> places;
    QStringList edges;
    for (const QList<QByteArray> &line : plainNeato(dot(square()))) {
        if (line.first() == "node") { // node name x y width height label style shape color fillcolor
            QCOMPARE(line.at(1).toInt(), nodes);
            places.append(QPointF(line.at(2).toDouble(), line.at(3).toDouble()));
            QVERIFY(qAbs(line.at(4).toDouble() - (nodes == 3 ? 60.0 : 30.0) / 72) < 0.01);
            QCOMPARE(QString::fromLatin1(line.last()), square().vertices[nodes].colour.name());
            ++nodes;
        } else if (line.first() == "edge") {
            edges.append(QString::fromLatin1(line.at(1) + '-' + line.at(2)));
        }
    }
    QCOMPARE(nodes, 4);
    edges.sort();
    QCOMPARE(edges, words({"0-1", "0-2", "1-2", "2-3", "3-0"}));
    // In inches, y upwards.
    const double side = 200 * 0.75 / 72;
    const QPointF horizontal = places[1] - places[0];
    const QPointF vertical = places[3] - places[0];
    QVERIFY(qAbs(horizontal.x() - side) < 0.01 && qAbs(horizontal.y()) < 0.01);
    QVERIFY(qAbs(vertical.y() + side) < 0.01 && qAbs(vertical.x()) < 0.01);
}

void TestPictures::neatoKeepsEveryCharacter()
{
    const QByteArray output = outputOf(QStringLiteral(NEATO_PROGRAM), {QStringLiteral("-n"), QStringLiteral("-Tsvg")},
                                       dot(labelled(oddLabel)));
    QCOMPARE(readSvg(output).texts, (QStringList{oddLabel, oddLabel, oddLabel}));
}

void TestPictures::emptyDrawing()
{
    const Drawing empty;
    QVERIFY(!empty.extent().isEmpty());
    QVERIFY(readSvg(svg(empty)).wellFormed);
    QCOMPARE(QImage::fromData(png(empty, 50, false)).size(), QSize(50, 50));
    QVERIFY(pdf(empty).endsWith("%%EOF\n"));
    const TestFolder folder;
    set(folder, tikz(empty));
    QVERIFY(!plainNeato(dot(empty)).isEmpty());
}

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
