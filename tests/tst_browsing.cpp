// Lists from files, and browsing a list graph by graph in the viewer.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "graphlist.h"
#include "node.h"
#include "support/literals.h"
#include "support/mainwindowfixture.h"
#include "support/stderrcapture.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QLineF>
#include <QMessageBox>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolTip>
#include <QtTest>

#include <cmath>
#include <optional>

class TestBrowsing : public QObject
{
    Q_OBJECT

private slots:
    void listFromFile();
    void listFromFileIsNeverMarkedBusy();
    void listFromFileRefusals();
    void firstStepsOnAFreshList();
    void theWholeListBothWays();
    void graphsStandOnACircle();
    void oneGraph();
    void anotherListKeepsThePosition();
    void noListChosen();
    void noListLeftToBrowse();
    void carriageReturnsStayInNames();
    void unreadableNameLeavesAnEmptyView();
    void sampleListIsShownAsItsNamesSay();
    void theBeginningOfALongNameIsShown();
    void keysBrowse();
    void endOfAListNotBrowsedYet();
    void keysOnAnEmptyList();
    void layoutStaysInForce();
    void noteOfAGraphGoesWithIt();
    void namesAreNotRichText();
    void vertexNamesAreNotRichText();
    void fileNamesAreNotRichText();
};

namespace
{
/// A fixture in the mode "Visualization", with the given lists.
class Browser : public MainWindowFixture
{
public:
    Browser()
    {
        const bool loaded = load(write(QStringLiteral("small.tav"), "@\nA_\t0\n"));
        if (!loaded) {
            qFatal("the small database does not load");
        }
        press(QStringLiteral("Visualization"));
        clearConsole();
    }

    void addNames(const char *name, const QStringList &graphs)
    {
        widget()->getManager()->addList(QLatin1String(name), graphs);
    }
    void choose(const char *list) { combo("browseChoice")->setCurrentText(QLatin1String(list)); }
    QString next()
    {
        press(QStringLiteral("=>>"));
        return positionText();
    }
    QString previous()
    {
        press(QStringLiteral("<<="));
        return positionText();
    }
    bool listsEnabled() const { return panel("listsPanel")->isEnabled(); }
};

/// A part of names that rich text would show as a missing image and "bold&".
const QString markup = QStringLiteral("<img src=x><b>bold&amp;");

/// What is read where @p text is shown in a format.
QString readAs(const QString &text, Qt::TextFormat format = Qt::AutoText)
{
    if (format == Qt::PlainText || (format == Qt::AutoText && !Qt::mightBeRichText(text))) {
        return text;
    }
    QTextDocument document;
    document.setHtml(text);
    return document.toPlainText();
}

/// What is read in all that is visible: labels, those of tool tips and message boxes, too, choosers, the console,
/// titles and what shows when the mouse rests.
QStringList textsToRead()
{
    QStringList texts;
    const QWidgetList widgets = QApplication::allWidgets();
    for (const QWidget *widget : widgets) {
        if (!widget->isVisible()) {
            continue;
        }
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            texts.append(readAs(label->text(), label->textFormat()));
        } else if (const auto *edit = qobject_cast<const QTextEdit *>(widget)) {
            texts += edit->toPlainText().split(QLatin1Char('\n'));
        } else if (const auto *combo = qobject_cast<const QComboBox *>(widget)) {
            for (int i = 0; i < combo->count(); ++i) {
                texts.append(combo->itemText(i));
                texts.append(readAs(combo->itemData(i, Qt::ToolTipRole).toString()));
            }
        }
        texts += {readAs(widget->toolTip()), readAs(widget->whatsThis()), readAs(widget->statusTip()),
                  widget->windowTitle()};
    }
    return texts;
}

bool isRead(const QString &text)
{
    return textsToRead().contains(text);
}

/// The texts in which the markup of a name does not stand as it is.
QStringList interpretedTexts()
{
    QStringList texts;
    for (const QString &text : textsToRead()) {
        if (text.contains(QLatin1String("bold")) && !text.contains(markup)) {
            texts.append(text);
        }
    }
    return texts;
}
} // namespace

