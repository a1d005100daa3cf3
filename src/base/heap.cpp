#include "heap.h"

#include <cstdlib> // defines __GLIBC__ where the C library is glibc

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/resource.h>
#endif

void useLargeHeapSteps()
{
#ifdef __GLIBC__
    rlimit addressSpace = {};
    if (getrlimit(RLIMIT_AS, &addressSpace) == 0 && addressSpace.rlim_cur != RLIM_INFINITY) {
        return; // a limited address space may have room for the data, but not for large steps
    }
    mallopt(M_TOP_PAD, 64 << 20);
    // Once M_TOP_PAD is set, glibc no longer adapts these two by itself. The first is large enough for a chunk of a
    // file to come from the heap, where the next chunk uses its memory again, instead of from mmap(). The second lets
    // memory that is freed record by record go back to the system in large steps.
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 8 << 20);
#endif
}

void releaseFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}
