// Questions asked of a database in parts: all parts loaded behind the base are the database, and the questions that
// look down are answered part by part.

#include "support/literals.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <algorithm>
#include <random>

namespace
{
QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    lines.removeLast();
    return lines;
}

QSet<QByteArray> setOf(const QByteArray &text)
{
    const QList<QByteArray> lines = linesOf(text);
    return {lines.begin(), lines.end()};
}

const QList<QByteArray> aboveCommands = {
    "avg-super",        "avg-all",          "min-super",        "min-all",          "max-super",        "max-all",
    "list-eq-supers l", "list-ge-supers l", "list-le-supers l", "list-gt-supers l", "list-lt-supers l", "supers l a",
};

/// Whole questions that look at graphs below only, each of which makes the list "found".
const QList<QByteArray> belowQuestions = {
    "compute-i1 size - order\ncompute-i2 diameter\nlist-ge found\n",
    "compute-i1 size - order\ncompute-i2 diameter\nlist-le found\n",
    "compute-i1 average_distance\navg-sub\nlist-ge found\n",
    "compute-i1 average_distance\nmin-sub\nlist-le found\n",
    "compute-i1 girth\nmax-sub\nexchange\nlist-ge found\n",
    "compute-i1 triangles\ni2-gets-i1\nlist-eq-subs found\n",
    "compute-i1 average_distance\ni2-gets-i1\nlist-ge-subs found\n",
    "compute-i1 spectral_radius\ni2-gets-i1\nlist-le-subs found\n",
    "compute-i1 maximum_degree\ncompute-i2 size\nlist-gt-subs found\n",
    "compute-i1 order - size\ncompute-i2 2 - radius\nlist-lt-subs found\n",
    "list-from-graphs some some.g6\nsubs found some\n",
    "compute-i1 size\ncompute-i2 7\nlist-ge a\nlist-le b\nintersection found a b\n",
    "compute-i1 size\ncompute-i2 7\nlist-ge a\nlist-le b\ndifference found a b\n",
    "compute-i1 size\ncompute-i2 12\nlist-ge a\nsubs b a\nlist-from-file c some.g6\nunion d b c\nunion found d a\n",
    "compute-i1 size\ncompute-i2 12\nlist-ge a\nlist-le b\nsubs c a\nintersection found b c\n",
    "compute-i1 size\ncompute-i2 12\nlist-ge a\nlist-le b\nsubs c a\ndifference found c b\n",
    "list-from-file a some.g6\nsubs b a\nintersection found a b\n",
    "list-from-file a some.g6\ncompute-i1 size\ncompute-i2 12\nlist-le b\nintersection found a b\n",
    "list-from-file a some.g6\ncompute-i1 size\ncompute-i2 12\nlist-le b\ndifference found b a\n",
    QByteArray("list-from-file a some.g6\ncompute-i1 size\ncompute-i2 12\nlist-le b\nlist-ge c\n"
               "intersection d a b\ndifference found d c\n"),
    "list-from-file a some.g6\nlist-from-file b one.g6\ndifference found a b\n",
    QByteArray("list-from-file a some.g6\nlist-from-file b one.g6\nlist-from-file c another.g6\nunion d b c\n"
               "intersection e d a\ndifference f a e\ndifference found a f\n"),
    QByteArray("list-from-file a some.g6\ncompute-i1 size\ncompute-i2 7\nlist-ge b\nlist-from-file c one.g6\n"
               "union d a b\ndifference found d c\n"),
    "list-from-file a some.g6\nsubs b a\nlist-from-file c one.g6\ndifference found b c\n",
    QByteArray("list-from-file a some.g6\nremove-list a\ncompute-i1 size\ncompute-i2 12\nlist-le a\nlist-ge b\n"
               "difference found a b\n"),
};

struct WrongQuestion {
    QByteArray question;
    QByteArray command; ///< that is refused
    QByteArray reason;
};

/// Questions whose answers of the parts are not together the answer of the whole.
const QList<WrongQuestion> wrongQuestions = {
    {"list-from-graphs a one.g6\nlist-from-graphs b another.g6\nsubs c a\nsubs d b\n", "intersection found c d",
     "both lists may lack graphs below those of other parts"},
    {"compute-i1 size\ncompute-i2 16\nlist-ge a\nsubs c a\ncompute-i2 5\nlist-le b\n", "difference found b c",
     "'c' may lack graphs below those of other parts"},
    {"compute-i1 size\ncompute-i2 16\nlist-ge a\nsubs c a\ncompute-i2 5\nlist-le b\nintersection e b c\nunion d e a\n"
     "difference f d a\n",
     "difference found b f", "'f' may lack graphs below those of other parts"},
    {"list-from-file a some.g6\ncompute-i1 size\ncompute-i2 12\nlist-ge b\n", "difference found a b",
     "'a' may have graphs of other parts, which 'b' lacks"},
    {"list-from-file a some.g6\ncompute-i1 size\ncompute-i2 12\nlist-ge b\nunion c a b\nintersection d a c\n",
     "difference found d b", "'d' may have graphs of other parts, which 'b' lacks"},
};
} // namespace

