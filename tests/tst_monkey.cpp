// Random use of the whole window. TAVOLINE_MONKEY_ACTIONS, TAVOLINE_MONKEY_SEED and TAVOLINE_MONKEY_LOG say how much,
// of which kind, and where it is written down.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "node.h"
#include "support/mainwindowfixture.h"
#include "support/otherwork.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <QSlider>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>
#include <optional>
#include <random>
#include <sys/stat.h>

namespace
{
constexpr int actionsBetweenChecks = 50;
constexpr int triesPerDialog = 3;

int environmentNumber(const char *name, int otherwise)
{
    bool given = false;
    const int number = qEnvironmentVariableIntValue(name, &given);
    return given ? number : otherwise;
}

/// Random numbers that depend on the seed and on the number of the action only, not on what happened before.
class Dice
{
public:
    Dice(int seed, int action, int purpose)
    {
        std::seed_seq sequence{seed, action, purpose};
        generator.seed(sequence);
    }

    /// One of 0, 1, ..., @p count - 1; 0 when there is none.
    int below(int count) { return count > 0 ? int(generator() % count) : 0; }
    bool oneIn(int count) { return below(count) == 0; }
    template<typename List> auto oneOf(const List &list) { return *(list.begin() + below(int(list.size()))); }

private:
    std::mt19937 generator;
};

template<typename Event, typename... Arguments> void send(QWidget *target, Arguments... arguments)
{
    Event event(arguments...);
    QCoreApplication::sendEvent(target, &event);
}

void addEntries(const QMenu *menu, QVector<QAction *> &entries)
{
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        if (action->menu() != nullptr) {
            addEntries(action->menu(), entries);
        } else if (!action->isSeparator()) {
            entries.append(action);
        }
    }
}

/// The windows that there are, shown or not. The entries of the undo history are no windows to anybody.
int windowsOfTheProgram()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return int(std::count_if(windows.begin(), windows.end(),
                             [](const QWidget *window) { return qobject_cast<const Graph *>(window) == nullptr; }));
}

/// What the clipboard may hold: graphs, among them the Petersen graph, and what is none.
QVector<QString> graph6Texts()
{
    return {QStringLiteral("IheA@GUAo"), QStringLiteral("A_"),         QStringLiteral("D~{\n"),
            QStringLiteral("G?zTb_"),    QStringLiteral("not graph6"), QString(),
            QStringLiteral("@"),         QStringLiteral("~~~~~"),      QString(5000, QLatin1Char('A'))};
}

/// Presses and releases a key where the keyboard input goes; the press may close the window.
void pressKey(const QPointer<QWidget> &target, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    if (target != nullptr) {
        QTest::keyPress(target, key, modifiers);
    }
    if (target != nullptr) {
        QTest::keyRelease(target, key, modifiers);
    }
}
} // namespace

/// A user who presses, types, drags and chooses at random in the whole window, and answers every dialog at random.
///
/// What is tried depends on the seed only; whether it meets a hidden button, or a load that is still running, depends
/// on the machine, too.
class Monkey : public QObject
{
    Q_OBJECT

public:
    /// Writes what it does to the file @p logPath, a line each, before it does it.
    Monkey(int seed, const QString &logPath);

    void act(int number);
    /// Whether the window is what it should be after any action.
    void check();

    /// What it tried, without the answers to dialogs.
    const QStringList &tried() const { return attempts; }
    /// A file that it opens and saves.
    QString file(const char *name) const { return directory.filePath(QLatin1String(name)); }

private:
    struct Action;
    using Act = void (Monkey::*)();

    void prepareFiles();
    void write(const char *name, const QByteArray &bytes);
    void attempt(const QString &text);
    void log(const QString &text);
    QWidget *target(const char *name) const { return fixture->window->findChild<QWidget *>(QLatin1String(name)); }
    bool isUsable(const QWidget *widget) const;

    void openWindow();
    void settle();
    void closePopups();

    void answerDialog();
    void answerFileDialog(QFileDialog *dialog);
    void forceFile(const QString &path) { nextFile = path; }

