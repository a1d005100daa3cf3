// Every large allocation fails once while the viewer reads or saves a file: it says so, and the program goes on.

#include "graph.h"
#include "support/failingallocations.h"
#include "support/graphtext.h"
#include "support/literals.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QtTest>

namespace
{
using Command = void (Graph::*)();

/// Names that take more memory than a graph.
const QByteArray longName(100000, 'x');

/// Carries out a command with the file @p path, chosen in its dialog. From then on the large allocation with that
/// number fails. Returns what the boxes say.
QStringList textsOf(Graph &graph, Command command, const QString &path, int number)
{
    QStringList texts;
    QPointer<QWidget> answered; // the next one may stand at the same address
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || !dialog->isVisible() || dialog == answered) {
            return;
        }
        answered = dialog;
        if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
            QObject::connect(files, &QDialog::finished, files, [number] { startShortage(Shortage::Once, number); });
            driver::chooseFile(files, path);
        } else if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
            texts.append(box->text());
            QTest::keyClick(box, Qt::Key_Return);
        }
    });
    timer.start(1);
    (graph.*command)();
    return texts;
}
} // namespace

Q_DECLARE_METATYPE(Command)

class TestGraphMemory : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void save();
};

void TestGraphMemory::reads_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("failure");
    QTest::newRow("graph file") << &Graph::slot_open << "2\n" + longName + "\t1\t2\nb\t3\t4\n0\t1\t1\t0\t"
                                << text("Failed to load graph.");
    QTest::newRow("edge list") << &Graph::slot_import_graph << longName + "\tb\n" << text("Failed to import graph.");
}

void TestGraphMemory::reads()
{
    QFETCH(Command, command);
    QFETCH(QByteArray, content);
    QFETCH(QString, failure);
    const TestFolder folder;
    const QString path = folder.write("graph.golm3", content);
    int failures = 0;
    bool isShort = true;
    for (int number = 1; isShort; ++number) {
        Graph graph(text("graph"), true);
        const QStringList texts = textsOf(graph, command, path, number);
        isShort = hasAllocationFailed();
        startShortage(Shortage::None);
        if (texts.isEmpty()) {
            QCOMPARE(graphtext::edges(graph), text("0-1"));
        } else {
            ++failures;
            QVERIFY(isShort);
            QCOMPARE(texts, (QStringList{text("Not enough memory."), failure}));
        }
        QVERIFY2(number < 1000, "the same allocation again and again");
    }
    QVERIFY(failures > 0);
}

void TestGraphMemory::save()
{
    int failures = 0;
    bool isShort = true;
    for (int number = 1; isShort; ++number) {
        const TestFolder folder;
        const QString path = folder.path("graph.golm3");
        Graph graph(text("graph"), true);
        graphtext::set(graph, 3, text("0-1 1-2"));
        graph.node(0)->setName(QString::fromLatin1(longName));
        const QStringList texts = textsOf(graph, &Graph::slot_save, path, number);
        isShort = hasAllocationFailed();
        startShortage(Shortage::None);
        if (texts.isEmpty()) {
            QVERIFY(contents(path).startsWith("3\n" + longName + '\t'));
            QVERIFY(contents(path).endsWith("\n0\t1\t0\t1\t0\t1\t0\t1\t0\t"));
        } else {
            ++failures;
            QVERIFY(isShort);
            QCOMPARE(texts, words({"Not enough memory.", "Failed to save graph."}));
            QCOMPARE(folder.files(), QStringList());
        }
        QVERIFY2(number < 1000, "the same allocation again and again");
    }
    QVERIFY(failures > 0);
}

QTEST_MAIN(TestGraphMemory)
#include "tst_graph_memory.moc"