class TestTavRunParts : public QObject
{
    Q_OBJECT

private:
    TestFolder folder;

    ToolResult runHere(const QStringList &arguments, const QByteArray &input) const
    {
        return runTav(arguments, input, folder.path());
    }

    ToolResult runScript(const QByteArray &script, const QStringList &options = {}) const
    {
        return runHere(QStringList{QStringLiteral("run")} + options, script);
    }

private slots:
    /// The connected graphs on up to seven vertices: a base, three parts and the whole.
    void initTestCase()
    {
        QByteArray base;
        QByteArray top;
        for (const QByteArray &line : linesOf(contents(example("connected-8.tav")))) {
            if (line.at(0) < 63 + 7) {
                base += line + '\n';
            } else if (line.at(0) == 63 + 7) {
                top += line.split('\t').first() + '\n';
            }
        }
        folder.write("base.tav", base);
        QList<QByteArray> graphs = linesOf(top);
        QCOMPARE(graphs.size(), 853);
        std::shuffle(graphs.begin(), graphs.end(), std::mt19937(5));
        folder.write("some.g6", graphs.at(1) + '\n' + graphs.at(400) + "\nC~\n" + graphs.at(800) + '\n');
        folder.write("one.g6", graphs.at(1) + '\n');
        folder.write("another.g6", graphs.at(800) + '\n');
        QByteArray whole = base;
        for (int part = 0; part < 3; ++part) {
            const int begin = part * part * 100;
            QByteArray input;
            for (const QByteArray &graph : graphs.mid(begin, part < 2 ? 100 + 200 * part : -1)) {
                input += graph + '\n';
            }
            const QByteArray lines = runHere(words({"build", "--base", "base.tav"}), input).output;
            whole += lines;
            folder.write(QStringLiteral("part-%1.tav").arg(part), lines);
        }
        folder.write("whole.tav", whole);
        QCOMPARE(whole.count('\n'), 996);
    }

    void baseAndPartsAreOneDatabase()
    {
        const ToolResult result = runScript("load base.tav part-0.tav part-1.tav part-2.tav\nsave-graphs names\n");
        QCOMPARE(result.output, QByteArray("Loading data ... please wait.\n"
                                           "143 lines.\n"
                                           "100 lines.\n"
                                           "300 lines.\n"
                                           "453 lines.\n"
                                           "Data loaded : 996 nodes and 4159 links.\n"
                                           "Wrote names\n"));
        QCOMPARE(result.status, 0);
        const QByteArray names = contents(folder.path("names"));
        QCOMPARE(runScript("load whole.tav\nsave-graphs names\n").status, 0);
        QCOMPARE(contents(folder.path("names")), names);
    }

    void theAnswersOfTheWhole_data()
    {
        QTest::addColumn<QByteArray>("question");
        for (const QByteArray &question : belowQuestions) {
            QTest::newRow(question.constData()) << question;
        }
        for (const char *question :
             {"compute-i1 average_distance\navg-super\nlist-ge found\n", "compute-i1 size\nmax-all\nlist-ge found\n",
              "compute-i1 girth\ni2-gets-i1\nlist-le-supers found\n",
              "list-from-graphs some some.g6\nsubs under some\nsupers found under\n"}) {
            QTest::newRow(question) << QByteArray(question);
        }
    }

    void theAnswersOfTheWhole()
    {
        QFETCH(QByteArray, question);
        const QByteArray end = question + "show found\n";
        const ToolResult whole = runScript("load whole.tav\n" + end, words({"-q"}));
        QCOMPARE(whole.status, 0);
        QVERIFY(!whole.output.isEmpty());
        QCOMPARE(runScript("load base.tav part-0.tav part-1.tav part-2.tav\n" + end, words({"-q"})).output,
                 whole.output);
    }

    void aPartForItself_data()
    {
        QTest::addColumn<QByteArray>("question");
        for (const QByteArray &question : belowQuestions) {
            QTest::newRow(question.constData()) << question;
        }
    }

