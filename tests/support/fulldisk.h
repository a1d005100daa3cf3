// A disk that is full.
#ifndef TAVOLINE_TESTS_FULLDISK_H
#define TAVOLINE_TESTS_FULLDISK_H

#include <sys/resource.h>

/// While one lives, no file can grow beyond 16 bytes: as on a disk that fills up, one write takes what fits, and the
/// next one fails.
class FullDisk
{
public:
    FullDisk();
    ~FullDisk();
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit savedLimit{};
    void (*savedHandler)(int);
};

#endif
