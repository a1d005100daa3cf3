// The engine's database and its two loaders.

#include "TAVgraph.h"
#include "TAVsearchengine.h"
#include "support/literals.h"
#include "support/signalrecorder.h"
#include "support/stderrcapture.h"
#include "support/testfiles.h"
#include "support/threads.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <random>
#include <sys/stat.h>

namespace
{
std::atomic<int> questionsToStop = INT_MAX; // after so many "no" the answer is "yes"
} // namespace

/// Stands in front of the one of Qt.
bool QThread::isInterruptionRequested() const
{
    using Answer = bool (*)(const QThread *);
    static const auto answer = reinterpret_cast<Answer>(dlsym(RTLD_NEXT, "_ZNK7QThread23isInterruptionRequestedEv"));
    return questionsToStop-- <= 0 || answer(this);
}

namespace
{
void appendNumbers(QString &text, const QVector<int> &values)
{
    for (const int value : values) {
        text += QString::number(value);
        text += QLatin1Char(' ');
    }
    if (!values.isEmpty()) {
        text.chop(1);
    }
}

QString describe(const QString &name, const QVector<int> &sub, const QVector<int> &over)
{
    QString text = name + QStringLiteral(" sub[");
    appendNumbers(text, sub);
    text += QStringLiteral("] over[");
    appendNumbers(text, over);
    text += QLatin1Char(']');
    return text;
}

/// The database as text, one record a line: its name and the indices of its sub-graphs and super-graphs.
QStringList dump(const TAVSearchEngine &engine)
{
    QHash<const TAVGraph *, int> indices;
    for (const TAVGraph *graph : engine.records()) {
        indices.insert(graph, indices.size());
    }
    const auto positions = [&indices](const QList<TAVGraph *> &graphs) {
        QVector<int> result;
        for (const TAVGraph *graph : graphs) {
            result.append(indices.value(graph, -1));
        }
        return result;
    };
    QStringList lines;
    for (const TAVGraph *graph : engine.records()) {
        lines.append(describe(graph->getName(), positions(graph->getSub()), positions(graph->getOver())));
    }
    return lines;
}

/// What a database file holds, found without the engine: by the rules of the format, text only.
struct ExpectedDatabase {
    explicit ExpectedDatabase(const QByteArray &content);
    QStringList signalsOfRun() const;

    int lines = 0;
    bool wellFormed = true;
    int links = 0;
    QStringList records;

private:
    int linesRead = 0;
};

ExpectedDatabase::ExpectedDatabase(const QByteArray &content)
{
    QList<QByteArray> pieces = content.split('\n');
    if (pieces.last().isEmpty()) {
        pieces.removeLast();
    }
    lines = pieces.size();
    QStringList names;
    QVector<QVector<int>> sub;
    QVector<QVector<int>> over;
    for (const QByteArray &piece : qAsConst(pieces)) {
        ++linesRead;
        QString line = QString::fromUtf8(piece.constData(), piece.size());
        const QStringList fields = line.remove(QLatin1Char('\r')).split(QLatin1Char('\t'));
        if (fields.first().isEmpty()) {
            continue;
        }
        names.append(fields.first());
        sub.append(QVector<int>());
        over.append(QVector<int>());
        for (int i = 1; i < fields.size(); ++i) {
            const int index = fields.at(i).toInt();
            if (index < 0 || index >= names.size()) {
                wellFormed = false;
                return;
            }
            ++links;
            sub.last().append(index);
            over[index].append(names.size() - 1);
        }
    }
    for (int i = 0; i < names.size(); ++i) {
        records.append(describe(names.at(i), sub.at(i), over.at(i)));
    }
}

QStringList ExpectedDatabase::signalsOfRun() const
{
    QStringList expected{QStringLiteral("console Loading data ... please wait."),
                         QStringLiteral("console %1 lines.").arg(lines)};
    for (int line = 0; line < linesRead; line += 10000) {
        expected.append(QStringLiteral("progress %1 %2").arg(line).arg(lines));
    }
    if (wellFormed) {
        expected.append(QStringLiteral("console Data loaded : %1 nodes and %2 links.").arg(records.size()).arg(links));
        expected.append(QStringLiteral("load_succedded"));
    } else {
        expected.append(QStringLiteral("console ERROR in database format."));
        expected.append(QStringLiteral("load_failed"));
    }
    return expected;
}

/// The ways to load a file.
enum class Loader { Run, Thread, LoadData };

/// All that can be seen of one load with a new engine.
struct Load {
    Load(Loader loader, const QString &path);

