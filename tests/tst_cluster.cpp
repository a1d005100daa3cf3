// The scripts of examples/cluster, on this machine: parts that are made side by side, killed and made anew.

#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <csignal>
#include <random>
#include <vector>

namespace
{
/// Runs a program until it ends or is killed with all its children: so many milliseconds after it started or, unless
/// @p sign is empty, after the file @p sign is there.
void runAndKill(const QString &program, const QStringList &arguments, const QString &sign, int milliseconds)
{
    QProcess process;
    process.start(QStringLiteral("setsid"), QStringList{program} + arguments);
    const auto isRunning = [&] { return process.state() != QProcess::NotRunning; };
    while (!sign.isEmpty() && !QFileInfo::exists(sign) && isRunning()) {
        process.waitForFinished(1);
    }
    if (isRunning() && !process.waitForFinished(milliseconds)) {
        ::kill(-pid_t(process.processId()), SIGKILL);
        process.waitForFinished(patience);
    }
}
} // namespace

class TestCluster : public QObject
{
    Q_OBJECT

private:
    TestFolder folder;

    ToolResult runHere(const char *script, const QStringList &arguments = {}) const
    {
        return runProgram(folder.path(script), arguments);
    }

private slots:
    /// The connected graphs on seven vertices in five parts.
    void initTestCase()
    {
        const QString programs = QFileInfo(QStringLiteral(TAVOLINE_TAV)).path();
        qputenv("PATH", QFile::encodeName(programs) + ':' + qgetenv("PATH"));
        for (const char *script : {"prepare", "part", "collect"}) {
            QVERIFY(QFile::copy(example("cluster/") + latin1(script), folder.path(script)));
        }
        const ToolResult result = runHere("prepare", words({"7", "5"}));
        QCOMPARE(result.errors,
                 QByteArray("143 graphs and 388 links; 0 isomorphic repetitions dropped.\n143 graphs.\n"));
        QCOMPARE(result.status, 0);
    }

    void init()
    {
        QVERIFY(QDir(folder.path("parts")).removeRecursively() && QDir(folder.path()).mkdir(latin1("parts")));
    }

    void theAnswerOfTheWhole()
    {
        for (const char *part : {"3", "1", "4", "0"}) {
            QCOMPARE(runHere("part", words({part})).status, 0);
        }
        const ToolResult early = runHere("collect");
        QCOMPARE(early.errors, QByteArray("Missing parts: 2\n"));
        QCOMPARE(early.status, 1);
        QCOMPARE(runHere("part", words({"2"})).status, 0);
        QCOMPARE(filesIn(folder.path("parts")), words({"0", "1", "2", "3", "4"}));
        QCOMPARE(filesIn(folder.path("parts/2")), words({"found.g6", "part.tav", "part.txt"}));

        QByteArray database = contents(folder.path("base.tav"));
        for (int part = 0; part < 5; ++part) {
            database += contents(folder.path(QStringLiteral("parts/%1/part.tav").arg(part)));
        }
        QCOMPARE(database.count('\n'), 996);
        const QByteArray script = "load " + QFile::encodeName(folder.write("whole.tav", database)) +
                                  "\ncompute-i1 average_distance\nmin-sub\nlist-le smaller\nlist-ge larger\n"
                                  "difference found smaller larger\nshow found\n";
        QList<QByteArray> expected = runTav(words({"run", "-q"}), script).output.split('\n');
        std::sort(expected.begin(), expected.end());
        expected.removeFirst(); // what is behind the last line
        QVERIFY(!expected.isEmpty());
        QCOMPARE(runHere("collect").output, expected.join('\n') + '\n');
    }

    void aPartThatIsThereIsLeftAlone()
    {
        QVERIFY(QDir(folder.path()).mkpath(latin1("parts/2")));
        const ToolResult result = runHere("part", words({"2"}));
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        QCOMPARE(filesIn(folder.path("parts/2")), QStringList());
    }

