// Replaces the allocation functions of glibc, in a program that is linked with this or loads it by LD_PRELOAD. In the
// second case the environment variable TAVOLINE_SHORTAGE chooses the allocations that fail: "3" is the third large one,
// "3+" that and all later ones. The first failure makes the file that TAVOLINE_SHORTAGE_MARK names.
#include "failingallocations.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

extern "C" {
void *__libc_malloc(size_t);
void *__libc_calloc(size_t, size_t);
void *__libc_realloc(void *, size_t);
}

namespace
{
constexpr size_t largestSmall = 64 << 10;

std::atomic<Shortage> chosenShortage = Shortage::None;
std::atomic<int> chosenNumber = 0;
std::atomic<int> largeCount = 0;
std::atomic<bool> hasFailed = false;

void leaveMark()
{
    if (const char *path = std::getenv("TAVOLINE_SHORTAGE_MARK")) {
        ::close(::open(path, O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
}

bool fails(size_t size)
{
    if (size <= largestSmall || chosenShortage == Shortage::None) {
        return false;
    }
    const int number = ++largeCount;
    if (number < chosenNumber || (number > chosenNumber && chosenShortage == Shortage::Once)) {
        return false;
    }
    if (!hasFailed.exchange(true)) {
        leaveMark();
    }
    errno = ENOMEM;
    return true;
}

const bool isChosenFromOutside = [] {
    const char *choice = std::getenv("TAVOLINE_SHORTAGE");
    if (choice != nullptr) {
        startShortage(std::strchr(choice, '+') != nullptr ? Shortage::FromThenOn : Shortage::Once, std::atoi(choice));
    }
    return choice != nullptr;
}();
} // namespace

void startShortage(Shortage shortage, int number)
{
    chosenShortage = Shortage::None;
    hasFailed = false;
    largeCount = 0;
    chosenNumber = number;
    chosenShortage = shortage;
}

bool hasAllocationFailed()
{
    return hasFailed;
}

extern "C" {
void *malloc(size_t size)
{
    return fails(size) ? nullptr : __libc_malloc(size);
}

void *calloc(size_t count, size_t size)
{
    return fails(count * size) ? nullptr : __libc_calloc(count, size);
}

void *realloc(void *memory, size_t size)
{
    return fails(size) ? nullptr : __libc_realloc(memory, size);
}
}
