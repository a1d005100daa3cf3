// The central widget: its panels, modes, console and database commands.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "node.h"
#include "support/literals.h"
#include "support/loadgate.h"
#include "support/mainwindowfixture.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QSlider>
#include <QTextEdit>
#include <QtTest>

#include <memory>

class TestMainWidget : public QObject
{
    Q_OBJECT

private slots:
    void startsWithTheModePanelOnly();
    void mainGrid();
    void panelsAreLightYellow();
    void modePanelGrid();
    void invariantsPanelGrid();
    void comparisonPanelGrid();
    void listsPanelReadsAsSentences();
    void visualizationPanelGrid();
    void zoomSlider();
    void zoomSliderSetsTheSizeOfTheDrawing();
    void modesChangeNothingBeforeTheFirstLoad();
    void aLoadShowsThePanelOfItsMode_data();
    void aLoadShowsThePanelOfItsMode();
    void otherModesAfterALoadInVisualization();
    void modesSwitchPanelsAfterALoad();
    void busyDisablesTheListsPanelOnly();
    void progressIsAFraction();
    void loadsTheSampleDatabase();
    void failedLoads_data();
    void failedLoads();
    void failedLoadAfterAGoodOneLeavesThePanelDisabled();
    void cancelledLoadFailsOnTheEmptyName();
    void clearKeepsListsAndPanels();
    void consoleShowsMarkupAsText();
    void consoleShowsTheBeginningOfALongLine();
    void loadDialog();
    void dialogsStartInTheSavedWorkDirectory();
    void emptyWorkDirectorySettingMeansHere();
    void setWorkDirectory();
    void cancelledWorkDirectoryIsStoredEmpty();
    void everyChooserIsRefilledInRegistryOrder();
    void loadDuringLoad();
    void clearDuringLoad();
    void listsAndBrowsingDuringLoad();
    void consoleFollowsItsLastLine();
    void closeDuringLoad();
};

namespace
{
const char *const switchedPanels[] = {"listsPanel", "invariantsPanel", "comparisonPanel", "visualizationPanel"};

/// The switched panels that the user sees, in words.
QString visiblePanels(const MainWindowFixture &fixture)
{
    QStringList names;
    for (const char *name : switchedPanels) {
        if (fixture.panel(name)->isVisible()) {
            names.append(QLatin1String(name));
        }
    }
    return names.join(QLatin1Char(' '));
}

/// The text of what stands at one place of a panel's grid: of a button or label, or its class; "-" when empty.
QString textAt(const QWidget *panel, int row, int column)
{
    const auto *grid = qobject_cast<QGridLayout *>(panel->layout());
    QLayoutItem *item = grid->itemAtPosition(row, column);
    if (item == nullptr || item->widget() == nullptr) {
        return QStringLiteral("-");
    }
    const QVariant text = item->widget()->property("text");
    return text.isValid() ? text.toString() : QLatin1String(item->widget()->metaObject()->className());
}

QStringList rowTexts(const QWidget *panel, int row, int columns)
{
    QStringList texts;
    for (int column = 0; column < columns; ++column) {
        texts.append(textAt(panel, row, column));
    }
    return texts;
}

/// Loads a database with the button of the mode panel, holds the load while it reads records and delivers what it has
/// emitted until then.
std::unique_ptr<LoadGate> holdALoad(MainWindowFixture &fixture)
{
    auto gate = std::make_unique<LoadGate>(*fixture.widget()->getManager(), 2);
    fixture.pressAndChoose(QStringLiteral("Load database"), example("connected-8.tav"));
    if (!gate->waitForLoad()) {
        qFatal("no load comes to the gate");
    }
    QCoreApplication::sendPostedEvents();
    return gate;
}

/// The directory in which the dialog of a button opens.
QString dialogDirectory(MainWindowFixture &fixture, const char *button = "Load database")
{
    QString directory;
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        directory = qobject_cast<QFileDialog *>(dialog)->directory().canonicalPath();
        dialog->reject();
    });
    fixture.press(QLatin1String(button));
    return directory;
}
} // namespace