    void pressButton(const QString &text);
    void turnTo(const QWidget *widget);
    Graph *viewer();
    QVector<QAction *> menuEntries(Graph *view, QPoint place);

    void pressAnyButton();
    void loadDatabase();
    void loadInvariant();
    void makeList();
    void chooseMode();
    void typeName();
    void chooseInCombo();
    void moveSlider();
    void browse();
    void mouseInViewer();
    void wheelInViewer();
    void keyInViewer();
    void keyAnywhere();
    void menuOfViewer();
    void fileOfViewer();
    void clipboardOfViewer();
    void dropOnViewer();
    void menuElsewhere();
    void shortcut();
    void resizeWindow();
    void turnEventLoop();
    void closeWindow();

    const int seed;
    QTemporaryDir directory;
    QFile logFile;
    QStringList attempts;
    QStringList inputs;
    QStringList outputs;
    std::optional<MainWindowFixture> fixture;
    Dice dice{0, 0, 0};
    Dice answers{0, 0, 0};
    QString nextFile;
};

struct Monkey::Action {
    int weight;
    Act act;
};

Monkey::Monkey(int givenSeed, const QString &logPath) : seed(givenSeed), logFile(logPath)
{
    if (!logFile.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        qFatal("cannot write %s", qPrintable(logPath));
    }
    prepareFiles();
    QDir::setCurrent(directory.path()); // an empty work directory means this one
    qsrand(seed);
    openWindow();
    answerDialog();
}

void Monkey::write(const char *name, const QByteArray &bytes)
{
    inputs.append(::write(file(name), bytes));
}

void Monkey::prepareFiles()
{
    const QByteArray database = contents(QStringLiteral(TAVOLINE_TEST_DATA "/connected-7.tav"));
    QByteArray garbage;
    Dice bytes(seed, 0, 0);
    for (int i = 0; i < 5000; ++i) {
        garbage.append(char(bytes.below(256)));
    }
    QByteArray invariant = "GRAPH\tINV\n";
    QByteArray names;
    int number = 0;
    const QList<QByteArray> lines = database.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray name = line.split('\t').first();
        if (!name.isEmpty()) {
            invariant += name + '\t' + (++number % 7 == 0 ? QByteArray("NA") : QByteArray::number(number % 10)) + '\n';
            names += number % 20 == 0 ? name + '\n' : QByteArray();
        }
    }
    write("good.tav", database);
    write("slow.tav", database.repeated(500));
    write("bad index.tav", database + "Z\t99999999\n");
    write("garbage.tav", garbage);
    write("empty.tav", "");
    write("good.txt", invariant);
    write("short.txt", invariant.left(invariant.size() / 2));
    write("garbage.txt", garbage);
    write("good.g6", names);
    write("odd.g6", "\n<img src=x>\n@\n?\n~~~~\nG?zTb_\nnot a graph\n\xc3\xa9\n^" + QByteArray(90, '~') + "\n" +
                        QByteArray(9000, 'x') + "\n");
    write("garbage.g6", garbage);
    write("good.golm3", "3\nname\t0\t0\n<img src=x>\t10\t10\n\xe9\t20\t-5\n0\t1\t0\t1\t0\t1\t0\t1\t0\t");
    write("far.golm3", "2\nfar\t1e308\t-1e308\nnowhere\tnan\tinf\n0\t1\t1\t0\t");
    write("long name.golm3", "1\n" + QByteArray(1000000, 'n') + "\t0\t0\n0\t");
    write("short.golm3", "3\nname\t0\t0\nsecond\t10\t10\nthird\t20\t-5\n0\t1\t");
    write("huge.golm3", "99999999\nname\t0\t0\n0\t");
    write("negative.golm3", "-4\nname\t0\t0\n0\t");
    write("garbage.golm3", garbage);
    write("good.edgelist", "1\t2\n2\t3\n3\t4\n<b>four</b>\t1\n");
    write("large.edgelist", [] {
        QByteArray edges;
        for (int i = 0; i < 100; ++i) {
            edges += QByteArray::number(i) + '\t' + QByteArray::number(i + 1) + '\n';
        }
        return edges;
    }());
    write("garbage.edgelist", garbage);
    QDir(directory.path()).mkdir(QStringLiteral("folder"));
    mkfifo(QFile::encodeName(file("fifo")).constData(), S_IRUSR | S_IWUSR);
    inputs += {file("missing.tav"), file("folder"), QString(), QStringLiteral(".")};
    outputs += {file("out.g6"),  file("out.txt"),      file("out.golm3"), file("out.edgelist"),         file("out.pdf"),
                file("out.svg"), file("out.tex"),      file("no suffix"), file("\xe9\xff odd.g6"),      file("folder"),
                file("fifo"),    file("nowhere/file"), QString(),         QStringLiteral("relative.g6")};
    inputs += outputs;
}

