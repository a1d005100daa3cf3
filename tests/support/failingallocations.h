// A malloc() that counts the large allocations of the process and lets chosen ones fail.
#ifndef TAVOLINE_TESTS_FAILINGALLOCATIONS_H
#define TAVOLINE_TESTS_FAILINGALLOCATIONS_H

/// Which of the large allocations fail: none, the one of that number, or that and all behind it.
enum class Shortage { None, Once, FromThenOn };

/// Counts the allocations of more than 64 kB from 1 again, and lets those fail that @p shortage and @p number say.
void startShortage(Shortage shortage, int number = 0);

/// Whether an allocation has failed since.
bool hasAllocationFailed();

#endif
