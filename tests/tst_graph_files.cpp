// The viewer's files: graphs, edge lists and the file that keeps the graph between two runs; its texts of a count and
// bits, and its file dialogs.

#include "graph.h"
#include "node.h"
#include "random.h"
#include "support/fulldisk.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/signalrecorder.h"
#include "support/stderrcapture.h"
#include "support/testfiles.h"
#include "support/windowdriver.h"
#include "support/withoutrights.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

#include <memory>
#include <sstream>

namespace
{
/// The edges of the current graph: "0-1 1-2".
QString edgesOf(const Graph &graph)
{
    QStringList edges;
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        for (int j = i + 1; j < Graph::MAX_NODES; ++j) {
            if (graph.edge(i, j)) {
                edges.append(QStringLiteral("%1-%2").arg(i).arg(j));
            }
        }
    }
    return edges.join(QLatin1Char(' '));
}

/// The vertices: "a(12.5,40) b(0,0)".
QString verticesOf(const Graph &graph)
{
    QStringList vertices;
    for (int i = 0; i < graph.getNbNodes(); ++i) {
        const Node *vertex = graph.node(i);
        vertices.append(
            QStringLiteral("%1(%2,%3)").arg(vertex->getName()).arg(vertex->position().x()).arg(vertex->position().y()));
    }
    return vertices.join(QLatin1Char(' '));
}

/// The graph of a count-and-bits text, published, vertex k at (10 k, -k / 3).
void fill(Graph &graph, const char *countAndBits)
{
    graph.loadolm(latin1(countAndBits), true);
    for (int i = 0; i < graph.getNbNodes(); ++i) {
        graph.setPos(i, QPointF(10.0 * i, -i / 3.0));
    }
}

/// Answers the dialogs that come up, one after the other, and writes down what they show: the caption, the directory
/// and the filter of a file dialog, the title, the text and the buttons of a box.
class Dialogs
{
public:
    enum class Answer { No, Yes };

    /// The files that are chosen in the file dialogs; a null string cancels one. @p whetherToReplace answers the
    /// questions.
    explicit Dialogs(QStringList choices, Answer whetherToReplace = Answer::No)
        : files(std::move(choices))
        , replacing(whetherToReplace)
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { answer(); });
        timer.start(10);
    }

    QStringList seen;
    QVector<Qt::TextFormat> textFormats; // of the boxes

private:
    void answer()
    {
        QWidget *dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || !dialog->isVisible() || dialog == last) {
            return;
        }
        last = dialog;
        if (auto *fileDialog = qobject_cast<QFileDialog *>(dialog)) {
            seen.append(fileDialog->windowTitle() + QLatin1Char('|') + fileDialog->directory().path() +
                        QLatin1Char('|') + fileDialog->nameFilters().join(QLatin1Char(';')));
            const QString file = files.takeFirst();
            if (file.isNull()) {
                QTest::keyClick(fileDialog, Qt::Key_Escape);
            } else {
                // Not from here: the timer does not fire again while the dialog puts a question of its own.
                QTimer::singleShot(0, fileDialog, [=] { driver::chooseFile(fileDialog, file); });
            }
        } else if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
            QStringList buttons;
            for (QAbstractButton *button : box->buttons()) {
                buttons.append(button->text().remove(QLatin1Char('&')));
            }
            seen.append(box->windowTitle() + QLatin1Char('|') + box->text() + QLatin1Char('|') +
                        buttons.join(QLatin1Char(',')));
            textFormats.append(box->textFormat());
            if (replacing == Answer::Yes && box->button(QMessageBox::Yes) != nullptr) {
                QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
            } else {
                QTest::keyClick(box, Qt::Key_Return);
            }
        }
    }

    QStringList files;
    Answer replacing;
    QPointer<QWidget> last;
    QTimer timer;
};

/// Translates the question of QFileDialog, and nothing else.
class Translation : public QTranslator
{
public:
    Translation() { QCoreApplication::installTranslator(this); }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char * /*disambiguation*/, int /*n*/) const override
    {
        const bool isQuestion = qstrcmp(context, "QFileDialog") == 0 &&
                                qstrcmp(text, "%1 already exists.\nDo you want to replace it?") == 0;
        return isQuestion ? QStringLiteral("%1 ersetzen?") : QString();
    }
};

const QString openingBox = QStringLiteral("Opening|Cannot open graph|OK");
const QByteArray formatError = "ERROR IN FILE FORMAT\n";
} // namespace

class TestGraphFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void save_writesCountVerticesAndMatrix();
    void save_writesTheBestGraphsMatrix();
    void save_writesTheDiagonalAsStored();
    void save_ofGraphWithoutEdges();
    void save_writesLatin1();
    void save_failures_data();
    void save_failures();
    void save_failureKeepsTheOldFile();
    void save_replacesTheOldFile();

    void open_readsTheExample();
    void open_signals();
    void open_ofGraphWithoutEdges();
    void open_ofCountZero();
    void open_usesTheUpperTriangle();
    void open_acceptsLineEndsOfOtherSystems();
    void open_fieldsThatAreNoNumbersAreZero();
    void open_ofDistantVerticesCanBeShown();
    void open_ofANameOfEveryByte();
    void open_deselectsTheVertices();
    void open_ofUnreadableFile_data();
    void open_ofUnreadableFile();
    void open_ofMalformedFile_data();
    void open_ofMalformedFile();
    void open_keepsWhatWasRead();
    void open_neverMeetsTheEndOfAFullGraph();
    void openAndImport_countFromARandomNumber();

    void autosave_writesTheCounter();
    void autosave_withoutWorkDirectory();
    void autosave_failsSilently();
    void autoload_readsTheCounter();
    void autoload_failures();

    void export_writesTheEdgesOfTheCurrentGraph();
    void export_failures();
    void import_sortsTheLabels();
    void import_ofAnEmptyLabel();
    void import_sortsByCodeUnit();
    void import_signals();
    void import_ofNoLabels();
    void import_ofDefaultNames();
    void import_of32Labels();
    void import_ofTooManyLabels();
    void import_ofUnknownLabels_data();
    void import_ofUnknownLabels();
    void import_ofUnreadableFile();

    void stream_readsOneLine();
    void stream_lines();
    void stream_refusals_data();
    void stream_refusals();
    void stream_skipsTheRestOfALongLine();

    void graphData_ofThePath();
    void graphData_isTheBestGraph();
    void loadolm_keepsPlaces();
    void loadolm_fresh();
    void loadolm_ofOddTexts_data();
    void loadolm_ofOddTexts();
    void loadCurrentGraph_changesTheCurrentGraphOnly();
    void unselectAll();

    void slotOpen();
    void slotOpen_failures();
    void slotOpen_cancelled();
    void slotSave_suffix();
    void slotSave_asksBeforeItReplaces_data();
    void slotSave_asksBeforeItReplaces();
    void slotSave_doesNotAskAboutAFileThatIsKept();
    void slotSave_doesNotAskAboutAFolder();
    void slotSave_asksAsTheFileDialogDoes();
    void slotSave_endsWithTheSession();
    void slotSave_failures();
    void slotImport();
    void slotImport_standsOnACircle();
    void slotImport_withoutEdges_data();
    void slotImport_withoutEdges();
    void slotImport_linesPassedOver();
    void slotImport_failures();
    void slotExport();
    void slotExport_failures();
    void saveAndExport_inAFolderWithoutRights();