void Monkey::attempt(const QString &text)
{
    attempts.append(text);
    log(QStringLiteral("%1: %2").arg(attempts.size()).arg(text));
}

void Monkey::log(const QString &text)
{
    logFile.write(text.left(200).toUtf8() + '\n');
}

/// Opens a window, most of the time with a database and a list that is shown, so that every command is within reach.
void Monkey::openWindow()
{
    fixture.reset();
    fixture.emplace(directory.path());
    if (dice.oneIn(5)) {
        return;
    }
    TAVManager *manager = fixture->widget()->getManager();
    manager->loadDatabase(file("good.tav"));
    QVERIFY(driver::waitUntil([this] { return target("listsPanel")->isVisible(); }));
    manager->addListFromFile(QStringLiteral("0"), file("good.g6"));
    pressButton(QStringLiteral("Visualization"));
    pressButton(QStringLiteral("=>>"));
}

bool Monkey::isUsable(const QWidget *widget) const
{
    return widget != nullptr && widget->isVisible() && widget->isEnabled();
}

/// Every kind of action and how often it is chosen.
void Monkey::act(int number)
{
    static const QVector<Action> actions = {
        {140, &Monkey::pressAnyButton}, {30, &Monkey::loadDatabase},      {20, &Monkey::loadInvariant},
        {60, &Monkey::makeList},        {60, &Monkey::chooseMode},        {50, &Monkey::typeName},
        {50, &Monkey::chooseInCombo},   {20, &Monkey::moveSlider},        {60, &Monkey::browse},
        {180, &Monkey::mouseInViewer},  {20, &Monkey::wheelInViewer},     {140, &Monkey::keyInViewer},
        {40, &Monkey::keyAnywhere},     {80, &Monkey::menuOfViewer},      {10, &Monkey::menuElsewhere},
        {40, &Monkey::fileOfViewer},    {30, &Monkey::clipboardOfViewer}, {30, &Monkey::dropOnViewer},
        {6, &Monkey::shortcut},         {10, &Monkey::resizeWindow},      {50, &Monkey::turnEventLoop},
        {2, &Monkey::closeWindow},
    };
    int total = 0;
    for (const Action &action : actions) {
        total += action.weight;
    }
    dice = Dice(seed, number, 1);
    answers = Dice(seed, number, 2);
    nextFile.clear();
    int choice = dice.below(total);
    for (const Action &action : actions) {
        choice -= action.weight;
        if (choice < 0) {
            (this->*action.act)();
            break;
        }
    }
    settle();
}

/// Ends what an action left behind: an open menu, a node's dialog too many, a window that was closed.
void Monkey::settle()
{
    closePopups();
    QCoreApplication::processEvents();
    if (fixture->window.isNull() || !fixture->window->isVisible()) {
        QVERIFY(driver::waitUntil([this] { return fixture->window.isNull(); }));
        openWindow();
    }
}

void Monkey::closePopups()
{
    for (int i = 0; i < 10 && QApplication::activePopupWidget() != nullptr; ++i) {
        QApplication::activePopupWidget()->close();
    }
}