    bool result = false; // of loadData()
    QStringList emitted;
    QByteArray standardError;
    QStringList records;
};

Load::Load(Loader loader, const QString &path)
{
    StderrCapture capture;
    TAVSearchEngine engine;
    SignalRecorder recorder(engine);
    if (loader == Loader::LoadData) {
        result = engine.loadData(path);
    } else {
        engine.setFilename(path);
        if (loader == Loader::Run) {
            engine.run();
        } else {
            engine.start(QThread::InheritPriority);
            engine.wait();
            QCoreApplication::sendPostedEvents(&recorder);
        }
    }
    emitted = recorder.recorded();
    standardError = capture.take();
    records = dump(engine);
    engine.eraseDatabase();
}
} // namespace

Q_DECLARE_METATYPE(Loader)

class TestSearchEngine : public QObject
{
    Q_OBJECT

private slots:
    void run_data();
    void run();
    void progressEveryTenThousandLines_data();
    void progressEveryTenThousandLines();
    void runOnFileThatCannotBeOpened_data();
    void runOnFileThatCannotBeOpened();
    void fileThatChangesBetweenThePasses_data();
    void fileThatChangesBetweenThePasses();
    void fileThatIsCutOffWhileItIsRead();
    void loadDataTellsTheFaultOfAFile();
    void runOnFileThatCannotBeRead_data();
    void runOnFileThatCannotBeRead();
    void runAppendsToTheRecordsThatAreThere();
    void runOnRandomBytes();
    void bordersOfChunks_data();
    void bordersOfChunks();
    void runWithoutNewThreads();
    void aShortageOfMemoryFailsTheLoad();
    void realDatabase_data();
    void realDatabase();
    void interruptedRunHasNoOutcome();
    void aRunThatIsStoppedAtAnyMoment();

    void loadData_data();
    void loadData();
    void loadDataCountsOnStandardError();
    void loadDataOnFileThatCannotBeOpened_data();
    void loadDataOnFileThatCannotBeOpened();
    void loadDataOnFileThatCannotBeRead();

    void declaresItsSignalsInOrder();
    void startsEmpty();
    void clearTakesBackTheMarks();
    void eraseDatabaseIsSilent();

private:
    QString write(const QByteArray &content);
    void unopenableFiles();

    TestFolder folder;
    int files = 0;
};

QString TestSearchEngine::write(const QByteArray &content)
{
    return folder.write(QStringLiteral("%1.tav").arg(files++), content);
}

void TestSearchEngine::run_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("emitted"); // between the first message and the outcome
    QTest::addColumn<QStringList>("records");
    const auto loaded = [](const char *title, const QByteArray &content, const QStringList &emitted,
                           const QStringList &records) { QTest::newRow(title) << content << emitted << records; };
    const auto rejected = [](const char *title, const QByteArray &content, const QStringList &emitted) {
        QTest::newRow(title) << content << (emitted + QStringList{text("console ERROR in database format.")})
                             << QStringList();
    };

    loaded("empty file", "", {text("console 0 lines."), text("console Data loaded : 0 nodes and 0 links.")}, {});
    loaded("one link", "A\nB\t0\n",
           {text("console 2 lines."), text("progress 0 2"), text("console Data loaded : 2 nodes and 1 links.")},
           {text("A sub[] over[1]"), text("B sub[0] over[]")});
    loaded("no newline at the end", "A\nB\t0",
           {text("console 2 lines."), text("progress 0 2"), text("console Data loaded : 2 nodes and 1 links.")},
           {text("A sub[] over[1]"), text("B sub[0] over[]")});
    loaded("link to itself", "A\t0\n",
           {text("console 1 lines."), text("progress 0 1"), text("console Data loaded : 1 nodes and 1 links.")},
           {text("A sub[0] over[0]")});
    loaded("trailing tab", "A\nB\t0\t\n",
           {text("console 2 lines."), text("progress 0 2"), text("console Data loaded : 2 nodes and 2 links.")},
           {text("A sub[] over[1 1]"), text("B sub[0 0] over[]")});
    loaded("fields that are no numbers", "A\nB\nC\t1\tword\t\t99999999999\t1\n",
           {text("console 3 lines."), text("progress 0 3"), text("console Data loaded : 3 nodes and 5 links.")},
           {text("A sub[] over[2 2 2]"), text("B sub[] over[2 2]"), text("C sub[1 0 0 0 1] over[]")});
    loaded("DOS line ends", "A\r\nB\t0\r\n\r\nC\t1\t0\r\n",
           {text("console 4 lines."), text("progress 0 4"), text("console Data loaded : 3 nodes and 3 links.")},
           {text("A sub[] over[1 2]"), text("B sub[0] over[2]"), text("C sub[1 0] over[]")});
    loaded("empty line", "A\n\nB\t0\n",
           {text("console 3 lines."), text("progress 0 3"), text("console Data loaded : 2 nodes and 1 links.")},
           {text("A sub[] over[1]"), text("B sub[0] over[]")});
    loaded("empty lines only", "\n\n\r\n",
           {text("console 3 lines."), text("progress 0 3"), text("console Data loaded : 0 nodes and 0 links.")}, {});
    loaded("line that starts with a tab", "\t7\t-1\nA\n\tB\t0\nC\t0\n",
           {text("console 4 lines."), text("progress 0 4"), text("console Data loaded : 2 nodes and 1 links.")},
           {text("A sub[] over[1]"), text("C sub[0] over[]")});
    loaded("the same name twice", "A\nA\t0\nA\t1\n",
           {text("console 3 lines."), text("progress 0 3"), text("console Data loaded : 3 nodes and 2 links.")},
           {text("A sub[] over[1]"), text("A sub[0] over[2]"), text("A sub[1] over[]")});
    loaded("byte-order mark, letters and invalid bytes",
           "\xEF\xBB\xBF"
           "A\n\xC3\xA9\t0\nB\xFF\t1\n",
           {text("console 3 lines."), text("progress 0 3"), text("console Data loaded : 3 nodes and 2 links.")},
           {text("A sub[] over[1]"), text("\u00E9 sub[0] over[2]"), text("B\uFFFD sub[1] over[]")});
    loaded("NUL byte", bytes("A\0B\nC\t0\n"),
           {text("console 2 lines."), text("progress 0 2"), text("console Data loaded : 2 nodes and 1 links.")},
           {QString(text("A") + QChar(0) + text("B sub[] over[1]")), text("C sub[0] over[]")});

    rejected("index of the next record", "A\t1\n", {text("console 1 lines."), text("progress 0 1")});
    rejected("index of a later record", "A\nB\t2\nC\n", {text("console 3 lines."), text("progress 0 3")});
    rejected("negative index", "A\nB\t0\t-1\n", {text("console 2 lines."), text("progress 0 2")});
    rejected("an empty line takes no index", "A\n\nB\t2\n", {text("console 3 lines."), text("progress 0 3")});
}