void TestBrowsing::listFromFile()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(example("connected-8.tav")));
    fixture.clearConsole();
    fixture.typeListName(QStringLiteral(" my list "));
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        auto *files = qobject_cast<QFileDialog *>(dialog);
        QCOMPARE(files->windowTitle(), QStringLiteral("Tavoline version 0.2.1 alpha"));
        QCOMPARE(files->nameFilters(), words({"File type (*.g6)"}));
        QVERIFY(fixture.panel("listsPanel")->isEnabledTo(fixture.window));
        driver::chooseFile(files, example("regular-8.g6"));
    });
    StderrCapture diagnostics;
    fixture.press(QStringLiteral("From file."));
    QCOMPARE(diagnostics.take(), QByteArray("List added :  my list \n"));
    QCOMPARE(fixture.console(), words({"List added :  my list  [ 17 element(s)]", "List added :  my list "}));
    QCOMPARE(fixture.combo("browseChoice")->currentText(), QStringLiteral(" my list "));
}

void TestBrowsing::listFromFileIsNeverMarkedBusy()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(example("connected-8.tav")));
    fixture.typeListName(QStringLiteral("list"));
    bool enabled = false;
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        enabled = fixture.panel("listsPanel")->isEnabled();
        dialog->reject();
    });
    fixture.press(QStringLiteral("From file."));
    QVERIFY(enabled);
}

void TestBrowsing::listFromFileRefusals()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(example("connected-8.tav")));
    fixture.addList(QStringLiteral("regular"), example("regular-8.g6"));
    fixture.clearConsole();

    fixture.pressAndChoose(QStringLiteral("From file."), example("regular-8.g6"));
    QCOMPARE(fixture.console(), QStringList()); // the name is taken
    fixture.typeListName(QString());
    fixture.pressAndChoose(QStringLiteral("From file."), example("regular-8.g6"));
    QCOMPARE(fixture.console(), QStringList()); // no name
    fixture.typeListName(QStringLiteral("other"));
    StderrCapture diagnostics;
    fixture.pressAndCancel(QStringLiteral("From file."));
    QCOMPARE(diagnostics.take(), QByteArray("Unable to open file\n"));
    QCOMPARE(fixture.console(), words({"Unable to open file :"}));
    QCOMPARE(fixture.widget()->getManager()->listNames(), words({"regular"}));
    QVERIFY(fixture.panel("listsPanel")->isEnabled());
}

void TestBrowsing::firstStepsOnAFreshList()
{
    Browser next;
    next.addNames("three", words({"A_", "BW", "Bw"}));
    QCOMPARE(next.next(), QStringLiteral("2/3 BW"));
    QCOMPARE(next.next(), QStringLiteral("3/3 Bw"));
    QCOMPARE(next.next(), QStringLiteral("1/3 A_"));

    Browser previous;
    previous.addNames("three", words({"A_", "BW", "Bw"}));
    QCOMPARE(previous.previous(), QStringLiteral("3/3 Bw"));
    QCOMPARE(previous.previous(), QStringLiteral("2/3 BW"));
    QVERIFY(previous.listsEnabled());
}

