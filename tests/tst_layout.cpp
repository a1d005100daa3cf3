// The arrows between the rooms of src/ and tav/: what the sources include, and what their include roots let them
// include.

#include "support/runprogram.h"
#include "support/testfiles.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <vector>

namespace
{
using Names = QSet<QString>;

struct Room {
    QString name;
    QStringList files; ///< How the paths of its sources begin.
    QStringList includes;
};

Room room(const char *name, const char *files, const char *includes)
{
    const auto split = [](const char *text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    return {QString::fromLatin1(name), split(files), split(includes)};
}

/// Every room, and the rooms whose headers it includes, which all stand above it.
const std::vector<Room> rooms = {
    room("base", "src/base/", ""),
    room("files", "src/files/", ""),
    room("graph6", "src/graph6/", ""),
    room("record", "src/TAVgraph.", ""),
    room("database", "src/database/", "base files record"),
    room("queries", "src/queries/", "base record"),
    room("lists", "src/lists/", "base files queries"),
    room("core", "src/TAVmanager. src/TAVsearchengine. src/graphlist.", "base database files lists queries record"),
    room("drawing", "src/drawing/", ""),
    room("viewer", "src/olm/", "base drawing files graph6"),
    room("ui", "src/TAVmainwidget. src/TAVmainwindow. src/applicationtitle. src/arguments.", "base core files viewer"),
    room("tavoline", "src/main.", "base files ui"),
    room("console", "tav/console/", "base files"),
    room("processes", "tav/processes/", "console"),
    room("streams", "tav/streams/", "console files processes"),
    room("graphs", "tav/graphs/", "base console files graph6 streams"),
    room("invariants", "tav/invariants/", "console graphs"),
    room("expressions", "tav/expressions/", "console graphs invariants processes queries"),
    room("scripts", "tav/scripts/", "base console core expressions files graphs"),
    room("tables", "tav/tables/", "console database files streams"),
    room("sql", "tav/sql/", "console files lists queries scripts tables"),
    room("commands", "tav/commands/",
         "base console expressions files graphs invariants processes record scripts sql streams tables"),
    room("tav", "tav/tav.", "base commands console files processes"),
};

const QString sourceFolder = QStringLiteral(TAVOLINE_SOURCES "/");

/// The sources and headers below the folders, as paths from the top.
QStringList sourcesIn(const QStringList &folders)
{
    QStringList found;
    for (const QString &folder : folders) {
        const QStringList patterns = {QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.c")};
        QDirIterator files(sourceFolder + folder, patterns, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            found.append(files.next().mid(sourceFolder.size()));
        }
    }
    return found;
}

QStringList productSources()
{
    return sourcesIn({QStringLiteral("src"), QStringLiteral("tav")});
}

/// The names of the rooms of a source: exactly one in a tidy house.
QStringList roomsOf(const QString &source)
{
    QStringList found;
    for (const Room &candidate : rooms) {
        const auto holds = [&](const QString &beginning) { return source.startsWith(beginning); };
        if (std::any_of(candidate.files.begin(), candidate.files.end(), holds)) {
            found.append(candidate.name);
        }
    }
    return found;
}

/// From the name of each header to its room.
QMap<QString, QString> roomsOfHeaders()
{
    QMap<QString, QString> found;
    for (const QString &source : productSources()) {
        if (source.endsWith(QLatin1String(".h"))) {
            found.insert(source.section(QLatin1Char('/'), -1), roomsOf(source).value(0));
        }
    }
    return found;
}

struct Include {
    QString name;
    bool quoted = false;
};

std::vector<Include> includesOf(const QString &source)
{
    static const QRegularExpression line(QStringLiteral("^\\s*#\\s*include\\s*([<\"])([^>\"]+)"),
                                         QRegularExpression::MultilineOption);
    std::vector<Include> found;
    const QString text = QString::fromUtf8(contents(sourceFolder + source));
    for (auto match = line.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch include = match.next();
        found.push_back({include.captured(2), include.captured(1) == QLatin1String("\"")});
    }
    return found;
}

/// What each room includes, directly or through others, when @p arrows tell what it includes directly.
QMap<QString, Names> withWhatFollows(const QMap<QString, Names> &arrows)
{
    QMap<QString, Names> all = arrows;
    for (int before = -1, now = 0; before != now;) {
        before = now;
        now = 0;
        for (Names &included : all) {
            for (const QString &next : Names(included)) {
                included += all.value(next);
            }
            now += included.size();
        }
    }
    return all;
}

QMap<QString, Names> tableWithWhatFollows()
{
    QMap<QString, Names> arrows;
    for (const Room &from : rooms) {
        arrows[from.name] = Names(from.includes.begin(), from.includes.end());
    }
    return withWhatFollows(arrows);
}

/// The command that preprocesses standard input as the compiler sees the sources of a room; empty when the room has no
/// sources in this build.
QString preprocessing(const QString &roomName)
{
    static const QJsonArray commands =
        QJsonDocument::fromJson(contents(QStringLiteral(TAVOLINE_BUILD "/compile_commands.json"))).array();
    for (const QJsonValue &entry : commands) {
        const QString file = entry[QLatin1String("file")].toString();
        if (!file.startsWith(sourceFolder) || !file.endsWith(QLatin1String(".cpp")) ||
            !roomsOf(file.mid(sourceFolder.size())).contains(roomName)) {
            continue;
        }
        const QString command = entry[QLatin1String("command")].toString();
        return command.left(command.lastIndexOf(QLatin1String(" -o "))) + QLatin1String(" -E -x c++ -");
    }
    return {};
}

/// In a folder with no headers, which the compiler would find before those of the include roots.
ToolResult preprocess(const QString &roomName, const QString &text)
{
    const QTemporaryDir empty;
    return runProgram(QStringLiteral("sh"), {QStringLiteral("-c"), preprocessing(roomName)}, text.toUtf8(),
                      empty.path());
}

QString sorted(const Names &names)
{
    QStringList list = names.values();
    list.sort();
    return list.join(QLatin1Char(' '));
}
} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private slots:
    void everySourceHasOneRoom()
    {
        Names headers;
        for (const QString &source : productSources()) {
            QVERIFY2(roomsOf(source).size() == 1, qPrintable(source));
            const QString name = source.section(QLatin1Char('/'), -1);
            QVERIFY2(!headers.contains(name), qPrintable(source)); // an include would not say which one it means
            if (name.endsWith(QLatin1String(".h"))) {
                headers.insert(name);
            }
        }
        QVERIFY(headers.contains(QStringLiteral("TAVmanager.h")));
    }

    void noIncludeLeavesItsRoot()
    {
        const QStringList folders = {QStringLiteral("src"),  QStringLiteral("tav"),  QStringLiteral("tests"),
                                     QStringLiteral("fuzz"), QStringLiteral("tour"), QStringLiteral("bench")};
        for (const QString &source : sourcesIn(folders)) {
            for (const Include &include : includesOf(source)) {
                QVERIFY2(!include.name.contains(QLatin1String("..")), qPrintable(source));
            }
        }
    }

    /// An arrow that is not in the table is wrong, and so is one in the table that nothing includes.
    void everyIncludeIsInTheTable()
    {
        const QMap<QString, QString> headers = roomsOfHeaders();
        QMap<QString, Names> included;
        for (const QString &source : productSources()) {
            const QString from = roomsOf(source).value(0);
            for (const Include &include : includesOf(source)) {
                const QString to = headers.value(include.name);
                QVERIFY2(!include.quoted || !to.isEmpty(), qPrintable(source + QLatin1Char(' ') + include.name));
                if (!to.isEmpty() && to != from) {
                    included[from].insert(to);
                }
            }
        }
        for (const Room &from : rooms) {
            QCOMPARE(from.name + QLatin1String(" includes ") + sorted(included[from.name]),
                     from.name + QLatin1String(" includes ") + from.includes.join(QLatin1Char(' ')));
        }
    }

    void noArrowRunsBackUp()
    {
        Names above;
        for (const Room &from : rooms) {
            for (const QString &to : from.includes) {
                QVERIFY2(above.contains(to), qPrintable(from.name + QLatin1Char(' ') + to));
            }
            above.insert(from.name);
        }
    }

    void theDrawingHasTheArrowsOfTheTable()
    {
        const QString page = QString::fromUtf8(contents(sourceFolder + QLatin1String("CONTRIBUTING.md")));
        const QString drawing = page.section(QLatin1String("```mermaid\n"), 1).section(QLatin1String("```"), 0, 0);
        QMap<QString, Names> arrows;
        for (const QString &line : drawing.split(QLatin1Char('\n'))) {
            const QStringList ends = line.split(QLatin1String(" --> "));
            if (ends.size() == 2) {
                const QStringList to = ends[1].split(QLatin1String(" & "));
                arrows[ends[0].trimmed()] += Names(to.begin(), to.end());
            }
        }
        const QMap<QString, Names> drawn = withWhatFollows(arrows);
        const QMap<QString, Names> table = tableWithWhatFollows();
        for (const Room &from : rooms) {
            QCOMPARE(from.name + QLatin1String(" leads to ") + sorted(drawn.value(from.name)),
                     from.name + QLatin1String(" leads to ") + sorted(table.value(from.name)));
        }
    }

    void includeRoots_data()
    {
        QTest::addColumn<QString>("from");
        for (const Room &from : rooms) {
            if (!preprocessing(from.name).isEmpty()) {
                QTest::newRow(qPrintable(from.name)) << from.name;
            }
        }
    }

    /// They reach what the table names, and nothing that it does not lead to.
    void includeRoots()
    {
        QFETCH(QString, from);
        const QMap<QString, QString> headers = roomsOfHeaders();
        QString question;
        for (auto header = headers.begin(); header != headers.end(); ++header) {
            question += QStringLiteral("#if __has_include(\"%1\")\n@%1\n#endif\n").arg(header.key());
        }
        const ToolResult answer = preprocess(from, question);
        QVERIFY2(answer.status == 0, answer.errors.constData());
        Names reached;
        for (const QByteArray &line : answer.output.split('\n')) {
            if (line.startsWith('@')) {
                reached.insert(headers.value(QString::fromLatin1(line.mid(1))));
            }
        }
        reached.remove(from);
        const auto self = std::find_if(rooms.begin(), rooms.end(), [&](const Room &each) { return each.name == from; });
        for (const QString &needed : self->includes) {
            QVERIFY2(reached.contains(needed), qPrintable(needed));
        }
        QCOMPARE(sorted(reached - tableWithWhatFollows().value(from)), QString());
    }

    void include_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("header");
        QTest::addColumn<bool>("compiles");
        const auto row = [](const char *from, const char *header, bool compiles) {
            QTest::addRow("%s in %s", header, from)
                << QString::fromLatin1(from) << QString::fromLatin1(header) << compiles;
        };
        row("core", "graph.h", false);
        row("core", "TAVgraph.h", true);
        row("viewer", "TAVmanager.h", false);
        row("viewer", "neighbourwalk.h", false);
        row("viewer", "outputfile.h", true);
        row("queries", "TAVmanager.h", false);
        row("queries", "TAVgraph.h", true);
        row("database", "closure.h", false);
        row("ui", "listalgebra.h", false);
        row("ui", "graph.h", true);
    }

    void include()
    {
        QFETCH(QString, from);
        QFETCH(QString, header);
        QFETCH(bool, compiles);
        const ToolResult result = preprocess(from, QStringLiteral("#include \"%1\"\n").arg(header));
        QCOMPARE(result.errors.contains("fatal error: " + header.toLatin1() + ": No such file"), !compiles);
        QCOMPARE(result.status == 0, compiles);
    }
};

QTEST_GUILESS_MAIN(TestLayout)
#include "tst_layout.moc"
