#ifndef TAVOLINE_HEAP_H
#define TAVOLINE_HEAP_H

// Settings of glibc's malloc for large databases. With another C library these functions do nothing.

/// Lets malloc take memory from the system, and give it back, in large steps. By default glibc extends the heap of a
/// thread page by page, which is half a million system calls in the load of twelve million graphs. To be called once,
/// at the beginning of the program, while it has one thread.
void useLargeHeapSteps();

/// Gives freed memory back to the system. glibc would keep hundreds of megabytes after a database was deleted.
void releaseFreeMemory();

#endif