void TestMainWidget::startsWithTheModePanelOnly()
{
    const MainWindowFixture fixture;
    QVERIFY(fixture.panel("modePanel")->isVisible());
    QVERIFY(fixture.panel("newListName")->isVisible());
    QVERIFY(fixture.panel("console")->isVisible());
    QVERIFY(fixture.progressBar()->isVisible());
    QCOMPARE(visiblePanels(fixture), QString());
    QVERIFY(!fixture.panel("listsPanel")->isEnabled());
    QVERIFY(fixture.panel("invariantsPanel")->isEnabled());
    QVERIFY(fixture.panel("comparisonPanel")->isEnabled());
    QVERIFY(fixture.panel("visualizationPanel")->isEnabled());
    QCOMPARE(fixture.progressBar()->minimum(), 0);
    QCOMPARE(fixture.progressBar()->maximum(), 100);
    QCOMPARE(fixture.progressBar()->value(), 0);
    QCOMPARE(fixture.console(), QStringList());
    QCOMPARE(fixture.positionText(), QString());
    const auto *lists =
        qobject_cast<QRadioButton *>(driver::button(fixture.window, QStringLiteral("Lists manipulation")));
    QVERIFY(lists->isChecked());
}

void TestMainWidget::mainGrid()
{
    const MainWindowFixture fixture;
    const auto *grid = qobject_cast<QGridLayout *>(fixture.widget()->layout());
    const struct {
        const char *name;
        int row, column, rows, columns;
    } places[] = {
        {"modePanel", 0, 0, 1, 2},       {"newListName", 1, 1, 1, 1},     {"listsPanel", 2, 0, 1, 2},
        {"invariantsPanel", 3, 0, 1, 2}, {"comparisonPanel", 4, 0, 1, 2}, {"visualizationPanel", 5, 0, 1, 2},
        {"console", 6, 0, 3, 2},
    };
    for (const auto &place : places) {
        int row = -1;
        int column = -1;
        int rows = -1;
        int columns = -1;
        grid->getItemPosition(grid->indexOf(fixture.panel(place.name)), &row, &column, &rows, &columns);
        QCOMPARE(row, place.row);
        QCOMPARE(column, place.column);
        QCOMPARE(rows, place.rows);
        QCOMPARE(columns, place.columns);
    }
    QCOMPARE(textAt(fixture.widget(), 1, 0), QStringLiteral("Build new GraphList "));
    QCOMPARE(grid->itemAtPosition(9, 0)->widget(), fixture.progressBar());
    QCOMPARE(grid->itemAtPosition(9, 1)->widget(), fixture.progressBar());
}

void TestMainWidget::panelsAreLightYellow()
{
    const MainWindowFixture fixture;
    for (const char *name : {"modePanel", "listsPanel", "invariantsPanel", "comparisonPanel", "visualizationPanel"}) {
        QCOMPARE(fixture.panel(name)->palette().color(QPalette::Window), QColor(255, 255, 235));
        QVERIFY(fixture.panel(name)->autoFillBackground());
    }
    const QImage picture = fixture.panel("modePanel")->grab().toImage();
    QCOMPARE(picture.pixelColor(1, 1), QColor(255, 255, 235));
}

void TestMainWidget::modePanelGrid()
{
    const MainWindowFixture fixture;
    const QWidget *panel = fixture.panel("modePanel");
    QCOMPARE(rowTexts(panel, 0, 3), words({"Load database", "Mode :", "-"}));
    QCOMPARE(rowTexts(panel, 1, 3), words({"Set work directory", "Lists manipulation", "Visualization"}));
    QCOMPARE(rowTexts(panel, 2, 3), words({"Save all graphs", "Invariants manipulation", "-"}));
}

void TestMainWidget::invariantsPanelGrid()
{
    const MainWindowFixture fixture;
    const QWidget *panel = fixture.panel("invariantsPanel");
    QCOMPARE(rowTexts(panel, 0, 3), words({"Load I1", "Load I2", "Save Inv1"}));
    QCOMPARE(rowTexts(panel, 1, 3), words({"I1 <- I2", "I2 <- I1", "I1 <-> I2"}));
    QCOMPARE(rowTexts(panel, 2, 3), words({"I2 = Avg sub I1", "I2 = Avg super I1", "I2 = Avg all I1"}));
    QCOMPARE(rowTexts(panel, 3, 3), words({"I2 = Min sub I1", "I2 = Min super I1", "I2 = Min all I1"}));
    QCOMPARE(rowTexts(panel, 4, 3), words({"I2 = Max sub I1", "I2 = Max super I1", "I2 = Max all I1"}));
}

