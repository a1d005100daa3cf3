// What explains the window: tool tips, the names and descriptions for a screen reader, and the way of the Tab key.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "support/literals.h"
#include "support/mainwindowfixture.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTextEdit>
#include <QToolBar>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <random>

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsWithoutAName_data();
    void nothingIsWithoutAName();
    void positionIsReadOut();
    void everyControlIsExplained();
    void tipsAreShort();
    void toolBarTipsNameTheShortcut();
    void tabGoesThroughThePanelsFromTopToBottom();
    void comparisonTipsAreTrue_data();
    void comparisonTipsAreTrue();
    void derivationTipsAreTrue_data();
    void derivationTipsAreTrue();
};

namespace
{
using Visit = std::function<void(QAccessibleInterface *)>;

/// Visits what a screen reader finds in the shown part of a window.
void walk(QAccessibleInterface *element, const Visit &visit)
{
    if (element == nullptr || !element->isValid() || element->state().invisible) {
        return;
    }
    visit(element);
    for (int i = 0; i < element->childCount(); ++i) {
        walk(element->child(i), visit);
    }
}

QString className(const QAccessibleInterface *element)
{
    return element->object() != nullptr ? QLatin1String(element->object()->metaObject()->className()) : QString();
}

bool isControl(QAccessibleInterface *element)
{
    switch (element->role()) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::ProgressBar:
    case QAccessible::RadioButton:
    case QAccessible::Slider:
        return true;
    default:
        return qobject_cast<Graph *>(element->object()) != nullptr;
    }
}

/// The console, the viewer and the progress bar are described, but show no tool tip over what they show.
bool hasTip(const QWidget *control)
{
    return qobject_cast<const QTextEdit *>(control) == nullptr && qobject_cast<const Graph *>(control) == nullptr &&
           qobject_cast<const QProgressBar *>(control) == nullptr;
}

const QStringList modes = words({"Lists manipulation", "Invariants manipulation", "Visualization"});

/// Loads a database, so that every mode has its panels.
void loadSmall(MainWindowFixture &fixture)
{
    QVERIFY(fixture.load(fixture.write(QStringLiteral("small.tav"), "@\nA_\t0\nBw\t1\n")));
    fixture.window->activateWindow(); // which the dialog was
    QVERIFY(QTest::qWaitForWindowActive(fixture.window, patience));
}

/// A database of a few graphs with links and values at random.
struct Sample {
    struct Graph {
        QVector<int> sub;
        QVector<int> over;
        std::optional<double> i1;
        std::optional<double> i2;
    };

    explicit Sample(int seed)
    {
        std::mt19937 random{unsigned(seed)};
        const auto below = [&random](int count) { return int(random() % unsigned(count)); };
        const auto value = [&] { return below(4) == 0 ? std::nullopt : std::optional<double>(below(3)); };
        for (int i = 0; i < 30; ++i) {
            Graph graph;
            for (int j = 0; j < i; ++j) {
                if (below(8) == 0) {
                    graph.sub.append(j);
                    graphs[j].over.append(i);
                }
            }
            graph.i1 = value();
            graph.i2 = value();
            graphs.append(graph);
        }
    }

    static QByteArray name(int i) { return "g" + QByteArray::number(i); }

    QByteArray database() const
    {
        QByteArray text;
        for (int i = 0; i < graphs.size(); ++i) {
            text += name(i);
            for (const int j : graphs[i].sub) {
                text += '\t' + QByteArray::number(j);
            }
            text += '\n';
        }
        return text;
    }

    QByteArray invariant(std::optional<double> Graph::*member) const
    {
        QByteArray text = "GRAPH\tINV1\n";
        for (int i = 0; i < graphs.size(); ++i) {
            const std::optional<double> value = graphs[i].*member;
            text += name(i) + '\t' + (value ? QByteArray::number(*value) : QByteArray("NA")) + '\n';
        }
        return text;
    }

    QVector<Graph> graphs;
};

/// Loads the sample with both invariants and turns to their commands.
void load(MainWindowFixture &fixture, const Sample &sample)
{
    QVERIFY(fixture.load(fixture.write(QStringLiteral("sample.tav"), sample.database())));
    fixture.press(QStringLiteral("Invariants manipulation"));
    fixture.pressAndChoose(QStringLiteral("Load I1"),
                           fixture.write(QStringLiteral("i1.txt"), sample.invariant(&Sample::Graph::i1)));
    fixture.pressAndChoose(QStringLiteral("Load I2"),
                           fixture.write(QStringLiteral("i2.txt"), sample.invariant(&Sample::Graph::i2)));
}