void TestSearchEngine::run()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, emitted);
    QFETCH(QStringList, records);
    const bool good = emitted.last() != text("console ERROR in database format.");
    emitted.prepend(text("console Loading data ... please wait."));
    emitted.append(text(good ? "load_succedded" : "load_failed"));
    const QByteArray standardError = good ? "Starting...\n" : "Starting...\nError in database format\n";
    const QString path = write(content);

    for (const Loader loader : {Loader::Run, Loader::Thread}) {
        const Load load(loader, path);
        QCOMPARE(load.emitted, emitted);
        QCOMPARE(load.standardError, standardError);
        QCOMPARE(load.records, records);
    }
}

void TestSearchEngine::progressEveryTenThousandLines_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<QStringList>("progress");
    QTest::newRow("10000") << 10000 << QStringList{text("progress 0 10000")};
    QTest::newRow("10001") << 10001 << QStringList{text("progress 0 10001"), text("progress 10000 10001")};
    QTest::newRow("25000") << 25000
                           << QStringList{text("progress 0 25000"), text("progress 10000 25000"),
                                          text("progress 20000 25000")};
}

void TestSearchEngine::progressEveryTenThousandLines()
{
    QFETCH(int, lines);
    QFETCH(QStringList, progress);
    // Lines without a graph count like the others.
    const QStringList expected =
        QStringList{text("console Loading data ... please wait."), QStringLiteral("console %1 lines.").arg(lines)} +
        progress + QStringList{text("console Data loaded : 1 nodes and 0 links."), text("load_succedded")};
    QCOMPARE(Load(Loader::Run, write(QByteArray(lines - 1, '\n') + "A\n")).emitted, expected);
    QCOMPARE(Load(Loader::Thread, write("A\n" + QByteArray("\t0\n").repeated(lines - 1))).emitted, expected);
}

void TestSearchEngine::unopenableFiles()
{
    QTest::addColumn<QString>("path");
    const QString dangling = folder.path(QStringLiteral("dangling-%1").arg(files++));
    QVERIFY(QFile::link(folder.path(text("nowhere")), dangling));
    QTest::newRow("missing file") << folder.path(text("missing.tav"));
    QTest::newRow("missing directory") << folder.path(text("missing/file.tav"));
    QTest::newRow("file in a file") << write("A\n") + text("/file.tav");
    QTest::newRow("dangling link") << dangling;
    QTest::newRow("directory") << folder.path();
    const QString pipe = folder.path(QStringLiteral("pipe-%1").arg(files++));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QTest::newRow("pipe that nobody writes to") << pipe;
    QTest::newRow("device without an end") << text("/dev/zero");
}