private:
    std::unique_ptr<TestFolder> folder;
};

void TestGraphFiles::init()
{
    qsrand(1);
    folder = std::make_unique<TestFolder>();
}

void TestGraphFiles::cleanup()
{
    folder.reset();
}

void TestGraphFiles::save_writesCountVerticesAndMatrix()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 101");
    graph.setPos(0, QPointF(12.5, 40.0));
    QVERIFY(graph.save(folder->path("g.golm3")));
    QCOMPARE(contents(folder->path("g.golm3")), QByteArray("3\n"
                                                           "Node 1\t12.5\t40\n"
                                                           "Node 2\t10\t-0.333333\n"
                                                           "Node 3\t20\t-0.666667\n"
                                                           "0\t1\t0\t1\t0\t1\t0\t1\t0\t"));
}

void TestGraphFiles::save_writesTheBestGraphsMatrix()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "2 1");
    // Not published: the third vertex is written all the same, the edge is still there.
    graph.addNode();
    graph.setPos(2, QPointF(1, 2));
    graph.remEdge(0, 1);
    QVERIFY(graph.save(folder->path("g")));
    QCOMPARE(contents(folder->path("g")), QByteArray("3\n"
                                                     "Node 1\t0\t0\n"
                                                     "Node 2\t10\t-0.333333\n"
                                                     "Node 3\t1\t2\n"
                                                     "0\t1\t0\t1\t0\t0\t0\t0\t0\t"));
}

void TestGraphFiles::save_writesTheDiagonalAsStored()
{
    Graph graph(QStringLiteral("g"), false);
    fill(graph, "2 1");
    graph.invert();
    graph.changeBest();
    QVERIFY(graph.save(folder->path("g")));
    QCOMPARE(contents(folder->path("g")), QByteArray("2\nNode 1\t0\t0\nNode 2\t10\t-0.333333\n1\t0\t0\t1\t"));
}

void TestGraphFiles::save_ofGraphWithoutEdges()
{
    Graph graph(QStringLiteral("g"), false);
    fill(graph, "2 0");
    QVERIFY(graph.save(folder->path("g")));
    QCOMPARE(contents(folder->path("g")), QByteArray("2\nNode 1\t0\t0\nNode 2\t10\t-0.333333\n0\t0\t0\t0\t"));
    fill(graph, "0 ");
    QVERIFY(graph.save(folder->path("g")));
    QCOMPARE(contents(folder->path("g")), QByteArray("0\n"));
}

void TestGraphFiles::save_writesLatin1()
{
    Graph graph(QStringLiteral("g"), false);
    fill(graph, "1 ");
    graph.node(0)->setName(latin1("caf\xe9"));
    QVERIFY(graph.save(folder->path("g")));
    QCOMPARE(contents(folder->path("g")), QByteArray("1\ncaf\xe9\t0\t0\n0\t"));
    graph.node(0)->setName(QString());
    QVERIFY(graph.open(folder->path("g")));
    QCOMPARE(graph.node(0)->getName(), latin1("caf\xe9"));
}

void TestGraphFiles::save_failures_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("no name") << QString();
    QTest::newRow("full device") << QStringLiteral("/dev/full");
    QTest::newRow("missing directory") << QStringLiteral("missing/g.golm3");
    QTest::newRow("directory") << QStringLiteral(".");
}

void TestGraphFiles::save_failures()
{
    QFETCH(QString, target);
    target = target.isEmpty() ? target : folder->path(target);
    Graph graph(QStringLiteral("g"), false);
    QVERIFY(!graph.save(target));
    QVERIFY(!graph.export_graph(target));
    // The lock was given back.
    graph.lock();
    graph.unlock();
}

void TestGraphFiles::save_failureKeepsTheOldFile()
{
    Graph graph(QStringLiteral("g"), false);
    const QString old = folder->write("old", "the old file");
    bool saved = true;
    bool exported = true;
    {
        const FullDisk full;
        saved = graph.save(old);
        exported = graph.export_graph(old);
    }
    QVERIFY(!saved);
    QVERIFY(!exported);
    QCOMPARE(contents(old), QByteArray("the old file"));
    QCOMPARE(folder->files(), QStringList{QStringLiteral("old")});
}

void TestGraphFiles::save_replacesTheOldFile()
{
    Graph graph(QStringLiteral("g"), false);
    fill(graph, "1 ");
    const QString file = folder->write("old", "a much longer file than the new one");
    QVERIFY(graph.save(file));
    QCOMPARE(contents(file), QByteArray("1\nNode 1\t0\t0\n0\t"));
    QCOMPARE(folder->files(), QStringList{QStringLiteral("old")});
}

void TestGraphFiles::open_readsTheExample()
{
    Graph graph(QStringLiteral("g"), true);
    StderrCapture errors;
    QVERIFY(graph.open(folder->write("g", "3\nNode 1\t12.5\t40\n\t-1e2\t.5\nlast one\t0\t7\textra\n"
                                          "0\t1\t0\t1\t0\t1\t0\t1\t0\t")));
    QCOMPARE(errors.take(), QByteArray());
    QCOMPARE(verticesOf(graph), QStringLiteral("Node 1(12.5,40) (-100,0.5) last one(0,7)"));
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1 1-2"));
    QCOMPARE(graph.graphData(), QStringLiteral("3 101"));
}

void TestGraphFiles::open_signals()
{
    Graph graph(QStringLiteral("g"), true);
    SignalRecorder recorder(graph);
    QVERIFY(graph.open(folder->write("g", "1\na\t0\t0\n0\t")));
    QCOMPARE(recorder.take(),
             (QStringList{QStringLiteral("console Graph:1 false 1 #a0a0a4"), QStringLiteral("best_graph_changed")}));
    StderrCapture errors;
    QVERIFY(!graph.open(folder->write("g", "1\na\t0\n0\t")));
    QCOMPARE(errors.take(), formatError);
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("console Graph:1 false 1 #a0a0a4")});
}

void TestGraphFiles::open_ofGraphWithoutEdges()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 000");
    graph.node(1)->setName(QStringLiteral("middle"));
    QVERIFY(graph.save(folder->path("g")));
    fill(graph, "5 1111111111");
    graph.node(1)->setName(QStringLiteral("other"));
    QVERIFY(graph.open(folder->path("g")));
    QCOMPARE(verticesOf(graph), QStringLiteral("Node 1(0,0) middle(10,-0.333333) Node 3(20,-0.666667)"));
    QCOMPARE(edgesOf(graph), QString());
}

