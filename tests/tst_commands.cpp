// Every button of the lists, invariants and comparison panels, pressed in the window on a real database.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "support/literals.h"
#include "support/loadgate.h"
#include "support/mainwindowfixture.h"
#include "support/stderrcapture.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <algorithm>
#include <numeric>
#include <optional>
#include <vector>

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void invariantButtons_data();
    void invariantButtons();
    void exchangeAndCopyButtons();
    void saveAndLoadInvariants();
    void comparisonButtons_data();
    void comparisonButtons();
    void comparisonRefusals();
    void ownInvariantsAfterADerivation();
    void setAlgebraButtons();
    void unionOfAListWithItself();
    void closureButtons();
    void removeButton();
    void saveListButton();
    void saveAllButton();
    void cancelledDialogs_data();
    void cancelledDialogs();
    void everyCommandLeavesTheListsPanelEnabled();
    void commandsDuringALoadAreRefused();
};

namespace
{
using Values = std::vector<std::optional<double>>;
using Links = std::vector<std::vector<int>>;

/// The sample database and its average distances, read from the text.
struct Sample {
    QList<QByteArray> names;
    Links subs;
    Links overs;
    Values distances;

    Sample()
    {
        const QList<QByteArray> lines = contents(example("connected-8.tav")).split('\n');
        const QList<QByteArray> values = contents(example("connected-8.averagedistance.txt")).split('\n').mid(1);
        for (int i = 0; i + 1 < lines.size(); ++i) {
            const QList<QByteArray> fields = lines.at(i).split('\t');
            names.append(fields.first());
            subs.emplace_back();
            overs.emplace_back();
            for (const QByteArray &index : fields.mid(1)) {
                subs.back().push_back(index.toInt());
                overs[index.toInt()].push_back(i);
            }
            const QByteArray value = values.at(i).split('\t').at(1);
            distances.push_back(value == "NA" ? std::nullopt : std::optional<double>(value.toDouble()));
        }
    }

    /// The present values of the neighbours of one graph.
    std::vector<double> around(size_t graph, bool sub, bool over) const
    {
        std::vector<double> found;
        for (const int neighbour : sub ? subs[graph] : std::vector<int>()) {
            found.push_back(distances[neighbour].value_or(-1.0));
        }
        for (const int neighbour : over ? overs[graph] : std::vector<int>()) {
            found.push_back(distances[neighbour].value_or(-1.0));
        }
        found.erase(std::remove(found.begin(), found.end(), -1.0), found.end());
        return found;
    }

    /// The invariant file that holds the given values.
    QByteArray file(const Values &values) const
    {
        QByteArray text = "GRAPH\tINV1\n";
        for (int i = 0; i < names.size(); ++i) {
            const std::optional<double> &value = values[i];
            text += names.at(i) + '\t' + (value ? QByteArray::number(*value, 'g', 6) : QByteArray("NA")) + '\n';
        }
        return text;
    }
};

const Sample &sample()
{
    static const Sample read;
    return read;
}

/// The window with the sample database and its average distances as I1, in the mode "Invariants manipulation".
class LoadedWindow : public MainWindowFixture
{
public:
    LoadedWindow()
    {
        if (!load(example("connected-8.tav"))) {
            qFatal("the sample database does not load");
        }
        press(QStringLiteral("Invariants manipulation"));
        pressAndChoose(QStringLiteral("Load I1"), example("connected-8.averagedistance.txt"));
        clearConsole();
    }

    TAVManager &manager() const { return *widget()->getManager(); }

    /// What "Save Inv1" writes now.
    QByteArray savedInv1()
    {
        const QString file = path(QStringLiteral("saved.txt"));
        QFile::remove(file);
        pressAndChoose(QStringLiteral("Save Inv1"), file);
        return contents(file);
    }

    void useLists() { press(QStringLiteral("Lists manipulation")); }
    void choose(const char *combination, const char *first, const char *second) const
    {
        combo((QByteArray(combination) + "First").constData())->setCurrentText(QLatin1String(first));
        combo((QByteArray(combination) + "Second").constData())->setCurrentText(QLatin1String(second));
    }
};

double mean(const std::vector<double> &values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / values.size();
}

double smallest(const std::vector<double> &values)
{
    return *std::min_element(values.begin(), values.end());
}

double largest(const std::vector<double> &values)
{
    return *std::max_element(values.begin(), values.end());
}
} // namespace

