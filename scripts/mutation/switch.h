/// Included before everything in a build with mutants: which one of them is active, and which are reached.
#ifndef SWITCH_H
#define SWITCH_H

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

class MutantSwitch
{
public:
    MutantSwitch()
    {
        if (const char *const number = std::getenv("TAVOLINE_MUTANT")) {
            active = std::atoi(number);
        }
        // A file in memory is still complete when the program is killed, and its children share it.
        if (const char *const name = std::getenv("TAVOLINE_MUTANTS_REACHED")) {
            const int file = open(name, O_RDWR | O_CLOEXEC);
            struct stat status = {};
            fstat(file, &status);
            void *const bytes = mmap(nullptr, std::size_t(status.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
            close(file);
            reached = bytes == MAP_FAILED ? nullptr : static_cast<unsigned char *>(bytes);
        }
    }

    int active = 0;
    unsigned char *reached = nullptr;
};

/// Whether the mutant @p number is the one to run.
inline bool tavolineMutant(int number)
{
    static const MutantSwitch instance;
    if (instance.reached) {
        instance.reached[number] = 1;
    }
    return number == instance.active;
}

/// The same in a function that the compiler may have to compute.
constexpr bool tavolineConstexprMutant(int number)
{
    return !__builtin_is_constant_evaluated() && tavolineMutant(number);
}

#endif // SWITCH_H
