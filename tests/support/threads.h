// How many threads work is shared out among, and a system that makes none.
#ifndef TAVOLINE_TESTS_THREADS_H
#define TAVOLINE_TESTS_THREADS_H

#include "parallel.h"

#include <cstddef>
#include <pthread.h>

/// While one lives, no thread can be made: its stack would need more memory than there is.
class NoThreads
{
public:
    NoThreads()
    {
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_getstacksize(&attributes, &usualSize);
        pthread_attr_destroy(&attributes);
        setStackSize(size_t(1) << 60);
    }
    ~NoThreads() { setStackSize(usualSize); }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    static void setStackSize(size_t size)
    {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, size);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }

    size_t usualSize = 0;
};

/// Sets threadCount() to @p count while it lives.
class ThreadCount
{
public:
    explicit ThreadCount(int count) { setThreadCount(count); }
    ~ThreadCount() { setThreadCount(0); }
    ThreadCount(const ThreadCount &) = delete;
    ThreadCount &operator=(const ThreadCount &) = delete;
};

#endif
