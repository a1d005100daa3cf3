#include "TAVmainwindow.h"
#include "applicationtitle.h"
#include "arguments.h"
#include "heap.h"
#include "outputfile.h"

#include <QApplication>
#include <QIcon>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace
{
constexpr int wrongUsage = 2;

/// The arguments, before QApplication has taken those of Qt out.
QStringList allArguments(int argc, char *argv[])
{
    QStringList all;
    for (int i = 0; i < argc; ++i) {
        all.append(QString::fromLocal8Bit(argv[i]));
    }
    return all;
}

/// Answers a command line that asks for no window, and returns the status of the program then.
std::optional<int> answerWithoutWindow(const Arguments &arguments)
{
    if (!arguments.fault.isEmpty()) {
        std::fprintf(stderr, "tavoline: %s\n", qPrintable(arguments.fault));
        return wrongUsage;
    }
    if (arguments.help) {
        std::fputs(qPrintable(helpText()), stdout);
    } else if (arguments.version) {
        std::puts(applicationTitle);
    } else {
        return {};
    }
    return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
} // namespace

int main(int argc, char *argv[])
{
    useLargeHeapSteps();
    // SIGPIPE would end the program when the reader of standard error, or of a FIFO that a list is saved into, leaves.
    std::signal(SIGPIPE, SIG_IGN);
    failBeyondFileSizeLimit();
    // QApplication needs a display, which an answer on the command line does without.
    const QStringList ownArguments = withoutOptionsOfQt(allArguments(argc, argv));
    if (const std::optional<int> status = answerWithoutWindow(readArguments(ownArguments))) {
        return *status;
    }
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tavoline"));
    QApplication::setOrganizationDomain(QStringLiteral("tavoline.example"));
    QApplication::setApplicationName(QLatin1String(applicationTitle));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/src/images/paragraph.png")));
    // Now Qt has taken its own out, which are not the same on every platform.
    const Arguments arguments = readArguments(QCoreApplication::arguments());
    if (const std::optional<int> status = answerWithoutWindow(arguments)) {
        return *status;
    }
    auto *window = new TAVMainWindow; // deletes itself when it is closed
    window->show();
    if (arguments.workDir) {
        window->setWorkDir(*arguments.workDir);
    }
    if (arguments.database) {
        window->loadDatabase(*arguments.database);
    }
    return QApplication::exec();
}
