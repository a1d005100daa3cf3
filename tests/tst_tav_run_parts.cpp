// Questions asked of a database in parts: all parts loaded behind the base are the database, and the questions that
// look down are answered part by part.

#include "support/literals.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QRegularExpression>
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

using Random = std::mt19937;

QByteArray oneOf(const QList<QByteArray> &texts, Random &random)
{
    return texts.at(int(random() % unsigned(texts.size())));
}

const QList<QByteArray> invariantCommands = {
    "compute-i1 size",
    "compute-i1 triangles",
    "compute-i1 average_distance",
    "compute-i2 3",
    "compute-i2 8",
    "compute-i2 12",
    "compute-i2 diameter",
    "compute-i2 order",
    "avg-sub",
    "min-sub",
    "max-sub",
    "i1-gets-i2",
    "i2-gets-i1",
    "exchange",
};

const QList<QByteArray> comparisons = {
    "list-ge", "list-le", "list-eq-subs", "list-ge-subs", "list-le-subs", "list-gt-subs", "list-lt-subs",
};

/// A command that makes the list @p name, of one or two of @p others, of a file or of values.
QByteArray randomListCommand(const QByteArray &name, const QList<QByteArray> &others, Random &random)
{
    const unsigned kind = random() % 18;
    if (kind < 3) {
        return oneOf(comparisons, random) + ' ' + name;
    }
    if (kind < 6) {
        return oneOf({"list-from-file ", "list-from-graphs "}, random) + name + oneOf({" names-0", " names-1"}, random);
    }
    if (kind < 10) {
        return "subs " + name + ' ' + oneOf(others, random);
    }
    return oneOf({"union ", "intersection ", "difference "}, random) + name + ' ' + oneOf(others, random) + ' ' +
           oneOf(others, random);
}

const QList<QByteArray> lists = {"a", "b", "c", "d", "e", "f", "g", "h"};

/// The commands of a script, behind its load. All lists are there at the end.
QList<QByteArray> randomQuestion(Random &random)
{
    // The first list has no graphs of the base, so that those that are made of it can be empty.
    QList<QByteArray> made = lists.mid(0, 2);
    QList<QByteArray> commands = {"compute-i1 order", "compute-i2 6", "list-ge " + made.first(), "compute-i1 size",
                                  "list-from-file " + made.last() + " names-0"};
    for (const QByteArray &list : lists.mid(2)) {
        commands << oneOf(invariantCommands, random) << oneOf(invariantCommands, random);
        commands << randomListCommand(list, made, random);
        made.append(list);
        if (random() % 4 == 0) {
            const QByteArray again = made.takeAt(int(random() % unsigned(made.size())));
            commands << "remove-list " + again << randomListCommand(again, made, random);
            made.append(again);
        }
    }
    return commands;
}

struct Answers {
    ToolResult result;
    QMap<QByteArray, QSet<QByteArray>> lists; ///< none if the script failed
};

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

/// The same, with a list of the complete graph alone: in two of the parts it is empty.
const QByteArray dense = "compute-i1 size\ncompute-i2 0\nlist-ge all\ncompute-i2 21\nlist-ge dense\n"
                         "compute-i2 13\nlist-ge some\n";
