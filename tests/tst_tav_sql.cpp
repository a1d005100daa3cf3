// tav sql: the text for each engine, what is refused, and tables that do not fit. Whether the engines answer as tav run
// does is the business of scripts/engines.

#include "manifest.h"
#include "script.h"
#include "support/literals.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace
{
const QByteArray engines[] = {"duckdb", "spark"};

/// The lines of a script that its golden files answer.
const QByteArray regularScript = "# Every command on a database in which each link leads one level down\n"
                                 "load regular.tav\n"
                                 "load-i1 a.txt\n"
                                 "load-i2 b.txt\n"
                                 "list-ge ge\n"
                                 "list-ge-subs \"the graph's\"   # a name with a blank and a quote\n"
                                 "list-eq-supers eq\n"
                                 "\n"
                                 "avg-sub\n"
                                 "min-super\n"
                                 "max-all\n"
                                 "exchange\n"
                                 "compute-i1 size  - order\n"
                                 "i2-gets-i1\n"
                                 "list-from-file file names.g6\n"
                                 "subs below file\n"
                                 "supers above ge\n"
                                 "union all below above\n"
                                 "-intersection both below eq\n"
                                 "-difference rest below eq\n"
                                 "-list-le file\n"
                                 "save-list all all.g6\n"
                                 "save-graphs graphs.g6\n"
                                 "show all\n"
                                 "-show none\n"
                                 "remove-list all\n"
                                 "lists\n"
                                 "i1-gets-i2\n"
                                 "clear\n"
                                 "min-sub\n"
                                 "list-le nothing\n"
                                 "load regular.tav\n";

/// On a database with links of every kind, in small steps.
const QByteArray oddScript = "load odd.tav\n"
                             "load-i1 odd.txt\n"
                             "load-i2 odd.txt\n"
                             "list-le le\n"
                             "list-eq-subs \"eq subs\"\n"
                             "list-gt-supers gt\n"
                             "min-all\n"
                             "max-sub\n"
                             "avg-super\n"
                             "-subs below gt\n";

/// The first two levels are small, the third is large, where three graphs are many.
const QByteArray largeScript = "load large.tav\n"
                               "load-i1 large.txt\n"
                               "i2-gets-i1\n"
                               "list-lt-subs lt\n"
                               "list-le-supers le\n"
                               "list-ge ge\n"
                               "avg-sub\n"
                               "avg-super\n"
                               "max-all\n"
                               "supers above ge\n";
} // namespace