void Monkey::check()
{
    const QStringList names = fixture->widget()->getManager()->listNames();
    QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
    const QList<QComboBox *> combos = fixture->widget()->findChildren<QComboBox *>();
    QCOMPARE(combos.size(), 10);
    for (const QComboBox *combo : combos) {
        QStringList entries;
        for (int i = 0; i < combo->count(); ++i) {
            entries.append(combo->itemText(i));
        }
        QCOMPARE(entries, names);
    }

    const Graph *view = fixture->view();
    const int vertices = qBound(0, view->getNbNodes(), Graph::MAX_NODES);
    int edges = 0;
    for (int i = 0; i < vertices; ++i) {
        QVERIFY(!view->edge(i, i));
        for (int j = 0; j < i; ++j) {
            QCOMPARE(view->edge(i, j), view->edge(j, i));
            edges += view->edge(i, j) ? 1 : 0;
        }
    }
    QCOMPARE(view->getNbEdges(), edges);

    const QRegularExpression position(QStringLiteral("^$|^[1-9][0-9]*/[1-9][0-9]* ."));
    QVERIFY(position.match(fixture->positionText()).hasMatch());
    QVERIFY(windowsOfTheProgram() < 100);
    bool answered = false;
    QTimer::singleShot(0, this, [&answered] { answered = true; });
    QVERIFY(driver::waitUntil([&answered] { return answered; }));
}

// Dialogs.

/// Answers the dialog that is up, if there is one, and comes again: an answer may bring up another dialog before this
/// function returns.
void Monkey::answerDialog()
{
    QTimer::singleShot(2, this, &Monkey::answerDialog);
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible()) {
        return;
    }
    const QVariant tries = dialog->property("tries");
    dialog->setProperty("tries", tries.toInt() + 1);
    if (tries.toInt() >= triesPerDialog || answers.oneIn(5)) {
        log(QStringLiteral("   cancels"));
        dialog->reject();
    } else if (answers.oneIn(50)) {
        log(QStringLiteral("   ends the session"));
        QApplication::closeAllWindows();
    } else if (auto *fileDialog = qobject_cast<QFileDialog *>(dialog)) {
        answerFileDialog(fileDialog);
    } else if (answers.oneIn(3)) {
        pressKey(dialog, answers.oneIn(2) ? Qt::Key_Return : Qt::Key_Escape, Qt::NoModifier);
    } else {
        QAbstractButton *button = answers.oneOf(dialog->findChildren<QAbstractButton *>());
        log(QStringLiteral("   answers ") + button->text());
        QTest::mouseClick(button, Qt::LeftButton);
    }
}

void Monkey::answerFileDialog(QFileDialog *dialog)
{
    const bool saving = dialog->acceptMode() == QFileDialog::AcceptSave;
    const QString path = nextFile.isEmpty() ? answers.oneOf(saving ? outputs : inputs) : nextFile;
    log(QStringLiteral("   chooses ") + path);
    driver::chooseFile(dialog, path);
}

// The panels.

void Monkey::pressAnyButton()
{
    const QList<QAbstractButton *> buttons = fixture->window->findChildren<QAbstractButton *>();
    QAbstractButton *button = dice.oneOf(buttons);
    const bool sought = dice.oneIn(2);
    attempt(QStringLiteral("press button %1, %2").arg(buttons.indexOf(button)).arg(button->text()));
    if (sought) {
        turnTo(button);
    }
    if (isUsable(button)) {
        QTest::mouseClick(button, Qt::LeftButton);
    }
}

void Monkey::pressButton(const QString &text)
{
    if (isUsable(driver::button(fixture->window, text))) {
        driver::click(fixture->window, text);
    }
}

/// Tries the modes until one shows the widget.
void Monkey::turnTo(const QWidget *widget)
{
    for (const char *mode : {"Lists manipulation", "Invariants manipulation", "Visualization"}) {
        if (!widget->isVisible()) {
            pressButton(QLatin1String(mode));
        }
    }
}

void Monkey::loadDatabase()
{
    const char *name = dice.oneIn(4) ? dice.oneOf(QVector<const char *>{"bad index.tav", "garbage.tav", "empty.tav"})
                                     : dice.oneOf(QVector<const char *>{"good.tav", "good.tav", "slow.tav"});
    attempt(QStringLiteral("load ") + QLatin1String(name));
    forceFile(file(name));
    pressButton(QStringLiteral("Load database"));
}