void TestGraphFiles::open_ofCountZero()
{
    Graph graph(QStringLiteral("g"), true);
    for (const char *file : {"0", "0\n", "0\n\n", "0\r\n", "0\nwhatever\tfollows\n", "", "no number\n"}) {
        graph.randomGraph(4);
        SignalRecorder recorder(graph);
        QVERIFY2(graph.open(folder->write("g", file)), file);
        QCOMPARE(graph.getNbNodes(), 0);
        QCOMPARE(graph.graphData(), QStringLiteral("0 "));
        QCOMPARE(recorder.take(), (QStringList{QStringLiteral("console Graph:0 false 1 #a0a0a4"),
                                               QStringLiteral("best_graph_changed")}));
    }
}

void TestGraphFiles::open_usesTheUpperTriangle()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(graph.open(folder->write("g", "3\na\t0\t0\nb\t0\t0\nc\t0\t0\n1\t0\t-7\t1\t1\t0\t0\t1\t1")));
    QCOMPARE(edgesOf(graph), QStringLiteral("0-2"));
}

void TestGraphFiles::open_acceptsLineEndsOfOtherSystems()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(graph.open(folder->write("g", "2\r\na\t1\t2\r\nb\t3\t4\r\n0\t1\t1\t0\t\r\n")));
    QCOMPARE(verticesOf(graph), QStringLiteral("a(1,2) b(3,4)"));
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1"));
}

void TestGraphFiles::open_fieldsThatAreNoNumbersAreZero()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(graph.open(folder->write("g", "2\na\tx\t\nb\tnan\tinf\n0\tx\t\t0\t")));
    QCOMPARE(verticesOf(graph), QStringLiteral("a(0,0) b(0,0)"));
    QCOMPARE(edgesOf(graph), QString());
}

void TestGraphFiles::open_ofDistantVerticesCanBeShown()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(graph.open(folder->write("g", "2\na\t1e300\t-1e300\nb\t0\t0\n0\t1\t1\t0\t")));
    QCOMPARE(graph.node(0)->position(), QPointF(1e300, -1e300));
    graph.update_display();
    graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&graph, patience));
    QVERIFY(!graph.grab().isNull());
    graph.slot_rescale(false);
    QVERIFY(!graph.grab().isNull());
}

void TestGraphFiles::open_ofANameOfEveryByte()
{
    QByteArray name;
    for (int byte = 1; byte < 256; ++byte) {
        name += byte == '\t' || byte == '\n' || byte == '\r' ? QByteArray() : QByteArray(1, char(byte));
    }
    const QByteArray text = "1\n" + name + "\t0\t0\n0\t";
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(graph.open(folder->write("g.golm3", text)));
    QCOMPARE(graph.node(0)->getName(), QString::fromLatin1(name));
    QVERIFY(graph.save(folder->path("again.golm3")));
    QCOMPARE(contents(folder->path("again.golm3")), text);
}

void TestGraphFiles::open_deselectsTheVertices()
{
    Graph graph(QStringLiteral("g"), true);
    for (int slot = 0; slot < 3; ++slot) {
        graph.node(slot)->setSelected(true);
    }
    QVERIFY(graph.open(folder->write("g", "2\na\t0\t0\nb\t0\t0\n0\t0\t0\t0\t")));
    QVERIFY(!graph.node(0)->isSelected());
    QVERIFY(!graph.node(1)->isSelected());
    QVERIFY(graph.node(2)->isSelected());
}

void TestGraphFiles::open_ofUnreadableFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray none;
    QTest::newRow("no name") << QString() << none;
    QTest::newRow("missing") << QStringLiteral("missing") << none;
    QTest::newRow("directory") << QStringLiteral(".") << none;
    QTest::newRow("endless device") << QStringLiteral("/dev/zero") << none;
    QTest::newRow("failing device") << QStringLiteral("/proc/self/mem") << none;
    QTest::newRow("binary data") << QStringLiteral("binary")
                                 << QByteArray("\x7f"
                                               "ELF\2\1\1\0\0\n\t\t\t",
                                               13);
    QTest::newRow("a line of 100 MB") << QStringLiteral("large") << "1\n" + QByteArray(100 << 20, '1');
}

void TestGraphFiles::open_ofUnreadableFile()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    file = file.isEmpty() ? file : folder->path(file);
    if (!bytes.isNull()) {
        folder->write(file, bytes);
    }
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "2 1");
    graph.setWD(folder->path());
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    StderrCapture errors;
    Dialogs dialogs({});
    QVERIFY(!graph.open(file));
    QCOMPARE(dialogs.seen, QStringList{openingBox});
    QVERIFY(!graph.import_el(file));
    QCOMPARE(dialogs.seen, (QStringList{openingBox, openingBox}));
    QCOMPARE(errors.take(), QByteArray());
    QCOMPARE(recorder.take(), QStringList());
    QCOMPARE(graph.graphData(), QStringLiteral("2 1"));
    QCOMPARE(graph.getID(), id);
}

void TestGraphFiles::open_ofMalformedFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("count");
    QTest::newRow("negative count") << QByteArray("-1\n") << QStringLiteral("-1");
    QTest::newRow("33 vertices") << "33\n" + QByteArray("a\t0\t0\n").repeated(33) + QByteArray("0\t").repeated(33 * 33)
                                 << QStringLiteral("33");
    QTest::newRow("huge count") << QByteArray("2147483647\n") << QStringLiteral("2147483647");
    QTest::newRow("no vertex line") << QByteArray("2") << QStringLiteral("2");
    QTest::newRow("too few vertex lines") << QByteArray("2\na\t0\t0\n0\t0\t0\t0\t") << QStringLiteral("2");
    QTest::newRow("vertex line of two fields") << QByteArray("1\na\t0\n0\t") << QStringLiteral("1");
    QTest::newRow("no matrix line") << QByteArray("2\na\t0\t0\nb\t0\t0\n") << QStringLiteral("2");
    QTest::newRow("matrix line too short") << QByteArray("2\na\t0\t0\nb\t0\t0\n0\t1\t1") << QStringLiteral("2");
    QTest::newRow("matrix line too long") << QByteArray("2\na\t0\t0\nb\t0\t0\n0\t1\t1\t0\t1\t") << QStringLiteral("2");
    QTest::newRow("matrix by rows") << QByteArray("2\na\t0\t0\nb\t0\t0\n0\t1\n1\t0\n") << QStringLiteral("2");
    QTest::newRow("16 MB of tabs") << "1\na\t0\t0\n" + QByteArray(16000000, '\t') << QStringLiteral("1");
}

