// How the programs are protected against faults in them: read from their files.

#include "support/runprogram.h"

#include <QtTest>

class TestHardening : public QObject
{
    Q_OBJECT

private slots:
    void everyStartHasOtherAddresses_data() { addPrograms(); }
    void everyStartHasOtherAddresses();
    void functionsOfLibrariesAreFixedAtTheStart_data() { addPrograms(); }
    void functionsOfLibrariesAreFixedAtTheStart();
    void theStackCannotBeExecuted_data() { addPrograms(); }
    void theStackCannotBeExecuted();
#ifdef TAVOLINE_CHECKED
    void writesAndIndicesAreChecked_data()
    {
        addPrograms();
    }
    void writesAndIndicesAreChecked();
#endif

private:
    static void addPrograms();
    /// What readelf tells of the program of the row.
    static QString readelf(const char *what);
};

void TestHardening::addPrograms()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("tavoline") << QStringLiteral(TAVOLINE_PROGRAM);
#ifdef TAVOLINE_TAV
    QTest::newRow("tav") << QStringLiteral(TAVOLINE_TAV);
#endif
}

QString TestHardening::readelf(const char *what)
{
    QFETCH(QString, program);
    const QStringList arguments{QStringLiteral("--wide"), QString::fromLatin1(what), program};
    const ToolResult result = runProgram(QStringLiteral(READELF_PROGRAM), arguments);
    return result.status == 0 ? QString::fromUtf8(result.output) : QString();
}

void TestHardening::everyStartHasOtherAddresses()
{
    const QRegularExpression type(QStringLiteral("Type: +DYN \\(Position-Independent Executable file\\)"));
    QVERIFY(readelf("--file-header").contains(type));
}

void TestHardening::functionsOfLibrariesAreFixedAtTheStart()
{
    QVERIFY(readelf("--program-headers").contains(QStringLiteral("GNU_RELRO")));
    const QRegularExpression now(QStringLiteral("\\(FLAGS_1\\) +Flags: .*NOW"));
    QVERIFY(readelf("--dynamic").contains(now));
}

void TestHardening::theStackCannotBeExecuted()
{
    const QRegularExpression stack(QStringLiteral("GNU_STACK( +0x[0-9a-f]+){5} RW "));
    QVERIFY(readelf("--program-headers").contains(stack));
}

#ifdef TAVOLINE_CHECKED
void TestHardening::writesAndIndicesAreChecked()
{
    const QString symbols = readelf("--dyn-syms");
    QVERIFY(symbols.contains(QStringLiteral("__stack_chk_fail")));    // -fstack-protector-strong
    QVERIFY(symbols.contains(QStringLiteral("glibcxx_assert_fail"))); // _GLIBCXX_ASSERTIONS
    // _FORTIFY_SOURCE replaces functions of the C library, and the window calls none that can be replaced.
    if (QByteArray(QTest::currentDataTag()) == "tav") {
        QVERIFY(symbols.contains(QRegularExpression(QStringLiteral("__\\w+_chk@GLIBC"))));
    }
}
#endif

QTEST_GUILESS_MAIN(TestHardening)
#include "tst_hardening.moc"
