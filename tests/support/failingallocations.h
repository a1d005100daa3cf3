// A malloc() that counts the large allocations of the process and can let them fail.
#ifndef TAVOLINE_TESTS_FAILINGALLOCATIONS_H
#define TAVOLINE_TESTS_FAILINGALLOCATIONS_H

/// Which large allocations fail: none, the one with the chosen number, or that one and all later ones.
enum class Shortage { None, Once, FromThenOn };

/// Starts to count the allocations of more than 64 kB, from 1. @p shortage and @p number choose those that fail.
void startShortage(Shortage shortage, int number = 0);

/// Whether an allocation has failed since the last startShortage().
bool hasAllocationFailed();

#endif
