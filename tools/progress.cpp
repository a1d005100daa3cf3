#include "progress.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace
{
bool isLineShown = false;
}

Progress::Progress(QString workName, qint64 size)
    : work(std::move(workName))
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
        std::fprintf(stderr, "\r%s: %lld%s", qPrintable(work), number, total > 0 ? " %" : "");
    }
}

void Progress::clear()
{
    if (isLineShown) {
        std::fputs("\r\033[K", stderr);
        isLineShown = false;
    }
}
