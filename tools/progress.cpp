#include "progress.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

Progress::Progress(QString workName, qint64 size)
    : work(std::move(workName))
    , total(size)
    , isShown(isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    if (shownPercent >= 0) {
        std::fputs("\r\033[K", stderr);
    }
}

void Progress::report(qint64 done)
{
    const int percent = total > 0 ? int(100 * done / total) : 100;
    if (isShown && percent != shownPercent) {
        shownPercent = percent;
        std::fprintf(stderr, "\r%s: %d %%", qPrintable(work), percent);
    }
}
