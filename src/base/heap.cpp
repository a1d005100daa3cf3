#include "heap.h"

#include <cstdlib> // tells which library it is

#ifdef __GLIBC__
#include <malloc.h>
#endif

void useLargeHeapSteps()
{
#ifdef __GLIBC__
    mallopt(M_TOP_PAD, 64 << 20);
    // These stop growing by themselves when the step is set. Chunks of a file use their memory again, and what is freed
    // record by record goes back in large steps, too.
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
