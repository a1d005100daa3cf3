#include "graph.h"
#include "support/patience.h"

#include <QAction>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

/// The input of the viewer.
class TestGraphEditing : public QObject
{
    Q_OBJECT

private slots:
    void claimsItsControlKeys_data();
    void claimsItsControlKeys();
    void shortcutsOfTheWindowGiveWay();
};

void TestGraphEditing::claimsItsControlKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("claimed");
    const int control = Qt::ControlModifier;
    for (const char key : {'P', 'X', 'K', '-', 'O', 'E', 'V', 'C', 'A', 'I', 'R', 'Z', 'U', 'D', 'L'}) {
        QTest::addRow("Ctrl+%c", key) << int(key) << control << true;
        QTest::addRow("Ctrl+Shift+%c", key) << int(key) << int(Qt::ControlModifier | Qt::ShiftModifier) << true;
        QTest::addRow("%c", key) << int(key) << int(Qt::NoModifier) << false;
        QTest::addRow("Alt+%c", key) << int(key) << int(Qt::AltModifier) << false;
    }
    for (const char key : {'Q', 'N', 'H', '+', 'B', 'T', 'M'}) {
        QTest::addRow("Ctrl+%c", key) << int(key) << control << false;
    }
}

void TestGraphEditing::claimsItsControlKeys()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    Graph graph(QStringLiteral("keys"), true);
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::KeyboardModifiers(modifiers));
    event.ignore();
    QCoreApplication::sendEvent(&graph, &event);
    QTEST(event.isAccepted(), "claimed");
}

void TestGraphEditing::shortcutsOfTheWindowGiveWay()
{
    QWidget window;
    QAction open;
    open.setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
    QAction quit;
    quit.setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    window.addActions({&open, &quit});
    QVBoxLayout layout(&window);
    Graph graph(QStringLiteral("keys"), true);
    QWidget other;
    other.setFocusPolicy(Qt::StrongFocus);
    layout.addWidget(&graph);
    layout.addWidget(&other);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    QSignalSpy opened(&open, &QAction::triggered);
    QSignalSpy closed(&quit, &QAction::triggered);

    graph.setFocus();
    QTest::keyClick(&graph, Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&graph, Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(opened.size(), 0);
    QCOMPARE(closed.size(), 1);
    other.setFocus();
    QTest::keyClick(&other, Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(opened.size(), 1);
}

QTEST_MAIN(TestGraphEditing)
#include "tst_graph_editing.moc"