void TestMainWidget::comparisonPanelGrid()
{
    const MainWindowFixture fixture;
    const QWidget *panel = fixture.panel("comparisonPanel");
    QCOMPARE(textAt(panel, 0, 0), QStringLiteral("Make lists : "));
    QCOMPARE(rowTexts(panel, 1, 3), words({"List I1 >= I2", "List I1 <= I2", "List I1 == I2 (all subs)"}));
    QCOMPARE(rowTexts(panel, 2, 3),
             words({"List I1 >= I2 (all subs)", "List I1 <= I2 (all subs)", "List I1 == I2 (all super)"}));
    QCOMPARE(rowTexts(panel, 3, 3),
             words({"List I1 >= I2 (all super)", "List I1 <= I2 (all super)", "List I1 > I2 (all subs)"}));
    QCOMPARE(rowTexts(panel, 4, 3),
             words({"List I1 < I2 (all subs)", "List I1 > I2 (all super)", "List I1 < I2 (all super)"}));
}

void TestMainWidget::listsPanelReadsAsSentences()
{
    const MainWindowFixture fixture;
    const auto *grid = qobject_cast<QGridLayout *>(fixture.panel("listsPanel")->layout());
    QStringList sentences;
    for (int row = 0; row < grid->rowCount(); ++row) {
        if (grid->itemAtPosition(row, 1) == nullptr) {
            continue;
        }
        QStringList sentence{textAt(fixture.panel("listsPanel"), row, 0)};
        const QLayout *line = grid->itemAtPosition(row, 1)->layout();
        for (int i = 0; i < line->count(); ++i) {
            if (const QWidget *word = line->itemAt(i)->widget()) {
                const QVariant text = word->property("text");
                sentence.append(text.isValid() ? text.toString()
                                               : QLatin1Char('<') + word->objectName() + QLatin1Char('>'));
            }
        }
        sentences.append(sentence.join(QLatin1Char('|')));
    }
    QCOMPARE(sentences, words({"1)|Build Super-Graphs|Build Sub-Graphs|from GraphList |<closureSource>",
                               "2)|From file.", "3)|Union of |<unionFirst>| and |<unionSecond>",
                               "4)|Intersection of|<interFirst>| and |<interSecond>",
                               "5)|GraphList|<exceptFirst>| except |<exceptSecond>",
                               "-|Remove GraphList : |<removeChoice>", "-|Save GraphList : |<saveChoice>"}));
}

void TestMainWidget::visualizationPanelGrid()
{
    const MainWindowFixture fixture;
    const QWidget *panel = fixture.panel("visualizationPanel");
    QCOMPARE(rowTexts(panel, 0, 3), words({"GraphList : ", "QComboBox", "QSlider"}));
    for (int row = 1; row <= 3; ++row) {
        QCOMPARE(rowTexts(panel, row, 3), words({"Graph", "Graph", "Graph"}));
    }
    QCOMPARE(rowTexts(panel, 4, 3), words({"<<=", "", "=>>"}));
}

void TestMainWidget::zoomSlider()
{
    const MainWindowFixture fixture;
    const auto *zoom = fixture.window->findChild<QSlider *>(QStringLiteral("zoom"));
    QCOMPARE(zoom->minimum(), 5);
    QCOMPARE(zoom->maximum(), 1000);
    QCOMPARE(zoom->value(), 300);
    QCOMPARE(zoom->orientation(), Qt::Horizontal);
}

