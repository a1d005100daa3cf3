#ifndef TAVOLINE_HEAP_H
#define TAVOLINE_HEAP_H

// How the C library deals with the memory of a large database. Without effect where it is not the GNU library.

/// Lets the program take memory from the system, and give it back, in large steps. The library otherwise asks for every
/// page of a thread's heap by itself, half a million times in the load of twelve million graphs. To be called once, at
/// the beginning of the program, while it has one thread.
void useLargeHeapSteps();

/// Gives the memory of what was deleted back to the system: the library keeps hundreds of megabytes otherwise.
void releaseFreeMemory();

#endif
