// How much memory the program has from glibc.
#ifndef TAVOLINE_TESTS_HEAPUSE_H
#define TAVOLINE_TESTS_HEAPUSE_H

#include <malloc.h>

/// The bytes that are in use; always 0 under the sanitizers, which have allocation functions of their own, and find
/// what is lost by themselves.
inline size_t heapUse()
{
    const struct mallinfo2 numbers = ::mallinfo2();
    return numbers.uordblks + numbers.hblkhd;
}

#endif
