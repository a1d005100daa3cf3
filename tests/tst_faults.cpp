// What can go wrong outside the program, seen from outside: the companion program runs the same list manager.

#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <memory>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// What the sanitizers keep for every byte that the program uses, and of what it has freed; without them, the buffers
/// of the program that do not depend on the file.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr qint64 memoryOverhead = 4;
constexpr int memoryKept = 400 * 1000 * 1000;
#else
constexpr qint64 memoryOverhead = 1;
constexpr int memoryKept = 5000000;
#endif

const QString database = QStringLiteral(TAVOLINE_EXAMPLES "/connected-8.tav");

/// Carries a script out in a folder.
ToolResult runScript(const QByteArray &script, const QString &folder)
{
    return runTav({QStringLiteral("run")}, script, folder);
}

/// The names of the graphs of the database, as the program writes them.
QByteArray namesOfDatabase()
{
    QByteArray names;
    const QList<QByteArray> lines = contents(database).split('\n');
    for (const QByteArray &line : lines) {
        names += line.isEmpty() ? QByteArray() : line.split('\t').first() + '\n';
    }
    return names;
}

/// The highest memory of a process that runs, in bytes.
qint64 highestMemory(qint64 process)
{
    const QList<QByteArray> lines = contents(QStringLiteral("/proc/%1/status").arg(process)).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).simplified().split(' ').first().toLongLong() * 1024;
        }
    }
    return -1;
}

/// Loads the database, makes a list of three names and carries on with the lines of @p end.
QByteArray afterLoading(const QByteArray &end)
{
    return "load " + database.toUtf8() + "\nlist-from-file three three.g6\n" + end;
}
} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir counts;
    std::unique_ptr<TestFolder> folder;

    /// The highest memory of the program after a script whose output is @p output; -1 when the output is another.
    qint64 memoryOf(const QByteArray &script, const QByteArray &output) const;