void TestMainWidget::zoomSliderSetsTheSizeOfTheDrawing()
{
    const MainWindowFixture fixture;
    auto *zoom = fixture.window->findChild<QSlider *>(QStringLiteral("zoom"));
    Graph *view = fixture.view();
    QVERIFY(view->loadg6(QStringLiteral("EhEG"), true)); // the cycle on six vertices
    view->place_circle(200.0);
    view->changeBest();
    const auto width = [view] {
        double left = 0.0;
        double right = 0.0;
        for (int i = 0; i < 6; ++i) {
            left = qMin(left, view->node(i)->position().x());
            right = qMax(right, view->node(i)->position().x());
        }
        return right - left;
    };
    zoom->setValue(450);
    QCOMPARE(width(), 450.0);
    zoom->setValue(60);
    QCOMPARE(width(), 60.0);
    for (int i = 0; i < 32; ++i) {
        QCOMPARE(view->node(i)->getRadius(), 20.0);
    }
}

void TestMainWidget::modesChangeNothingBeforeTheFirstLoad()
{
    MainWindowFixture fixture;
    for (const char *mode : {"Visualization", "Invariants manipulation", "Lists manipulation"}) {
        fixture.press(QLatin1String(mode));
        QCOMPARE(visiblePanels(fixture), QString());
    }
}

void TestMainWidget::aLoadShowsThePanelOfItsMode_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("atOnce");
    QTest::addColumn<QString>("afterAClick");
    QTest::newRow("lists") << "Lists manipulation"
                           << "listsPanel"
                           << "listsPanel";
    QTest::newRow("invariants") << "Invariants manipulation"
                                << "invariantsPanel"
                                << "invariantsPanel comparisonPanel";
    QTest::newRow("visualization") << "Visualization"
                                   << ""
                                   << "visualizationPanel";
}

void TestMainWidget::aLoadShowsThePanelOfItsMode()
{
    QFETCH(QString, mode);
    MainWindowFixture fixture;
    fixture.press(mode);
    QVERIFY(fixture.load(fixture.write(QStringLiteral("a.tav"), "@\nA_\t0\n")));
    QTEST(visiblePanels(fixture), "atOnce");
    QVERIFY(fixture.panel("listsPanel")->isEnabledTo(fixture.window));
    fixture.press(mode);
    QTEST(visiblePanels(fixture), "afterAClick");
}

void TestMainWidget::otherModesAfterALoadInVisualization()
{
    for (const char *mode : {"Lists manipulation", "Invariants manipulation"}) {
        MainWindowFixture fixture;
        fixture.press(QStringLiteral("Visualization"));
        QVERIFY(fixture.load(fixture.write(QStringLiteral("a.tav"), "@\nA_\t0\n")));
        QCOMPARE(visiblePanels(fixture), QString());
        fixture.press(QLatin1String(mode));
        QVERIFY(!visiblePanels(fixture).isEmpty());
        QVERIFY(!fixture.panel("visualizationPanel")->isVisible());
    }
}

void TestMainWidget::modesSwitchPanelsAfterALoad()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(fixture.write(QStringLiteral("a.tav"), "@\nA_\t0\n")));
    QCOMPARE(visiblePanels(fixture), QStringLiteral("listsPanel"));
    fixture.press(QStringLiteral("Invariants manipulation"));
    QCOMPARE(visiblePanels(fixture), QStringLiteral("invariantsPanel comparisonPanel"));
    fixture.press(QStringLiteral("Visualization"));
    QCOMPARE(visiblePanels(fixture), QStringLiteral("visualizationPanel"));
    fixture.press(QStringLiteral("Lists manipulation"));
    QCOMPARE(visiblePanels(fixture), QStringLiteral("listsPanel"));
}

void TestMainWidget::busyDisablesTheListsPanelOnly()
{
    const MainWindowFixture fixture;
    fixture.widget()->slot_manager_ready();
    QVERIFY(fixture.panel("listsPanel")->isEnabled());
    fixture.widget()->slot_manager_busy();
    QVERIFY(!fixture.panel("listsPanel")->isEnabled());
    for (const char *name :
         {"modePanel", "newListName", "invariantsPanel", "comparisonPanel", "visualizationPanel", "console"}) {
        QVERIFY2(fixture.panel(name)->isEnabled(), name);
    }
}

void TestMainWidget::progressIsAFraction()
{
    const MainWindowFixture fixture;
    fixture.widget()->slot_progress(30, 120);
    QCOMPARE(fixture.progressBar()->maximum(), 120);
    QCOMPARE(fixture.progressBar()->value(), 30);
    QCOMPARE(fixture.progressBar()->text(), QStringLiteral("25%"));
}