    /// What each part answers is together the answer of the whole.
    void aPartForItself()
    {
        QFETCH(QByteArray, question);
        QSet<QByteArray> found;
        for (const char *part : {"part-0.tav", "part-1.tav", "part-2.tav"}) {
            const QByteArray script = "load base.tav " + QByteArray(part) + '\n' + question + "-show found\n";
            const ToolResult result = runScript(script, words({"-q", "--part"}));
            QCOMPARE(result.status, 0);
            found += setOf(result.output);
        }
        QCOMPARE(found, setOf(runScript("load whole.tav\n" + question + "show found\n", words({"-q"})).output));
        QVERIFY(!found.isEmpty());
    }

    void whatLooksAboveIsRefused_data()
    {
        QTest::addColumn<QByteArray>("command");
        for (const QByteArray &command : aboveCommands) {
            QTest::newRow(command.constData()) << command;
        }
    }

    void whatLooksAboveIsRefused()
    {
        QFETCH(QByteArray, command);
        const QByteArray message = ":3: " + command.split(' ').first() +
                                   " is refused with --part: other parts have graphs above those at hand\n";
        const QByteArray script = "list-from-file a some.g6\n\n-" + command + "\nlists\n";
        folder.write("script", script);
        const ToolResult fromFile = runHere(words({"run", "--part", "script"}), {});
        QCOMPARE(fromFile.output, QByteArray());
        QCOMPARE(fromFile.errors, "tav: script" + message);
        QCOMPARE(fromFile.status, 1);
        const ToolResult fromInput = runScript(script, words({"--part", "-q"}));
        QCOMPARE(fromInput.output, QByteArray());
        QVERIFY2(fromInput.errors.endsWith("\ntav: standard input" + message), fromInput.errors.constData());
        QCOMPARE(fromInput.status, 1);
        QCOMPARE(runScript(script, words({"-q"})).output.left(4), QByteArray("a\t4\n"));
    }