/// The tool tip of a button as one line.
QString tipOf(const MainWindowFixture &fixture, const QString &button)
{
    return driver::button(fixture.window, button)->toolTip().simplified();
}

/// Whether "a RELATION b" holds, in the words of the tips.
bool holds(double a, const QString &relation, double b)
{
    return (relation == QLatin1String("at least") && a >= b) || (relation == QLatin1String("at most") && a <= b) ||
           (relation == QLatin1String("equal to") && a == b) || (relation == QLatin1String("greater than") && a > b) ||
           (relation == QLatin1String("less than") && a < b);
}

/// The graphs that are reached from @p start in one direction through graphs that have an I2, and have one themselves.
QVector<int> reached(const Sample &sample, int start, QVector<int> Sample::Graph::*direction)
{
    QVector<int> found;
    QVector<int> open = sample.graphs[start].*direction;
    while (!open.isEmpty()) {
        const int next = open.takeLast();
        if (sample.graphs[next].i2 && !found.contains(next)) {
            found.append(next);
            open += sample.graphs[next].*direction;
        }
    }
    return found;
}

/// The names of the graphs that a comparison lists if its tip is true.
QStringList listedByTip(const Sample &sample, const QString &tip)
{
    static const QRegularExpression own(QStringLiteral("^Lists the graphs whose I1 is (.*) their own I2\\.$"));
    static const QRegularExpression others(
        QStringLiteral("^Lists the graphs whose I1 is (.*) I2 of every graph (below|above) them that is reached; a "
                       "graph without I2 is neither compared nor passed, and at least one must be compared\\.$"));
    const QRegularExpressionMatch ofOwn = own.match(tip);
    const QRegularExpressionMatch ofOthers = others.match(tip);
    QStringList names;
    for (int i = 0; i < sample.graphs.size(); ++i) {
        const Sample::Graph &graph = sample.graphs[i];
        bool listed = false;
        if (ofOwn.hasMatch()) {
            listed = graph.i1 && graph.i2 && holds(*graph.i1, ofOwn.captured(1), *graph.i2);
        } else if (ofOthers.hasMatch() && graph.i1) {
            const QVector<int> found = reached(
                sample, i, ofOthers.captured(2) == QLatin1String("below") ? &Sample::Graph::sub : &Sample::Graph::over);
            listed = !found.isEmpty() && std::all_of(found.begin(), found.end(), [&](int other) {
                return holds(*graph.i1, ofOthers.captured(1), *sample.graphs[other].i2);
            });
        }
        if (listed) {
            names.append(QString::fromLatin1(Sample::name(i)));
        }
    }
    return names;
}

/// The I2 that a derivation gives a graph if its tip is true, "NA" where it is missing.
QByteArray derivedByTip(const Sample &sample, int graph, const QString &tip)
{
    static const QRegularExpression sentence(QStringLiteral("^Sets I2 of every graph to the (\\w+) I1 among its "
                                                            "(.*); without any, I2 is missing\\.$"));
    const QRegularExpressionMatch match = sentence.match(tip);
    QVector<double> values;
    const auto add = [&](const char *neighbours, QVector<int> Sample::Graph::*direction) {
        if (match.captured(2).contains(QLatin1String(neighbours))) {
            for (const int other : sample.graphs[graph].*direction) {
                if (sample.graphs[other].i1) {
                    values.append(*sample.graphs[other].i1);
                }
            }
        }
    };
    add("direct sub-graphs", &Sample::Graph::sub);
    add("direct super-graphs", &Sample::Graph::over);
    if (values.isEmpty()) {
        return match.hasMatch() ? "NA" : "the tip tells something else";
    }
    double result = std::accumulate(values.begin(), values.end(), 0.0) / values.size();
    if (match.captured(1) == QLatin1String("smallest")) {
        result = *std::min_element(values.begin(), values.end());
    } else if (match.captured(1) == QLatin1String("largest")) {
        result = *std::max_element(values.begin(), values.end());
    }
    return QByteArray::number(result, 'g', 6);
}
} // namespace

void TestAccessibility::nothingIsWithoutAName_data()
{
    QTest::addColumn<QString>("mode");
    for (const QString &mode : modes) {
        QTest::newRow(qPrintable(mode)) << mode;
    }
}