void TestMainWidget::loadsTheSampleDatabase()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(example("connected-8.tav")));
    QCOMPARE(fixture.console(),
             words({"Loading data ... please wait.", "12113 lines.", "Data loaded : 12113 nodes and 71258 links."}));
    QCOMPARE(fixture.progressBar()->value(), 0);
    QCOMPARE(fixture.progressBar()->maximum(), 12113);
}

void TestMainWidget::failedLoads_data()
{
    QTest::addColumn<QByteArray>("bytes"); // of the file; null when it is gone or no file by the time it is read
    QTest::addColumn<QString>("instead");  // what it is then
    QTest::addColumn<QStringList>("console");
    const QStringList unopened = words({"Loading data ... please wait."});
    QTest::newRow("missing") << QByteArray() << "nothing" << unopened;
    QTest::newRow("directory") << QByteArray() << "directory" << unopened;
    QTest::newRow("dangling link") << QByteArray() << "/nowhere/at/all" << unopened;
    QTest::newRow("unreadable") << QByteArray() << "/proc/self/mem"
                                << words({"Loading data ... please wait.", "Unable to read file :%1"});
    QTest::newRow("malformed index") << QByteArray("@\nA_\t0\nBW\t3\n") << ""
                                     << words(
                                            {"Loading data ... please wait.", "3 lines.", "ERROR in database format."});
    QTest::newRow("negative index") << QByteArray("@\nA_\t-1\n") << ""
                                    << words(
                                           {"Loading data ... please wait.", "2 lines.", "ERROR in database format."});
    QByteArray binary;
    for (int i = 0; i < 4096; ++i) {
        binary.append(char(i * 7 + i / 256));
    }
    binary.append("\n\x01\x02\t77777\n");
    const QString lines = QString::number(binary.count('\n')) + QStringLiteral(" lines.");
    QTest::newRow("binary") << binary << ""
                            << (words({"Loading data ... please wait."})
                                << lines << QStringLiteral("ERROR in database format."));
}

void TestMainWidget::failedLoads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, instead);
    QFETCH(QStringList, console);
    MainWindowFixture fixture;
    const QString file = fixture.write(QStringLiteral("bad.tav"), bytes);
    console.replaceInStrings(QStringLiteral("%1"), file);
    const bool loaded = fixture.load(file, [&] {
        if (!instead.isEmpty()) {
            QVERIFY(QFile::remove(file));
        }
        if (instead == QLatin1String("directory")) {
            QVERIFY(QDir().mkdir(file));
        } else if (instead.startsWith(QLatin1Char('/'))) {
            QVERIFY(QFile::link(instead, file));
        }
    });
    QVERIFY(!loaded);
    QCOMPARE(fixture.console(), console);
    QCOMPARE(visiblePanels(fixture), QString());
    QVERIFY(!fixture.panel("listsPanel")->isEnabled());
    QCOMPARE(fixture.progressBar()->value(), 0);
    fixture.press(QStringLiteral("Visualization"));
    QCOMPARE(visiblePanels(fixture), QString());
}

void TestMainWidget::failedLoadAfterAGoodOneLeavesThePanelDisabled()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(fixture.write(QStringLiteral("good.tav"), "@\nA_\t0\n")));
    QVERIFY(fixture.panel("listsPanel")->isEnabled());
    QVERIFY(!fixture.load(fixture.write(QStringLiteral("bad.tav"), "@\t1\n")));
    QVERIFY(fixture.panel("listsPanel")->isVisible());
    QVERIFY(!fixture.panel("listsPanel")->isEnabled());
    QVERIFY(fixture.load(fixture.path(QStringLiteral("good.tav"))));
    QVERIFY(fixture.panel("listsPanel")->isEnabled());
}

void TestMainWidget::cancelledLoadFailsOnTheEmptyName()
{
    MainWindowFixture fixture;
    const QSignalSpy failed(fixture.widget()->getManager(), &TAVManager::signal_database_empty);
    fixture.pressAndCancel(QStringLiteral("Load database"));
    QVERIFY(driver::waitUntil([&] { return failed.count() == 1; }));
    QCOMPARE(fixture.console(), words({"Loading data ... please wait."}));
    QVERIFY(!fixture.panel("listsPanel")->isEnabled());
}