    void whatListsCannotAnswer_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < wrongQuestions.size(); ++i) {
            QTest::newRow((wrongQuestions.at(i).question + wrongQuestions.at(i).command).constData()) << i;
        }
    }

    void whatListsCannotAnswer()
    {
        QFETCH(int, index);
        const WrongQuestion &wrong = wrongQuestions.at(index);
        const QByteArray script = wrong.question + wrong.command + "\n-show found\n";
        QSet<QByteArray> found;
        for (const char *part : {"part-0.tav", "part-1.tav", "part-2.tav"}) {
            found += setOf(runScript("load base.tav " + QByteArray(part) + '\n' + script, words({"-q"})).output);
        }
        QVERIFY(found != setOf(runScript("load whole.tav\n" + script, words({"-q"})).output));
        folder.write("script", script);
        const ToolResult result = runHere(words({"run", "--part", "script"}), {});
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors, "tav: script:" + QByteArray::number(wrong.question.count('\n') + 1) + ": " +
                                    wrong.command.split(' ').first() + " is refused with --part: " + wrong.reason +
                                    '\n');
        QCOMPARE(result.status, 1);
    }

    void whatAListIsMadeOf_data()
    {
        QTest::addColumn<QByteArray>("script");
        const char *const names = "list-from-file a some.g6\n";
        const char *const below = "list-ge b\nsubs a b\n";
        const auto row = [](const char *title, const QByteArray &script) { QTest::newRow(title) << script; };
        row("names in the first of two", QByteArray(names) + "list-ge b\nunion c a b\ndifference d c b\n");
        row("names in the second of two", QByteArray(names) + "list-ge b\nunion c b a\ndifference d c b\n");
        row("graphs below in the first of two", QByteArray(below) + "union c a b\ndifference d b c\n");
        row("graphs below in the second of two", QByteArray(below) + "union c b a\ndifference d b c\n");
        row("graphs below and others", QByteArray(below) + "intersection c a b\ndifference d b c\n");
        row("others and graphs below", QByteArray(below) + "intersection c b a\ndifference d b c\n");
        row("a name and graphs at hand", QByteArray(names) + "list-ge b\nunion c a b\ndifference d a c\n");
        row("graphs at hand and a name", QByteArray(names) + "list-ge b\nunion c b a\ndifference d a c\n");
        row("names among graphs at hand", QByteArray(names) + "list-ge b\nintersection c a b\ndifference d a c\n");
        row("graphs at hand among names", QByteArray(names) + "list-ge b\nintersection c b a\ndifference d a c\n");
        row("graphs at hand less names", QByteArray(names) + "list-ge b\ndifference c b a\ndifference d a c\n");
        row("names less names", QByteArray(names) + "difference b a a\nlist-ge c\ndifference d b c\n");
        row("graphs of a file", QByteArray(names) + "list-from-graphs b f\ndifference d a b\n");
        row("the name of a list that was removed",
            QByteArray(names) + "list-from-file b f\nremove-list b\nlist-ge b\ndifference d a b\n");
        // A command that may fail need not have made the list that it names.
        row("names in place of graphs at hand",
            QByteArray(names) + "list-ge b\n-list-from-file b f\ndifference d a b\n");
        row("a list that is there already", QByteArray(names) + "-list-ge a\nlist-ge b\ndifference d a b\n");
    }

    /// Only the last command is refused.
    void whatAListIsMadeOf()
    {
        QFETCH(QByteArray, script);
        folder.write("script", script);
        const ToolResult result = runHere(words({"run", "--part", "script"}), {});
        const QByteArray place = "tav: script:" + QByteArray::number(script.count('\n'));
        QVERIFY2(result.errors.startsWith(place + ": difference is refused with --part: '"), result.errors.constData());
        QCOMPARE(result.status, 1);
    }

    void aSecondLoadIsRefused_data()
    {
        QTest::addColumn<QByteArray>("script");
        const QByteArray first = "load base.tav part-0.tav\n";
        QTest::newRow("at once") << first + "load base.tav part-1.tav\n";
        QTest::newRow("the same part") << first + first;
        QTest::newRow("behind an empty database") << first + "clear\nload base.tav part-1.tav\n";
        QTest::newRow("in place of one that may fail") << "-" + first + "load base.tav part-1.tav\n";
        QTest::newRow("one that may fail") << first + "-load base.tav part-1.tav\n";
        QTest::newRow("with lists")
            << first + "compute-i1 size\ncompute-i2 9\nlist-ge a\nload base.tav part-1.tav\ncompute-i1 size\n"
                       "compute-i2 9\nlist-ge b\ndifference d a b\n";
    }

    void aSecondLoadIsRefused()
    {
        QFETCH(QByteArray, script);
        const int second = script.left(script.lastIndexOf("load base")).count('\n') + 1;
        folder.write("script", script);
        const ToolResult result = runHere(words({"run", "--part", "script"}), {});
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.errors,
                 "tav: script:" + QByteArray::number(second) +
                     ": load is refused with --part: lists may be of the parts that were loaded before\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(runHere(words({"run", "-q", "script"}), {}).status, 0);
    }

    /// What the help tells of graphs above is refused, and nothing else.
    void whatTheHelpTellsOfGraphsAbove()
    {
        const QByteArray help = runHere(words({"run", "--help"}), {}).output;
        const QByteArray known = help.mid(help.indexOf("Commands of a script"));
        for (const QByteArray &command : aboveCommands) {
            QVERIFY2(known.contains("\n  " + command.split(' ').first() + ' '), command.constData());
        }
        int above = 0;
        for (const QByteArray &line : linesOf(known)) {
            above += line.contains("super") || line.contains("-all ") || line.contains("all above") ? 1 : 0;
        }
        QCOMPARE(above, aboveCommands.size());
    }

    void aFileThatFailsIsNamed_data()
    {
        QTest::addColumn<QByteArray>("files");
        QTest::addColumn<QByteArray>("console");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("the base") << QByteArray("missing part-0.tav") << QByteArray("")
                                  << QByteArray("missing: No such file or directory");
        QTest::newRow("a part") << QByteArray("base.tav part-0.tav missing") << QByteArray("143 lines.\n100 lines.\n")
                                << QByteArray("missing: No such file or directory");
        QTest::newRow("a part of a larger base")
            << QByteArray("base.tav part-0.tav higher.tav part-1.tav")
            << QByteArray("143 lines.\n100 lines.\n1 lines.\nERROR in database format.\n")
            << QByteArray("higher.tav: Error in database format");
        QTest::newRow("one alone") << QByteArray("missing") << QByteArray("")
                                   << QByteArray("No such file or directory");
        QTest::newRow("one alone of a bad format")
            << QByteArray("higher.tav") << QByteArray("1 lines.\nERROR in database format.\n") << QByteArray();
    }

    void aFileThatFailsIsNamed()
    {
        QFETCH(QByteArray, files);
        QFETCH(QByteArray, console);
        QFETCH(QByteArray, message);
        folder.write("higher.tav", "G~~~~{\t300\n");
        const ToolResult result = runScript("-load " + files + "\nsave-graphs out\n");
        QCOMPARE(result.output, "Loading data ... please wait.\n" + console + "No data to save.\n");
        const QByteArray reason = message.isEmpty() ? QByteArray() : ": " + message;
        QVERIFY2(result.errors.contains("tav: standard input:1: load failed" + reason + " (ignored)\n"),
                 result.errors.constData());
        QCOMPARE(result.status, 1);
    }
};

QTEST_GUILESS_MAIN(TestTavRunParts)
#include "tst_tav_run_parts.moc"
