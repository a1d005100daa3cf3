// The program itself, as it is started from a shell.

#include "TAVmainwindow.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/runprogram.h"
#include "support/testfiles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QIcon>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

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
int runMain(const std::function<void()> &then, const QStringList &arguments = {})
{
    std::vector<QByteArray> words{"tavoline"};
    for (const QString &argument : arguments) {
        words.push_back(QFile::encodeName(argument));
    }
    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray &word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    onceStarted = then;
    const int result = tavolineMain(int(words.size()), pointers.data());
    onceStarted = nullptr;
    return result;
}

/// The lines of the console of the shown window.
QStringList console()
{
    const auto *edit = shownWindow()->findChild<QTextEdit *>(QStringLiteral("console"));
    return edit->toPlainText().split(QLatin1Char('\n'));
}

/// Runs the program in a process of its own, where there is no display: with Qt's platform for X11 a window would end
/// it.
ToolResult runInProcess(const QStringList &arguments, const char *platform = "xcb")
{
    int count = 0;
    const QCoreApplication application(count, nullptr);
    const QTemporaryDir home;
    return runProgram(QStringLiteral("env"),
                      QStringList{QStringLiteral("-u"), QStringLiteral("DISPLAY"),
                                  QStringLiteral("QT_QPA_PLATFORM=") + QLatin1String(platform),
                                  QStringLiteral("LC_ALL=C.UTF-8"), QStringLiteral("XDG_RUNTIME_DIR=") + home.path(),
                                  QStringLiteral("XDG_CONFIG_HOME=") + home.path(), QStringLiteral(TAVOLINE_PROGRAM)} +
                          arguments);
}

/// What @p text tells of each option and operand: the two groups of @p expression, without double blanks.
QMap<QString, QString> entries(const QString &text, const char *expression)
{
    QMap<QString, QString> found;
    const QRegularExpression pattern(QLatin1String(expression), QRegularExpression::MultilineOption);
    for (auto match = pattern.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch entry = match.next();
        found.insert(entry.captured(1), entry.captured(2).simplified());
    }
    return found;
}
} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void staysWhenNobodyReadsItsErrors();
    void namesAndIconOfTheApplication();
    void endsWithItsWindow();
    void signalsThatEndNothing();
    void helpAndVersion_data();
    void helpAndVersion();
    void optionOfX11Elsewhere();
    void manualAgreesWithHelp();
    void wrongCommandLines_data();
    void wrongCommandLines();
    void answerThatCannotBeWritten();
    void loadsTheFileOfTheCommandLine();
    void tellsThatTheFileCannotBeRead_data();
    void tellsThatTheFileCannotBeRead();
    void workDirectoryOfTheCommandLine();

private:
    TestFolder folder; // with settings of its own
};

void TestProgram::initTestCase()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
}

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

void TestProgram::helpAndVersion_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("beginning");
    const QByteArray help = "Usage: tavoline [OPTION...] [FILE.tav]\n";
    const QByteArray version = "Tavoline version " TAVOLINE_VERSION " alpha\n";
    QTest::newRow("--help") << words({"--help"}) << help;
    QTest::newRow("-h") << words({"-h"}) << help;
    QTest::newRow("--version") << words({"--version"}) << version;
    QTest::newRow("with a file") << words({"some.tav", "--version"}) << version;
    const QString directory = folder.path() + QStringLiteral("/Gr\u00f6\u00dfe");
    QVERIFY(QDir().mkpath(directory));
    QTest::newRow("with a directory") << QStringList{QStringLiteral("--work-dir"), directory, QStringLiteral("--help")}
                                      << help;
    QTest::newRow("with an option of Qt") << words({"-style", "fusion", "--help"}) << help;
    QTest::newRow("the same, two dashes") << words({"--style", "fusion", "--version"}) << version;
    QTest::newRow("the same, one word") << words({"-style=fusion", "--version"}) << version;
    QTest::newRow("with an option of X11") << words({"-geometry", "900x900", "--version"}) << version;
    QTest::newRow("with an option without value") << words({"-reverse", "--version"}) << version;
}

void TestProgram::helpAndVersion()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, beginning);
    const ToolResult result = runInProcess(arguments);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output.left(beginning.size()), beginning);
    QCOMPARE(result.output.contains("--work-dir DIR"), beginning.startsWith("Usage"));
}

/// Qt takes -title on X11 alone, and the next argument with it.
void TestProgram::optionOfX11Elsewhere()
{
    const ToolResult result = runInProcess(words({"-title", "some.tav"}), "offscreen");
    QCOMPARE(result.errors, QByteArray("tavoline: Unknown option '-title'.\n"));
    QCOMPARE(result.status, 2);
}

