// The program itself, as it is started from a shell.

#include "support/patience.h"
#include "support/testdata.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class TestProgram : public QObject
{
    Q_OBJECT

private slots:
    void staysWhenNobodyReadsItsErrors();
};

/// The reader of the error stream leaves before the program starts. Its first write would end it with SIGPIPE; here it
/// lives on until SIGTERM.
void TestProgram::staysWhenNobodyReadsItsErrors()
{
    const QTemporaryDir home;
    const QString errors = home.filePath(QStringLiteral("errors"));
    QCOMPARE(::mkfifo(QFile::encodeName(errors).constData(), 0600), 0);
    const int reader = ::open(QFile::encodeName(errors).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(reader >= 0);

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
    // Qt writes lines before it loads the platform plugin.
    environment.insert(QStringLiteral("QT_DEBUG_PLUGINS"), QStringLiteral("1"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setStandardErrorFile(errors);
    program.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("read go; exec \"$1\""),
                                         QStringLiteral("sh"), QStringLiteral(TAVOLINE_PROGRAM)});
    QVERIFY(program.waitForStarted(patience));
    ::close(reader);
    program.write("\n");

    const QString mappedFiles = QStringLiteral("/proc/%1/maps").arg(program.processId());
    QTRY_VERIFY_WITH_TIMEOUT(program.state() != QProcess::Running || contents(mappedFiles).contains("libqoffscreen"),
                             patience);
    program.terminate();
    QVERIFY(program.waitForFinished(patience));
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QCOMPARE(program.exitCode(), SIGTERM);
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