using Combine = double (*)(const std::vector<double> &);
Q_DECLARE_METATYPE(Combine)

void TestCommands::invariantButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("sub");
    QTest::addColumn<bool>("over");
    QTest::addColumn<Combine>("combine");
    const struct {
        const char *word;
        Combine combine;
    } kinds[] = {{"Avg", mean}, {"Min", smallest}, {"Max", largest}};
    for (const auto &kind : kinds) {
        const QString text = QStringLiteral("I2 = %1 %2 I1").arg(QLatin1String(kind.word));
        QTest::addRow("%s sub", kind.word) << text.arg(QStringLiteral("sub")) << true << false << kind.combine;
        QTest::addRow("%s super", kind.word) << text.arg(QStringLiteral("super")) << false << true << kind.combine;
        QTest::addRow("%s all", kind.word) << text.arg(QStringLiteral("all")) << true << true << kind.combine;
    }
}

void TestCommands::invariantButtons()
{
    QFETCH(QString, button);
    QFETCH(bool, sub);
    QFETCH(bool, over);
    QFETCH(Combine, combine);
    LoadedWindow window;
    window.press(button);
    QCOMPARE(window.console(), QStringList());
    window.press(QStringLiteral("I1 <-> I2"));
    Values expected;
    for (size_t graph = 0; graph < sample().distances.size(); ++graph) {
        const std::vector<double> values = sample().around(graph, sub, over);
        expected.push_back(values.empty() ? std::nullopt : std::optional<double>(combine(values)));
    }
    QCOMPARE(window.savedInv1(), sample().file(expected));
}

void TestCommands::exchangeAndCopyButtons()
{
    LoadedWindow window;
    const QByteArray distances = sample().file(sample().distances);
    const QByteArray missing = sample().file(Values(sample().distances.size()));
    QCOMPARE(window.savedInv1(), distances);
    window.press(QStringLiteral("I1 <-> I2"));
    QCOMPARE(window.savedInv1(), missing);
    window.press(QStringLiteral("I1 <-> I2"));
    window.press(QStringLiteral("I2 <- I1"));
    window.press(QStringLiteral("I1 <-> I2"));
    QCOMPARE(window.savedInv1(), distances);
    window.press(QStringLiteral("I1 <-> I2"));
    window.pressAndChoose(QStringLiteral("Load I1"), example("connected-8.size.txt"));
    QVERIFY(window.savedInv1() != distances);
    window.press(QStringLiteral("I1 <- I2"));
    QCOMPARE(window.savedInv1(), distances);
}

void TestCommands::saveAndLoadInvariants()
{
    LoadedWindow window;
    const QString saved = window.path(QStringLiteral("saved.txt"));
    window.pressAndChoose(QStringLiteral("Save Inv1"), saved);
    QCOMPARE(contents(saved), contents(example("connected-8.averagedistance.txt")));
    window.pressAndChoose(QStringLiteral("Load I2"), saved);
    window.pressAndChoose(QStringLiteral("Load I1"), saved);
    const QString bad = window.write(QStringLiteral("bad.txt"), "GRAPH\tINV1\n@\t0\nBW\t1\n");
    window.pressAndChoose(QStringLiteral("Load I1"), bad);
    window.pressAndChoose(QStringLiteral("Load I2"), bad);
    QCOMPARE(window.console(),
             QStringList({QStringLiteral("Wrote ") + saved, QStringLiteral("Read ") + saved,
                          QStringLiteral("Read ") + saved, QStringLiteral("A_ != BW"), QStringLiteral("Load failed"),
                          QStringLiteral("Data format error"), QStringLiteral("Load failed")}));
}