void TestGraphFiles::open_ofMalformedFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, count);
    Graph graph(QStringLiteral("g"), true);
    SignalRecorder recorder(graph);
    StderrCapture errors;
    QVERIFY(!graph.open(folder->write("g", file)));
    QCOMPARE(errors.take(), formatError);
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("console Graph:%1 false 1 #a0a0a4").arg(count)});
    QCOMPARE(edgesOf(graph), QString());
    QCOMPARE(graph.graphData(), QStringLiteral("0 "));
    QVERIFY(graph.getNbNodes() <= Graph::MAX_NODES);
}

void TestGraphFiles::open_keepsWhatWasRead()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "2 1");
    graph.node(0)->setSelected(true);
    StderrCapture errors;
    QVERIFY(!graph.open(folder->write("g", "2\na\t1\t2\nb\n0\t1\t1\t0\t")));
    QCOMPARE(errors.take(), formatError);
    QCOMPARE(graph.getNbNodes(), 2);
    QCOMPARE(graph.node(0)->getName(), QStringLiteral("a"));
    QCOMPARE(graph.node(0)->position(), QPointF(1, 2));
    QCOMPARE(graph.node(1)->getName(), QStringLiteral("Node 2"));
    QCOMPARE(graph.node(1)->position(), graph.mapToScene(QPoint()));
    QVERIFY(!graph.node(0)->isSelected());
    graph.lock();
    graph.unlock();
    // The matrix line is too short.
    QVERIFY(!graph.open(folder->write("g", "2\na\t1\t2\nb\t3\t4\n0\t1\t1")));
    QCOMPARE(verticesOf(graph), QStringLiteral("a(1,2) b(3,4)"));
    QCOMPARE(edgesOf(graph), QString());
}

void TestGraphFiles::open_neverMeetsTheEndOfAFullGraph()
{
    Graph graph(QStringLiteral("g"), true);
    graph.randomGraph(32);
    graph.changeBest();
    const QString data = graph.graphData();
    QVERIFY(graph.save(folder->path("g")));
    graph.randomGraph(3);
    QVERIFY(graph.open(folder->path("g")));
    QCOMPARE(graph.graphData(), data);
    QVERIFY(graph.export_graph(folder->path("e")));
    QCOMPARE(contents(folder->path("e")).count('\n'), graph.getNbEdges());
}

void TestGraphFiles::openAndImport_countFromARandomNumber()
{
    Graph graph(QStringLiteral("g"), true);
    qsrand(5);
    const int drawn = olm_rand(1000000);
    qsrand(5);
    QVERIFY(graph.open(folder->write("g", "3\na\t0\t0\nb\t0\t0\nc\t0\t0\n0\t1\t0\t1\t0\t1\t0\t1\t0\t")));
    // Three vertices and their pairs, the end of the reading, the publication.
    QCOMPARE(graph.getID(), drawn + 3 + 3 + 1 + 1);
    qsrand(5);
    StderrCapture errors;
    QVERIFY(graph.import_el(folder->write("e", "b\ta\na\tc\n")));
    // Three vertices and two edges, the end of the reading, the publication.
    QCOMPARE(graph.getID(), drawn + 3 + 2 + 1 + 1);
}

void TestGraphFiles::autosave_writesTheCounter()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    fill(graph, "2 1");
    graph.autosave();
    QCOMPARE(contents(folder->path(".olmgr")),
             "2\n" + QByteArray::number(graph.getID()) + "\nNode 1\t0\t0\nNode 2\t10\t-0.333333\n0\t1\t1\t0\t");
}

void TestGraphFiles::autosave_withoutWorkDirectory()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder->path()));
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "1 ");
    graph.autosave();
    fill(graph, "3 111");
    const bool loaded = graph.autoload();
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(loaded);
    QCOMPARE(graph.graphData(), QStringLiteral("1 "));
    QVERIFY(QFile::exists(folder->path(".olmgr")));
}

void TestGraphFiles::autosave_failsSilently()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path("missing"));
    SignalRecorder recorder(graph);
    StderrCapture errors;
    graph.autosave();
    QCOMPARE(errors.take(), QByteArray());
    QCOMPARE(recorder.take(), QStringList());
    QVERIFY(!QFile::exists(folder->path("missing")));
}

void TestGraphFiles::autoload_readsTheCounter()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    folder->write(".olmgr", "2\n1000\na\t1\t2\nb\t3\t4\n0\t1\t1\t0\t");
    SignalRecorder recorder(graph);
    QVERIFY(graph.autoload());
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("best_graph_changed")});
    QCOMPARE(verticesOf(graph), QStringLiteral("a(1,2) b(3,4)"));
    QCOMPARE(graph.graphData(), QStringLiteral("2 1"));
    // Two vertices and the edge, the end of the reading, the publication.
    QCOMPARE(graph.getID(), 1005);
}

void TestGraphFiles::autoload_failures()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "2 1");
    graph.setWD(folder->path());
    SignalRecorder recorder(graph);
    {
        StderrCapture errors;
        QVERIFY(!graph.autoload());
        QCOMPARE(errors.take(), QByteArray());
        QCOMPARE(graph.graphData(), QStringLiteral("2 1"));
    }
    for (const char *file : {"2", "2\n5\na\t0\t0\nb\n", "33\n5\n", "-2\n5\n", "2\n5\na\t0\t0\nb\t0\t0\n0\t1\t1"}) {
        folder->write(".olmgr", file);
        StderrCapture errors;
        QVERIFY2(!graph.autoload(), file);
        QCOMPARE(errors.take(), formatError);
        QCOMPARE(graph.graphData(), QStringLiteral("0 "));
    }
    QCOMPARE(recorder.take(), QStringList());
}

void TestGraphFiles::export_writesTheEdgesOfTheCurrentGraph()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "4 101001");
    graph.addEdge(3, 0);
    QVERIFY(graph.export_graph(folder->path("e")));
    QCOMPARE(contents(folder->path("e")), QByteArray("0\t1\n0\t3\n1\t2\n2\t3\n"));
}

void TestGraphFiles::export_failures()
{
    Graph graph(QStringLiteral("g"), true);
    const QString old = folder->write("old", "old");
    QVERIFY(!graph.export_graph(old + QStringLiteral("/below")));
    QCOMPARE(contents(old), QByteArray("old"));
    QVERIFY(!graph.export_graph(QStringLiteral("/dev/full")));
}

void TestGraphFiles::import_sortsTheLabels()
{
    Graph graph(QStringLiteral("g"), true);
    StderrCapture errors;
    QVERIFY(graph.import_el(folder->write("e", "b\ta\n\nlonely\na\tc\tmore\r\n")));
    QCOMPARE(errors.take(), QByteArray("a\nb\nc\n1 0\n0 2\nImport complete\n"));
    QCOMPARE(graph.getNbNodes(), 3);
    QCOMPARE(graph.node(0)->getName(), QStringLiteral("a"));
    QCOMPARE(graph.node(1)->getName(), QStringLiteral("b"));
    QCOMPARE(graph.node(2)->getName(), QStringLiteral("c"));
    QCOMPARE(graph.graphData(), QStringLiteral("3 110"));
    QVERIFY(graph.export_graph(folder->path("e")));
    QCOMPARE(contents(folder->path("e")), QByteArray("0\t1\n0\t2\n"));
}

