#ifndef TAVOLINE_BENCH_VALUES_H
#define TAVOLINE_BENCH_VALUES_H

#include <cstdint>
#include <limits>

// Values of invariants, by the number of the graph's line; NaN for a missing one. They have six digits, so that writing
// them to an invariant file loses nothing.

/// The finaliser of MurmurHash3: pseudo-random numbers, the same in every run.
inline uint32_t mixed(uint32_t number)
{
    number ^= number >> 16;
    number *= 0x85ebca6bU;
    number ^= number >> 13;
    number *= 0xc2b2ae35U;
    return number ^ number >> 16;
}

/// Six digits, from 100.000 to 999.999.
inline double sixDigits(uint32_t random)
{
    return (100000 + random % 900000) / 1000.0;
}

/// Six digits, or, for one graph in sixteen, none.
inline double sixDigitsOrMissing(uint32_t random)
{
    return random >> 28 == 0 ? std::numeric_limits<double>::quiet_NaN() : sixDigits(random);
}

inline double variedFirst(uint32_t line)
{
    return sixDigitsOrMissing(mixed(2 * line));
}

inline double variedSecond(uint32_t line)
{
    return sixDigitsOrMissing(mixed(2 * line + 1));
}

inline double level(uint32_t)
{
    return 0.0;
}

/// Greater than level() for every graph.
inline double above(uint32_t line)
{
    return sixDigits(mixed(line));
}

/// Less than level() for every graph.
inline double below(uint32_t line)
{
    return -above(line);
}

/// level(), or for one graph in four, greater than it by exactly the tolerance of comparisons.
inline double nearLevel(uint32_t line)
{
    return mixed(line) >> 30 == 0 ? 1e-8 : 0.0;
}

/// On the level but for the first graph, which is away from it, and the second, by exactly the tolerance of a
/// comparison.
inline double hiddenByOne(uint32_t line)
{
    return line == 0 ? 5.0 : line == 1 ? 1e-8 : 0.0;
}

#endif