void TestMainWidget::clearKeepsListsAndPanels()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(example("connected-8.tav")));
    fixture.addList(QStringLiteral("regular"), example("regular-8.g6"));
    fixture.widget()->slot_progress(1, 2);
    fixture.widget()->slot_clear();
    QCOMPARE(fixture.progressBar()->value(), 0);
    QCOMPARE(visiblePanels(fixture), QStringLiteral("listsPanel"));
    QVERIFY(fixture.panel("listsPanel")->isEnabled());
    QCOMPARE(fixture.combo("unionFirst")->currentText(), QStringLiteral("regular"));
}

void TestMainWidget::consoleShowsMarkupAsText()
{
    const MainWindowFixture fixture;
    fixture.widget()->slot_console(QStringLiteral("<b>bold</b>"));
    fixture.widget()->slot_console(QStringLiteral("<img src=\"/etc/passwd\">&amp;"));
    fixture.widget()->slot_console(QString());
    fixture.widget()->slot_console(QStringLiteral("end"));
    QCOMPARE(fixture.console(), words({"<b>bold</b>", "<img src=\"/etc/passwd\">&amp;", "", "end"}));
}

void TestMainWidget::consoleShowsTheBeginningOfALongLine()
{
    const MainWindowFixture fixture;
    const QString longest(10000, QLatin1Char('x'));
    fixture.widget()->slot_console(longest);
    fixture.widget()->slot_console(QString(20000000, QLatin1Char('x')));
    fixture.widget()->slot_console(QStringLiteral("end"));
    QCOMPARE(fixture.console(), (QStringList{longest, longest.left(9999) + QChar(0x2026), QStringLiteral("end")}));
}

void TestMainWidget::loadDialog()
{
    MainWindowFixture fixture;
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        const auto *files = qobject_cast<QFileDialog *>(dialog);
        QCOMPARE(files->windowTitle(), QStringLiteral("Tavoline version 0.2.1 alpha"));
        QCOMPARE(files->nameFilters(), words({"File type (*.tav)"}));
        dialog->reject();
    });
    fixture.press(QStringLiteral("Load database"));
    QVERIFY(answer.done());
}

void TestMainWidget::dialogsStartInTheSavedWorkDirectory()
{
    const QTemporaryDir directory;
    MainWindowFixture fixture(directory.path());
    QVERIFY(fixture.load(example("connected-8.tav")));
    for (const char *button : {"From file.", "Load database", "Set work directory"}) {
        QCOMPARE(dialogDirectory(fixture, button), QDir(directory.path()).canonicalPath());
    }
}

void TestMainWidget::emptyWorkDirectorySettingMeansHere()
{
    MainWindowFixture fixture(QStringLiteral(""));
    QCOMPARE(dialogDirectory(fixture), QDir(QStringLiteral("./")).canonicalPath());
}

void TestMainWidget::setWorkDirectory()
{
    const QTemporaryDir directory;
    MainWindowFixture fixture;
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        auto *files = qobject_cast<QFileDialog *>(dialog);
        QCOMPARE(files->windowTitle(), QStringLiteral("Tavoline version 0.2.1 alpha"));
        QVERIFY(files->testOption(QFileDialog::ShowDirsOnly));
        driver::chooseFile(files, directory.path());
    });
    fixture.press(QStringLiteral("Set work directory"));
    QVERIFY(answer.done());
    QCOMPARE(QSettings().value(QStringLiteral("wd")).toString(), directory.path());
    QCOMPARE(dialogDirectory(fixture), QDir(directory.path()).canonicalPath());
}

void TestMainWidget::cancelledWorkDirectoryIsStoredEmpty()
{
    MainWindowFixture fixture;
    QVERIFY(!QSettings().value(QStringLiteral("wd")).toString().isEmpty());
    fixture.pressAndCancel(QStringLiteral("Set work directory"));
    QVERIFY(QSettings().contains(QStringLiteral("wd")));
    QCOMPARE(QSettings().value(QStringLiteral("wd")).toString(), QString());
    QCOMPARE(dialogDirectory(fixture), QDir(QStringLiteral("./")).canonicalPath());
}

