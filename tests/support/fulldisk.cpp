// A limit of the size of files stands for the full disk.

#include "fulldisk.h"

#include <csignal>

FullDisk::FullDisk() : savedHandler(std::signal(SIGXFSZ, SIG_IGN))
{
    getrlimit(RLIMIT_FSIZE, &savedLimit);
    rlimit limit = savedLimit;
    limit.rlim_cur = 16;
    setrlimit(RLIMIT_FSIZE, &limit);
}

FullDisk::~FullDisk()
{
    setrlimit(RLIMIT_FSIZE, &savedLimit);
    std::signal(SIGXFSZ, savedHandler);
}
