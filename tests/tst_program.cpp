#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// Runs the program itself, as from a shell.
class TestProgram : public QObject
{
    Q_OBJECT

private slots:
    void staysWhenNobodyReadsItsErrors();
};

void TestProgram::staysWhenNobodyReadsItsErrors()
{
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
    environment.insert(QStringLiteral("QT_DEBUG_PLUGINS"), QStringLiteral("1")); // writes many lines while it starts
    QProcess shell;
    shell.setProcessEnvironment(environment);
    // 124: timeout had to end it. 141 would be the broken pipe.
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("exec 3>&1; { timeout 3 '%1' 2>&1; echo $? >&3; } | true")
                                           .arg(QStringLiteral(TAVOLINE_PROGRAM))});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardOutput(), QByteArray("124\n"));
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