void TestSearchEngine::runOnFileThatCannotBeOpened_data()
{
    unopenableFiles();
}

void TestSearchEngine::runOnFileThatCannotBeOpened()
{
    QFETCH(QString, path);
    for (const Loader loader : {Loader::Run, Loader::Thread}) {
        const Load load(loader, path);
        QCOMPARE(load.emitted, (QStringList{text("console Loading data ... please wait."), text("load_failed")}));
        QCOMPARE(load.standardError, QByteArray("Starting...\nUnable to open file\n"));
        QCOMPARE(load.records, QStringList());
    }
}

void TestSearchEngine::fileThatChangesBetweenThePasses_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::addColumn<QStringList>("end");
    QTest::addColumn<QStringList>("records");
    const QStringList whole = {text("progress 0 3"), text("console Data loaded : 3 nodes and 1 links."),
                               text("load_succedded")};
    QTest::newRow("removed") << QByteArray("rm") << QStringList{text("load_failed")} << QStringList();
    const auto shortened = [](const char *title, const char *change, const QStringList &progress, const char *rest) {
        QTest::newRow(title)
            << QByteArray(change)
            << progress +
                   QStringList{QStringLiteral("console The file has changed: %1 bytes.").arg(QLatin1String(rest)),
                               text("load_failed")}
            << QStringList();
    };
    const QStringList progress = {text("progress 0 3")};
    shortened("emptied", "truncate -s 0", {}, "0 of 3 lines were read, 0 of 8");
    shortened("cut off within a line", "truncate -s 3", progress, "2 of 3 lines were read, 3 of 8");
    shortened("cut off behind a line", "truncate -s 6", progress, "2 of 3 lines were read, 6 of 8");
    shortened("without the last byte", "truncate -s 7", progress, "3 of 3 lines were read, 7 of 8");
    shortened("fewer lines, more bytes", R"(printf 'A\nBBBBBBBBB\n' >)", progress, "2 of 3 lines were read, 12 of 8");
    QTest::newRow("grown") << QByteArray(R"(printf 'D\t2\nE\t4\n' >>)")
                           << QStringList{text("progress 0 3"), text("console Data loaded : 5 nodes and 3 links."),
                                          text("load_succedded")}
                           << QStringList{text("A sub[] over[1]"), text("B sub[0] over[]"), text("C sub[] over[3]"),
                                          text("D sub[2] over[]"), text("E sub[4] over[4]")};
    QTest::newRow("as it was") << QByteArray("true") << whole
                               << QStringList{text("A sub[] over[1]"), text("B sub[0] over[]"), text("C sub[] over[]")};
}

void TestSearchEngine::fileThatChangesBetweenThePasses()
{
    QFETCH(QByteArray, change);
    QFETCH(QStringList, end);
    QFETCH(QStringList, records);
    const QString path = write("A\nB\t0\nC\n");
    const StderrCapture capture;
    TAVSearchEngine engine;
    SignalRecorder recorder(engine);
    connect(
        &engine, &TAVSearchEngine::signal_console, &engine,
        [&](const QString &line) {
            if (line.endsWith(text(" lines."))) {
                const QByteArray command = change + " '" + QFile::encodeName(path) + "'";
                QCOMPARE(std::system(command.constData()), 0);
            }
        },
        Qt::DirectConnection);
    engine.setFilename(path);
    engine.run();
    QCOMPARE(recorder.recorded(),
             (QStringList{text("console Loading data ... please wait."), text("console 3 lines.")} + end));
    QCOMPARE(dump(engine), records);
    engine.eraseDatabase();
}

void TestSearchEngine::fileThatIsCutOffWhileItIsRead()
{
    // Far longer than what is read ahead of the first lines that become records.
    const QByteArray lines = QByteArray(1023, 'A') + '\n';
    const QString path = write(lines.repeated(32 << 10));
    const ThreadCount oneThread(1);
    StderrCapture capture;
    TAVSearchEngine engine;
    SignalRecorder recorder(engine);
    connect(
        &engine, &TAVSearchEngine::signal_progress, &engine, [&] { QVERIFY(QFile::resize(path, 24000 << 10)); },
        Qt::DirectConnection);
    engine.setFilename(path);
    engine.run();
    QCOMPARE(recorder.recorded(),
             (QStringList{text("console Loading data ... please wait."), text("console 32768 lines."),
                          text("progress 0 32768"), text("progress 10000 32768"), text("progress 20000 32768"),
                          text("console The file has changed: 24000 of 32768 lines were read, "
                               "24576000 of 33554432 bytes."),
                          text("load_failed")}));
    QCOMPARE(engine.records().size(), 0);
    QCOMPARE(capture.take(), QByteArray("Starting...\nThe file has changed\n"));
    QCOMPARE(engine.fileFault(), QString());

    const QString part = write(lines.repeated(32 << 10));
    connect(
        &engine, &TAVSearchEngine::signal_progress, &engine, [&] { QVERIFY(QFile::resize(part, 24000 << 10)); },
        Qt::DirectConnection);
    engine.setFilenames({part, path});
    engine.run();
    QCOMPARE(engine.fileFault(), part + text(": The file has changed"));
}