    /// At whatever moment it is killed, the part is not there or is complete, and the next attempt makes it.
    void killedAndStartedAgain()
    {
        QCOMPARE(runHere("part", words({"1"})).status, 0);
        const QByteArray expected = contents(folder.path("parts/1/part.tav"));
        const QByteArray found = contents(folder.path("parts/1/found.g6"));
        std::mt19937 random(1);
        int unfinished = 0;
        for (int repetition = 0; repetition < 10; ++repetition) {
            init();
            // Half of the kills come soon after the work has begun: some of them must meet it.
            const QString sign = repetition % 2 == 0 ? folder.path("parts/1.unfinished") : QString();
            runAndKill(folder.path("part"), words({"1"}), sign, int(random() % (sign.isEmpty() ? 400 : 50)));
            const QStringList left = filesIn(folder.path("parts"));
            unfinished += left == words({"1.unfinished"}) ? 1 : 0;
            if (!left.contains(latin1("1"))) {
                QVERIFY(left.size() <= 1 && left.join(QString()).startsWith(latin1("1.unfinished")) == !left.isEmpty());
                QCOMPARE(runHere("part", words({"1"})).status, 0);
            }
            QCOMPARE(filesIn(folder.path("parts")), words({"1"}));
            QCOMPARE(contents(folder.path("parts/1/part.tav")), expected);
            QCOMPARE(contents(folder.path("parts/1/found.g6")), found);
        }
        QVERIFY(unfinished > 0);
    }

    /// What fails leaves nothing, and its status says so.
    void aFailureLeavesNothing()
    {
        const QByteArray index = contents(folder.path("base.tav.index"));
        folder.write("base.tav.index", index.left(700));
        const ToolResult result = runHere("part", words({"0"}));
        folder.write("base.tav.index", index);
        QCOMPARE(result.errors, QByteArray("tav: base.tav.index: damaged; 'tav index' makes it anew\n"));
        QCOMPARE(result.status, 1);
        QCOMPARE(filesIn(folder.path("parts")), QStringList());
    }

