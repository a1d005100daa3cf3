#include "progress.h"

#include "plaintext.h"

#include <csignal>
#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace
{
constexpr std::string_view removal = "\r\033[K";

bool isLineShown = false;

/// The signal handler: removes the line, then lets the signal end the program.
void removeLine(int number)
{
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, removal.data(), removal.size());
    std::raise(number);
}

/// Sets the handler @p after for the ending signals of a terminal whose handler is @p before.
void replaceHandlers(sighandler_t before, sighandler_t after)
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler == before) {
            action = {};
            action.sa_handler = after;
            action.sa_flags = SA_RESETHAND;
            sigaction(number, &action, nullptr);
        }
    }
}
} // namespace

Progress::Progress(const QString &workName, qint64 size)
    : work(plainText(workName))
    , total(size)
    , isShown(isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    clear();
}

void Progress::report(qint64 done)
{
    const qint64 number = total > 0 ? 100 * done / total : done;
    if (isShown && (number != shown || !isLineShown)) {
        shown = number;
        isLineShown = true;
        replaceHandlers(SIG_DFL, removeLine);
        std::fprintf(stderr, "\r%s: %lld%s", qPrintable(work), number, total > 0 ? " %" : "");
    }
}

void Progress::clear()
{
    if (isLineShown) {
        std::fputs(removal.data(), stderr);
        isLineShown = false;
        replaceHandlers(removeLine, SIG_DFL);
    }
}
