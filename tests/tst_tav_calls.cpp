// Every call of the operating system that tav makes on its files fails once: the old file is whole then, or the new
// one complete, and status and message say which.

#include "support/callfailures.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <utility>

namespace
{
const QByteArray oldText = "what was there before";

/// What the companion program left.
struct Ending {
    bool isInTime = false;
    int status = -1; // after a crash
    QByteArray errors;
    CallCounts counts;
};

/// A command of the companion program in a folder of its own, where its targets are old files.
class Command
{
public:
    Command(QStringList commandArguments, QStringList savedFiles, bool isNamed)
        : arguments(std::move(commandArguments))
        , targets(std::move(savedFiles))
    {
        QDir(parent.path()).mkdir(QStringLiteral("folder"));
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(TAVOLINE_FAILING_CALLS));
        environment.insert(QStringLiteral("ASAN_OPTIONS"), environment.value(QStringLiteral("ASAN_OPTIONS")) +
                                                               QStringLiteral(":verify_asan_link_order=0"));
        environment.insert(QStringLiteral("FAILING_CALLS_FOLDER"), folder());
        environment.insert(QStringLiteral("FAILING_CALLS_COUNTS"), countsFile());
        if (isNamed) {
            environment.insert(QStringLiteral("FAILING_CALLS_NAMED"), QStringLiteral("1"));
        }
        write(path(QStringLiteral("graphs")), "Bw\nA_\n@\nCF\n");
        write(path(QStringLiteral("database")), "@\nA_\t0\nBW\t1\nBw\t1\n");
        write(path(QStringLiteral("invariant")), "GRAPH\tINV1\n@\t0\nA_\t1\nBW\t0.5\nBw\tNA\n");
        write(path(QStringLiteral("names")), "A_\nBw\n");
        write(path(QStringLiteral("above")), "CF\nC~\n");
        write(path(QStringLiteral("indexed")), contents(path(QStringLiteral("database"))));
        runTav({QStringLiteral("index"), QStringLiteral("indexed")}, {}, folder());
        runTav(words({"export", "-o", "exported", "--values", "invariant", "database"}), {}, folder());
        write(path(QStringLiteral("script")), "load database\n"
                                              "list-from-file list names\n"
                                              "load-i1 invariant\n"
                                              "save-list list target1\n"
                                              "save-graphs target2\n"
                                              "save-i1 target3\n");
        write(path(QStringLiteral("questions")), "load database\nload-i1 invariant\nlist-ge list\n");
        restoreTargets();
        files = filesIn(folder());
    }

    Ending run(const QByteArray &kind = {}, int occurrence = 0, int error = 0)
    {
        restoreTargets();
        QFile::remove(countsFile());
        environment.insert(QStringLiteral("FAILING_CALLS_KIND"), QString::fromLatin1(kind));
        environment.insert(QStringLiteral("FAILING_CALLS_OCCURRENCE"), QString::number(occurrence));
        environment.insert(QStringLiteral("FAILING_CALLS_ERROR"), QString::number(error));
        QProcess process;
        process.setWorkingDirectory(folder());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TAVOLINE_TAV), arguments);
        Ending ending;
        ending.isInTime = process.waitForFinished(patience);
        ending.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        ending.errors = process.readAllStandardError();
        QFile file(countsFile());
        const bool hasEnded = file.open(QIODevice::ReadOnly); // and has not crashed
        const QList<QByteArray> lines = hasEnded ? file.readAll().trimmed().split('\n') : QList<QByteArray>();
        for (const QByteArray &line : lines) {
            ending.counts[line.split(' ').first()] = line.split(' ').last().toInt();
        }
        return ending;
    }

    /// What the targets hold.
    QList<QByteArray> saved() const
    {
        QList<QByteArray> texts;
        for (const QString &target : targets) {
            texts.append(contents(path(target)));
        }
        return texts;
    }

    /// The files of the tables in the folder "tables", which is removed; nothing when it is not there.
    QMap<QString, QByteArray> takeTables() const
    {
        QMap<QString, QByteArray> texts;
        QDir tables(path(QStringLiteral("tables")));
        for (const char *name : {"graphs/part-0001.tsv", "graphs/part-0002.tsv", "values-1/part-0001.tsv",
                                 "values-1/part-0002.tsv", "manifest.json"}) {
            const QString file = tables.filePath(QLatin1String(name));
            if (QFile::exists(file)) {
                texts[QLatin1String(name)] = contents(file);
            }
        }
        tables.removeRecursively();
        return texts;
    }

    bool isNothingLeftBehind() const { return filesIn(folder()) == files; }

private:
    QString folder() const { return parent.filePath(QStringLiteral("folder")); }
    QString path(const QString &name) const { return folder() + QLatin1Char('/') + name; }
    QString countsFile() const { return parent.filePath(QStringLiteral("counts")); }
    void restoreTargets() const
    {
        for (const QString &target : targets) {
            write(path(target), oldText);
        }
    }

    const QTemporaryDir parent;
    const QStringList arguments;
    const QStringList targets;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QStringList files;
};

/// Of how many targets the program says by its last line that they were saved before it failed.
int savesBefore(const QByteArray &lastLine, int failedLineOfFirstSave)
{
    const QRegularExpression failure(QStringLiteral("^tav: script:(\\d+): save-\\S+ failed"));
    const QRegularExpressionMatch match = failure.match(QString::fromUtf8(lastLine));
    return match.hasMatch() ? match.captured(1).toInt() - failedLineOfFirstSave : 0;
}
} // namespace