void TestCommands::comparisonButtons_data()
{
    // How many graphs each query lists when I1 and I2 are both the average distance: counted once, with a script that
    // takes every step of the walks.
    QTest::addColumn<int>("listed");
    QTest::addColumn<bool>("walks");
    QTest::newRow("List I1 >= I2") << 12112 << false;
    QTest::newRow("List I1 <= I2") << 12112 << false;
    QTest::newRow("List I1 == I2 (all subs)") << 6 << true;
    QTest::newRow("List I1 >= I2 (all subs)") << 6 << true;
    QTest::newRow("List I1 <= I2 (all subs)") << 153 << true;
    QTest::newRow("List I1 == I2 (all super)") << 0 << true;
    QTest::newRow("List I1 >= I2 (all super)") << 6 << true;
    QTest::newRow("List I1 <= I2 (all super)") << 0 << true;
    QTest::newRow("List I1 > I2 (all subs)") << 119 << true;
    QTest::newRow("List I1 < I2 (all subs)") << 0 << true;
    QTest::newRow("List I1 > I2 (all super)") << 0 << true;
    QTest::newRow("List I1 < I2 (all super)") << 0 << true;
}

void TestCommands::comparisonButtons()
{
    QFETCH(int, listed);
    QFETCH(bool, walks);
    LoadedWindow window;
    window.press(QStringLiteral("I2 <- I1"));
    window.typeListName(QStringLiteral("found"));
    window.press(QLatin1String(QTest::currentDataTag()));
    QStringList expected = walks ? words({"Database cleared."}) : QStringList();
    if (listed == 0) {
        expected += words({"Empty list"});
    } else {
        expected += words({"List added : found [ %1 element(s)]", "List added : found"});
        expected.replaceInStrings(QStringLiteral("%1"), QString::number(listed));
    }
    QCOMPARE(window.console(), expected);
    QCOMPARE(window.combo("browseChoice")->currentText(), listed == 0 ? QString() : QStringLiteral("found"));
    QCOMPARE(window.manager().getList(QStringLiteral("found")).size(), listed);
}

void TestCommands::comparisonRefusals()
{
    LoadedWindow window;
    window.press(QStringLiteral("I2 <- I1"));
    window.typeListName(QString());
    window.press(QStringLiteral("List I1 >= I2"));
    window.typeListName(QStringLiteral("taken"));
    window.press(QStringLiteral("List I1 >= I2"));
    window.press(QStringLiteral("List I1 <= I2"));
    QCOMPARE(window.console(), words({"Empty name", "List added : taken [ 12112 element(s)]", "List added : taken",
                                      "Name already used"}));
}

void TestCommands::ownInvariantsAfterADerivation()
{
    // Size never grows on the way down: the graphs whose size is at least that of every sub-graph are all that have
    // one.
    LoadedWindow window;
    window.pressAndChoose(QStringLiteral("Load I1"), example("connected-8.size.txt"));
    window.press(QStringLiteral("I2 = Max sub I1"));
    window.typeListName(QStringLiteral("sizes"));
    window.press(QStringLiteral("List I1 >= I2"));
    QStringList expected;
    for (int i = 1; i < sample().names.size(); ++i) { // all but the single vertex, whose I2 is missing
        expected.append(QString::fromLatin1(sample().names.at(i)));
    }
    QCOMPARE(window.manager().getList(QStringLiteral("sizes")), expected);
}

void TestCommands::setAlgebraButtons()
{
    LoadedWindow window;
    window.useLists();
    window.manager().addList(QStringLiteral("A"), words({"b", "a", "b", "d"}));
    window.manager().addList(QStringLiteral("B"), words({"c", "a"}));
    window.clearConsole();
    const struct {
        const char *combination;
        const char *button;
        QStringList result;
    } rows[] = {
        {"union", "Union of", words({"a", "b", "c", "d"})},
        {"inter", "Intersection of", words({"a"})},
        {"except", "GraphList", words({"b", "b", "d"})},
    };
    for (const auto &row : rows) {
        const QString name = QLatin1String(row.combination);
        window.typeListName(name);
        window.choose(row.combination, "A", "B");
        window.press(QLatin1String(row.button));
        QCOMPARE(window.manager().getList(name), row.result);
        QCOMPARE(window.console(),
                 QStringList({QStringLiteral("List added : %1 [ %2 element(s)]").arg(name).arg(row.result.size()),
                              QStringLiteral("List added : ") + name}));
        QCOMPARE(window.combo("saveChoice")->findText(name), window.combo("saveChoice")->count() - 1);
        window.clearConsole();
    }
    window.typeListName(QStringLiteral("nothing"));
    window.choose("except", "B", "union");
    window.press(QStringLiteral("GraphList"));
    QCOMPARE(window.console(), words({"Empty list, not added.", "List added : nothing"}));
    window.clearConsole();
    window.press(QStringLiteral("Union of")); // "nothing" was not added: the name is free
    window.press(QStringLiteral("Union of")); // and now it is taken, which is refused in silence
    QCOMPARE(window.console().size(), 2);
}