void Monkey::loadInvariant()
{
    const char *name = dice.oneOf(QVector<const char *>{"good.txt", "good.txt", "short.txt", "garbage.txt"});
    const QString button = dice.oneIn(2) ? QStringLiteral("Load I1") : QStringLiteral("Load I2");
    attempt(button + QStringLiteral(" from ") + QLatin1String(name));
    forceFile(file(name));
    pressButton(QStringLiteral("Invariants manipulation"));
    pressButton(button);
}

void Monkey::makeList()
{
    const char *name = dice.oneOf(QVector<const char *>{"good.g6", "good.g6", "odd.g6", "garbage.g6"});
    const QString list = QString::number(dice.below(20));
    attempt(QStringLiteral("list %1 from %2").arg(list, QLatin1String(name)));
    forceFile(file(name));
    pressButton(QStringLiteral("Lists manipulation"));
    if (isUsable(target("newListName"))) {
        fixture->typeListName(list);
    }
    pressButton(QStringLiteral("From file."));
}

void Monkey::chooseMode()
{
    const QString mode = dice.oneOf(QVector<QString>{
        QStringLiteral("Lists manipulation"), QStringLiteral("Invariants manipulation"),
        QStringLiteral("Visualization"), QStringLiteral("Visualization"), QStringLiteral("Visualization")});
    attempt(mode);
    pressButton(mode);
}

void Monkey::typeName()
{
    const QString name = dice.oneOf(
        QVector<QString>{QString(), QStringLiteral(" "), QStringLiteral("<b>bold</b>"), QStringLiteral("a\tb"),
                         QString(QChar(0x263a)), QString(20000, QLatin1Char('n')), QString::number(dice.below(20))});
    attempt(QStringLiteral("name ") + name);
    auto *edit = qobject_cast<QLineEdit *>(target("newListName"));
    edit->selectAll();
    edit->insert(name);
}

void Monkey::chooseInCombo()
{
    const QList<QComboBox *> combos = fixture->widget()->findChildren<QComboBox *>();
    const int number = dice.below(combos.size());
    const int entry = dice.below(20);
    const bool opened = dice.oneIn(3);
    attempt(QStringLiteral("entry %1 of list chooser %2").arg(entry).arg(number));
    QComboBox *combo = combos.at(number);
    if (!isUsable(combo)) {
        return;
    }
    if (opened) {
        combo->showPopup();
        pressKey(QApplication::activePopupWidget(), Qt::Key_Down, Qt::NoModifier);
    } else if (combo->count() > 0) {
        combo->setCurrentIndex(entry % combo->count());
    }
}

void Monkey::moveSlider()
{
    const int value = dice.oneIn(3) ? dice.below(20) : dice.below(1000);
    attempt(QStringLiteral("zoom %1").arg(value));
    qobject_cast<QSlider *>(target("zoom"))->setValue(value);
}

void Monkey::browse()
{
    const QString button = dice.oneIn(2) ? QStringLiteral("=>>") : QStringLiteral("<<=");
    const bool modeFirst = dice.oneIn(3);
    attempt(QStringLiteral("browse ") + button);
    if (modeFirst) {
        pressButton(QStringLiteral("Visualization"));
    }
    pressButton(button);
}

// The viewer.

/// The view, most of the time after turning to it; null when it does not show.
Graph *Monkey::viewer()
{
    Graph *view = fixture->view();
    if (!dice.oneIn(4)) {
        turnTo(view);
    }
    return isUsable(view) ? view : nullptr;
}

void Monkey::mouseInViewer()
{
    const QEvent::Type type = dice.oneOf(
        QVector<QEvent::Type>{QEvent::MouseButtonPress, QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseMove,
                              QEvent::MouseButtonRelease, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick});
    const Qt::MouseButton button = dice.oneIn(6) ? Qt::RightButton : Qt::LeftButton;
    const Qt::KeyboardModifiers modifiers = dice.oneOf(QVector<Qt::KeyboardModifiers>{
        Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier});
    const int slot = dice.oneIn(2) ? dice.below(12) : -1;
    const int x = dice.below(900) - 50;
    const int y = dice.below(500) - 50;
    const bool held = !dice.oneIn(4);
    attempt(QStringLiteral("mouse event %1 at vertex %2 or %3, %4").arg(type).arg(slot).arg(x).arg(y));
    Graph *view = viewer();
    if (view == nullptr) {
        return;
    }
    const Node *node = view->node(slot);
    const QPoint place = node != nullptr ? view->mapFromScene(node->pos()) : QPoint(x, y);
    const bool moving = type == QEvent::MouseMove;
    send<QMouseEvent>(view->viewport(), type, QPointF(place), QPointF(view->viewport()->mapToGlobal(place)),
                      moving ? Qt::NoButton : button,
                      held && type != QEvent::MouseButtonRelease ? Qt::MouseButtons(button) : Qt::NoButton, modifiers);
}