void TestBrowsing::theWholeListBothWays()
{
    Browser browser;
    const QStringList names =
        QString::fromLatin1(contents(example("regular-8.g6"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(names.size(), 17);
    browser.addNames("regular", names);
    for (int step = 1; step <= 20; ++step) {
        const int position = step % 17;
        QCOMPARE(browser.next(), QStringLiteral("%1/17 ").arg(position + 1) + names.at(position));
        QCOMPARE(browser.view()->g6currentGraphData(), names.at(position));
    }
    for (int step = 19; step >= -3; --step) {
        const int position = (step + 17) % 17;
        QCOMPARE(browser.previous(), QStringLiteral("%1/17 ").arg(position + 1) + names.at(position));
    }
}

void TestBrowsing::graphsStandOnACircle()
{
    Browser browser;
    browser.addNames("cycles", words({"Cl", "EhEG"}));
    QCOMPARE(browser.next(), QStringLiteral("2/2 EhEG"));
    QCOMPARE(browser.view()->getNbNodes(), 6);
    QCOMPARE(browser.view()->getNbEdges(), 6);
    for (int i = 0; i < 6; ++i) {
        const QPointF expected(100.0 * std::cos(i * M_PI / 3.0), 100.0 * std::sin(i * M_PI / 3.0));
        const QPointF found = browser.view()->node(i)->position();
        QVERIFY(std::hypot(found.x() - expected.x(), found.y() - expected.y()) < 1e-5);
        QVERIFY(browser.view()->node(i)->QGraphicsItem::isVisible());
    }
    QVERIFY(!browser.view()->node(6)->QGraphicsItem::isVisible());
}

void TestBrowsing::oneGraph()
{
    Browser browser;
    browser.addNames("one", words({"Bw"}));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(browser.next(), QStringLiteral("1/1 Bw"));
        QCOMPARE(browser.previous(), QStringLiteral("1/1 Bw"));
    }
}

void TestBrowsing::anotherListKeepsThePosition()
{
    Browser browser;
    browser.addNames("five", words({"A_", "BW", "Bw", "CF", "CU"}));
    browser.addNames("four", words({"D?{", "DCw", "DC{", "DEw"}));
    browser.addNames("two", words({"A_", "Bw"}));
    QCOMPARE(browser.next(), QStringLiteral("2/5 BW"));
    QCOMPARE(browser.next(), QStringLiteral("3/5 Bw"));
    browser.choose("four");
    QCOMPARE(browser.next(), QStringLiteral("4/4 DEw"));
    browser.choose("two");
    QCOMPARE(browser.next(), QStringLiteral("1/2 A_"));
    browser.choose("five");
    QCOMPARE(browser.previous(), QStringLiteral("5/5 CU"));
}

void TestBrowsing::noListChosen()
{
    Browser browser;
    QVERIFY(browser.listsEnabled());
    QCOMPARE(browser.next(), QString());
    QCOMPARE(browser.view()->getNbNodes(), 0);
    QVERIFY(!browser.listsEnabled());
    QCOMPARE(browser.console(), QStringList());
    browser.addNames("one", words({"Bw"}));
    QVERIFY(browser.listsEnabled());
    QCOMPARE(browser.next(), QStringLiteral("1/1 Bw"));
}

void TestBrowsing::noListLeftToBrowse()
{
    Browser browser;
    browser.addNames("one", words({"Bw"}));
    QCOMPARE(browser.next(), QStringLiteral("1/1 Bw"));
    QVERIFY(browser.view()->node(0)->QGraphicsItem::isVisible());
    browser.widget()->getManager()->remList(QStringLiteral("one"));
    QCOMPARE(browser.next(), QString());
    QCOMPARE(browser.view()->getNbNodes(), 0);
    QVERIFY(!browser.view()->node(0)->QGraphicsItem::isVisible());
}

void TestBrowsing::carriageReturnsStayInNames()
{
    Browser browser;
    const QString file = browser.write(QStringLiteral("dos.g6"), "A_\r\nBw\r\n");
    QVERIFY(browser.widget()->getManager()->addListFromFile(QStringLiteral("dos"), file));
    QCOMPARE(browser.next(), QStringLiteral("2/2 Bw\r"));
    QCOMPARE(browser.view()->getNbEdges(), 3);
}

void TestBrowsing::unreadableNameLeavesAnEmptyView()
{
    Browser browser;
    browser.addNames("mixed", words({"Bw", "@", "BW", "~?@A"}));
    StderrCapture diagnostics;
    QCOMPARE(browser.next(), QString());
    QCOMPARE(diagnostics.take(), QByteArray("Failed to load graph\n"));
    QCOMPARE(browser.view()->getNbNodes(), 0);
    for (int i = 0; i < 32; ++i) {
        QVERIFY(!browser.view()->node(i)->QGraphicsItem::isVisible());
    }
    QVERIFY(browser.listsEnabled());
    QCOMPARE(browser.next(), QStringLiteral("3/4 BW"));
    QCOMPARE(browser.next(), QString());
    QCOMPARE(browser.view()->getNbNodes(), 0);
    QCOMPARE(browser.next(), QStringLiteral("1/4 Bw"));
}

void TestBrowsing::sampleListIsShownAsItsNamesSay()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(example("connected-8.tav")));
    fixture.addList(QStringLiteral("regular"), example("regular-8.g6"));
    fixture.press(QStringLiteral("Visualization"));
    fixture.press(QStringLiteral("=>>"));
    QCOMPARE(fixture.positionText(), QStringLiteral("2/17 G?zTb_"));
    // Regular: every vertex has the degree of the first.
    for (int i = 0; i < 8; ++i) {
        QCOMPARE(fixture.view()->degree(i), fixture.view()->degree(0));
    }
}

