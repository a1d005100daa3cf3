#ifndef TAVOLINE_TESTS_NOMOREFILES_H
#define TAVOLINE_TESTS_NOMOREFILES_H

#include <sys/resource.h>

/// While one lives the process can open no file.
class NoMoreFiles
{
public:
    NoMoreFiles()
    {
        getrlimit(RLIMIT_NOFILE, &savedLimit);
        rlimit limit = savedLimit;
        limit.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &savedLimit); }
    NoMoreFiles(const NoMoreFiles &) = delete;
    NoMoreFiles &operator=(const NoMoreFiles &) = delete;

private:
    rlimit savedLimit{};
};

#endif