void TestGraphFiles::import_ofAnEmptyLabel()
{
    Graph graph(QStringLiteral("g"), true);
    StderrCapture errors;
    QVERIFY(graph.import_el(folder->write("e", "\tb\n")));
    QCOMPARE(errors.take(), QByteArray("\nb\n0 1\nImport complete\n"));
    QCOMPARE(graph.getNbNodes(), 2);
    QCOMPARE(graph.node(0)->getName(), QString());
    QCOMPARE(graph.node(1)->getName(), QStringLiteral("b"));
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1"));
}

void TestGraphFiles::import_sortsByCodeUnit()
{
    Graph graph(QStringLiteral("g"), true);
    StderrCapture errors;
    QVERIFY(graph.import_el(folder->write("e", "\xe9\tz\nZ\tz\n")));
    QCOMPARE(graph.getNbNodes(), 3);
    QCOMPARE(graph.node(0)->getName(), QStringLiteral("Z"));
    QCOMPARE(graph.node(1)->getName(), QStringLiteral("z"));
    QCOMPARE(graph.node(2)->getName(), latin1("\xe9"));
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1 1-2"));
}

void TestGraphFiles::import_signals()
{
    Graph graph(QStringLiteral("g"), true);
    SignalRecorder recorder(graph);
    StderrCapture errors;
    // By code unit: capitals first, "10" before "9"; a loop and a double edge change nothing.
    QVERIFY(graph.import_el(folder->write("e", "b\tB\n9\t10\n9\t9\n10\t9")));
    QCOMPARE(errors.take(), QByteArray("10\n9\nB\nb\n3 2\n1 0\n1 1\n0 1\nImport complete\n"));
    QCOMPARE(recorder.take(),
             (QStringList{QStringLiteral("console Graph:4 false 1 #a0a0a4"), QStringLiteral("best_graph_changed")}));
    QCOMPARE(graph.graphData(), QStringLiteral("4 100001"));
}

void TestGraphFiles::import_ofNoLabels()
{
    Graph graph(QStringLiteral("g"), true);
    for (const char *file : {"", "\n\n", "one\ntwo"}) {
        StderrCapture errors;
        QVERIFY(graph.import_el(folder->write("e", file)));
        QCOMPARE(errors.take(), QByteArray("Import complete\n"));
        QCOMPARE(graph.graphData(), QStringLiteral("0 "));
    }
}

void TestGraphFiles::import_ofDefaultNames()
{
    // Unused slots keep their names, which are no vertices.
    Graph graph(QStringLiteral("g"), true);
    StderrCapture errors;
    QVERIFY(graph.import_el(folder->write("e", "Node 30\tNode 31\n")));
    QCOMPARE(errors.take(), QByteArray("Node 30\nNode 31\n0 1\nImport complete\n"));
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1"));
}

void TestGraphFiles::import_of32Labels()
{
    Graph graph(QStringLiteral("g"), true);
    QByteArray file;
    for (char label = 'A'; label < 'A' + 31; ++label) {
        file += label + QByteArray("\t") + char(label + 1) + '\n';
    }
    StderrCapture errors;
    QVERIFY(graph.import_el(folder->write("e", file)));
    QVERIFY(errors.take().endsWith("\n30 31\nImport complete\n"));
    QCOMPARE(graph.getNbNodes(), 32);
    QCOMPARE(graph.getNbEdges(), 31);
}

void TestGraphFiles::import_ofTooManyLabels()
{
    Graph graph(QStringLiteral("g"), true);
    QByteArray file;
    for (int label = 0; label < 32; ++label) {
        file += QByteArray::number(label) + '\t' + QByteArray::number(label + 1) + '\n';
    }
    SignalRecorder recorder(graph);
    StderrCapture errors;
    QVERIFY(!graph.import_el(folder->write("e", file)));
    QCOMPARE(errors.take(), QByteArray());
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("console Graph:33 false 1 #a0a0a4")});
    QCOMPARE(graph.getNbNodes(), 0);
    QCOMPARE(graph.graphData(), QStringLiteral("0 "));
    QCOMPARE(graph.node(0)->getName(), QStringLiteral("Node 1"));
}

void TestGraphFiles::import_ofUnknownLabels_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("first") << QByteArray("x\tb") << QByteArray("-1 1\nx\n");
    QTest::newRow("second") << QByteArray("a\tx") << QByteArray("0 -1\nx\n");
    QTest::newRow("both") << QByteArray("x\ty") << QByteArray("-1 -1\nx\ny\n");
}

void TestGraphFiles::import_ofUnknownLabels()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, told);
    struct Importer : Graph {
        using Graph::Graph;
        using Graph::importEdges;
    };
    Importer graph(QStringLiteral("g"), true);
    {
        StderrCapture ignored;
        QVERIFY(graph.import_el(folder->write("e", "a\tb\n")));
    }
    StderrCapture errors;
    QVERIFY(!graph.importEdges("b\ta\n" + line + "\na\tb\n"));
    QCOMPARE(errors.take(), "1 0\n" + told);
    QCOMPARE(graph.getNbNodes(), 0);
    QCOMPARE(edgesOf(graph), QString());
}

void TestGraphFiles::import_ofUnreadableFile()
{
    Graph graph(QStringLiteral("g"), true);
    Dialogs dialogs({});
    QVERIFY(!graph.import_el(folder->path("missing")));
    QCOMPARE(dialogs.seen, QStringList{openingBox});
}

void TestGraphFiles::stream_readsOneLine()
{
    Graph graph(QStringLiteral("g"), true);
    graph.best_backup();
    const QString best = graph.graphData();
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    std::istringstream in("Bg\nrest");
    QVERIFY(graph.loadg6(in));
    QCOMPARE(graph.getNbNodes(), 3);
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1 1-2"));
    QCOMPARE(in.get(), int('r'));
    QCOMPARE(graph.graphData(), best);
    // The reading itself, all slots separated, three vertices, three pairs.
    QCOMPARE(graph.getID(), id + 1 + 496 + 3 + 3);
    QCOMPARE(recorder.take(), QStringList());
}

void TestGraphFiles::stream_lines()
{
    Graph graph(QStringLiteral("g"), true);
    std::istringstream in("A_\r\nA?\nBw\rBg");
    QStringList read;
    while (graph.loadg6(in)) {
        read.append(graph.currentGraphData());
    }
    QCOMPARE(read, (QStringList{QStringLiteral("2 1"), QStringLiteral("2 0"), QStringLiteral("3 111"),
                                QStringLiteral("3 101")}));
}