class TestTavCalls : public QObject
{
    Q_OBJECT

private slots:
    void commands_data();
    void commands();
    void tables();
};

void TestTavCalls::commands_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("targets");
    QTest::addColumn<bool>("isNamed");
    for (const bool isNamed : {false, true}) {
        const QByteArray kind = isNamed ? ", named files" : "";
        const auto add = [&](const char *name, const char *arguments, const char *targets) {
            QTest::newRow((name + kind).constData())
                << QString::fromLatin1(arguments) << QString::fromLatin1(targets) << isNamed;
        };
        add("build", "build -o target graphs", "target");
        add("index", "index -o target database", "target");
        add("a part", "build --base database -o target above", "target");
        add("a part of an indexed base", "build --base indexed -o target above", "target");
        add("invariant", "invariant size -o target database", "target");
        add("names", "names -o target database names", "target");
        add("run", "run script", "target1 target2 target3");
        add("sql", "sql --dialect duckdb --tables exported -o target questions", "target");
    }
}

void TestTavCalls::commands()
{
    QFETCH(QString, arguments);
    QFETCH(QString, targets);
    QFETCH(bool, isNamed);
    const int targetCount = targets.split(QLatin1Char(' ')).size();
    Command command(arguments.split(QLatin1Char(' ')), targets.split(QLatin1Char(' ')), isNamed);
    const Ending usual = command.run();
    const QList<QByteArray> complete = command.saved();
    QCOMPARE(usual.status, 0);
    QVERIFY(!complete.contains(oldText));
    QVERIFY(command.isNothingLeftBehind());

    CallCounts failures;
    for (auto kind = usual.counts.begin(); kind != usual.counts.end(); ++kind) {
        for (int occurrence = 1; occurrence <= kind.value(); ++occurrence) {
            for (const int error : callErrors) {
                const QByteArray what = description(kind.key(), occurrence, error);
                const Ending ending = command.run(kind.key(), occurrence, error);
                const QByteArray said = what + "; the program says: " + ending.errors;
                QVERIFY2(ending.isInTime, said.constData());
                QVERIFY2(ending.counts[kind.key()] >= occurrence, said.constData());
                QVERIFY2(command.isNothingLeftBehind(), said.constData());
                if (ending.status == 0) {
                    QVERIFY2(command.saved() == complete, said.constData());
                    QVERIFY2(ending.errors == usual.errors, said.constData());
                    QVERIFY2(error == EINTR || !isIndispensable(kind.key()), said.constData());
                    continue;
                }
                ++failures[kind.key()];
                QVERIFY2(error != EINTR || !survivesSignals(kind.key()), said.constData());
                QVERIFY2(ending.status == 1, said.constData());
                QCOMPARE(ending.errors.count("tav: "), 1);
                const QByteArray lastLine = ending.errors.trimmed().split('\n').last();
                QList<QByteArray> expected = complete.mid(0, savesBefore(lastLine, 4));
                while (expected.size() < targetCount) {
                    expected.append(oldText);
                }
                QVERIFY2(command.saved() == expected, said.constData());
                QVERIFY2(lastLine.startsWith("tav: ") && lastLine.endsWith(reasonOf(error)), said.constData());
            }
        }
    }
    const QList<QByteArray> kinds = importantKinds(isNamed) << "read";
    for (const QByteArray &kind : kinds) {
        QVERIFY2(failures[kind] > 0, kind.constData());
    }
}

/// A folder is there with all its files, or not at all.
void TestTavCalls::tables()
{
    Command command(words({"export", "-o", "tables", "--parts", "2", "--values", "invariant", "database"}), {}, false);
    const Ending usual = command.run();
    QCOMPARE(usual.status, 0);
    const QMap<QString, QByteArray> complete = command.takeTables();
    QCOMPARE(complete.size(), 5);

    CallCounts failures;
    for (auto kind = usual.counts.begin(); kind != usual.counts.end(); ++kind) {
        for (int occurrence = 1; occurrence <= kind.value(); ++occurrence) {
            for (const int error : callErrors) {
                const QByteArray what = description(kind.key(), occurrence, error);
                const Ending ending = command.run(kind.key(), occurrence, error);
                const QByteArray said = what + "; the program says: " + ending.errors;
                QVERIFY2(ending.isInTime, said.constData());
                if (ending.status == 0) {
                    QVERIFY2(command.takeTables() == complete, said.constData());
                    QVERIFY2(error == EINTR || !isIndispensable(kind.key()), said.constData());
                } else {
                    ++failures[kind.key()];
                    QVERIFY2(ending.status == 1, said.constData());
                    QVERIFY2(error != EINTR || !survivesSignals(kind.key()), said.constData());
                    QVERIFY2(ending.errors.startsWith("tav: ") && ending.errors.endsWith(reasonOf(error) + '\n'),
                             said.constData());
                    QCOMPARE(ending.errors.count('\n'), 1);
                }
                QVERIFY2(command.isNothingLeftBehind(), said.constData());
            }
        }
    }
    for (const char *kind : {"open", "read", "write", "fsync", "close", "rename"}) {
        QVERIFY2(failures[kind] > 0, kind);
    }
}

QTEST_GUILESS_MAIN(TestTavCalls)
#include "tst_tav_calls.moc"