void TestSearchEngine::loadDataTellsTheFaultOfAFile()
{
    TAVSearchEngine engine;
    QVERIFY(!engine.loadData(folder.path()));
    QCOMPARE(engine.fileFault(), text("Is a directory"));
    QVERIFY(!engine.loadData(write("A\t7\n")));
    QCOMPARE(engine.fileFault(), QString());
    QVERIFY(!engine.loadData(text("/proc/self/mem")));
    QCOMPARE(engine.fileFault(), text("Input/output error"));
    QVERIFY(engine.loadData(write("A\n")));
    QCOMPARE(engine.fileFault(), QString());
}

void TestSearchEngine::runOnFileThatCannotBeRead_data()
{
    QTest::addColumn<Loader>("loader");
    QTest::newRow("called") << Loader::Run;
    QTest::newRow("started") << Loader::Thread;
}

void TestSearchEngine::runOnFileThatCannotBeRead()
{
    QFETCH(Loader, loader);
    // The first page of a process is never mapped, so that it opens and does not read.
    const Load load(loader, text("/proc/self/mem"));
    QCOMPARE(load.emitted, (QStringList{text("console Loading data ... please wait."),
                                        text("console Unable to read file :/proc/self/mem"), text("load_failed")}));
    QCOMPARE(load.standardError, QByteArray("Starting...\nUnable to read file\n"));
    QCOMPARE(load.records, QStringList());
}

void TestSearchEngine::runAppendsToTheRecordsThatAreThere()
{
    TAVSearchEngine engine;
    engine.setFilename(write("A\nB\t0\n"));
    engine.run();
    engine.run();
    QCOMPARE(dump(engine), (QStringList{text("A sub[] over[1 3]"), text("B sub[0] over[]"), text("A sub[] over[]"),
                                        text("B sub[0] over[]")}));
    engine.eraseDatabase();
}

void TestSearchEngine::runOnRandomBytes()
{
    int wellFormed = 0;
    constexpr int rounds = 200;
    for (unsigned seed = 0; seed < rounds; ++seed) {
        std::mt19937 generator(seed);
        QByteArray content(20000, '\0');
        // Half of the files are any bytes, half are bytes of which database files are made.
        std::generate(content.begin(), content.end(), [&generator, seed] {
            const auto number = generator();
            return seed % 2 == 0 ? char(number) : "AB\t\n\n\n\n\n\n\r\r\xFF 0001"[number % 17];
        });
        const ExpectedDatabase expected(content);
        const Load load(Loader::Run, write(content));
        const QByteArray title = "seed " + QByteArray::number(seed);
        QVERIFY2(load.emitted == expected.signalsOfRun(), title.constData());
        QVERIFY2(load.records == expected.records, title.constData());
        wellFormed += expected.wellFormed ? 1 : 0;
    }
    QVERIFY(wellFormed > 0 && wellFormed < rounds);
}

void TestSearchEngine::bordersOfChunks_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("wellFormed");
    // Each line names the one before and the first; a megabyte is read at a time. Long names make few records.
    constexpr int chunk = 1 << 20;
    const QByteArray tail(80, 'x');
    QByteArray lines = "G0\n";
    for (int i = 1; lines.size() < 3 * chunk; ++i) {
        lines += 'G' + QByteArray::number(i) + tail + '\t' + QByteArray::number(i - 1) + "\t0\n";
    }
    for (const int size : {chunk - 1, chunk, chunk + 1, 2 * chunk, 2 * chunk + 1}) {
        // The last line is made as long as it takes.
        QByteArray content = lines.left(lines.lastIndexOf('\n', size - 100) + 1);
        content += QByteArray(size - content.size(), 'x');
        QTest::addRow("%d bytes, no newline at the end", size) << content << true;
        content.chop(1);
        QTest::addRow("%d bytes", size) << content + '\n' << true;
    }
    const QByteArray twoChunks = lines.left(lines.indexOf('\n', 2 * chunk + chunk / 2) + 1);
    QTest::newRow("a bad index in the third chunk") << twoChunks + "bad\t999999999\nA\n" << false;
    QTest::newRow("a bad index in the first chunk of three") << "A\nbad\t2\n" + twoChunks << false;
    QTest::newRow("chunks of empty lines")
        << QByteArray(3 * chunk, '\n') + "A\nB\t0\n" + QByteArray(chunk, '\n') << true;
}