void Monkey::wheelInViewer()
{
    const int turn = dice.oneIn(2) ? 120 : -1200;
    attempt(QStringLiteral("wheel %1").arg(turn));
    if (Graph *view = viewer()) {
        send<QWheelEvent>(view->viewport(), QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, turn),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    }
}

void Monkey::keyInViewer()
{
    static const QVector<Qt::Key> keys = [] {
        QVector<Qt::Key> all{Qt::Key_Left,     Qt::Key_Right,     Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Plus,
                             Qt::Key_Minus,    Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Space,  Qt::Key_Alt,
                             Qt::Key_Escape,   Qt::Key_Control,   Qt::Key_Shift,  Qt::Key_Menu,   Qt::Key_5,
                             Qt::Key_6,        Qt::Key_7,         Qt::Key_8,      Qt::Key_9,      Qt::Key_PageUp,
                             Qt::Key_PageDown, Qt::Key_Home,      Qt::Key_End,    Qt::Key_Insert, Qt::Key_0,
                             Qt::Key_1,        Qt::Key_2,         Qt::Key_3,      Qt::Key_4,      Qt::Key_F10};
        for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key) {
            all.append(Qt::Key(key));
        }
        return all;
    }();
    const Qt::Key key = dice.oneOf(keys);
    const Qt::KeyboardModifiers modifiers = dice.oneOf(
        QVector<Qt::KeyboardModifiers>{Qt::NoModifier, Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier});
    const bool held = dice.oneIn(20);
    attempt(QStringLiteral("key 0x%1 with 0x%2 in the viewer").arg(key, 0, 16).arg(int(modifiers), 0, 16));
    Graph *view = viewer();
    if (view != nullptr && held) {
        QTest::keyPress(view, key, modifiers);
    } else {
        pressKey(view, key, modifiers);
    }
}

void Monkey::menuOfViewer()
{
    const int number = dice.below(50); // the entries are 47
    const int x = dice.below(400);
    const int y = dice.below(300);
    attempt(QStringLiteral("entry %1 of the menu at %2, %3").arg(number).arg(x).arg(y));
    Graph *view = viewer();
    if (view == nullptr) {
        return;
    }
    const QVector<QAction *> entries = menuEntries(view, QPoint(x, y));
    if (number < entries.size() && entries.at(number)->isEnabled()) {
        entries.at(number)->trigger();
    }
}

/// Puts a text into the clipboard for the viewer to paste, a graph6 string most of the time.
void Monkey::clipboardOfViewer()
{
    const QString text = dice.oneOf(graph6Texts());
    attempt(QStringLiteral("paste ") + text);
    QApplication::clipboard()->setText(text);
    pressKey(viewer(), Qt::Key_Insert, dice.oneIn(2) ? Qt::ShiftModifier : Qt::NoModifier);
}