void TestAccessibility::nothingIsWithoutAName()
{
    QFETCH(QString, mode);
    MainWindowFixture fixture;
    loadSmall(fixture);
    for (int i = 0; i < 100; ++i) {
        fixture.widget()->slot_console(QStringLiteral("a line, so that the console scrolls"));
    }
    fixture.press(mode);
    QStringList unnamed;
    int count = 0;
    walk(QAccessible::queryAccessibleInterface(fixture.window), [&](QAccessibleInterface *element) {
        ++count;
        if (element->text(QAccessible::Name).trimmed().isEmpty() &&
            className(element) != QLatin1String("QToolBarSeparator")) {
            unnamed.append(className(element) + QLatin1Char(' ') + element->object()->objectName());
        }
    });
    QCOMPARE(unnamed, QStringList());
    QVERIFY(count > 30);
}

void TestAccessibility::positionIsReadOut()
{
    MainWindowFixture fixture;
    loadSmall(fixture);
    fixture.widget()->getManager()->addList(QStringLiteral("list"), words({"A_", "Bw"}));
    fixture.press(QStringLiteral("Visualization"));
    auto *label = fixture.panel("position");
    const QAccessibleInterface *position = QAccessible::queryAccessibleInterface(label);
    QCOMPARE(position->text(QAccessible::Name), QStringLiteral("No graph of a list is shown."));
    fixture.press(QStringLiteral("=>>"));
    QCOMPARE(position->text(QAccessible::Name), QStringLiteral("Graph 2/2 Bw"));
    QCOMPARE(fixture.positionText(), QStringLiteral("2/2 Bw"));
}

/// In one sentence.
void TestAccessibility::everyControlIsExplained()
{
    MainWindowFixture fixture;
    loadSmall(fixture);
    QSet<QObject *> controls;
    QStringList unexplained;
    for (const QString &mode : modes) {
        fixture.press(mode);
        walk(QAccessible::queryAccessibleInterface(fixture.window), [&](QAccessibleInterface *element) {
            if (!isControl(element)) {
                return;
            }
            controls.insert(element->object());
            const auto *widget = qobject_cast<QWidget *>(element->object());
            const QString description = element->text(QAccessible::Description);
            const bool isSentence = description.endsWith(QLatin1Char('.')) && description.count(QLatin1Char('.')) == 1;
            if (!isSentence || (hasTip(widget) && widget->toolTip().simplified() != description)) {
                unexplained.append(element->text(QAccessible::Name) + QStringLiteral(": ") + description);
            }
        });
    }
    QCOMPARE(unexplained, QStringList());
    // 3 buttons and 3 modes; 8 buttons; 15 and 12; 2 and the slider; 4 in the tool bar; 10 choosers, the name line, the
    // console, the progress bar, the viewer
    QCOMPARE(controls.size(), 3 + 3 + 8 + 15 + 12 + 3 + 4 + 10 + 4);
}

void TestAccessibility::tipsAreShort()
{
    const MainWindowFixture fixture;
    const QList<QWidget *> widgets = fixture.widget()->findChildren<QWidget *>();
    int lines = 0;
    for (const QWidget *widget : widgets) {
        const QStringList tip = widget->toolTip().split(QLatin1Char('\n'));
        for (const QString &line : tip) {
            QVERIFY2(line.size() <= 60, qPrintable(line));
            QCOMPARE(line, line.trimmed());
        }
        for (int i = 1; i < tip.size(); ++i) {
            const QString firstWord = tip[i].section(QLatin1Char(' '), 0, 0);
            QVERIFY2(tip[i - 1].size() + 1 + firstWord.size() > 60, qPrintable(tip[i - 1]));
            ++lines;
        }
    }
    QVERIFY(lines > 10);
}

void TestAccessibility::toolBarTipsNameTheShortcut()
{
    const MainWindowFixture fixture;
    const auto *bar = fixture.window->findChild<QToolBar *>();
    QStringList ends;
    for (QAction *action : bar->actions()) {
        if (!action->isSeparator()) {
            const QString tip = bar->widgetForAction(action)->toolTip();
            ends.append(tip.mid(tip.lastIndexOf(QLatin1Char('('))));
            QVERIFY2(ends.last().contains(action->shortcut().toString(QKeySequence::NativeText)), qPrintable(tip));
        }
    }
    QCOMPARE(ends, words({"(Ctrl+Q).", "(Ctrl+O).", "(Ctrl+D).", "(F1)."}));
}