void TestGraphFiles::stream_refusals_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("vertices");
    QTest::newRow("end of file") << QByteArray() << 0;
    QTest::newRow("empty line") << QByteArray("\nA_") << 0;
    QTest::newRow("no vertex") << QByteArray("?") << 0;
    QTest::newRow("one vertex") << QByteArray("@") << 1;
    QTest::newRow("32 vertices") << QByteArray("_") + QByteArray(83, '~') << 32;
    QTest::newRow("long size") << QByteArray("~??~") << 32;
    QTest::newRow("no graph6") << QByteArray("\xff\xff") << 32;
    QTest::newRow("header") << QByteArray(">>graph6<<A_") << 0;
}

void TestGraphFiles::stream_refusals()
{
    QFETCH(QByteArray, line);
    QFETCH(int, vertices);
    Graph graph(QStringLiteral("g"), true);
    std::istringstream in(line.toStdString());
    QVERIFY(!graph.loadg6(in));
    QCOMPARE(graph.getNbNodes(), vertices);
    QCOMPARE(edgesOf(graph), QString());
}

void TestGraphFiles::stream_skipsTheRestOfALongLine()
{
    Graph graph(QStringLiteral("g"), true);
    std::istringstream in("A_" + std::string(1000000, '~') + "\nB?");
    QVERIFY(graph.loadg6(in));
    QCOMPARE(graph.currentGraphData(), QStringLiteral("2 1"));
    QVERIFY(graph.loadg6(in));
    QCOMPARE(graph.currentGraphData(), QStringLiteral("3 000"));
}

void TestGraphFiles::graphData_ofThePath()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(graph.loadg6(QStringLiteral("Bg"), true));
    graph.best_backup();
    QCOMPARE(graph.graphData(), QStringLiteral("3 101"));
    QCOMPARE(graph.currentGraphData(), QStringLiteral("3 101"));
}

void TestGraphFiles::graphData_isTheBestGraph()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 101");
    graph.addNode();
    graph.remEdge(0, 1);
    QCOMPARE(graph.graphData(), QStringLiteral("3 101"));
    QCOMPARE(graph.currentGraphData(), QStringLiteral("4 001000"));
}

void TestGraphFiles::loadolm_keepsPlaces()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 000");
    const QString vertices = verticesOf(graph);
    graph.node(1)->setSelected(true);
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    graph.loadolm(QStringLiteral("3 101"), false);
    // The reading itself and three pairs.
    QCOMPARE(graph.getID(), id + 1 + 3);
    QCOMPARE(verticesOf(graph), vertices);
    QCOMPARE(edgesOf(graph), QStringLiteral("0-1 1-2"));
    QCOMPARE(graph.graphData(), QStringLiteral("3 101"));
    QVERIFY(graph.node(1)->isSelected());
    QCOMPARE(recorder.take(), QStringList());
}

void TestGraphFiles::loadolm_fresh()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 111");
    graph.node(1)->setSelected(true);
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    graph.loadolm(QStringLiteral("4 110000"), true);
    // The reading itself, all slots separated, four vertices, six pairs, the selection.
    QCOMPARE(graph.getID(), id + 1 + 496 + 4 + 6 + 1);
    for (int slot = 0; slot < 4; ++slot) {
        QCOMPARE(graph.node(slot)->position(), graph.mapToScene(QPoint()));
    }
    QCOMPARE(graph.graphData(), QStringLiteral("4 110000"));
    QVERIFY(!graph.node(1)->isSelected());
    QCOMPARE(recorder.take(),
             (QStringList{QStringLiteral("interactive_graph_changed"), QStringLiteral("best_graph_changed")}));
}

void TestGraphFiles::loadolm_ofOddTexts_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("result");
    QTest::newRow("empty") << QString() << QStringLiteral("0 ");
    QTest::newRow("no bits") << QStringLiteral("3") << QStringLiteral("3 000");
    QTest::newRow("too few bits") << QStringLiteral("3 1") << QStringLiteral("3 100");
    QTest::newRow("too many bits") << QStringLiteral("2 11111") << QStringLiteral("2 1");
    QTest::newRow("other characters") << QStringLiteral("3 x1y") << QStringLiteral("3 010");
    QTest::newRow("negative") << QStringLiteral("-5 11") << QStringLiteral("0 ");
    QTest::newRow("33") << QStringLiteral("33 1") << QStringLiteral("32 1") + QString(495, QLatin1Char('0'));
    QTest::newRow("huge") << QStringLiteral("2147483647 ") << QStringLiteral("32 ") + QString(496, QLatin1Char('0'));
}

void TestGraphFiles::loadolm_ofOddTexts()
{
    QFETCH(QString, data);
    QFETCH(QString, result);
    Graph graph(QStringLiteral("g"), true);
    for (const bool fresh : {true, false}) {
        graph.loadolm(data, fresh);
        QCOMPARE(graph.graphData(), result);
        QCOMPARE(graph.currentGraphData(), result);
    }
}

void TestGraphFiles::loadCurrentGraph_changesTheCurrentGraphOnly()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 111");
    graph.node(0)->setSelected(true);
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    graph.loadCurrentGraph(QStringLiteral("4 101001"));
    // The reading itself and six pairs.
    QCOMPARE(graph.getID(), id + 1 + 6);
    QCOMPARE(graph.currentGraphData(), QStringLiteral("4 101001"));
    QCOMPARE(graph.graphData(), QStringLiteral("3 111"));
    QVERIFY(graph.node(0)->isSelected());
    QCOMPARE(recorder.take(), QStringList());
}

void TestGraphFiles::unselectAll()
{
    Graph graph(QStringLiteral("g"), true);
    graph.node(3)->setSelected(true);
    graph.node(31)->setSelected(true);
    const int id = graph.getID();
    SignalRecorder recorder(graph);
    graph.slot_unselect_all();
    QVERIFY(!graph.node(3)->isSelected());
    QVERIFY(!graph.node(31)->isSelected());
    QCOMPARE(graph.getID(), id + 1);
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("interactive_graph_changed")});
}

void TestGraphFiles::slotOpen()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub")));
    const QString file = folder->write("sub/g.golm3", "2\na\t1\t2\nb\t3\t4\n0\t1\t1\t0\t");
    graph.setWD(folder->path());
    Dialogs dialogs({file, file});
    graph.slot_open();
    QCOMPARE(graph.graphData(), QStringLiteral("2 1"));
    QVERIFY(graph.node(1)->isVisible());
    QVERIFY(!graph.node(2)->isVisible());
    graph.slot_open();
    QCOMPARE(dialogs.seen, (QStringList{QStringLiteral("Choose graph to load|%1|*.golm3").arg(folder->path()),
                                        QStringLiteral("Choose graph to load|%1/sub|*.golm3").arg(folder->path())}));
}

