// Numbers that are equal but for rounding.
#ifndef TAVOLINE_TESTS_CLOSETO_H
#define TAVOLINE_TESTS_CLOSETO_H

#include <cmath>

/// Whether @p actual and @p expected differ only by rounding errors, or are both NaN.
inline bool isClose(double actual, double expected)
{
    return (std::isnan(actual) && std::isnan(expected)) ||
           std::abs(actual - expected) < 1e-9 * (1 + std::abs(expected));
}

#endif