void TestCommands::unionOfAListWithItself()
{
    LoadedWindow window;
    window.useLists();
    window.manager().addList(QStringLiteral("A"), words({"b", "a", "b"}));
    window.typeListName(QStringLiteral("sorted"));
    window.choose("union", "A", "A");
    window.press(QStringLiteral("Union of"));
    QCOMPARE(window.manager().getList(QStringLiteral("sorted")), words({"a", "b"}));
}

void TestCommands::closureButtons()
{
    LoadedWindow window;
    window.useLists();
    window.manager().addList(QStringLiteral("squares"), words({"unknown", "C]"}));
    window.typeListName(QStringLiteral("below"));
    window.combo("closureSource")->setCurrentText(QStringLiteral("squares"));
    window.clearConsole();
    window.press(QStringLiteral("Build Sub-Graphs"));
    QCOMPARE(window.console(),
             words({"Database cleared.", "List added : below [ 4 element(s)]", "List added : below"}));
    QCOMPARE(window.manager().getList(QStringLiteral("below")), words({"C]", "BW", "A_", "@"}));

    window.manager().addList(QStringLiteral("largest"), words({"G~~~~{"}));
    window.typeListName(QStringLiteral("above"));
    window.combo("closureSource")->setCurrentText(QStringLiteral("largest"));
    window.press(QStringLiteral("Build Super-Graphs"));
    QCOMPARE(window.manager().getList(QStringLiteral("above")), words({"G~~~~{"}));
    window.manager().addList(QStringLiteral("point"), words({"@"}));
    window.typeListName(QStringLiteral("all"));
    window.combo("closureSource")->setCurrentText(QStringLiteral("point"));
    window.press(QStringLiteral("Build Super-Graphs"));
    QCOMPARE(window.manager().getList(QStringLiteral("all")).size(), 12113);
}

void TestCommands::removeButton()
{
    LoadedWindow window;
    window.useLists();
    window.clearConsole();
    window.press(QStringLiteral("Remove GraphList :"));
    QCOMPARE(window.console(), words({"Unable to remove list."}));
    for (const char *name : {"A", "B", "C"}) {
        window.manager().addList(QLatin1String(name), words({"@"}));
    }
    window.combo("removeChoice")->setCurrentText(QStringLiteral("B"));
    window.clearConsole();
    window.press(QStringLiteral("Remove GraphList :"));
    QCOMPARE(window.console(), words({"List B removed."}));
    QCOMPARE(window.manager().listNames(), words({"A", "C"}));
    QCOMPARE(window.combo("unionSecond")->count(), 2);
}

void TestCommands::saveListButton()
{
    LoadedWindow window;
    window.useLists();
    window.manager().addList(QStringLiteral("A"), words({"Bw", "@", "Bw"}));
    window.clearConsole();
    const QString file = window.path(QStringLiteral("a.g6"));
    window.pressAndChoose(QStringLiteral("Save GraphList :"), file);
    QCOMPARE(contents(file), QByteArray("Bw\n@\nBw"));
    QCOMPARE(window.console(), QStringList());
    window.addList(QStringLiteral("again"), file);
    QCOMPARE(window.manager().getList(QStringLiteral("again")), words({"Bw", "@", "Bw"}));
}