void TestBrowsing::theBeginningOfALongNameIsShown()
{
    Browser browser;
    const QString name = QLatin1Char('C') + QString(20000000, QLatin1Char('~'));
    browser.addNames("long", {name});
    QCOMPARE(browser.next(), QStringLiteral("1/1 C") + QString(998, QLatin1Char('~')) + QChar(0x2026));
    QCOMPARE(browser.view()->getNbEdges(), 6);
    QVERIFY(!browser.window->grab().isNull());
    QCOMPARE(browser.widget()->getManager()->getList(QStringLiteral("long")).toVector(), QVector<QString>{name});
}

/// While the viewer has the keyboard.
void TestBrowsing::keysBrowse()
{
    Browser browser;
    browser.addNames("four", words({"A_", "Bw", "BW", "Bg"}));
    browser.next();
    Graph *view = browser.view();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(view, key);
        return browser.positionText();
    };
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("3/4 BW"));
    QCOMPARE(press(Qt::Key_PageUp), QStringLiteral("2/4 Bw"));
    QCOMPARE(press(Qt::Key_End), QStringLiteral("4/4 Bg"));
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("1/4 A_"));
    QCOMPARE(press(Qt::Key_PageUp), QStringLiteral("4/4 Bg"));
    QCOMPARE(press(Qt::Key_Home), QStringLiteral("1/4 A_"));
    QCOMPARE(view->getNbNodes(), 2);
    QVERIFY(browser.listsEnabled());
}

void TestBrowsing::endOfAListNotBrowsedYet()
{
    Browser browser;
    browser.addNames("four", words({"A_", "Bw", "BW", "Bg"}));
    browser.addNames("two", words({"A_", "Bw"}));
    QTest::keyClick(browser.view(), Qt::Key_End);
    QCOMPARE(browser.positionText(), QStringLiteral("4/4 Bg"));
    browser.choose("two");
    QTest::keyClick(browser.view(), Qt::Key_End);
    QCOMPARE(browser.positionText(), QStringLiteral("2/2 Bw"));
    browser.choose("four");
    QTest::keyClick(browser.view(), Qt::Key_Home);
    QCOMPARE(browser.positionText(), QStringLiteral("1/4 A_"));
}

/// They do what the buttons do.
void TestBrowsing::keysOnAnEmptyList()
{
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_End}) {
        Browser browser;
        browser.addNames("one", words({"Bw"}));
        browser.next();
        browser.widget()->getManager()->remList(QStringLiteral("one"));
        QTest::keyClick(browser.view(), key);
        QCOMPARE(browser.positionText(), QString());
        QCOMPARE(browser.view()->getNbNodes(), 0);
        browser.addNames("one", words({"Bw"}));
        QTest::keyClick(browser.view(), key);
        QCOMPARE(browser.positionText(), QStringLiteral("1/1 Bw"));
        QVERIFY(browser.listsEnabled());
    }
}