void TestSearchEngine::bordersOfChunks()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, wellFormed);
    const ExpectedDatabase expected(content);
    QCOMPARE(expected.wellFormed, wellFormed);
    const QString path = write(content);
    const ThreadCount count(3);
    const Load load(Loader::Run, path);
    QCOMPARE(load.emitted, expected.signalsOfRun());
    QCOMPARE(load.records, wellFormed ? expected.records : QStringList());
}

void TestSearchEngine::runWithoutNewThreads()
{
    const NoThreads shortage;
    const Load load(Loader::Run, write("A\nB\t0\n"));
    QCOMPARE(load.emitted.last(), text("load_succedded"));
    QCOMPARE(load.records, (QStringList{text("A sub[] over[1]"), text("B sub[0] over[]")}));
}

void TestSearchEngine::aShortageOfMemoryFailsTheLoad()
{
    const QString path = write("A\nB\t0\n");
    StderrCapture capture;
    TAVSearchEngine engine;
    SignalRecorder recorder(engine);
    connect(
        &engine, &TAVSearchEngine::signal_progress, &engine, [] { throw std::bad_alloc(); }, Qt::DirectConnection);
    engine.setFilename(path);
    engine.run();
    QCOMPARE(recorder.recorded().mid(2),
             (QStringList{text("progress 0 2"), text("console Not enough memory."), text("load_failed")}));
    QCOMPARE(capture.take(), QByteArray("Starting...\nNot enough memory\n"));
    QVERIFY(engine.records().isEmpty());
    QCOMPARE(engine.fileFault(), QString());
    engine.setFilenames({path, path});
    engine.run();
    QCOMPARE(engine.fileFault(), path + text(": Not enough memory"));
}

void TestSearchEngine::realDatabase_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("progressSignals");
    QTest::newRow("connected graphs of 7 vertices") << text(TAVOLINE_TEST_DATA "/connected-7.tav") << 996 << 1;
    QTest::newRow("edge-deleted graphs of 7 vertices")
        << text(TAVOLINE_TEST_DATA "/all-7-edge-deleted.tav") << 1252 << 1;
    QTest::newRow("connected graphs of 9 vertices") << text(TAVOLINE_BUILD_DATA "/connected-9.tav") << 273193 << 28;
}

void TestSearchEngine::realDatabase()
{
    QFETCH(QString, path);
    QFETCH(int, lines);
    QFETCH(int, progressSignals);
    const ExpectedDatabase expected(contents(path));
    QCOMPARE(expected.records.size(), lines);
    for (const int threads : {1, 8}) {
        const ThreadCount count(threads);
        const Load load(Loader::Thread, path);
        QCOMPARE(load.emitted.filter(text("progress ")).size(), progressSignals);
        QCOMPARE(load.emitted, expected.signalsOfRun());
        QCOMPARE(load.standardError, QByteArray("Starting...\n"));
        QCOMPARE(load.records, expected.records);
    }
}

void TestSearchEngine::interruptedRunHasNoOutcome()
{
    TAVSearchEngine engine;
    SignalRecorder recorder(engine);
    // It interrupts itself: nobody else can tell how far the thread is.
    connect(
        &engine, &TAVSearchEngine::signal_progress, &engine, [&engine] { engine.requestInterruption(); },
        Qt::DirectConnection);
    engine.setFilename(write(QByteArray("A\n").repeated(25000)));
    engine.start(QThread::InheritPriority);
    QVERIFY(engine.wait());
    QCoreApplication::sendPostedEvents(&recorder);
    QCOMPARE(recorder.recorded(), (QStringList{text("console Loading data ... please wait."),
                                               text("console 25000 lines."), text("progress 0 25000")}));
    engine.eraseDatabase();
}