/// The options and operands are the same, and so are the words behind the verb that tell what each is for.
void TestProgram::manualAgreesWithHelp()
{
    const QString help = QString::fromUtf8(runInProcess(words({"--help"})).output);
    const QMap<QString, QString> helpEntries = entries(help, R"(^  (\S+(?: \S+)*) +\w+ (.*)$)");
    QCOMPARE(helpEntries.keys(), words({"--version", "--work-dir DIR", "-h, --help", "FILE.tav"}));

    int count = 0;
    const QCoreApplication application(count, nullptr);
    // Long lines, and no word divided.
    const QStringList setting = words({"-man", "-Tascii", "-P-cbou", "-rLL=400n", "-rHY=0"});
    const ToolResult result = runProgram(QStringLiteral(GROFF_PROGRAM),
                                         setting + QStringList{QStringLiteral(TAVOLINE_SOURCES "/src/tavoline.1")});
    QCOMPARE(result.status, 0);
    const QString manual = QString::fromUtf8(result.output).section(QStringLiteral("\nEXIT STATUS\n"), 0, 0);
    QCOMPARE(entries(manual, R"(^ {7}(\S.*)\n {14}\w+ ([^.]*)\.)"), helpEntries);
    const QString synopsis = manual.section(QStringLiteral("\nSYNOPSIS\n"), 1).section(QStringLiteral("\n\n"), 0, 0);
    QCOMPARE(synopsis.simplified(),
             QStringLiteral("tavoline [--work-dir DIR] [FILE.tav] tavoline --help tavoline --version"));
}

void TestProgram::wrongCommandLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown option") << words({"--bogus"}) << QByteArray("Unknown option '--bogus'.");
    QTest::newRow("unknown short option") << words({"-x"}) << QByteArray("Unknown option '-x'.");
    QTest::newRow("unknown option with a value") << words({"-bogus=3"}) << QByteArray("Unknown option '-bogus'.");
    QTest::newRow("option of Qt without its value") << words({"-style"}) << QByteArray("Unknown option '-style'.");
    QTest::newRow("unknown option and --help")
        << words({"--bogus", "--help"}) << QByteArray("Unknown option '--bogus'.");
    QTest::newRow("an option of two lines") << words({"--two\nlines"}) << QByteArray("Unknown option '--two lines'.");
    QTest::newRow("second file") << words({"a.tav", "b.tav"})
                                 << QByteArray("Only one file can be loaded, not 'b.tav', too.");
    QTest::newRow("second file that looks like an option")
        << words({"--", "a.tav", "--help"}) << QByteArray("Only one file can be loaded, not '--help', too.");
    QTest::newRow("no directory given") << words({"--work-dir"}) << QByteArray("Missing value after '--work-dir'.");
    QTest::newRow("no directory") << words({"--work-dir", "/nowhere"}) << QByteArray("Not a directory: '/nowhere'.");
    QTest::newRow("file for a directory")
        << words({"--work-dir=/dev/null"}) << QByteArray("Not a directory: '/dev/null'.");
    QTest::newRow("value for none") << words({"--version=2"}) << QByteArray("Unexpected value after '--version'.");
}

void TestProgram::wrongCommandLines()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const ToolResult result = runInProcess(arguments);
    QCOMPARE(result.errors, "tavoline: " + message + '\n');
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.status, 2);
}

void TestProgram::answerThatCannotBeWritten()
{
    int count = 0;
    const QCoreApplication application(count, nullptr);
    const ToolResult result =
        runProgram(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("exec \"$1\" --version >/dev/full"),
                                          QStringLiteral("sh"), QStringLiteral(TAVOLINE_PROGRAM)});
    QCOMPARE(result.status, 1);
}

void TestProgram::loadsTheFileOfTheCommandLine()
{
    QStringList lines;
    const int status = runMain(
        [&] {
            const bool loaded =
                QTest::qWaitFor([] { return console().last().startsWith(QLatin1String("Data")); }, patience);
            lines = loaded ? console() : QStringList();
            shownWindow()->close();
        },
        {example("connected-8.tav")});
    QCOMPARE(status, 0);
    QCOMPARE(lines,
             words({"Loading data ... please wait.", "12113 lines.", "Data loaded : 12113 nodes and 71258 links."}));
}

void TestProgram::tellsThatTheFileCannotBeRead_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("missing") << QStringLiteral("/nowhere/at all.tav");
    QTest::newRow("directory") << folder.path();
    QTest::newRow("no name") << QStringLiteral("");
}

void TestProgram::tellsThatTheFileCannotBeRead()
{
    QFETCH(QString, file);
    QStringList lines;
    const int status = runMain(
        [&] {
            lines = console();
            shownWindow()->close();
        },
        {file});
    QCOMPARE(status, 0);
    QCOMPARE(lines, QStringList{QStringLiteral("Unable to open file :") + file});
}

/// It holds for this run: the settings keep theirs.
void TestProgram::workDirectoryOfTheCommandLine()
{
    const TestFolder other;
    QString start;
    QString saved;
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    runMain(
        [&] {
            QTimer answer;
            QObject::connect(&answer, &QTimer::timeout, &answer, [&start] {
                if (auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
                    start = dialog->directory().path();
                    dialog->reject();
                }
            });
            answer.start(10);
            for (auto *button : shownWindow()->findChildren<QAbstractButton *>()) {
                if (button->text() == QLatin1String("Save all graphs")) {
                    button->click();
                }
            }
            saved = QSettings().value(QStringLiteral("wd"), QStringLiteral("none")).toString();
            shownWindow()->close();
        },
        {QStringLiteral("--work-dir"), other.path()});
    QCOMPARE(start, other.path());
    QCOMPARE(saved, QStringLiteral("none"));
}

QTEST_APPLESS_MAIN(TestProgram)
#include "tst_program.moc"
