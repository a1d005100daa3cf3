#ifndef TAVOLINE_RANGE_H
#define TAVOLINE_RANGE_H

#include <algorithm>
#include <limits>

/// The smallest and the largest of some values; at first of none.
struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return low > high; }
    void include(const Range &other)
    {
        low = std::min(low, other.low);
        high = std::max(high, other.high);
    }
};

#endif
