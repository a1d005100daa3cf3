// The program itself, as it is started from a shell.

#include "TAVmainwindow.h"
#include "support/patience.h"
#include "support/testfiles.h"

#include <QApplication>
#include <QIcon>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

int tavolineMain(int argc, char *argv[]); // main() of the program

namespace
{
/// What the next program does when it has started.
std::function<void()> onceStarted;

void startUp()
{
    if (onceStarted) {
        QTimer::singleShot(0, onceStarted);
    }
}
Q_COREAPP_STARTUP_FUNCTION(startUp)

/// The window of the program, null when there is none.
TAVMainWindow *shownWindow()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<TAVMainWindow *>(widget)) {
            return window->isVisible() ? window : nullptr;
        }
    }
    return nullptr;
}

/// Runs main() with @p then when it has started, and returns its result.
int runMain(const std::function<void()> &then)
{
    char name[] = "tavoline";
    char *arguments[] = {name, nullptr};
    onceStarted = then;
    const int result = tavolineMain(1, arguments);
    onceStarted = nullptr;
    return result;
}
} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private slots:
    void staysWhenNobodyReadsItsErrors();
    void namesAndIconOfTheApplication();
    void endsWithItsWindow();
    void signalsThatEndNothing();
};

/// The reader of the error stream leaves before the program starts. Its first write would end it with SIGPIPE; here it
/// lives on until SIGTERM.
void TestProgram::staysWhenNobodyReadsItsErrors()
{
    int count = 0;
    const QCoreApplication application(count, nullptr);
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

void TestProgram::namesAndIconOfTheApplication()
{
    QStringList names;
    QString settings;
    QImage icon;
    QImage shownIcon;
    runMain([&] {
        names = QStringList{QCoreApplication::organizationName(), QCoreApplication::organizationDomain(),
                            QCoreApplication::applicationName()};
        settings = QSettings().fileName();
        icon = QImage(QStringLiteral(":/src/images/paragraph.png"));
        icon = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        shownIcon = shownWindow()->windowIcon().pixmap(icon.size()).toImage().convertToFormat(icon.format());
        shownWindow()->close();
    });
    const QString title = QStringLiteral("Tavoline version " TAVOLINE_VERSION " alpha");
    QCOMPARE(names, (QStringList{QStringLiteral("Tavoline"), QStringLiteral("tavoline.example"), title}));
    QVERIFY(settings.endsWith(QStringLiteral("/Tavoline/") + title + QStringLiteral(".conf")));
    QVERIFY(!icon.isNull());
    QCOMPARE(shownIcon, icon);
}

void TestProgram::endsWithItsWindow()
{
    QPointer<TAVMainWindow> window;
    const int status = runMain([&] {
        window = shownWindow();
        if (window.isNull()) {
            QCoreApplication::exit(2);
        } else {
            window->close();
        }
    });
    QCOMPARE(status, 0);
    QVERIFY(window.isNull());
    const int other = runMain([] {
        delete shownWindow();
        QCoreApplication::exit(3);
    });
    QCOMPARE(other, 3);
}

/// That of a pipe that nobody reads, and that of a file that is larger than it may be.
void TestProgram::signalsThatEndNothing()
{
    bool isPipeIgnored = false;
    bool isSizeIgnored = false;
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
    runMain([&] {
        isPipeIgnored = std::signal(SIGPIPE, SIG_DFL) == SIG_IGN;
        isSizeIgnored = std::signal(SIGXFSZ, SIG_DFL) == SIG_IGN;
        shownWindow()->close();
    });
    QVERIFY(isPipeIgnored);
    QVERIFY(isSizeIgnored);
}

QTEST_APPLESS_MAIN(TestProgram)
#include "tst_program.moc"
