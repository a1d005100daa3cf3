#ifndef TAVOLINE_TESTS_FULLDISK_H
#define TAVOLINE_TESTS_FULLDISK_H

#include <sys/resource.h>

/// Lets no file grow beyond 16 bytes while the object lives: a write takes what fits, the next one fails, as on a disk
/// that fills up.
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