/// Drops a file or a text onto the viewer.
void Monkey::dropOnViewer()
{
    const QString name = dice.oneOf(
        QVector<QString>{QStringLiteral("good.g6"), QStringLiteral("odd.g6"), QStringLiteral("garbage.g6"),
                         QStringLiteral("good.golm3"), QStringLiteral("garbage.golm3"), QStringLiteral("good.edgelist"),
                         QStringLiteral("large.edgelist"), QStringLiteral("good.txt"), QString()});
    const QString text = dice.oneOf(graph6Texts());
    attempt(QStringLiteral("drop ") + (name.isEmpty() ? text : name));
    Graph *view = viewer();
    if (view == nullptr) {
        return;
    }
    QMimeData data;
    if (name.isEmpty()) {
        data.setText(text);
    } else {
        data.setUrls({QUrl::fromLocalFile(directory.filePath(name))});
    }
    const QPoint place(20, 20);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    if (enter.isAccepted()) {
        send<QDropEvent>(view->viewport(), QPointF(place), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    }
}

/// A graph file, an edge list or a picture, by the entry of the menu that asks for it.
void Monkey::fileOfViewer()
{
    struct FileCommand {
        const char *entry;
        QVector<const char *> files;
    };
    static const FileCommand open = {"Open...",
                                     {"good.golm3", "good.golm3", "far.golm3", "long name.golm3", "short.golm3",
                                      "huge.golm3", "negative.golm3", "garbage.golm3", "out.golm3"}};
    static const FileCommand import = {
        "Import...", {"good.edgelist", "good.edgelist", "large.edgelist", "garbage.edgelist", "out.edgelist"}};
    static const FileCommand save = {"Save...", {"out.golm3", "no suffix", "folder", "fifo", "nowhere/file"}};
    static const FileCommand exportEdges = {"Export...",
                                            {"out.edgelist", "no suffix", "folder", "fifo", "nowhere/file"}};
    static const FileCommand picture = {
        "Export picture...",
        {"out.svg", "out.png", "out.pdf", "out.tex", "out.dot", "no suffix", "folder", "fifo", "nowhere/file"}};
    const FileCommand command =
        dice.oneOf(QVector<FileCommand>{open, open, import, save, exportEdges, picture, picture});
    const char *const name = dice.oneOf(command.files);
    attempt(QLatin1String(command.entry) + QLatin1Char(' ') + QLatin1String(name));
    Graph *view = viewer();
    if (view == nullptr) {
        return;
    }
    forceFile(file(name));
    const QVector<QAction *> entries = menuEntries(view, QPoint(10, 10));
    for (QAction *action : entries) {
        if (action->text().remove(QLatin1Char('&')).startsWith(QLatin1String(command.entry))) {
            action->trigger();
            return;
        }
    }
}

/// What the menu of the viewer offers; empty while the viewer shows none.
QVector<QAction *> Monkey::menuEntries(Graph *view, QPoint place)
{
    QVector<QAction *> entries;
    send<QContextMenuEvent>(view->viewport(), QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
        addEntries(menu, entries);
        closePopups();
    }
    return entries;
}

// The rest of the window.

void Monkey::keyAnywhere()
{
    const Qt::Key key =
        dice.oneOf(QVector<Qt::Key>{Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return, Qt::Key_Down,
                                    Qt::Key_Up, Qt::Key_X, Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_F10});
    attempt(QStringLiteral("key 0x%1").arg(key, 0, 16));
    pressKey(QApplication::focusWidget(), key, Qt::NoModifier);
}

void Monkey::menuElsewhere()
{
    const char *name = dice.oneOf(QVector<const char *>{"console", "newListName"});
    attempt(QStringLiteral("menu of ") + QLatin1String(name));
    auto *widget = target(name);
    QWidget *receiver = qobject_cast<QTextEdit *>(widget) ? qobject_cast<QTextEdit *>(widget)->viewport() : widget;
    send<QContextMenuEvent>(receiver, QContextMenuEvent::Mouse, QPoint(5, 5), receiver->mapToGlobal(QPoint(5, 5)));
}

void Monkey::shortcut()
{
    const Qt::Key key =
        dice.oneOf(QVector<Qt::Key>{Qt::Key_O, Qt::Key_O, Qt::Key_D, Qt::Key_D, Qt::Key_F1, Qt::Key_F1, Qt::Key_Q});
    attempt(QStringLiteral("shortcut 0x%1").arg(key, 0, 16));
    pressKey(fixture->window.data(), key, key == Qt::Key_F1 ? Qt::NoModifier : Qt::ControlModifier);
}

void Monkey::resizeWindow()
{
    const QSize size(600 + dice.below(1000), 600 + dice.below(1000));
    const bool minimised = dice.oneIn(3);
    attempt(QStringLiteral("size %1 x %2").arg(size.width()).arg(size.height()));
    if (minimised) {
        fixture->window->showMinimized();
        QCoreApplication::processEvents();
        fixture->window->showNormal();
    }
    fixture->window->resize(size);
}

void Monkey::turnEventLoop()
{
    // Not a time to wait: the number of rounds is the seed's, and how far a load comes meanwhile is the machine's.
    const int rounds = dice.below(1000);
    attempt(QStringLiteral("%1 rounds of the event loop").arg(rounds));
    for (int i = 0; i < rounds; ++i) {
        doOtherWork();
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // which the rounds leave
}

void Monkey::closeWindow()
{
    const bool reallyNow = dice.oneIn(2);
    attempt(QStringLiteral("close the window"));
    if (reallyNow) {
        fixture->window->close();
    } else {
        QApplication::closeAllWindows();
    }
}

class TestMonkey : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sameSeedSameActions();
    void graphFilesAreWhatTheirNamesSay_data();
    void graphFilesAreWhatTheirNamesSay();
    void nothingBreaks();
};

void TestMonkey::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false); // another window is opened
}