class TestTavSql : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        folder.write("regular.tav", "@\nA_\t0\nA?\t0\t0\nBw\t1\nBo\t1\t2\n");
        folder.write("a.txt", "\n@\t0\nA_\t1\nA?\tNA\nBw\t2\nBo\t3\n");
        folder.write("b.txt", "\n@\t1\nA_\t1\nA?\t2\nBw\t2\nBo\t2.5\n");
        folder.write("names.g6", "A_\nodd ' \\ ${name}\n");
        folder.write("odd.tav", "@\nA_\t0\t1\nA?\t1\t0\nBw\t2\t2\n");
        folder.write("odd.txt", "\n@\t0\nA_\t1e-8\nA?\tnan\nBw\tinf\n");
        folder.write("large.tav", "@\nA_\t0\nA?\t0\nBw\t1\nBo\t1\nBg\t2\nB?\t2\nBW\t1\t2\n");
        folder.write("large.txt", "\n@\t1\nA_\t1\nA?\t1\nBw\t1\nBo\t1\nBg\t1\nB?\t1\nBW\t1\n");
        exportTables(QStringLiteral("regular"),
                     {QStringLiteral("--parts"), QStringLiteral("2"), QStringLiteral("--values"),
                      QStringLiteral("a.txt"), QStringLiteral("--values"), QStringLiteral("b.txt"),
                      QStringLiteral("--compute"), QStringLiteral("size - order")});
        exportTables(QStringLiteral("odd"), {QStringLiteral("--values"), QStringLiteral("odd.txt")});
        exportTables(QStringLiteral("large"), {QStringLiteral("--values"), QStringLiteral("large.txt")});
    }

    void text_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("engine");
        const QString atOnce = QStringLiteral("--slice");
        for (const QByteArray &engine : engines) {
            QTest::addRow("regular for %s", engine.constData())
                << QStringLiteral("regular") << regularScript << QStringList() << engine;
            QTest::addRow("odd for %s", engine.constData())
                << QStringLiteral("odd") << oddScript << QStringList{atOnce, QStringLiteral("2")} << engine;
            QTest::addRow("large for %s", engine.constData())
                << QStringLiteral("large") << largeScript
                << QStringList{atOnce, QStringLiteral("3"), QStringLiteral("--sorted")} << engine;
        }
    }

    void text()
    {
        QFETCH(QString, database);
        QFETCH(QByteArray, script);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, engine);
        const ToolResult result = translate(engine, database, script, options);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        const QString golden = QStringLiteral(TAVOLINE_TEST_DATA "/sql/%1.%2.sql").arg(database, QLatin1String(engine));
        QCOMPARE(QString::fromUtf8(result.output), QString::fromUtf8(contents(golden)));
    }

    void everyCommandIsTranslatedOrRefused()
    {
        const QStringList refused = {QStringLiteral("save-i1"), QStringLiteral("list-from-graphs")};
        for (const ScriptCommand &command : scriptCommands()) {
            QByteArray line = command.name;
            for (const ScriptArgument &argument : command.arguments) {
                switch (argument.kind) {
                case ScriptArgument::List:
                    line += " file";
                    break;
                case ScriptArgument::NewList:
                    line += " new";
                    break;
                case ScriptArgument::Formula:
                    line += " size - order";
                    break;
                case ScriptArgument::InputFile:
                    line += line == "load" ? " regular.tav" : line.startsWith("load-i") ? " a.txt" : " names.g6";
                    break;
                case ScriptArgument::MoreInputFiles:
                    break; // below: baseAndPart()
                case ScriptArgument::OutputFile:
                    line += " out";
                    break;
                }
            }
            const ToolResult result = translate("duckdb", QStringLiteral("regular"),
                                                "load regular.tav\nlist-from-file file names.g6\n" + line);
            if (refused.contains(QLatin1String(command.name))) {
                QVERIFY2(result.errors.startsWith("tav: script:3: " + QByteArray(command.name) + " is not possible: "),
                         result.errors.constData());
                QCOMPARE(result.status, 1);
                QCOMPARE(result.output, QByteArray());
            } else {
                QVERIFY2(result.status == 0, (line + ": " + result.errors).constData());
                QVERIFY2(result.output.contains("\n-- 3: " + line + '\n'), line.constData());
            }
        }
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("other database") << QByteArray("load other.tav")
                                        << QByteArray(
                                               "1: load is not possible: the tables of 'other.tav' are not given");
        QTest::newRow("other values")
            << QByteArray("load regular.tav\nload-i1 c.txt")
            << QByteArray("2: load-i1 is not possible: the tables in 'regular' have no values of 'c.txt'");
        QTest::newRow("no name of a file")
            << QByteArray("load regular.tav\nload-i1 elsewhere/")
            << QByteArray("2: load-i1 is not possible: the tables in 'regular' have no values of ''");
        QTest::newRow("other expression")
            << QByteArray("load regular.tav\n-compute-i2 size")
            << QByteArray("2: compute-i2 is not possible: the tables in 'regular' have no values of 'size'");
        QTest::newRow("no database") << QByteArray("load-i1 a.txt")
                                     << QByteArray("1: load-i1 fails: there is no database");
        QTest::newRow("nothing to save") << QByteArray("save-graphs out")
                                         << QByteArray("1: save-graphs fails: there is no database");
        QTest::newRow("no list") << QByteArray("show none") << QByteArray("1: show fails: there is no list 'none'");
        QTest::newRow("no name") << QByteArray("load regular.tav\nlist-ge \"\"")
                                 << QByteArray("2: list-ge fails: the name of a list cannot be empty");
        QTest::newRow("name taken") << QByteArray("list-from-file a names.g6\nlist-from-file a names.g6")
                                    << QByteArray("2: list-from-file fails: there is a list 'a' already");
        QTest::newRow("name perhaps taken")
            << QByteArray("load regular.tav\nlist-ge a\n-list-le a")
            << QByteArray("3: list-le is not possible: whether there is a list 'a' already is not known before; "
                          "'-remove-list' would help");
        QTest::newRow("list perhaps there")
            << QByteArray("load regular.tav\nlist-ge a\n-save-list a out")
            << QByteArray("3: save-list is not possible: whether there is a list 'a' is not known before; without '-' "
                          "the script ends when there is none");
        QTest::newRow("no file") << QByteArray("list-from-file a none.g6")
                                 << QByteArray("1: list-from-file fails: No such file or directory");
        QTest::newRow("no command") << QByteArray("\nmake") << QByteArray("2: unknown command 'make'");
    }

    void refused()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, message);
        folder.write("out.sql", "old");
        const ToolResult result = translate("duckdb", QStringLiteral("regular"), lines + '\n',
                                            {QStringLiteral("-o"), QStringLiteral("out.sql")});
        QCOMPARE(result.errors, "tav: script:" + message + '\n');
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(folder.path("out.sql")), QByteArray("old"));
    }

    /// Spark replaces a folder.
    void saveInAFolderThatIsUsed()
    {
        for (const char *path : {"\"\"", ".", "./", "..", "../", "../..", "/", "//", "a/..", "/.."}) {
            for (const char *command : {"save-graphs ", "save-list l "}) {
                const QByteArray script =
                    QByteArray("load regular.tav\nlist-from-file l names.g6\n") + command + path + '\n';
                const QByteArray name = QByteArray(command).split(' ').first();
                const QByteArray shown = path[0] == '"' ? QByteArray() : QByteArray(path);
                QCOMPARE(translate("spark", QStringLiteral("regular"), script).errors,
                         "tav: script:3: " + name +
                             " is not possible: Spark would replace all that is in the folder '" + shown + "'\n");
                QCOMPARE(translate("duckdb", QStringLiteral("regular"), script).errors, QByteArray());
            }
        }
        QCOMPARE(translate("spark", QStringLiteral("regular"), "load regular.tav\nsave-graphs ./.g6\n").errors,
                 QByteArray());
    }

    void refusedForWhatTheTablesHold_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("many graphs") << QStringLiteral("many") << QByteArray("list-ge a\nsubs b a")
                                     << QByteArray("3: subs is not possible: the order of a list among 50000001 graphs "
                                                   "would be the work of one processor; with '--sorted' it is that of "
                                                   "the database");
        QTest::newRow("many levels") << QStringLiteral("deep") << QByteArray("list-gt-subs a")
                                     << QByteArray("2: list-gt-subs is not possible: with a statement for each of 201 "
                                                   "levels, the text would be too long");
        QTest::newRow("closure on many levels")
            << QStringLiteral("deep") << QByteArray("list-ge a\nsupers b a")
            << QByteArray("3: supers is not possible: with a statement for each of 201 levels, the text would be too "
                          "long");
        QTest::newRow("wide names")
            << QStringLiteral("wide") << QByteArray("list-ge a\nlist-le b\nunion c a b")
            << QByteArray("4: union is not possible: an engine sorts names with characters beyond U+FFFF in another "
                          "way");
        QTest::newRow("derivation in tiny steps")
            << QStringLiteral("many") << QByteArray("avg-sub\nexchange")
            << QByteArray("2: avg-sub is not possible: with 499 of 50000001 graphs in a statement, the text would be "
                          "too long; a larger number for '--slice' would help");
        QTest::newRow("long list with a number")
            << QStringLiteral("regular") << QByteArray("list-from-file a %2.g6")
            << QByteArray("2: list-from-file is not possible: '%2.g6' has more than 100000 names");
        QTest::newRow("long list") << QStringLiteral("regular") << QByteArray("list-from-file a long.g6")
                                   << QByteArray("2: list-from-file is not possible: 'long.g6' has more than 100000 "
                                                 "names");
    }

    void refusedForWhatTheTablesHold()
    {
        QFETCH(QString, database);
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, message);
        QByteArray chain = "g0\n";
        for (int position = 1; position <= 200; ++position) {
            chain += 'g' + QByteArray::number(position) + '\t' + QByteArray::number(position - 1) + '\n';
        }
        folder.write("deep.tav", chain);
        folder.write("wide.tav", "\xf0\x9f\x98\x80\n");
        folder.write("many.tav", "@\n");
        folder.write("long.g6", QByteArray("@\n").repeated(100001));
        folder.write("%2.g6", QByteArray("@\n").repeated(100001));
        for (const char *name : {"deep", "wide", "many"}) {
            QDir(folder.path(name)).removeRecursively();
            exportTables(QLatin1String(name), {});
        }
        const auto setGraphs = [](QJsonObject &manifest, int many) {
            manifest[QStringLiteral("graphs")] = many;
            manifest[QStringLiteral("levels")] = QJsonArray{QJsonObject{
                {QStringLiteral("graphs"), many}, {QStringLiteral("first"), 0}, {QStringLiteral("last"), many - 1}}};
        };
        changeManifest(QStringLiteral("many"), [&](QJsonObject &manifest) { setGraphs(manifest, 50'000'001); });
        const QByteArray script = "load " + database.toUtf8() + ".tav\n" + lines + '\n';
        const QString slice = QStringLiteral("--slice");
        const QStringList options =
            lines.startsWith("avg-sub") ? QStringList{slice, QStringLiteral("499")} : QStringList();
        const ToolResult result = translate("spark", database, script, options);
        QCOMPARE(result.errors, "tav: script:" + message + '\n');
        QCOMPARE(result.status, 1);
        if (!options.isEmpty()) {
            QCOMPARE(translate("spark", database, script, {slice, QStringLiteral("500")}).status, 0);
        } else if (database == QLatin1String("many")) {
            QCOMPARE(translate("spark", database, script, {QStringLiteral("--sorted")}).status, 0);
            changeManifest(database, [&](QJsonObject &manifest) { setGraphs(manifest, 50'000'000); });
            QCOMPARE(translate("spark", database, script).status, 0);
        }
    }

    void tablesThatDoNotFit_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("version") << QStringLiteral("version") << QJsonValue(2)
                                 << QByteArray(": tables of version 2; this program reads version 1");
        QTest::newRow("version in words") << QStringLiteral("version") << QJsonValue(QStringLiteral("1"))
                                          << QByteArray(": the manifest is not one of tables that 'tav export' writes");
        QTest::newRow("version between others")
            << QStringLiteral("version") << QJsonValue(1.5)
            << QByteArray(": the manifest is not one of tables that 'tav export' writes");
        QTest::newRow("other format") << QStringLiteral("format") << QJsonValue(QStringLiteral("other"))
                                      << QByteArray(": the manifest is not one of tables that 'tav export' writes");
        QTest::newRow("no databases") << QStringLiteral("databases") << QJsonValue(QJsonArray())
                                      << QByteArray(": the manifest does not fit: 'databases'");
        QTest::newRow("graphs") << QStringLiteral("graphs") << QJsonValue(6)
                                << QByteArray(": the manifest does not fit: 'levels'");
        QTest::newRow("no whole number") << QStringLiteral("graphs") << QJsonValue(4.5)
                                         << QByteArray(": the manifest does not fit: 'graphs'");
        QTest::newRow("no number") << QStringLiteral("links") << QJsonValue(QStringLiteral("4"))
                                   << QByteArray(": the manifest does not fit: 'links'");
        QTest::newRow("parts") << QStringLiteral("parts") << QJsonValue(3)
                               << QByteArray("/graphs/part-0003.tsv: cannot be opened: No such file or directory");
        QTest::newRow("bytes") << QStringLiteral("bytes") << QJsonValue(77)
                               << QByteArray(": the table 'graphs' has 57 bytes, and its manifest says 77");
        QTest::newRow("loops where every link leads one level down")
            << QStringLiteral("loops") << QJsonValue(true) << QByteArray(": the manifest does not fit: 'levels'");
        QTest::newRow("no level") << QStringLiteral("levels") << QJsonValue(QJsonArray())
                                  << QByteArray(": the manifest does not fit: 'levels'");
        QTest::newRow("too few ids on a level")
            << QStringLiteral("levels")
            << QJsonValue(QJsonArray{QJsonObject{
                   {QStringLiteral("graphs"), 5}, {QStringLiteral("first"), 0}, {QStringLiteral("last"), 3}}})
            << QByteArray(": the manifest does not fit: 'levels.last'");
        const auto levels = [](const std::vector<std::array<int, 3>> &summaries) {
            QJsonArray array;
            for (const auto &[graphs, first, last] : summaries) {
                array.append(QJsonObject{{QStringLiteral("graphs"), graphs},
                                         {QStringLiteral("first"), first},
                                         {QStringLiteral("last"), last}});
            }
            return QJsonValue(array);
        };
        const QByteArray badLevels = ": the manifest does not fit: 'levels'";
        QTest::newRow("no graph at the beginning")
            << QStringLiteral("levels") << levels({{1, 1, 1}, {2, 2, 3}, {2, 3, 4}}) << badLevels;
        QTest::newRow("a level begins with the one below")
            << QStringLiteral("levels") << levels({{1, 0, 0}, {2, 1, 2}, {2, 1, 4}}) << badLevels;
        QTest::newRow("a level begins before the one below")
            << QStringLiteral("levels") << levels({{1, 0, 0}, {2, 3, 4}, {2, 1, 2}}) << badLevels;
        QTest::newRow("no graph at the end")
            << QStringLiteral("levels") << levels({{1, 0, 0}, {2, 1, 2}, {2, 2, 3}}) << badLevels;
        const auto values = [](const char *key, const QStringList &sources) {
            QJsonArray array;
            for (const QString &source : sources) {
                array.append(QJsonObject{{QLatin1String(key), source},
                                         {QStringLiteral("folder"), QStringLiteral("values-%1").arg(array.size() + 1)},
                                         {QStringLiteral("bytes"), 0},
                                         {QStringLiteral("ordinary"), true},
                                         {QStringLiteral("tiny"), false}});
            }
            return QJsonValue(array);
        };
        QTest::newRow("values twice") << QStringLiteral("values") << values("file", words({"a", "b", "a"}))
                                      << QByteArray(": the manifest does not fit: 'values'");
        QTest::newRow("an expression twice")
            << QStringLiteral("values") << values("expression", words({"size", "size"}))
            << QByteArray(": the manifest does not fit: 'values'");
        QTest::newRow("a file without a name") << QStringLiteral("values") << values("file", {QString()})
                                               << QByteArray(": the manifest does not fit: 'values.file'");
        QTest::newRow("an empty expression") << QStringLiteral("values") << values("expression", {QString()})
                                             << QByteArray(": the manifest does not fit: 'values.expression'");
        QTest::newRow("too many parts") << QStringLiteral("parts") << QJsonValue(10000)
                                        << QByteArray(": the manifest does not fit: 'parts'");
        QTest::newRow("levels") << QStringLiteral("levels") << QJsonValue(QJsonArray{1})
                                << QByteArray(": the manifest does not fit: 'levels'");
        QTest::newRow("values elsewhere")
            << QStringLiteral("values")
            << QJsonValue(QJsonArray{QJsonObject{{QStringLiteral("file"), QStringLiteral("a")},
                                                 {QStringLiteral("folder"), QStringLiteral("/etc")}}})
            << QByteArray(": the manifest does not fit: 'values.folder'");
        QTest::newRow("flag") << QStringLiteral("regular") << QJsonValue(1)
                              << QByteArray(": the manifest does not fit: 'regular'");
    }

    void tablesThatDoNotFit()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(QByteArray, message);
        const QByteArray before = contents(folder.path("regular/manifest.json"));
        changeManifest(QStringLiteral("regular"), [&](QJsonObject &manifest) { manifest[key] = value; });
        const ToolResult result = translate("duckdb", QStringLiteral("regular"), "load regular.tav\n");
        folder.write("regular/manifest.json", before);
        QCOMPARE(result.errors, "tav: regular" + message + '\n');
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
    }

    void filesThatDoNotFit_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("rows"); // instead of those that are there; null: no file
        QTest::addColumn<QByteArray>("message");
        const QString graphs = QStringLiteral("regular/graphs/part-0002.tsv");
        const QString values = QStringLiteral("regular/values-2/part-0001.tsv");
        QTest::newRow("graphs missing") << graphs << QByteArray()
                                        << QByteArray(
                                               "/graphs/part-0002.tsv: cannot be opened: No such file or directory");
        QTest::newRow("values missing") << values << QByteArray()
                                        << QByteArray(
                                               "/values-2/part-0001.tsv: cannot be opened: No such file or directory");
        QTest::newRow("graphs shorter") << graphs << QByteArray("")
                                        << QByteArray(": the table 'graphs' has 33 bytes, and its manifest says 57");
        QTest::newRow("values longer") << values << QByteArray("0\t0\t1\n1\t1\t1\n2\t1\t2\n3\t2\t2\n")
                                       << QByteArray(": the table 'values-2' has 38 bytes, and its manifest says 32");
    }

    void filesThatDoNotFit()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, rows);
        QFETCH(QByteArray, message);
        const QString path = folder.path(file);
        const QByteArray before = contents(path);
        QVERIFY(QFile::remove(path));
        if (!rows.isNull()) {
            write(path, rows);
        }
        const ToolResult result = translate("spark", QStringLiteral("regular"), "load regular.tav\n");
        write(path, before);
        QCOMPARE(result.errors, "tav: regular" + message + '\n');
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.status, 1);
    }

    /// Spark reads what is in the folder of a table, whatever its name is, but for a dot at the beginning.
    void otherFilesInAFolder()
    {
        const auto errors = [&] { return translate("spark", QStringLiteral("regular"), "load regular.tav\n").errors; };
        const QString hidden = folder.path("regular/graphs/.part-0001.tsv.crc");
        write(hidden, "crc");
        QCOMPARE(errors(), QByteArray());
        QVERIFY(QFile::remove(hidden));
        for (const char *name : {"_SUCCESS", "part-0003.tsv", "part-0001.tsv~"}) {
            for (const char *table : {"graphs", "values-2"}) {
                const QString other =
                    folder.path(QStringLiteral("regular/%1/%2").arg(QLatin1String(table), QLatin1String(name)));
                write(other, "");
                QCOMPARE(errors(), QByteArray("tav: regular: '") + name + "' is no file of the table '" + table +
                                       "', and must not be in its folder\n");
                QVERIFY(QFile::remove(other));
            }
        }
        QVERIFY(QDir(folder.path("regular/graphs")).mkdir(QStringLiteral("x=1")));
        QCOMPARE(errors(), QByteArray("tav: regular: 'x=1' is no file of the table 'graphs', and must not be in its "
                                      "folder\n"));
        QVERIFY(QDir(folder.path("regular/graphs")).rmdir(QStringLiteral("x=1")));
    }

    /// The levels of the database regular have 1, 2 and 2 graphs.
    void slices()
    {
        const auto text = [&](const char *atOnce, const QByteArray &line) {
            return translate("duckdb", QStringLiteral("regular"), "load regular.tav\nload-i1 a.txt\n" + line,
                             {QStringLiteral("--slice"), QLatin1String(atOnce)})
                .output;
        };
        QVERIFY(!text("5", "avg-sub\n").contains("BETWEEN"));
        QVERIFY(text("4", "avg-sub\n").contains("FROM graph WHERE lvl BETWEEN 1 AND 2)"));
        QVERIFY(text("4", "avg-sub\n").contains("WHERE lvl BETWEEN 0 AND 1)"));
        QVERIFY(!text("3", "avg-sub\n").contains("lvl BETWEEN"));
        QVERIFY(!text("3", "avg-sub\n").contains("id BETWEEN"));
        QVERIFY(text("1", "avg-sub\n").contains("WHERE lvl = 2 AND id BETWEEN 3 AND 3)"));
        // The graphs of a level that is large are found without being stored.
        QVERIFY(!text("2", "list-ge-subs a\n").contains("INSERT INTO found"));
        QVERIFY(text("1", "list-ge-subs a\n").contains("INSERT INTO found"));
    }

    /// More graphs than there are, up to the largest number.
    void hugeSlices()
    {
        for (const char *atOnce : {"9223372036854775807", "9223372036854775800"}) {
            const QByteArray script = "load regular.tav\nload-i1 a.txt\nmax-all\nlist-eq-supers eq\n";
            const ToolResult result = translate("duckdb", QStringLiteral("regular"), script,
                                                {QStringLiteral("--slice"), QLatin1String(atOnce)});
            QCOMPARE(result.errors, QByteArray());
            QCOMPARE(result.status, 0);
            QCOMPARE(result.output, translate("duckdb", QStringLiteral("regular"), script).output);
        }
    }

    /// Several slices, and no neighbours in any.
    void derivationsOnOneLevel()
    {
        folder.write("flat.tav", "@\nA_\nA?\n");
        exportTables(QStringLiteral("flat"), {});
        for (const char *operation : {"avg-all", "min-all", "max-all", "avg-sub", "max-super"}) {
            for (const QByteArray &engine : engines) {
                const ToolResult result =
                    translate(engine, QStringLiteral("flat"), QByteArray("load flat.tav\n") + operation + '\n',
                              {QStringLiteral("--slice"), QStringLiteral("1")});
                QCOMPARE(result.errors, QByteArray());
                QVERIFY(result.output.contains("CREATE TABLE values_2"));
                QVERIFY2(!result.output.contains("INSERT INTO"), result.output.constData());
            }
        }
    }

    /// For Spark the line of a comment goes on behind a backslash at its end.
    void backslashAtTheEndOfALine()
    {
        for (const QByteArray &line : {QByteArray("# a remark \\"), QByteArray("load regular.tav # load it \\")}) {
            const ToolResult result = translate("spark", QStringLiteral("regular"), line + "\nload regular.tav\n");
            QCOMPARE(result.errors, QByteArray());
            QVERIFY2(result.output.contains("\\ \n"), result.output.constData());
            QVERIFY(!result.output.contains("\\\n"));
        }
    }

    /// What spark-sql makes of other bytes depends on the locale.
    void literalsInAscii()
    {
        folder.write("letters.g6", "n\xc3\xa4me\n\x7f\xc2\x80\n\xf0\x9f\x98\x80\n\\u00e4\n");
        const QByteArray script = "list-from-file l letters.g6\nsave-list l \xe2\x82\xac.g6\n";
        const QByteArray spark = translate("spark", QStringLiteral("regular"), script).output;
        QVERIFY2(spark.contains("'n\\u00e4me'"), spark.constData());
        QVERIFY(spark.contains("'\x7f\\u0080'"));
        QVERIFY(spark.contains("'\\ud83d\\ude00'"));
        QVERIFY(spark.contains("'\\\\u00e4'"));
        QVERIFY(spark.contains("DIRECTORY '\\u20ac.g6'"));
        const QByteArray duckdb = translate("duckdb", QStringLiteral("regular"), script).output;
        QVERIFY(duckdb.contains("'n\xc3\xa4me'"));
        QVERIFY(duckdb.contains("TO '\xe2\x82\xac.g6'"));
    }

    /// There is a second pass where a difference may be exactly the tolerance, wherever the tiny value is.
    void tinyValues()
    {
        folder.write("tiny.txt", "\n@\t1e-8\nA_\t1\nA?\t1\nBw\t1\nBo\t1\n");
        exportTables(QStringLiteral("regular"),
                     words({"-o", "tiny", "--values", "a.txt", "--values", "tiny.txt", "--values", "b.txt"}));
        // The graphs of a level that is large are found without being stored, also around barriers.
        const QByteArray inSlices =
            translate("duckdb", QStringLiteral("tiny"),
                      "load regular.tav\nload-i1 tiny.txt\nload-i2 a.txt\nlist-eq-subs a\n", words({"--slice", "1"}))
                .output;
        const QByteArray barred = inSlices.mid(inSlices.indexOf("CREATE TABLE barrier"));
        QVERIFY(!barred.contains("INSERT INTO walk\nSELECT coalesce(m.x, y.x), coalesce(m.id, y.id), 2"));
        for (const char *slice : {"3 AND 3", "4 AND 4"}) {
            QVERIFY2(barred.contains(QByteArray("JOIN values_2 i ON i.id = m.id AND i.v = m.x\n"
                                                "WHERE i.lvl = 2 AND i.id BETWEEN ") +
                                     slice + " AND NOT isnan(i.v)"),
                     barred.constData());
        }
        const auto hasSecondPass = [&](const QByteArray &lines) {
            const ToolResult result = translate("duckdb", QStringLiteral("tiny"), "load regular.tav\n" + lines);
            return result.status == 0 && result.output.contains("CREATE TABLE barrier");
        };
        QVERIFY(hasSecondPass("load-i1 tiny.txt\nload-i2 a.txt\nlist-eq-subs a\n"));
        QVERIFY(hasSecondPass("load-i1 a.txt\nload-i2 tiny.txt\nlist-eq-supers a\n"));
        QVERIFY(hasSecondPass("load-i1 a.txt\navg-sub\nlist-eq-subs a\n")); // 0 and 1e-8 are averages, too
        QVERIFY(hasSecondPass("load-i1 tiny.txt\nmin-sub\nload-i1 a.txt\nlist-eq-subs a\n"));
        QVERIFY(!hasSecondPass("load-i1 a.txt\nload-i2 b.txt\nlist-eq-subs a\n"));
        QVERIFY(!hasSecondPass("load-i1 a.txt\nmin-sub\nlist-eq-subs a\n"));
        QVERIFY(!hasSecondPass("load-i1 tiny.txt\nload-i2 a.txt\nlist-ge-subs a\n"));
    }

    void noTables()
    {
        QCOMPARE(translate("duckdb", QStringLiteral("none"), "clear\n").errors,
                 QByteArray("tav: none/manifest.json: cannot be opened: No such file or directory\n"));
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("text")));
        folder.write("text/manifest.json", "{");
        QCOMPARE(translate("duckdb", QStringLiteral("text"), "clear\n").errors,
                 QByteArray("tav: text: the manifest is not one of tables that 'tav export' writes\n"));
    }

    void baseAndPart()
    {
        folder.write("base.tav", "@\nA_\t0\n");
        folder.write("part.tav", "Bw\t1\n");
        const ToolResult exported = runTav(words({"export", "-o", "both", "base.tav", "part.tav"}), {}, folder.path());
        QCOMPARE(exported.errors, QByteArray("tav: 3 graphs, 2 links, 3 levels\n"));
        const ToolResult result = translate("duckdb", QStringLiteral("both"), "load elsewhere/base.tav ./part.tav\n");
        QCOMPARE(result.errors, QByteArray());
        QVERIFY(result.output.contains("'both/graphs/part-0001.tsv'"));
        QCOMPARE(translate("duckdb", QStringLiteral("both"), "load base.tav\n").errors,
                 QByteArray("tav: script:1: load is not possible: the tables of 'base.tav' are not given\n"));
    }

    void severalDatabases()
    {
        const QByteArray script = "load odd.tav\nload large.tav\nload-i1 large.txt\n";
        const ToolResult result =
            translate("duckdb", QStringLiteral("odd"), script, {QStringLiteral("--tables"), QStringLiteral("large")});
        QCOMPARE(result.errors, QByteArray());
        QVERIFY(result.output.contains("'odd/graphs/part-0001.tsv'"));
        QVERIFY(result.output.contains("DROP TABLE graph;\nCREATE TABLE graph AS"));
        QVERIFY(result.output.contains("'large/values-1/part-0001.tsv'"));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        const QString dialect = QStringLiteral("--dialect");
        const QString duckdb = QStringLiteral("duckdb");
        const QString tables = QStringLiteral("--tables");
        const QString script = QStringLiteral("script");
        QTest::newRow("no dialect") << QStringList{script}
                                    << QByteArray("No dialect given; '--dialect' names it: 'duckdb' or 'spark'.");
        QTest::newRow("dialect") << QStringList{dialect, QStringLiteral("mysql"), script}
                                 << QByteArray("Unknown dialect 'mysql'; 'duckdb' or 'spark' expected.");
        QTest::newRow("no script") << QStringList{dialect, duckdb}
                                   << QByteArray("Exactly one script expected, 0 given.");
        QTest::newRow("pattern") << QStringList{dialect, duckdb, tables, QStringLiteral("a*"), script}
                                 << QByteArray("The path of the tables has '*', which engines take for a pattern: "
                                               "'a*'.");
        for (const char *other : {"?", "[", "]", "{", "}", "\\"}) {
            QTest::newRow(other) << QStringList{dialect, duckdb, tables, QLatin1Char('a') + QLatin1String(other),
                                                script}
                                 << QByteArray("The path of the tables has '") + other +
                                        "', which engines take for a pattern: 'a" + other + "'.";
        }
        QTest::newRow("empty path") << QStringList{dialect, duckdb, tables, QString(), script}
                                    << QByteArray("The name of the folder of the tables is empty.");
        QTest::newRow("same database") << QStringList{dialect, duckdb,
                                                      tables,  QStringLiteral("odd"),
                                                      tables,  QStringLiteral("./odd"),
                                                      script}
                                       << QByteArray("The tables in 'odd' and in './odd' are both those of 'odd.tav'.");
        QTest::newRow("number") << QStringList{dialect, duckdb, QStringLiteral("--slice"), QStringLiteral("0"), script}
                                << QByteArray("Not a number of graphs: '0'.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(QStringList{QStringLiteral("sql")} + arguments, {}, folder.path());
        QCOMPARE(result.errors, "tav: " + message + "\nTry 'tav sql --help'.\n");
        QCOMPARE(result.status, 2);
    }

private:
    /// Exports NAME.tav as the tables NAME.
    void exportTables(const QString &name, const QStringList &options)
    {
        const ToolResult result = runTav(QStringList{QStringLiteral("export"), QStringLiteral("-o"), name} + options +
                                             QStringList{name + QStringLiteral(".tav")},
                                         {}, folder.path());
        if (result.status != 0) {
            qFatal("tav export: %s", result.errors.constData());
        }
    }

    void changeManifest(const QString &tables, const std::function<void(QJsonObject &)> &change)
    {
        const QString path = folder.path(tables + QStringLiteral("/manifest.json"));
        QJsonObject manifest = QJsonDocument::fromJson(contents(path)).object();
        change(manifest);
        write(path, QJsonDocument(manifest).toJson());
    }

    ToolResult translate(const QByteArray &engine, const QString &tables, const QByteArray &script,
                         const QStringList &options = {})
    {
        folder.write("script", script);
        return runTav(QStringList{QStringLiteral("sql"), QStringLiteral("--dialect"), QLatin1String(engine),
                                  QStringLiteral("--tables"), tables, QStringLiteral("script")} +
                          options,
                      {}, folder.path());
    }

    TestFolder folder;
};

QTEST_GUILESS_MAIN(TestTavSql)
#include "tst_tav_sql.moc"
