// The manual page and the completion hold what the program's own help tells.

#include "support/literals.h"
#include "support/matches.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace
{
const QString manualPath = QStringLiteral(TAVOLINE_SOURCES "/tav/tav.1");
const QString completionPath = QStringLiteral(TAVOLINE_SOURCES "/tav/tav.bash");

QString helpOf(const QStringList &command)
{
    return QString::fromUtf8(runTav(command + QStringList{QStringLiteral("--help")}).output);
}

QStringList commands()
{
    return allMatches(helpOf({}), "^  ([a-z]+) ");
}

QStringList optionsOf(const QString &command)
{
    QStringList options;
    for (const QString &line : allMatches(helpOf({command}), "^  (-.*)$")) {
        options += allMatches(line.section(QStringLiteral("  "), 0, 0), "(--?[a-z]+)");
    }
    return options;
}

/// The text of the manual page, without what makes words bold or italic.
QString manual()
{
    QString text = QString::fromUtf8(contents(manualPath));
    text.remove(QRegularExpression(QStringLiteral("\\\\f[RIPB]")));
    return text.replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

/// The part of the manual page on one command.
QString manualOf(const QString &command)
{
    const QString begin = QStringLiteral("\n.SS tav %1\n").arg(command);
    const QString text = manual();
    const int place = text.indexOf(begin);
    return place < 0 ? QString() : text.mid(place + begin.size()).section(QStringLiteral("\n.S"), 0, 0);
}

/// Whether @p text has @p word, and not only as a part of a longer one.
bool names(const QString &text, const QString &word)
{
    const QString pattern = QStringLiteral("(?<![\\w-])%1(?![\\w-])").arg(QRegularExpression::escape(word));
    return QRegularExpression(pattern).match(text).hasMatch();
}

/// What bash offers for the last one of the words of a command line, sorted, in a folder with a few files.
class Completion
{
public:
    Completion()
    {
        QDir(folder.path()).mkdir(QStringLiteral("data"));
        for (const char *name : {"graphs.g6", "more graphs.g6", "sparse.s6", "small.tav", "girth.txt", "script"}) {
            QFile(folder.filePath(QLatin1String(name))).open(QIODevice::WriteOnly);
        }
    }

    QStringList operator()(const QStringList &line) const
    {
        const QString script =
            QStringLiteral("set -u; source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                           "_tav; ((${#COMPREPLY[@]} == 0)) || printf '%s\\n' \"${COMPREPLY[@]}\"");
        const QStringList start = {QStringLiteral("--norc"), QStringLiteral("-c"), script,
                                   QStringLiteral("bash"),   completionPath,       QStringLiteral(TAVOLINE_TAV)};
        const ToolResult result = runProgram(QStringLiteral("bash"), start + line, {}, folder.path());
        QStringList offered = QString::fromUtf8(result.errors + result.output).split(QLatin1Char('\n'));
        offered.removeLast();
        offered.sort();
        return offered;
    }

private:
    QTemporaryDir folder;
};
} // namespace

class TestTavManual : public QObject
{
    Q_OBJECT

private slots:
    void everyCommand()
    {
        const QStringList all = commands();
        QVERIFY(all.contains(QStringLiteral("build")));
        const QStringList offered = Completion()({QString()});
        for (const QString &command : all) {
            QVERIFY2(!manualOf(command).isEmpty(), qPrintable(command));
            QVERIFY2(offered.contains(command), qPrintable(command));
        }
        for (const char *option : {"-h", "--help", "--version"}) {
            QVERIFY2(offered.contains(QLatin1String(option)), option);
            QVERIFY2(names(manual(), QStringLiteral("tav ") + QLatin1String(option)), option);
        }
    }

    void everyOption_data()
    {
        QTest::addColumn<QString>("command");
        for (const QString &command : commands()) {
            QTest::newRow(qPrintable(command)) << command;
        }
    }

    void everyOption()
    {
        QFETCH(QString, command);
        const QStringList options = optionsOf(command);
        QVERIFY(options.contains(QStringLiteral("-h")) && options.contains(QStringLiteral("--help")));
        const QStringList offered = Completion()({command, QStringLiteral("-")});
        QCOMPARE(offered.size(), options.size());
        const QString text = manualOf(command);
        for (const QString &option : options) {
            QVERIFY2(names(text, option), qPrintable(option));
            QVERIFY2(offered.contains(option), qPrintable(option));
        }
    }

    void everyCommandOfAScript()
    {
        const QString help = helpOf({QStringLiteral("run")}).section(QStringLiteral("Commands of a script"), 1);
        const QStringList scriptCommands = allMatches(help, "^  ([a-z0-9-]+) ");
        QCOMPARE(scriptCommands.size(), 43);
        const QString text = manualOf(QStringLiteral("run"));
        for (const QString &command : scriptCommands) {
            QVERIFY2(names(text, command), qPrintable(command));
        }
    }

    void theManualPageIsSetWithoutWarnings()
    {
        const ToolResult result =
            runProgram(QStringLiteral(GROFF_PROGRAM), words({"-man", "-Tutf8", "-ww", "-z"}) + QStringList{manualPath});
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 0);
    }

    /// In a folder of their own, in their order.
    void theExamplesRun()
    {
        const QString examples =
            manual().section(QStringLiteral("\n.SH EXAMPLES\n"), 1).section(QStringLiteral("\n.SH"), 0, 0);
        const QRegularExpression block(QStringLiteral("\n\\.EX\n(.*)\n\\.EE\n"),
                                       QRegularExpression::DotMatchesEverythingOption |
                                           QRegularExpression::InvertedGreedinessOption);
        QStringList commands;
        for (auto match = block.globalMatch(examples); match.hasNext();) {
            commands.append(match.next().captured(1));
        }
        QCOMPARE(commands.size(), 4);
        const QTemporaryDir folder;
        const QString script = QStringLiteral("PATH=${0%/*}:$PATH\n") + commands.join(QLatin1Char('\n'));
        const ToolResult result = runProgram(
            QStringLiteral("bash"),
            words({"-euo", "pipefail", "-c"}) + QStringList{script, QStringLiteral(TAVOLINE_TAV)}, {}, folder.path());
        QVERIFY2(result.output.endsWith("\nList added : complete\nBw\nC~\nD~{\nE~~w\nF~~~w\nG~~~~{\n"),
                 (result.output + result.errors).constData());
        QCOMPARE(result.status, 0);
    }

    void completion_data()
    {
        QTest::addColumn<QStringList>("line");
        QTest::addColumn<QStringList>("offered");
        QTest::newRow("command") << words({"b"}) << words({"build"});
        QTest::newRow("unknown command") << words({"make", ""}) << QStringList();
        QTest::newRow("option") << words({"build", "--con"}) << words({"--connected"});
        QTest::newRow("relation") << words({"build", "--relation", ""}) << words({"edge", "vertex"});
        QTest::newRow("relation behind =") << words({"build", "--relation", "="}) << words({"edge", "vertex"});
        QTest::newRow("relation begun") << words({"build", "--relation", "=", "e"}) << words({"edge"});
        QTest::newRow("graphs") << words({"build", ""}) << words({"data", "graphs.g6", "more graphs.g6", "sparse.s6"});
        QTest::newRow("graphs begun") << words({"build", "--strict", "gr"}) << words({"graphs.g6"});
        QTest::newRow("output of build") << words({"build", "graphs.g6", "-o", ""}) << words({"data", "small.tav"});
        QTest::newRow("base") << words({"build", "--base", ""}) << words({"data", "small.tav"});
        QTest::newRow("graphs of a part") << words({"build", "--base", "small.tav", "s"}) << words({"sparse.s6"});
        QTest::newRow("database of an index") << words({"index", "-j", "2", ""}) << words({"data", "small.tav"});
        QTest::newRow("output of an index") << words({"index", "-o", ""}) << words({"data"});
        QTest::newRow("processors") << words({"build", "-j", ""}) << QStringList();
        QTest::newRow("database") << words({"info", ""}) << words({"data", "small.tav"});
        QTest::newRow("invariant") << words({"invariant", "av"})
                                   << words({"average-degree", "average-distance", "average-eccentricity"});
        QTest::newRow("invariant behind options") << words({"invariant", "-j", "2", "--output", "=", "x.txt", "ra"})
                                                  << words({"radius", "randic-index", "rank"});
        QTest::newRow("database of an invariant")
            << words({"invariant", "girth", "-o", "x.txt", ""}) << words({"data", "small.tav"});
        QTest::newRow("another invariant or the database")
            << words({"invariant", "girth", "s"})
            << words({"second-eigenvalue", "second-zagreb-index", "self-complementary", "signless-laplacian-energy",
                      "signless-laplacian-radius", "signless-laplacian-smallest", "size", "small.tav",
                      "smallest-eigenvalue", "spanning-trees", "spectral-radius", "sum-connectivity-index",
                      "szeged-index"});
        QTest::newRow("in an expression") << words({"invariant", "'girth + average_d"})
                                          << words({"girth + average_degree", "girth + average_distance"});
        QTest::newRow("in the second expression") << words({"invariant", "girth", "\"2*rad"}) << words({"2*radius"});
        QTest::newRow("in a condition") << words({"filter", "'girth == 5 and not tr"})
                                        << words({"girth == 5 and not traceable", "girth == 5 and not tree",
                                                  "girth == 5 and not treewidth", "girth == 5 and not triangle_free",
                                                  "girth == 5 and not triangles"});
        QTest::newRow("output of an invariant")
            << words({"invariant", "girth", "-o", ""}) << words({"data", "girth.txt"});
        QTest::newRow("table") << words({"invariant", "girth", "--table", ""}) << words({"data"});
        QTest::newRow("database to export")
            << words({"export", "--values", "girth.txt", ""}) << words({"data", "small.tav"});
        QTest::newRow("values to export") << words({"export", "--values", ""}) << words({"data", "girth.txt"});
        QTest::newRow("expression to export")
            << words({"export", "--compute", "average_deg"}) << words({"average_degree"});
        QTest::newRow("folder of the export") << words({"export", "-o", "s"}) << QStringList();
        QTest::newRow("dialect") << words({"sql", "--dialect", ""}) << words({"duckdb", "spark"});
        QTest::newRow("tables") << words({"sql", "--tables", ""}) << words({"data"});
        QTest::newRow("script for SQL") << words({"sql", "--sorted", "sc"}) << words({"script"});
        QTest::newRow("filter") << words({"filter", "average_"})
                                << words({"average_degree", "average_distance", "average_eccentricity"});
        QTest::newRow("graphs to filter")
            << words({"filter", "tree", "--first", "2", "s"}) << words({"script", "small.tav", "sparse.s6"});
        QTest::newRow("number of graphs") << words({"filter", "--first", ""}) << QStringList();
        QTest::newRow("database of names") << words({"names", "--strict", ""}) << words({"data", "small.tav"});
        QTest::newRow("list for names") << words({"names", "-j", "2", "small.tav", ""})
                                        << words({"data", "graphs.g6", "more graphs.g6", "sparse.s6"});
        QTest::newRow("output of names") << words({"names", "small.tav", "-o", ""})
                                         << words({"data", "graphs.g6", "more graphs.g6"});
        QTest::newRow("script") << words({"run", ""})
                                << words({"data", "girth.txt", "graphs.g6", "more graphs.g6", "script", "small.tav",
                                          "sparse.s6"});
    }

    void completion()
    {
        QFETCH(QStringList, line);
        QFETCH(QStringList, offered);
        QCOMPARE(Completion()(line), offered);
    }

    void everyInvariant()
    {
        const ToolResult list = runTav(words({"invariant", "--list"}));
        QStringList all = allMatches(QString::fromUtf8(list.output), "^  ([a-z-]+) ");
        QVERIFY(all.contains(QStringLiteral("girth")));
        all.sort();
        QCOMPARE(Completion()(words({"invariant", ""})), all);
    }

    void installation()
    {
        const QTemporaryDir prefix;
        const ToolResult result =
            runProgram(QStringLiteral(CMAKE_PROGRAM),
                       {QStringLiteral("--install"), QStringLiteral(TAVOLINE_BUILD), QStringLiteral("--component"),
                        QStringLiteral("tav"), QStringLiteral("--prefix"), prefix.path()});
        QVERIFY2(result.status == 0, result.errors.constData());
        const ToolResult version =
            runProgram(prefix.filePath(QStringLiteral("bin/tav")), {QStringLiteral("--version")});
        QVERIFY(version.output.startsWith("tav "));
        QCOMPARE(contents(prefix.filePath(QStringLiteral("share/man/man1/tav.1"))), contents(manualPath));
        QCOMPARE(contents(prefix.filePath(QStringLiteral("share/bash-completion/completions/tav"))),
                 contents(completionPath));
    }
};

QTEST_GUILESS_MAIN(TestTavManual)
#include "tst_tav_manual.moc"