void TestBrowsing::layoutStaysInForce()
{
    Browser browser;
    browser.addNames("two", words({"C~", "Dhc"}));
    browser.next();
    Graph *view = browser.view();
    const auto isOnCircle = [&] {
        return qAbs(QLineF(QPointF(), view->node(1)->pos()).length() - 100) < 1e-6 && view->node(0)->pos().y() == 0;
    };
    QVERIFY(isOnCircle());
    QTest::keyClick(view, Qt::Key_8);
    QVERIFY(!isOnCircle());
    browser.next();
    QVERIFY(!isOnCircle());
    browser.next();
    QVERIFY(!isOnCircle());
    QTest::keyClick(view, Qt::Key_5);
    browser.next();
    QVERIFY(isOnCircle());
}

/// Also where the next one cannot be shown.
void TestBrowsing::noteOfAGraphGoesWithIt()
{
    Browser browser;
    browser.addNames("three", words({"@", "Bw", "D~{"}));
    browser.next();
    const auto note = [&] {
        const auto *label = browser.view()->findChild<QLabel *>(QStringLiteral("notice"));
        return label != nullptr && label->isVisible() ? label->text() : QString();
    };
    QTest::keyClick(browser.view(), Qt::Key_8);
    QTest::keyClick(browser.view(), Qt::Key_1);
    QCOMPARE(note(), QString());
    browser.next();
    QCOMPARE(note(), QStringLiteral("The graph is not planar."));
    const StderrCapture diagnostics; // "Failed to load graph"
    browser.next();
    QCOMPARE(browser.positionText(), QString());
    QCOMPARE(note(), QString());
}

void TestBrowsing::namesAreNotRichText()
{
    Browser browser;
    const QString list = QStringLiteral("<h1>") + markup;
    const QString graph = QStringLiteral("Bw") + markup;
    browser.addNames(qPrintable(list), {graph, QStringLiteral("A_")});
    browser.choose(qPrintable(list));
    QCOMPARE(browser.next(), QStringLiteral("2/2 A_"));
    browser.next();
    QVERIFY(isRead(QStringLiteral("1/2 ") + graph));
    QVERIFY(isRead(QStringLiteral("List added : ") + list + QStringLiteral(" [ 2 element(s)]")));

    TAVManager *manager = browser.widget()->getManager();
    manager->addListFromFile(markup, browser.path(markup));
    QVERIFY(isRead(QStringLiteral("Unable to open file :") + browser.path(markup)));
    manager->loadInv1(browser.write(QStringLiteral("inv.txt"), "GRAPH\tINV\n" + markup.toLatin1() + "\t1\n"));
    QVERIFY(isRead(QStringLiteral("@ != ") + markup));
    QCOMPARE(interpretedTexts(), QStringList());
}

void TestBrowsing::vertexNamesAreNotRichText()
{
    const Browser browser;
    Graph *view = browser.view();
    QVERIFY(view->open(browser.write(QStringLiteral("good.golm3"), "1\n" + markup.toLatin1() + "\t0\t0\n0\t")));
    view->update_display();
    const QPoint vertex = view->mapFromScene(view->node(0)->pos());
    QHelpEvent help(QEvent::ToolTip, vertex, view->viewport()->mapToGlobal(vertex));
    QCoreApplication::sendEvent(view->viewport(), &help);
    QVERIFY(isRead(markup));
    QCOMPARE(interpretedTexts(), QStringList());
    QToolTip::hideText();
}

void TestBrowsing::fileNamesAreNotRichText()
{
    const Browser browser;
    const QString file = browser.write(markup + QStringLiteral(".golm3"), "1\n" + markup.toLatin1());
    QStringList boxes;
    QStringList interpreted;
    std::optional<driver::DialogAnswer> next;
    const auto answerBox = [&](QDialog *dialog) {
        boxes.append(qobject_cast<QMessageBox *>(dialog)->text());
        interpreted += interpretedTexts();
        dialog->reject();
    };
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        driver::chooseFile(qobject_cast<QFileDialog *>(dialog), file);
        next.emplace(answerBox);
    });
    browser.view()->slot_open();
    QCOMPARE(boxes, words({"Failed to load graph."}));
    QCOMPARE(interpreted, QStringList());
}

QTEST_MAIN(TestBrowsing)
#include "tst_browsing.moc"