void TestMonkey::sameSeedSameActions()
{
    const QTemporaryDir directory;
    const auto triedWith = [&directory](int seed) {
        Monkey monkey(seed, directory.filePath(QStringLiteral("monkey.log")));
        for (int number = 1; number <= 40; ++number) {
            monkey.act(number);
        }
        return monkey.tried();
    };
    const QStringList first = triedWith(7);
    QCOMPARE(first.size(), 40);
    QCOMPARE(triedWith(7), first);
    QVERIFY(triedWith(8) != first);
}

void TestMonkey::graphFilesAreWhatTheirNamesSay_data()
{
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<int>("vertices");
    QTest::addColumn<int>("edges");
    QTest::newRow("good.golm3") << true << 3 << 2;
    QTest::newRow("far.golm3") << true << 2 << 1;
    QTest::newRow("long name.golm3") << true << 1 << 0;
    QTest::newRow("short.golm3") << false << 3 << 0;
    QTest::newRow("huge.golm3") << false << 32 << 0;
    QTest::newRow("negative.golm3") << false << 0 << 0;
    QTest::newRow("good.edgelist") << true << 5 << 4;
    QTest::newRow("large.edgelist") << false << 0 << 0;
}

void TestMonkey::graphFilesAreWhatTheirNamesSay()
{
    QFETCH(bool, isRead);
    const QTemporaryDir directory;
    const Monkey monkey(1, directory.filePath(QStringLiteral("monkey.log")));
    const char *const name = QTest::currentDataTag();
    Graph graph(QStringLiteral("graph"), false);
    QCOMPARE(QByteArray(name).endsWith(".golm3") ? graph.open(monkey.file(name)) : graph.import_el(monkey.file(name)),
             isRead);
    QTEST(graph.getNbNodes(), "vertices");
    QTEST(graph.getNbEdges(), "edges");
}

void TestMonkey::nothingBreaks()
{
    const int seed = environmentNumber("TAVOLINE_MONKEY_SEED", 1);
    const int actions = environmentNumber("TAVOLINE_MONKEY_ACTIONS", 1000);
    const QString defaultLog =
        QStringLiteral("%1/monkey-%2.log").arg(QCoreApplication::applicationDirPath(), QGuiApplication::platformName());
    const QString log = qEnvironmentVariable("TAVOLINE_MONKEY_LOG", defaultLog);
    qInfo("TAVOLINE_MONKEY_SEED=%d TAVOLINE_MONKEY_ACTIONS=%d, written to %s", seed, actions, qPrintable(log));
    Monkey monkey(seed, log);
    for (int number = 1; number <= actions; ++number) {
        QElapsedTimer clock;
        clock.start();
        monkey.act(number);
        // Only a window that hangs takes so long.
        QVERIFY2(clock.elapsed() < patience, qPrintable(monkey.tried().last()));
        if (number % actionsBetweenChecks == 0) {
            monkey.check();
        }
        if (QTest::currentTestFailed()) {
            qWarning("after action %d", number);
            return;
        }
    }
}

QTEST_MAIN(TestMonkey)
#include "tst_monkey.moc"