/// From a panel to the one below it, and within a panel in the order of reading; through all modes.
void TestAccessibility::tabGoesThroughThePanelsFromTopToBottom()
{
    MainWindowFixture fixture;
    loadSmall(fixture);
    const auto describe = [&](const QWidget *widget) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        if (widget == fixture.view()) {
            return QStringLiteral("<viewer>");
        }
        return button != nullptr ? button->text().trimmed()
                                 : QLatin1Char('<') + widget->objectName() + QLatin1Char('>');
    };
    const auto stops = [&] {
        QStringList names;
        QWidget *first = driver::button(fixture.window, QStringLiteral("Load database"));
        first->setFocus();
        do {
            names.append(describe(QApplication::focusWidget()));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && names.size() < 100);
        return names;
    };
    const QStringList top = words({"Load database", "Set work directory", "Save all graphs"});
    fixture.press(modes[0]);
    QCOMPARE(stops(), top + words({"Lists manipulation", "<newListName>",    "Build Super-Graphs", "Build Sub-Graphs",
                                   "<closureSource>",    "From file.",       "Union of",           "<unionFirst>",
                                   "<unionSecond>",      "Intersection of",  "<interFirst>",       "<interSecond>",
                                   "GraphList",          "<exceptFirst>",    "<exceptSecond>",     "Remove GraphList :",
                                   "<removeChoice>",     "Save GraphList :", "<saveChoice>",       "<console>"}));
    fixture.press(modes[1]);
    QCOMPARE(stops(), top + words({"Invariants manipulation",
                                   "<newListName>",
                                   "Load I1",
                                   "Load I2",
                                   "Save Inv1",
                                   "I1 <- I2",
                                   "I2 <- I1",
                                   "I1 <-> I2",
                                   "I2 = Avg sub I1",
                                   "I2 = Avg super I1",
                                   "I2 = Avg all I1",
                                   "I2 = Min sub I1",
                                   "I2 = Min super I1",
                                   "I2 = Min all I1",
                                   "I2 = Max sub I1",
                                   "I2 = Max super I1",
                                   "I2 = Max all I1",
                                   "List I1 >= I2",
                                   "List I1 <= I2",
                                   "List I1 == I2 (all subs)",
                                   "List I1 >= I2 (all subs)",
                                   "List I1 <= I2 (all subs)",
                                   "List I1 == I2 (all super)",
                                   "List I1 >= I2 (all super)",
                                   "List I1 <= I2 (all super)",
                                   "List I1 > I2 (all subs)",
                                   "List I1 < I2 (all subs)",
                                   "List I1 > I2 (all super)",
                                   "List I1 < I2 (all super)",
                                   "<console>"}));
    fixture.press(modes[2]);
    QCOMPARE(stops(), top + words({"Visualization", "<newListName>", "<browseChoice>", "<zoom>", "<viewer>",
                                   "<<=", "=>>", "<console>"}));
}

void TestAccessibility::comparisonTipsAreTrue_data()
{
    QTest::addColumn<int>("seed");
    for (const int seed : {1, 2, 3}) {
        QTest::addRow("seed %d", seed) << seed;
    }
}

/// Every comparison lists what its tool tip says, whatever the button is called.
void TestAccessibility::comparisonTipsAreTrue()
{
    QFETCH(int, seed);
    MainWindowFixture fixture;
    const Sample sample(seed);
    load(fixture, sample);
    const QList<QAbstractButton *> buttons = fixture.panel("comparisonPanel")->findChildren<QAbstractButton *>();
    QCOMPARE(buttons.size(), 12);
    int sizes = 0;
    for (const QAbstractButton *button : buttons) {
        fixture.typeListName(button->text());
        fixture.press(button->text());
        const QStringList listed = fixture.widget()->getManager()->getList(button->text());
        QVERIFY2(listed == listedByTip(sample, tipOf(fixture, button->text())), qPrintable(button->text()));
        sizes += listed.size();
    }
    QVERIFY(sizes > 12);
}

void TestAccessibility::derivationTipsAreTrue_data()
{
    comparisonTipsAreTrue_data();
}

void TestAccessibility::derivationTipsAreTrue()
{
    QFETCH(int, seed);
    MainWindowFixture fixture;
    const Sample sample(seed);
    load(fixture, sample);
    const QString saved = fixture.path(QStringLiteral("saved.txt"));
    for (const char *value : {"Avg", "Min", "Max"}) {
        for (const char *neighbours : {"sub", "super", "all"}) {
            const QString button = QStringLiteral("I2 = %1 %2 I1").arg(QLatin1String(value), QLatin1String(neighbours));
            QByteArray expected = "GRAPH\tINV1\n";
            for (int i = 0; i < sample.graphs.size(); ++i) {
                expected += Sample::name(i) + '\t' + derivedByTip(sample, i, tipOf(fixture, button)) + '\n';
            }
            fixture.press(button);
            fixture.press(QStringLiteral("I1 <-> I2"));
            fixture.pressAndChoose(QStringLiteral("Save Inv1"), saved);
            fixture.press(QStringLiteral("I1 <-> I2"));
            QCOMPARE(contents(saved), expected);
            QVERIFY(QFile::remove(saved));
        }
    }
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