    /// A generator that ends early must not look like one that has come to its end.
    void aGeneratorThatFails()
    {
        folder.write("nauty-geng", "#!/bin/sh\necho F?AFg\nkill -9 $$\n");
        QVERIFY(QFile::setPermissions(folder.path("nauty-geng"), QFile::ReadOwner | QFile::ExeOwner));
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(folder.path()) + ':' + path);
        const int ofPart = runHere("part", words({"0"})).status;
        const QByteArray base = contents(folder.path("base.tav"));
        const int ofBase = runHere("prepare", words({"6", "2"})).status;
        qputenv("PATH", path);
        QVERIFY(ofPart > 0);
        QCOMPARE(filesIn(folder.path("parts")), QStringList());
        QVERIFY(ofBase > 0);
        QCOMPARE(contents(folder.path("base.tav")), base);
        QVERIFY(!QFile::exists(folder.path("base.unfinished")));
        // Until there is another base no part is made: there is no telling of which division.
        QVERIFY(runHere("part", words({"0"})).status > 0);
        QCOMPARE(filesIn(folder.path("parts")), QStringList());
        QCOMPARE(runHere("prepare", words({"7", "5"})).status, 0);
    }

    void numbersThatAreNone()
    {
        for (const char *number : {"5", "00", "01", "-1", "1/2", "x", "", "4294967296"}) {
            const ToolResult result = runHere("part", {latin1(number)});
            QCOMPARE(result.errors, QByteArray("Usage: part NUMBER, which is from 0 to 4\n"));
            QCOMPARE(result.status, 2);
        }
        QCOMPARE(filesIn(folder.path("parts")), QStringList());
        const std::vector<QStringList> divisions = {words({"1", "5"}), words({"33", "5"}),     words({"x", "5"}),
                                                    words({"7", "0"}), words({"7", "5", "1"}), words({"7"})};
        for (const QStringList &division : divisions) {
            const ToolResult result = runHere("prepare", division);
            QCOMPARE(result.errors, QByteArray("Usage: prepare ORDER PARTS, with an order from 2 to 32\n"));
            QCOMPARE(result.status, 2);
        }
    }

    /// As after an attempt that was killed when another one had made the part.
    void whatIsUnfinishedIsNotCollected()
    {
        for (const char *part : {"0", "1", "2", "3", "4"}) {
            QCOMPARE(runHere("part", words({part})).status, 0);
        }
        const QByteArray found = runHere("collect").output;
        QVERIFY(QDir(folder.path()).mkpath(latin1("parts/2.unfinished")));
        folder.write("parts/2.unfinished/found.g6", "HALF");
        QCOMPARE(runHere("collect").output, found);
    }

    void attemptsOfOnePartWaitForEachOther()
    {
        std::array<QProcess, 3> attempts;
        for (QProcess &attempt : attempts) {
            attempt.start(folder.path("part"), words({"1"}));
        }
        for (QProcess &attempt : attempts) {
            QVERIFY(attempt.waitForFinished(patience));
            QCOMPARE(attempt.exitCode(), 0);
        }
        QCOMPARE(filesIn(folder.path("parts")), words({"1"}));
        QCOMPARE(filesIn(folder.path("parts/1")), words({"found.g6", "part.tav", "part.txt"}));
    }

    /// Parts of an earlier division would be taken for those of the new one.
    void partsOfAnotherDivision()
    {
        QCOMPARE(runHere("part", words({"1"})).status, 0);
        const QByteArray base = contents(folder.path("base.tav"));
        const ToolResult result = runHere("prepare", words({"6", "2"}));
        QCOMPARE(result.errors, QByteArray("Remove the parts of the earlier division first.\n"));
        QCOMPARE(result.status, 1);
        QCOMPARE(filesIn(folder.path("parts")), words({"1"}));
        QCOMPARE(contents(folder.path("base.tav")), base);
    }

    void theScriptsAreWellFormed()
    {
        for (const char *script : {"prepare", "part", "collect", "array.sbatch"}) {
            const ToolResult result = runProgram(latin1("bash"), {latin1("-n"), example("cluster/") + latin1(script)});
            QCOMPARE(result.errors, QByteArray());
            QCOMPARE(result.status, 0);
        }
    }

    /// As Slurm starts it: from a copy elsewhere, with the folder and the number in variables.
    void theTaskOfAnArray()
    {
        const ToolResult result = runProgram(
            latin1("env"), {QStringLiteral("SLURM_SUBMIT_DIR=") + folder.path(), latin1("SLURM_ARRAY_TASK_ID=3"),
                            latin1("SLURM_CPUS_PER_TASK=2"), latin1("bash"), example("cluster/array.sbatch")});
        QCOMPARE(result.status, 0);
        QCOMPARE(filesIn(folder.path("parts")), words({"3"}));
    }

    void smallOrdersHaveEmptyParts()
    {
        QCOMPARE(runHere("prepare", words({"4", "9"})).status, 0);
        for (int part = 0; part < 9; ++part) {
            QCOMPARE(runHere("part", {QString::number(part)}).status, 0);
        }
        QCOMPARE(runHere("collect").status, 0);
        QByteArray graphs;
        for (int part = 0; part < 9; ++part) {
            graphs += contents(folder.path(QStringLiteral("parts/%1/part.tav").arg(part)));
        }
        QCOMPARE(graphs.count('\n'), 6);
    }

    /// The only connected graph on two vertices has no smaller average distance below it, and none else is found.
    void anOrderWithoutAnAnswer()
    {
        QCOMPARE(runHere("prepare", words({"2", "1"})).status, 0);
        QCOMPARE(runHere("part", words({"0"})).status, 0);
        const ToolResult result = runHere("collect");
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 0);
    }
};

QTEST_GUILESS_MAIN(TestCluster)
#include "tst_cluster.moc"