/// It asks now and then whether to stop: while it counts the lines, while it reads them and while it links the records.
void TestSearchEngine::aRunThatIsStoppedAtAnyMoment()
{
    const ThreadCount single(1);
    const QStringList whole{text("console Loading data ... please wait."),
                            text("console 60000 lines."),
                            text("progress 0 60000"),
                            text("progress 10000 60000"),
                            text("progress 20000 60000"),
                            text("progress 30000 60000"),
                            text("progress 40000 60000"),
                            text("progress 50000 60000"),
                            text("console Data loaded : 60000 nodes and 60000 links."),
                            text("load_succedded")};
    const QString file = write(QByteArray("A\t0\n").repeated(60000));
    const auto seenUpTo = [&](int questions) {
        TAVSearchEngine engine;
        SignalRecorder recorder(engine);
        engine.setFilename(file);
        questionsToStop = questions;
        engine.start(QThread::InheritPriority);
        engine.wait();
        QCoreApplication::sendPostedEvents(&recorder);
        engine.eraseDatabase();
        return recorder.take();
    };
    QCOMPARE(seenUpTo(0), whole.mid(0, 1)); // no number of lines
    QCOMPARE(seenUpTo(INT_MAX), whole);
    const int questions = INT_MAX - questionsToStop;
    questionsToStop = INT_MAX;
    QVERIFY(questions > 10);
    QStringList before;
    for (int i = 0; i < questions; ++i) {
        const QStringList seen = seenUpTo(i);
        QCOMPARE(seen, whole.mid(0, seen.size()));
        QVERIFY(seen.size() >= before.size());
        QVERIFY(seen.size() <= 8); // what follows is the outcome
        before = seen;
    }
    QCOMPARE(before.size(), 8);
    QCOMPARE(seenUpTo(questions), whole);
    questionsToStop = INT_MAX;
}

void TestSearchEngine::loadData_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("records"); // "bad" alone when the file is rejected
    const auto row = [](const char *title, const QByteArray &content, const QStringList &records) {
        QTest::newRow(title) << content << records;
    };
    row("one link", "A\nB\t0\n", {text("A sub[] over[1]"), text("B sub[0] over[]")});
    row("no newline at the end", "A\nB\t0", {text("A sub[] over[1]"), text("B sub[0] over[]")});
    row("link to itself", "A\t0\n", {text("A sub[0] over[0]")});
    row("trailing tab", "A\nB\t0\t\n", {text("A sub[] over[1 1]"), text("B sub[0 0] over[]")});
    row("empty line", "A\n\nB\t0\n", {text("A sub[] over[1]"), text("B sub[0] over[]")});
    row("empty lines only", "\n\n", {});
    row("empty name", "\t0\nA\t0\n", {text(" sub[0] over[0 1]"), text("A sub[0] over[]")});
    row("carriage returns are kept", "A\r\n\r\nB\r\t1\r\n",
        {text("A\r sub[] over[]"), text("\r sub[] over[2]"), text("B\r sub[1] over[]")});
    row("line as long as a piece", QByteArray(1022, 'x') + "\nA\t0\n",
        {QString(1022, QLatin1Char('x')) + text(" sub[] over[1]"), text("A sub[0] over[]")});
    row("line end in a piece of its own", QByteArray(1023, 'x') + "\nA\t0\n",
        {QString(1023, QLatin1Char('x')) + text(" sub[] over[1]"), text("A sub[0] over[]")});
    row("line of two pieces", QByteArray(1023, 'x') + "yz\nA\t1\n",
        {QString(1023, QLatin1Char('x')) + text(" sub[] over[]"), text("yz sub[] over[2]"), text("A sub[1] over[]")});
    row("line of three pieces", QByteArray(2046, 'x') + "y",
        {QString(1023, QLatin1Char('x')) + text(" sub[] over[]"),
         QString(1023, QLatin1Char('x')) + text(" sub[] over[]"), text("y sub[] over[]")});
    row("number cut in two", "A\nB\n" + QByteArray(1021, 'x') + "\t12\n",
        {text("A sub[] over[]"), text("B sub[] over[2]"), QString(1021, QLatin1Char('x')) + text(" sub[1] over[]"),
         text("2 sub[] over[]")});
    row("piece that starts with a tab", QByteArray(1023, 'x') + "\t0\n",
        {QString(1023, QLatin1Char('x')) + text(" sub[] over[1]"), text(" sub[0] over[]")});
    row("letter cut in two", QByteArray(1022, 'x') + "\xC3\xA9",
        {QString(1022, QLatin1Char('x')) + text("\uFFFD sub[] over[]"), text("\uFFFD sub[] over[]")});
    row("byte-order marks",
        "\xEF\xBB\xBF"
        "A\n\xEF\xBB\xBF\nB\t0\n",
        {text("A sub[] over[1]"), text("B sub[0] over[]")});
    row("NUL byte", bytes("A\0B\n"), {QString(text("A") + QChar(0) + text("B sub[] over[]"))});
    row("index of the next record", "A\t1\n", {text("bad")});
    row("negative index", "A\nB\t0\t-1\n", {text("bad")});
}