const QList<QByteArray> questionsWithEmptyLists = {
    dense + "difference found all dense\n",
    dense + "list-from-graphs a one.g6\ndifference b dense a\nunion found a b\n",
    dense + "union found dense some\n",
    dense + "union found some dense\n",
    dense + "union found dense dense\n",
    dense + "intersection found dense some\n",
    dense + "intersection found some dense\n",
    dense + "subs found dense\n",
    dense + "intersection a dense some\nsubs b a\ndifference found b some\n",
    dense + "list-from-graphs a one.g6\nunion b a dense\ndifference found all b\n",
    dense + "list-from-file a some.g6\nunion b a dense\nintersection c b some\ndifference found some c\n",
    dense + "list-lt-subs a\nunion found a dense\n",
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

    /// Writes a base, start.tav, with parts of the graphs on six vertices, all together in all.tav, and two files of
    /// names; returns the names of the parts, some of which may be empty.
    QStringList writeRandomParts(Random &random) const
    {
        QByteArray base;
        QList<QByteArray> names = {"G?????"}; // not in any database
        QList<QByteArray> graphs;
        for (const QByteArray &line : linesOf(contents(example("connected-8.tav")))) {
            const QByteArray graph = line.split('\t').first();
            if (graph.at(0) < 63 + 6) {
                base += line + '\n';
            } else if (graph.at(0) == 63 + 6) {
                graphs.append(graph);
            } else {
                continue;
            }
            names.append(graph);
        }
        folder.write("start.tav", base);
        std::shuffle(graphs.begin(), graphs.end(), random);
        QStringList parts;
        for (const int count = 1 + int(random() % 4); parts.size() < count;) {
            QByteArray input;
            for (int i = int(random() % unsigned(graphs.size() + 1)); i > 0; --i) {
                input += graphs.takeLast() + '\n';
            }
            const QByteArray part = runHere(words({"build", "--base", "start.tav"}), input).output;
            parts.append(QStringLiteral("random-%1.tav").arg(parts.size()));
            folder.write(parts.last(), part);
            base += part;
        }
        folder.write("all.tav", base);
        for (const char *file : {"names-0", "names-1"}) {
            QByteArray some;
            for (int i = int(random() % 30); i > 0; --i) {
                some += oneOf(names, random) + '\n';
            }
            folder.write(file, some);
        }
        return parts;
    }

    /// Asks a random question of some database files.
    Answers ask(const QList<QByteArray> &question, const QByteArray &databases, const QStringList &options) const
    {
        QByteArray script = "load " + databases + '\n' + question.join('\n') + "\nlists\n";
        for (const QByteArray &list : lists) {
            script += "show " + list + '\n';
        }
        folder.write("script", script);
        Answers answers = {runHere(words({"run", "-q"}) + options + words({"script"}), {}), {}};
        if (answers.result.status != 0) {
            return answers;
        }
        QList<QByteArray> lines = linesOf(answers.result.output);
        QMap<QByteArray, int> lengths;
        for (int i = 0; i < lists.size(); ++i) {
            const QList<QByteArray> fields = lines.takeFirst().split('\t');
            lengths.insert(fields.first(), fields.last().toInt());
        }
        for (const QByteArray &list : lists) {
            QSet<QByteArray> &graphs = answers.lists[list];
            for (int i = 0; i < lengths.value(list); ++i) {
                graphs.insert(lines.takeFirst());
            }
        }
        return answers;
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
        for (const QByteArray &question : belowQuestions + questionsWithEmptyLists) {
            QTest::newRow(question.constData()) << question;
        }
    }

    /// What each part answers is together the answer of the whole.
    void aPartForItself()
    {
        QFETCH(QByteArray, question);
        QSet<QByteArray> found;
        for (const char *part : {"part-0.tav", "part-1.tav", "part-2.tav"}) {
            const QByteArray script = "load base.tav " + QByteArray(part) + '\n' + question + "show found\n";
            const ToolResult result = runScript(script, words({"-q", "--part"}));
            QCOMPARE(result.status, 0);
            found += setOf(result.output);
        }
        QCOMPARE(found, setOf(runScript("load whole.tav\n" + question + "show found\n", words({"-q"})).output));
        QVERIFY(!found.isEmpty());
    }

    void anEmptyList_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("found");
        const auto row = [](const char *command, const char *found) {
            QTest::newRow(command) << QByteArray(command) << QByteArray(found);
        };
        row("union found empty few", "A_\nBw\nC~\n");
        row("union found few empty", "A_\nBw\nC~\n");
        row("union found empty empty", "");
        row("intersection found empty few", "");
        row("intersection found few empty", "");
        row("intersection found empty empty", "");
        row("difference found empty few", "");
        row("difference found few empty", "C~\nBw\nC~\nA_\n");
        row("difference found empty empty", "");
        row("subs found empty", "");
        row("list-from-graphs found none.g6", "");
        row("list-from-file found none.g6", "");
    }

    /// It is a list like any other, and so is an empty one that is made of it.
    void anEmptyList()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, found);
        folder.write("few.g6", "C~\nBw\nC~\nA_\n");
        folder.write("none.g6", "");
        const QByteArray start = "load base.tav\ncompute-i1 size\ncompute-i2 100\nlist-ge empty\n"
                                 "list-from-graphs few few.g6\n";
        const ToolResult result = runScript(start + command + "\nshow found\nlists\n", words({"-q", "--part"}));
        QCOMPARE(result.output, found + "empty\t0\nfew\t4\nfound\t" + QByteArray::number(found.count('\n')) + '\n');
        QCOMPARE(result.status, 0);
    }

    void anEmptyListIsSavedAndRemoved()
    {
        folder.write("saved", "old");
        const QByteArray script = "load base.tav\nlist-ge a\n-list-le a\nshow a\nsave-list a saved\n"
                                  "-save-list a missing/saved\nlists\nremove-list a\n-show a\nlist-le a\nlists\n";
        const ToolResult result = runScript(script, words({"--part"}));
        QCOMPARE(result.output, QByteArray("Loading data ... please wait.\n"
                                           "143 lines.\n"
                                           "Data loaded : 143 nodes and 388 links.\n"
                                           "List added : a [ 0 element(s)]\n"
                                           "List added : a\n"
                                           "Name already used\n"
                                           "Unable to open file :missing/saved\n"
                                           "a\t0\n"
                                           "List a removed.\n"
                                           "List added : a [ 0 element(s)]\n"
                                           "List added : a\n"
                                           "a\t0\n"));
        const QByteArray place = "tav: standard input:";
        QCOMPARE(result.errors, "Starting...\nList added : a\n" + place +
                                    "3: list-le failed: there is a list 'a' already (ignored)\nUnable to open file\n" +
                                    place + "6: save-list failed: No such file or directory (ignored)\n" + place +
                                    "9: show failed: there is no list 'a' (ignored)\nList added : a\n");
        QCOMPARE(result.status, 0);
        QCOMPARE(contents(folder.path("saved")), QByteArray());
    }

    /// What random parts answer to a random question is together the answer of the whole. Commands that are refused are
    /// replaced by others.
    void randomQuestions()
    {
        const QRegularExpression refusal(
            QStringLiteral("^tav: script:([0-9]+): [a-z-]+ is refused with --part: .*\\n$"));
        int refusals = 0;
        int emptyInOneAlone = 0;
        int withoutEmptyLists = 0;
        for (unsigned seed = 1; seed <= 30; ++seed) {
            Random random(seed);
            const QStringList parts = writeRandomParts(random);
            QList<QByteArray> question = randomQuestion(random);
            Answers whole = ask(question, "all.tav", words({"--part"}));
            for (QRegularExpressionMatch match;
                 (match = refusal.match(QString::fromUtf8(whole.result.errors))).hasMatch(); ++refusals) {
                QByteArray &refused = question[match.captured(1).toInt() - 2]; // numbers start at 1, with the load
                refused = "list-ge " + refused.split(' ').at(1);
                whole = ask(question, "all.tav", words({"--part"}));
            }
            const QByteArray asked = "seed " + QByteArray::number(seed) + '\n' + question.join('\n') + '\n';
            QVERIFY2(whole.result.status == 0, (asked + whole.result.errors).constData());

            QMap<QByteArray, QSet<QByteArray>> together;
            for (const QString &part : parts) {
                const Answers answers = ask(question, "start.tav " + part.toLatin1(), words({"--part"}));
                QVERIFY2(answers.result.status == 0, (asked + answers.result.errors).constData());
                for (const QByteArray &list : lists) {
                    const QSet<QByteArray> graphs = answers.lists.value(list);
                    together[list] += graphs;
                    emptyInOneAlone += graphs.isEmpty() && !whole.lists.value(list).isEmpty() ? 1 : 0;
                }
            }
            for (const QByteArray &list : lists) {
                QVERIFY2(together.value(list) == whole.lists.value(list), (asked + "list " + list).constData());
            }
            const Answers plain = ask(question, "all.tav", {});
            if (plain.result.status == 0) {
                QVERIFY2(plain.lists == whole.lists, asked.constData());
                ++withoutEmptyLists;
            }
        }
        QVERIFY2(refusals > 10, QByteArray::number(refusals).constData());
        QVERIFY2(emptyInOneAlone > 10, QByteArray::number(emptyInOneAlone).constData());
        QVERIFY2(withoutEmptyLists > 1, QByteArray::number(withoutEmptyLists).constData());
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