void TestCommands::saveAllButton()
{
    LoadedWindow window;
    const QString file = window.path(QStringLiteral("all.g6"));
    window.pressAndChoose(QStringLiteral("Save all graphs"), file);
    QCOMPARE(contents(file), sample().names.join('\n') + '\n');
    QCOMPARE(window.console(), QStringList({QStringLiteral("Wrote ") + file}));
}

void TestCommands::cancelledDialogs_data()
{
    QTest::addColumn<bool>("lists");
    QTest::addColumn<bool>("saves");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("console");
    QTest::newRow("Save all graphs") << true << true << "File type (*.g6)" << QStringList();
    QTest::newRow("Save GraphList :") << true << true << "File type (*.g6)" << words({"Unable to open file :"});
    QTest::newRow("From file.") << true << false << "File type (*.g6)" << words({"Unable to open file :"});
    QTest::newRow("Save Inv1") << false << true << "File type (*.txt)" << QStringList();
    QTest::newRow("Load I1") << false << false << "File type (*.txt)" << words({"Unable to open file.", "Load failed"});
    QTest::newRow("Load I2") << false << false << "File type (*.txt)" << words({"Unable to open file.", "Load failed"});
}

void TestCommands::cancelledDialogs()
{
    QFETCH(bool, lists);
    QFETCH(bool, saves);
    QFETCH(QString, filter);
    LoadedWindow window;
    window.manager().addList(QStringLiteral("A"), words({"@"}));
    window.typeListName(QStringLiteral("new"));
    if (lists) {
        window.useLists();
    }
    window.clearConsole();
    const bool neverBusy = QByteArray(QTest::currentDataTag()) == "From file.";
    const driver::DialogAnswer answer([&](QDialog *dialog) {
        const auto *files = qobject_cast<QFileDialog *>(dialog);
        QCOMPARE(files->windowTitle(), QStringLiteral("Tavoline version 0.2.1 alpha"));
        QCOMPARE(files->nameFilters(), QStringList(filter));
        QCOMPARE(files->acceptMode(), saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        QCOMPARE(files->directory(), QDir(window.path(QString())));
        QCOMPARE(window.panel("listsPanel")->isEnabledTo(window.window), neverBusy);
        dialog->reject();
    });
    window.press(QLatin1String(QTest::currentDataTag()));
    QVERIFY(answer.done());
    QTEST(window.console(), "console");
    QVERIFY(window.panel("listsPanel")->isEnabledTo(window.window));
    QCOMPARE(window.manager().listNames(), words({"A"}));
}

void TestCommands::everyCommandLeavesTheListsPanelEnabled()
{
    LoadedWindow window;
    const QList<QPushButton *> buttons = window.panel("invariantsPanel")->findChildren<QPushButton *>() +
                                         window.panel("comparisonPanel")->findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 27);
    for (QPushButton *button : buttons) {
        window.widget()->slot_manager_busy();
        const driver::DialogAnswer answer = driver::DialogAnswer::cancelling();
        button->click();
        QVERIFY2(window.panel("listsPanel")->isEnabledTo(window.window), qPrintable(button->text()));
    }
}

void TestCommands::commandsDuringALoadAreRefused()
{
    LoadedWindow window;
    const QByteArray before = window.savedInv1();
    window.typeListName(QStringLiteral("new"));
    LoadGate gate(window.manager(), 2); // the next load stops it there
    window.pressAndChoose(QStringLiteral("Load database"), example("connected-8.tav"));
    QVERIFY(gate.waitForLoad());
    QCoreApplication::sendPostedEvents();
    window.clearConsole();
    window.widget()->slot_avg_sub1();
    window.widget()->slot_list_i1_ge_i2();
    window.widget()->slot_list_i1_eq_i2subs();
    QCOMPARE(window.console(),
             words({"Not possible while a database is being loaded.", "Not possible while a database is being loaded.",
                    "Not possible while a database is being loaded."}));
    QCOMPARE(window.manager().listNames(), QStringList());
    QVERIFY(window.load(example("connected-8.tav")));
    window.pressAndChoose(QStringLiteral("Load I1"), example("connected-8.averagedistance.txt"));
    QCOMPARE(window.savedInv1(), before);
}

QTEST_MAIN(TestCommands)
#include "tst_commands.moc"
