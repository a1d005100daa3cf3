// Every large allocation of the companion program fails once: it says so and fails, or its output is right.

#include "support/literals.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QDir>
#include <QProcessEnvironment>
#include <QtTest>

class TestTavMemory : public QObject
{
    Q_OBJECT

private slots:
    void commands_data();
    void commands();
    void littleAddressSpace();
};

void TestTavMemory::commands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<bool>("onwards");
    const QString database = example("connected-8.tav");
    const auto rows = [](const QByteArray &title, const QStringList &arguments, const QByteArray &script = {}) {
        QTest::newRow((title + ", once").constData()) << arguments << script << false;
        QTest::newRow((title + ", from then on").constData()) << arguments << script << true;
    };
    rows("build", words({"build", "-o", "saved", "names.g6"}));
    rows("index", {QStringLiteral("index"), QStringLiteral("-o"), QStringLiteral("saved"), database});
    rows("a part", {QStringLiteral("build"), QStringLiteral("--base"), QStringLiteral("base.tav"), QStringLiteral("-o"),
                    QStringLiteral("saved"), QStringLiteral("above.g6")});
    rows("export", {QStringLiteral("export"), QStringLiteral("-o"), QStringLiteral("new"), QStringLiteral("--values"),
                    example("connected-8.girth.txt"), database});
    rows("info", {QStringLiteral("info"), database});
    rows("invariant", {QStringLiteral("invariant"), QStringLiteral("size"), database, QStringLiteral("-o"),
                       QStringLiteral("saved")});
    rows("names", {QStringLiteral("names"), QStringLiteral("-o"), QStringLiteral("saved"), database,
                   QStringLiteral("names.g6")});
    const QByteArray files = QFile::encodeName(QStringLiteral(TAVOLINE_EXAMPLES));
    rows("run", words({"run", "script"}),
         "load " + files + "/connected-8.tav\nload-i1 " + files + "/connected-8.size.txt\nload-i2 " + files +
             "/connected-8.diameter.txt\nlist-ge a\nlist-le-subs b\nunion c a b\nsave-list c saved\n");
    rows("sql", words({"sql", "--dialect", "spark", "--tables", "tables", "-o", "saved", "script"}),
         QByteArray("load base.tav\nlist-ge a\n") + QByteArray("list-eq-supers b\nremove-list b\n").repeated(300));
}

void TestTavMemory::commands()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, script);
    QFETCH(bool, onwards);
    const TestFolder folder;
    folder.write("script", script);
    QByteArray names;
    for (const QByteArray &line : contents(example("connected-8.tav")).split('\n')) {
        names += line.left(line.indexOf('\t')) + '\n';
    }
    folder.write("names.g6", names);
    const QByteArray all = contents(example("connected-8.tav"));
    folder.write("base.tav", all.left(all.indexOf("\nG") + 1));
    QCOMPARE(runTav(words({"index", "base.tav"}), {}, folder.path()).status, 0);
    QCOMPARE(runTav(words({"export", "-o", "tables", "base.tav"}), {}, folder.path()).status, 0);
    folder.write("above.g6", names.mid(names.indexOf("\nG") + 1));
    const QString saved = folder.path("saved");
    const QString mark = folder.path("mark");
    write(saved, "old");
    const ToolResult expected = runTav(arguments, {}, folder.path());
    QCOMPARE(expected.status, 0);
    const QByteArray expectedFile = contents(saved);
    QDir made(folder.path("new"));
    QVERIFY(made.removeRecursively()); // also when there is none

    int failures = 0;
    bool isShort = true;
    for (int number = 1; isShort; ++number) {
        write(saved, "old");
        QFile::remove(mark);
        const ToolResult result = runProgram(
            QStringLiteral("env"),
            QStringList{
                QStringLiteral("LD_PRELOAD=" TAVOLINE_FAILING_ALLOCATIONS),
                QStringLiteral("TAVOLINE_SHORTAGE=%1%2").arg(number).arg(onwards ? QStringLiteral("+") : QString()),
                QStringLiteral("TAVOLINE_SHORTAGE_MARK=") + mark, QStringLiteral(TAVOLINE_TAV)} +
                arguments,
            {}, folder.path());
        isShort = QFile::exists(mark);
        if (result.status == 0) {
            QCOMPARE(result.output, expected.output);
            QCOMPARE(contents(saved), expectedFile);
            QVERIFY(made.removeRecursively());
        } else {
            ++failures;
            QVERIFY(isShort);
            QCOMPARE(result.status, 1);
            QVERIFY2(result.errors.contains("tav: "), result.errors.constData());
            QVERIFY2((result.errors + result.output).contains("memory"), result.errors.constData());
            QCOMPARE(contents(saved), expectedFile == "old" ? expectedFile : QByteArray("old"));
        }
        QStringList left = folder.files();
        left.removeAll(QStringLiteral("mark"));
        QCOMPARE(left, words({"above.g6", "base.tav", "base.tav.index", "names.g6", "saved", "script", "tables"}));
        QVERIFY2(number < 1000, "the same allocation again and again");
    }
    QVERIFY(failures > 0);
}

/// Other libraries than Qt, such as GLib, would end the program themselves.
void TestTavMemory::littleAddressSpace()
{
    for (const char *kilobytes : {"80000", "100000", "130000"}) {
        const QString command = QStringLiteral("ulimit -v %1; exec '%2' --version")
                                    .arg(QLatin1String(kilobytes), QStringLiteral(TAVOLINE_TAV));
        const ToolResult result = runProgram(QStringLiteral("sh"), {QStringLiteral("-c"), command});
        QVERIFY2(result.status == 0 || (result.status == 1 && result.errors == "tav: Out of memory.\n"),
                 result.errors.constData());
    }
}

QTEST_GUILESS_MAIN(TestTavMemory)
#include "tst_tav_memory.moc"