private slots:
    /// A program that is killed or may not write spoils the file in which a build that measures coverage adds up what
    /// all of them execute: it gets files of its own.
    void initTestCase()
    {
        QVERIFY(counts.isValid());
        qputenv("GCOV_PREFIX", QFile::encodeName(counts.path()));
    }

    void init()
    {
        folder = std::make_unique<TestFolder>();
        folder->write("three.g6", "@\nA_\nBw\n");
    }

    void aPathOfAnyLetters()
    {
        const QString name = QString::fromUtf8("Größe \" 'x' \\ – 図 .g6");
        const ToolResult result =
            runScript(afterLoading("save-list three \"Größe \\\" 'x' \\\\ – 図 .g6\"\n"
                                   "list-from-file again \"Größe \\\" 'x' \\\\ – 図 .g6\"\nshow again\n"),
                      folder->path());
        QCOMPARE(result.status, 0);
        QCOMPARE(contents(folder->path(name)), QByteArray("@\nA_\nBw"));
        QVERIFY(result.output.endsWith("@\nA_\nBw\n"));
    }

    void aFolderWhereNothingCanBeWritten_data()
    {
        QTest::addColumn<QByteArray>("save");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("names") << QByteArray("save-graphs") << QByteArray();
        QTest::newRow("invariant") << QByteArray("save-i1") << QByteArray();
        QTest::newRow("list") << QByteArray("save-list three") << QByteArray("Unable to open file :");
    }

    void aFolderWhereNothingCanBeWritten()
    {
        QFETCH(QByteArray, save);
        QFETCH(QByteArray, message);
        folder->write("kept.txt", "kept");
        // What anybody may write over is not: a write that fails would have emptied it.
        folder->write("open.txt", "open");
        QCOMPARE(::chmod(QFile::encodeName(folder->path("open.txt")).constData(), 0666), 0);
        // The administrator can write everywhere; nobody else can here.
        QCOMPARE(::chmod(QFile::encodeName(folder->path()).constData(), 0555), 0);
        QStringList command = {QStringLiteral(TAVOLINE_TAV), QStringLiteral("run")};
        if (::geteuid() == 0) {
            command = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                                  QStringLiteral("--clear-groups")} +
                      command;
        }
        for (const QByteArray name : {"new.txt", "kept.txt", "open.txt"}) {
            const ToolResult result =
                runProgram(command.first(), command.mid(1), afterLoading(save + ' ' + name + '\n'), folder->path());
            const QByteArray said = message.isEmpty() ? QByteArray() : message + name + '\n';
            QVERIFY2(result.output.endsWith("List added : three\n" + said), result.output.constData());
            QCOMPARE(result.status, 1);
        }
        QCOMPARE(::chmod(QFile::encodeName(folder->path()).constData(), 0755), 0);
        QCOMPARE(contents(folder->path("kept.txt")), QByteArray("kept"));
        QCOMPARE(contents(folder->path("open.txt")), QByteArray("open"));
        QCOMPARE(folder->files(),
                 (QStringList{QStringLiteral("kept.txt"), QStringLiteral("open.txt"), QStringLiteral("three.g6")}));
    }

    void aFullDisk_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("names") << QByteArray("save-graphs kept.txt\n");
        QTest::newRow("invariant") << QByteArray("save-i1 kept.txt\n");
        QTest::newRow("list") << QByteArray("list-from-file all all.g6\nsave-list all kept.txt\n");
    }

    void aFullDisk()
    {
        QFETCH(QByteArray, command);
        folder->write("kept.txt", "kept");
        folder->write("all.g6", namesOfDatabase());
        // No file of the process grows beyond 16 blocks of 512 bytes: the write fails on the way.
        folder->write("script", afterLoading(command));
        const ToolResult result =
            runProgram(QStringLiteral("sh"),
                       {QStringLiteral("-c"),
                        QStringLiteral("ulimit -f 16; exec '%1' run script").arg(QStringLiteral(TAVOLINE_TAV))},
                       {}, folder->path());
        QVERIFY2(result.output.endsWith("Unable to write file :kept.txt\n"), result.output.constData());
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(folder->path("kept.txt")), QByteArray("kept"));
        QCOMPARE(folder->files().size(), 4);
    }

    void aLineOfMoreThanTheLimit()
    {
        const QString line = QStringLiteral("(head -c 600000000 /dev/zero | tr '\\0' A) | '%1' info -");
        const ToolResult result =
            runProgram(QStringLiteral("sh"), {QStringLiteral("-c"), line.arg(QStringLiteral(TAVOLINE_TAV))});
        QCOMPARE(result.errors, QByteArray("tav: standard input:1: a line of more than 512 MiB\n"));
        QCOMPARE(result.status, 1);
    }

    void killedWhileItWrites_data()
    {
        QTest::addColumn<QByteArray>("save");
        QTest::newRow("names") << QByteArray("save-graphs new.txt\n");
        QTest::newRow("invariant") << QByteArray("save-i1 new.txt\n");
        QTest::newRow("list") << QByteArray("save-list all new.txt\n");
    }

    void killedWhileItWrites()
    {
        // Whatever moment it is killed at, the file is the old one or the new one, whole.
        QFETCH(QByteArray, save);
        const QString target = folder->path("new.txt");
        folder->write("all.g6", namesOfDatabase());
        const QByteArray start = afterLoading("list-from-file all all.g6\n");
        QCOMPARE(runScript(start + save, folder->path()).status, 0);
        const QByteArray whole = contents(target);
        QVERIFY(whole.count('\n') >= 12112);
        std::mt19937 random(9);
        for (int repetition = 0; repetition < 20; ++repetition) {
            write(target, "old");
            QProcess process;
            process.setWorkingDirectory(folder->path());
            process.start(QStringLiteral(TAVOLINE_TAV), {QStringLiteral("run")});
            process.write(start + save.repeated(200)); // its input stays open, so that it does not end of itself
            QTRY_VERIFY_WITH_TIMEOUT(contents(target) != "old", patience);
            QTest::qSleep(1 + int(random() % 20)); // milliseconds of one save or several
            QCOMPARE(process.state(), QProcess::Running);
            process.kill();
            QVERIFY(process.waitForFinished(patience));
            const QByteArray left = contents(target);
            QVERIFY(left == "old" || left == whole);
            // Between getting a name and taking the place of the old file the new one stands beside it, whole.
            const QStringList copies = QDir(folder->path()).entryList({QStringLiteral("new.txt.*")}, QDir::Files);
            for (const QString &copy : copies) {
                QCOMPARE(contents(folder->path(copy)), whole);
                QVERIFY(QFile::remove(folder->path(copy)));
            }
            QCOMPARE(folder->files(),
                     (QStringList{QStringLiteral("all.g6"), QStringLiteral("new.txt"), QStringLiteral("three.g6")}));
        }
    }

    void filesThatAreNoFiles_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("lastLine");
        for (const char *place : {"pipe", ".", "/dev/zero", "missing"}) {
            const QByteArray name(place);
            const auto row = [&](const char *what) { return QByteArray(what) + " " + name; };
            QTest::newRow(row("database").constData()) << "load " + name + "\n"
                                                       << QByteArray("Loading data ... please wait.\n");
            QTest::newRow(row("I1").constData())
                << afterLoading("load-i1 " + name + "\n") << QByteArray("Unable to open file.\nLoad failed\n");
            QTest::newRow(row("I2").constData())
                << afterLoading("load-i2 " + name + "\n") << QByteArray("Unable to open file.\nLoad failed\n");
            QTest::newRow(row("list").constData()) << "list-from-file new " + name + "\n"
                                                   << QByteArray("Unable to open file :" + name + "\n");
        }
    }

    void filesThatAreNoFiles()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, lastLine);
        QCOMPARE(::mkfifo(QFile::encodeName(folder->path("pipe")).constData(), 0600), 0);
        const ToolResult result = runScript(command, folder->path());
        QVERIFY2(result.output.endsWith(lastLine), result.output.constData());
        QCOMPARE(result.status, 1);
    }

    void oddFilesTakeMemoryInProportion_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<int>("factor"); // how many times the size of the file may be needed
        constexpr int million = 1000000;
        const QByteArray tabs(100 * million, '\t');
        const QByteArray name = QByteArray(100 * million, 'A') + "\n";
        const QByteArray emptyLines(10 * million, '\n');

        const auto loading = [](const char *title, const QByteArray &bytes, const QByteArray &output, int factor) {
            QTest::newRow(title) << bytes << QByteArray("-load odd\n") << "Loading data ... please wait.\n" + output
                                 << factor;
        };
        loading("a name of 100 MB", name, "1 lines.\nData loaded : 1 nodes and 0 links.\n", 5);
        // A link is two bytes in this file and two pointers in the database, and a number on the way.
        loading("50 million links in a line", "A" + QByteArray("\t0").repeated(50 * million) + "\n",
                "1 lines.\nData loaded : 1 nodes and 50000000 links.\n", 16);
        loading("100 MB without a line end", tabs, "1 lines.\nData loaded : 0 nodes and 0 links.\n", 3);
        loading("10 million empty lines", emptyLines, "10000000 lines.\nData loaded : 0 nodes and 0 links.\n", 1);
        loading("an index beyond 32 bits", "A\nB\t4294967296\nC\t99999999999999999999\n",
                "3 lines.\nData loaded : 3 nodes and 2 links.\n", 1);
        loading("the largest index", "A\nB\t2147483647\n", "2 lines.\nERROR in database format.\n", 1);
        loading("the smallest index", "A\nB\t-2147483648\n", "2 lines.\nERROR in database format.\n", 1);

        const auto list = [](const char *title, const QByteArray &bytes, const QByteArray &output, int factor) {
            QTest::newRow(title) << bytes << QByteArray("-list-from-file x odd\n") << output + "List added : x\n"
                                 << factor;
        };
        list("a list of a name of 100 MB", name, "List added : x [ 1 element(s)]\n", 4);
        list("a list of 100 MB without a line end", tabs, "List added : x [ 1 element(s)]\n", 4);
        list("a list of 10 million empty lines", emptyLines, "Empty list, not added.\n", 1);

        const auto invariant = [](const char *title, const QByteArray &bytes, const QByteArray &output, int factor) {
            QTest::newRow(title) << bytes << QByteArray("-load one\n-load-i1 odd\n")
                                 << "Loading data ... please wait.\n1 lines.\nData loaded : 1 nodes and 0 links.\n" +
                                        output
                                 << factor;
        };
        invariant("an invariant of 100 MB", "GRAPH\tINV\nA\t" + name, "Read odd\n", 6);
        invariant("a first line of 100 MB", name + "A\t1\n", "Read odd\n", 2);
        invariant("an invariant file of 10 million empty lines", emptyLines,
                  "premature end or wrong format of file.\nLoad failed\n", 1);
    }

    void oddFilesTakeMemoryInProportion()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, output);
        QFETCH(int, factor);
        folder->write("one", "A\n");
        folder->write("odd", bytes);
        const qint64 program = memoryOf("-list-from-file x missing\n", "Unable to open file :missing\n");
        const qint64 memory = memoryOf(command, output);
        QVERIFY(program > 0);
        QVERIFY(memory > 0);
        const qint64 allowed = program + memoryKept + memoryOverhead * factor * bytes.size();
        QVERIFY2(memory < allowed, QByteArray::number(memory - program).constData());
    }

    void aNameOfEveryByte_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("saved");
        QByteArray ascii;
        QByteArray latin1;
        QByteArray utf8;
        for (int byte = 1; byte < 256; ++byte) {
            if (byte != '\t' && byte != '\n' && byte != '\r') {
                (byte < 128 ? ascii : latin1) += char(byte);
                utf8 += QString(QChar(byte)).toUtf8();
            }
        }
        // Read as UTF-8, written as Latin-1: what is not the one or not in the other becomes a question mark.
        QTest::newRow("every byte") << ascii + latin1 << ascii + QByteArray(128, '?');
        QTest::newRow("every character of Latin-1") << utf8 << ascii + latin1;
        QTest::newRow("a character beyond") << QString(QChar(0x263a)).toUtf8() << QByteArray("?");
        QTest::newRow("zero in the middle")
            << ascii + QByteArray(1, '\0') + "end" << ascii + QByteArray(1, '\0') + "end";
    }

    void aNameOfEveryByte()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, saved);
        folder->write("names.tav", name + "\nB\t0\n");
        folder->write("names.g6", name + "\nB\n");
        const ToolResult result = runScript("load names.tav\nsave-graphs graphs.g6\n"
                                            "list-from-file list names.g6\nsave-list list list.g6\n",
                                            folder->path());
        QCOMPARE(result.status, 0);
        QVERIFY(result.output.contains("Data loaded : 2 nodes and 1 links.\n"));
        QVERIFY(result.output.contains("List added : list [ 2 element(s)]\n"));
        QCOMPARE(contents(folder->path("graphs.g6")), saved + "\nB\n");
        QCOMPARE(contents(folder->path("list.g6")), saved + "\nB");
    }
};

qint64 TestFaults::memoryOf(const QByteArray &script, const QByteArray &output) const
{
    QProcess process;
    process.setWorkingDirectory(folder->path());
    process.start(QStringLiteral(TAVOLINE_TAV), {QStringLiteral("run")});
    process.write(script); // its lines begin with "-": the program stays when one fails
    QByteArray said;
    while (said.size() < output.size() && process.waitForReadyRead(patience)) {
        said += process.readAllStandardOutput();
    }
    const qint64 memory = highestMemory(process.processId());
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(patience) && process.exitCode() == 0;
    if (said != output) {
        qWarning("%s", said.right(1000).constData());
    }
    return ended && said == output ? memory : -1;
}

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