void TestGraphFiles::slotOpen_failures()
{
    Graph graph(QStringLiteral("g"), true);
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub")));
    const QString file = folder->write("sub/g.golm3", "2\n");
    graph.setWD(folder->path());
    const QString dialog = QStringLiteral("Choose graph to load|%1|*.golm3").arg(folder->path());
    const QString warning = QStringLiteral("Warning|Failed to load graph.|OK");
    Dialogs dialogs({file, QString()});
    StderrCapture errors;
    graph.slot_open();
    QCOMPARE(errors.take(), formatError);
    QCOMPARE(dialogs.seen, (QStringList{dialog, warning}));
    // The empty best graph is shown.
    QVERIFY(!graph.node(0)->isVisible());
    graph.slot_open();
    QCOMPARE(dialogs.seen, (QStringList{dialog, warning, dialog, openingBox, warning}));
}

void TestGraphFiles::slotOpen_cancelled()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "2 1");
    graph.setWD(folder->path());
    Dialogs dialogs({QString()});
    graph.slot_open();
    QCOMPARE(dialogs.seen.mid(1), (QStringList{openingBox, QStringLiteral("Warning|Failed to load graph.|OK")}));
    QCOMPARE(graph.graphData(), QStringLiteral("2 1"));
    QVERIFY(graph.node(1)->isVisible());
}

void TestGraphFiles::slotSave_suffix()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "1 ");
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub")));
    graph.setWD(folder->path());
    Dialogs dialogs({folder->path("a.golm3"), folder->path("b"), folder->path("c.txt"), folder->path("d.GOLM3"),
                     folder->path("sub/e.x.golm3")});
    for (int i = 0; i < 5; ++i) {
        graph.slot_save();
    }
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files),
             (QStringList{QStringLiteral("a.golm3"), QStringLiteral("b.golm3"), QStringLiteral("c.txt.golm3"),
                          QStringLiteral("d.GOLM3.golm3")}));
    QCOMPARE(contents(folder->path("sub/e.x.golm3")), QByteArray("1\nNode 1\t0\t0\n0\t"));
    QCOMPARE(dialogs.seen.first(), QStringLiteral("Save graph as|%1|*.golm3").arg(folder->path()));
    graph.autosave();
    QVERIFY(QFile::exists(folder->path("sub/.olmgr")));
}

void TestGraphFiles::slotSave_asksBeforeItReplaces_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::newRow("without the suffix") << QStringLiteral("kept");
    QTest::newRow("with the suffix") << QStringLiteral("kept.golm3");
}

void TestGraphFiles::slotSave_asksBeforeItReplaces()
{
    QFETCH(QString, chosen);
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "1 ");
    graph.setWD(folder->path());
    const QString file = folder->write("kept.golm3", "kept");
    const QString dialog = QStringLiteral("Save graph as|%1|*.golm3").arg(folder->path());
    const QString question =
        QStringLiteral("Save graph as|kept.golm3 already exists.\nDo you want to replace it?|Yes,No");
    {
        Dialogs dialogs({folder->path(chosen), QString()}); // "No" leads back to the file dialog
        graph.slot_save();
        QCOMPARE(dialogs.seen,
                 (QStringList{dialog, question, dialog, QStringLiteral("Warning|Failed to save graph.|OK")}));
        QCOMPARE(contents(file), QByteArray("kept"));
    }
    {
        Dialogs dialogs({folder->path(chosen), folder->path("other")});
        graph.slot_save();
        QCOMPARE(dialogs.seen, (QStringList{dialog, question, dialog}));
        QCOMPARE(contents(file), QByteArray("kept"));
        QCOMPARE(contents(folder->path("other.golm3")), QByteArray("1\nNode 1\t0\t0\n0\t"));
    }
    {
        Dialogs dialogs({folder->path(chosen)}, Dialogs::Answer::Yes);
        graph.slot_save();
        QCOMPARE(dialogs.seen, (QStringList{dialog, question}));
        QCOMPARE(contents(file), QByteArray("1\nNode 1\t0\t0\n0\t"));
    }
}

void TestGraphFiles::slotSave_doesNotAskAboutAFileThatIsKept()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "1 ");
    graph.setWD(folder->path());
    folder->write("name", "kept");
    Dialogs dialogs({folder->path("name")});
    graph.slot_save();
    QCOMPARE(dialogs.seen, QStringList{QStringLiteral("Save graph as|%1|*.golm3").arg(folder->path())});
    QCOMPARE(contents(folder->path("name")), QByteArray("kept"));
    QVERIFY(QFile::exists(folder->path("name.golm3")));
}

/// A folder cannot be replaced: the save fails.
void TestGraphFiles::slotSave_doesNotAskAboutAFolder()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub.golm3")));
    Dialogs dialogs({folder->path("sub")}, Dialogs::Answer::Yes);
    graph.slot_save();
    QCOMPARE(dialogs.seen.mid(1), QStringList{QStringLiteral("Warning|Failed to save graph.|OK")});
}

/// The question is that of the file dialog, in its language, but shows the name as plain text.
void TestGraphFiles::slotSave_asksAsTheFileDialogDoes()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    const QString name = QStringLiteral("<b>name<b>.golm3");
    folder->write(name, "kept");
    const auto questions = [&] {
        Dialogs dialogs({folder->path(name), QString(), folder->path(name), QString()});
        graph.slot_save();
        graph.slot_export_graph();
        return dialogs.seen.filter(name) + QStringList{QString::number(dialogs.textFormats.value(0))};
    };
    const QStringList expected{
        QStringLiteral("Save graph as|%1 already exists.\nDo you want to replace it?|Yes,No").arg(name),
        QStringLiteral("Export graph as|%1 already exists.\nDo you want to replace it?|Yes,No").arg(name),
        QString::number(Qt::PlainText)};
    QCOMPARE(questions(), expected);
    const Translation german;
    QCOMPARE(questions().mid(0, 2), (QStringList{QStringLiteral("Save graph as|%1 ersetzen?|Yes,No").arg(name),
                                                 QStringLiteral("Export graph as|%1 ersetzen?|Yes,No").arg(name)}));
}

/// The end of a session closes all windows, the question first.
void TestGraphFiles::slotSave_endsWithTheSession()
{
    Graph graph(QStringLiteral("g"), true);
    graph.show();
    graph.setWD(folder->path());
    folder->write("kept.golm3", "kept");
    QStringList titles;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || !dialog->isVisible()) {
            return;
        }
        titles.append(dialog->windowTitle());
        if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
            driver::chooseFile(files, folder->path("kept"));
        } else if (graph.isVisible()) {
            QApplication::closeAllWindows();
        } else {
            dialog->close();
        }
    });
    timer.start(10);
    graph.slot_save();
    QCOMPARE(titles, (QStringList{QStringLiteral("Save graph as"), QStringLiteral("Save graph as"),
                                  QStringLiteral("Warning")}));
    QCOMPARE(contents(folder->path("kept.golm3")), QByteArray("kept"));
}