void TestMainWidget::everyChooserIsRefilledInRegistryOrder()
{
    const MainWindowFixture fixture;
    TAVManager *manager = fixture.widget()->getManager();
    manager->addList(QStringLiteral("zeta"), words({"@"}));
    manager->addList(QStringLiteral("alpha"), words({"A_"}));
    const char *const choosers[] = {"closureSource", "interFirst",  "interSecond",  "unionFirst", "unionSecond",
                                    "removeChoice",  "exceptFirst", "exceptSecond", "saveChoice", "browseChoice"};
    for (const char *name : choosers) {
        QComboBox *combo = fixture.combo(name);
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->itemText(0), QStringLiteral("zeta"));
        QCOMPARE(combo->itemText(1), QStringLiteral("alpha"));
        QCOMPARE(combo->currentText(), QStringLiteral("zeta"));
        combo->setCurrentIndex(1);
    }
    manager->addList(QStringLiteral("beta"), words({"A_"}));
    for (const char *name : choosers) {
        QCOMPARE(fixture.combo(name)->currentText(), QStringLiteral("zeta"));
    }
}

void TestMainWidget::loadDuringLoad()
{
    MainWindowFixture fixture;
    const QString small = fixture.write(QStringLiteral("small.tav"), "@\nA_\t0\n");
    const QSignalSpy loaded(fixture.widget()->getManager(), &TAVManager::signal_database_loaded);
    const auto gate = holdALoad(fixture);
    fixture.clearConsole();
    QVERIFY(fixture.load(small));
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(fixture.console(),
             words({"Loading data ... please wait.", "2 lines.", "Data loaded : 2 nodes and 1 links."}));
}

void TestMainWidget::clearDuringLoad()
{
    MainWindowFixture fixture;
    const QSignalSpy loaded(fixture.widget()->getManager(), &TAVManager::signal_database_loaded);
    const QSignalSpy empty(fixture.widget()->getManager(), &TAVManager::signal_database_empty);
    const auto gate = holdALoad(fixture);
    fixture.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window, patience));
    QTest::keyClick(fixture.window, Qt::Key_D, Qt::ControlModifier);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(empty.count(), 1);
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(fixture.progressBar()->value(), 0);
    QCOMPARE(visiblePanels(fixture), QString());
}

void TestMainWidget::listsAndBrowsingDuringLoad()
{
    MainWindowFixture fixture;
    QVERIFY(fixture.load(fixture.write(QStringLiteral("small.tav"), "@\nA_\t0\n")));
    const QSignalSpy loaded(fixture.widget()->getManager(), &TAVManager::signal_database_loaded);
    fixture.press(QStringLiteral("Visualization"));
    const auto gate = holdALoad(fixture);
    fixture.widget()->getManager()->addListFromFile(QStringLiteral("regular"), example("regular-8.g6"));
    fixture.press(QStringLiteral("=>>"));
    QCOMPARE(fixture.positionText(), QStringLiteral("2/17 G?zTb_"));
    QCOMPARE(loaded.count(), 0);
    gate->open();
    QVERIFY(driver::waitUntil([&] { return loaded.count() == 1; }));
}

void TestMainWidget::consoleFollowsItsLastLine()
{
    const MainWindowFixture fixture;
    const auto *console = fixture.window->findChild<QTextEdit *>(QStringLiteral("console"));
    QScrollBar *bar = console->verticalScrollBar();
    const auto addLines = [&] {
        for (int i = 0; i < 100; ++i) {
            fixture.widget()->slot_console(QStringLiteral("line"));
        }
        QCoreApplication::processEvents();
    };
    addLines();
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    bar->setValue(3); // the user reads further up
    addLines();
    QCOMPARE(bar->value(), 3);
    bar->setValue(bar->maximum());
    addLines();
    QCOMPARE(bar->value(), bar->maximum());
}

void TestMainWidget::closeDuringLoad()
{
    MainWindowFixture fixture;
    const auto gate = holdALoad(fixture);
    fixture.window->close();
    QTRY_VERIFY_WITH_TIMEOUT(fixture.window.isNull(), patience);
}

QTEST_MAIN(TestMainWidget)
#include "tst_mainwidget.moc"