void TestSearchEngine::loadData()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, records);
    const bool good = records != QStringList{text("bad")};
    const QString path = write(content);
    const QString loaded = QStringLiteral("Data loaded %1").arg(records.size());
    const QString outcome = good ? loaded : text("ERROR in database format.");
    const QString diagnosis = good ? loaded : text("Error in database format");

    const Load load(Loader::LoadData, path);
    QCOMPARE(load.result, good);
    QCOMPARE(load.emitted,
             (QStringList{text("console Loading ") + path, text("console Reading data."), text("console ") + outcome}));
    QCOMPARE(QString::fromUtf8(load.standardError),
             text("Starting...\nReading ") + path + text("\nReading data\n0\n") + diagnosis + text("\n"));
    QCOMPARE(load.records, good ? records : QStringList());
}

void TestSearchEngine::loadDataCountsOnStandardError()
{
    const QString empty = write("");
    const Load nothing(Loader::LoadData, empty);
    QVERIFY(nothing.result);
    QCOMPARE(QString::fromUtf8(nothing.standardError),
             text("Starting...\nReading ") + empty + text("\nReading data\nData loaded 0\n"));

    const QString large = write(QByteArray(1999999, '\n') + "A\nB\n");
    const Load load(Loader::LoadData, large);
    QVERIFY(load.result);
    QCOMPARE(QString::fromUtf8(load.standardError),
             text("Starting...\nReading ") + large + text("\nReading data\n0\n1000000\n2000000\nData loaded 2\n"));
    QCOMPARE(load.records, (QStringList{text("A sub[] over[]"), text("B sub[] over[]")}));
}

void TestSearchEngine::loadDataOnFileThatCannotBeOpened_data()
{
    unopenableFiles();
}

void TestSearchEngine::loadDataOnFileThatCannotBeOpened()
{
    QFETCH(QString, path);
    const Load load(Loader::LoadData, path);
    QVERIFY(!load.result);
    QCOMPARE(load.emitted, (QStringList{text("console Loading ") + path}));
    QCOMPARE(QString::fromUtf8(load.standardError),
             text("Starting...\nReading ") + path + text("\nUnable to open file\n"));
    QCOMPARE(load.records, QStringList());
}

void TestSearchEngine::loadDataOnFileThatCannotBeRead()
{
    const Load load(Loader::LoadData, text("/proc/self/mem"));
    QVERIFY(!load.result);
    QCOMPARE(load.emitted, (QStringList{text("console Loading /proc/self/mem"), text("console Reading data."),
                                        text("console Unable to read file :/proc/self/mem")}));
    QCOMPARE(load.standardError,
             QByteArray("Starting...\nReading /proc/self/mem\nReading data\nUnable to read file\n"));
    QCOMPARE(load.records, QStringList());
}

void TestSearchEngine::declaresItsSignalsInOrder()
{
    QStringList declared;
    const QMetaObject &type = TAVSearchEngine::staticMetaObject;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        declared.append(QString::fromLatin1(type.method(i).methodSignature()));
    }
    QCOMPARE(declared, (QStringList{text("signal_load_failed()"), text("signal_load_succedded()"),
                                    text("signal_progress(int,int)"), text("signal_console(QString)")}));
}

void TestSearchEngine::startsEmpty()
{
    StderrCapture capture;
    const TAVSearchEngine engine;
    QCOMPARE(capture.take(), QByteArray("Starting...\n"));
    QVERIFY(engine.records().isEmpty());
    QVERIFY(!engine.isRunning());
}

void TestSearchEngine::clearTakesBackTheMarks()
{
    TAVSearchEngine engine;
    engine.setFilename(write("A\nB\t0\nC\t0\n"));
    engine.run();
    engine.records().at(0)->setChecked(true);
    engine.records().at(2)->setChecked(true);
    SignalRecorder recorder(engine);
    engine.clear();
    QCOMPARE(recorder.take(), QStringList{text("console Database cleared.")});
    for (const TAVGraph *graph : engine.records()) {
        QVERIFY(!graph->isChecked());
    }
    QCOMPARE(dump(engine), (QStringList{text("A sub[] over[1 2]"), text("B sub[0] over[]"), text("C sub[0] over[]")}));
    engine.eraseDatabase();
    engine.clear();
    QCOMPARE(recorder.take(), QStringList{text("console Database cleared.")});
}

void TestSearchEngine::eraseDatabaseIsSilent()
{
    TAVSearchEngine engine;
    engine.setFilename(write("A\nB\t0\n"));
    engine.run();
    SignalRecorder recorder(engine);
    StderrCapture capture;
    engine.eraseDatabase();
    QVERIFY(engine.records().isEmpty());
    engine.eraseDatabase();
    QCOMPARE(capture.take(), QByteArray());
    QCOMPARE(recorder.recorded(), QStringList());
}

QTEST_GUILESS_MAIN(TestSearchEngine)
#include "tst_searchengine.moc"