void TestGraphFiles::slotSave_failures()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    const QString dialog = QStringLiteral("Save graph as|%1|*.golm3").arg(folder->path());
    const QString warning = QStringLiteral("Warning|Failed to save graph.|OK");
    Dialogs dialogs({folder->path("missing/g.golm3"), QString()});
    graph.slot_save();
    graph.slot_save();
    QCOMPARE(dialogs.seen, (QStringList{dialog, warning, dialog, warning}));
    QCOMPARE(folder->files(), QStringList());
}

void TestGraphFiles::slotImport()
{
    Graph graph(QStringLiteral("g"), true);
    const QString file = folder->write("g.edgelist", "x\ty\n");
    graph.setWD(QDir::rootPath());
    Dialogs dialogs({file});
    StderrCapture errors;
    graph.slot_import_graph();
    QCOMPARE(errors.take(), QByteArray("x\ny\n0 1\nImport complete\n"));
    QCOMPARE(dialogs.seen, QStringList{QStringLiteral("Choose graph to import|/|*.edgelist")});
    QVERIFY(graph.node(1)->isVisible());
    QVERIFY(!graph.node(2)->isVisible());
    graph.autosave();
    QVERIFY(QFile::exists(folder->path(".olmgr")));
}

void TestGraphFiles::slotImport_standsOnACircle()
{
    Graph graph(QStringLiteral("g"), true);
    Dialogs dialogs({folder->write("g.edgelist", "a\tb\nb\tc\nc\td\n")});
    graph.slot_import_graph();
    const QPointF places[] = {{100, 0}, {0, 100}, {-100, 0}, {0, -100}};
    for (int i = 0; i < 4; ++i) {
        QVERIFY(QLineF(graph.node(i)->position(), places[i]).length() < 1e-5);
    }
}

void TestGraphFiles::slotImport_withoutEdges_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isTold");
    QTest::newRow("blanks") << QByteArray("a b\nb c\n") << true;
    QTest::newRow("commas") << QByteArray("a,b") << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("one edge") << QByteArray("a b\na\tb\n") << false;
}

void TestGraphFiles::slotImport_withoutEdges()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, isTold);
    Graph graph(QStringLiteral("g"), true);
    Dialogs dialogs({folder->write("g.edgelist", text)});
    graph.slot_import_graph();
    QCOMPARE(dialogs.seen.mid(1), isTold ? QStringList{QStringLiteral(
                                               "Warning|There is no edge in this file: a line must hold the labels of "
                                               "two vertices with a tab between them.|OK")}
                                         : QStringList());
    QCOMPARE(graph.getNbEdges(), text.contains('\t') ? 1 : 0);
}

/// They are told on a line in the viewer, which does not wait for an answer.
void TestGraphFiles::slotImport_linesPassedOver()
{
    Graph graph(QStringLiteral("g"), true);
    Dialogs dialogs(
        {folder->write("g.edgelist", "# people\na\tb\nb c\n\nb\td\n"), folder->write("h.edgelist", "a\tb\n\n")});
    graph.slot_import_graph();
    QCOMPARE(graph.getNbNodes(), 3);
    const auto *notice = graph.findChild<QLabel *>(QStringLiteral("notice"));
    QVERIFY(notice != nullptr);
    QCOMPARE(notice->text(), QStringLiteral("Lines without a tab between two labels, passed over: 2"));
    graph.slot_import_graph();
    QVERIFY(graph.findChild<QLabel *>(QStringLiteral("notice")) == nullptr);
    QCOMPARE(dialogs.seen.size(), 2);
}

void TestGraphFiles::slotImport_failures()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    QByteArray tooLarge;
    for (int label = 0; label < 40; ++label) {
        tooLarge += "hub\t" + QByteArray::number(label) + '\n';
    }
    Dialogs dialogs({folder->write("large.edgelist", tooLarge), QString()});
    const QString dialog = QStringLiteral("Choose graph to import|%1|*.edgelist").arg(folder->path());
    const QString warning = QStringLiteral("Warning|Failed to import graph.|OK");
    graph.slot_import_graph();
    QCOMPARE(dialogs.seen, (QStringList{dialog, warning}));
    QVERIFY(!graph.node(0)->isVisible());
    graph.slot_import_graph();
    QCOMPARE(dialogs.seen, (QStringList{dialog, warning, dialog, openingBox, warning}));
}

void TestGraphFiles::slotExport()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "3 101");
    graph.setWD(QDir::rootPath());
    Dialogs dialogs({folder->path("plain")});
    graph.slot_export_graph();
    QCOMPARE(dialogs.seen, QStringList{QStringLiteral("Export graph as|/|*.edgelist")});
    QCOMPARE(contents(folder->path("plain")), QByteArray("0\t1\n1\t2\n"));
    graph.autosave();
    QVERIFY(QFile::exists(folder->path(".olmgr")));
}

void TestGraphFiles::slotExport_failures()
{
    Graph graph(QStringLiteral("g"), true);
    graph.setWD(folder->path());
    const QString dialog = QStringLiteral("Export graph as|%1|*.edgelist").arg(folder->path());
    const QString warning = QStringLiteral("Warning|Failed to export graph.|OK");
    Dialogs dialogs({folder->path("missing/g.edgelist"), QString()});
    graph.slot_export_graph();
    graph.slot_export_graph();
    QCOMPARE(dialogs.seen, (QStringList{dialog, warning, dialog, warning}));
    QCOMPARE(folder->files(), QStringList());
}

void TestGraphFiles::saveAndExport_inAFolderWithoutRights()
{
    Graph graph(QStringLiteral("g"), true);
    fill(graph, "2 1");
    graph.setWD(folder->path());
    folder->write("kept.golm3", "kept");
    folder->write("kept.edgelist", "kept");
    Dialogs dialogs({folder->path("new.golm3"), folder->path("new.edgelist")});
    {
        const WithoutRights rights(folder->path(), 0555);
        graph.slot_save();
        graph.slot_export_graph();
        QVERIFY(!graph.save(folder->path("kept.golm3")));
        QVERIFY(!graph.export_graph(folder->path("kept.edgelist")));
    }
    QCOMPARE(dialogs.seen.filter(QStringLiteral("Warning")),
             (QStringList{QStringLiteral("Warning|Failed to save graph.|OK"),
                          QStringLiteral("Warning|Failed to export graph.|OK")}));
    QCOMPARE(folder->files(), (QStringList{QStringLiteral("kept.edgelist"), QStringLiteral("kept.golm3")}));
    QCOMPARE(contents(folder->path("kept.golm3")), QByteArray("kept"));
    QCOMPARE(contents(folder->path("kept.edgelist")), QByteArray("kept"));
}

QTEST_MAIN(TestGraphFiles)
#include "tst_graph_files.moc"
