#ifndef TAVOLINE_BARRIERS_H
#define TAVOLINE_BARRIERS_H

#include "neighbours.h"
#include "range.h"

#include <QVector>

#include <vector>

// What is special about walks for equality. The words are explained in neighbourwalk.cpp.

/// Whether there is a double that differs from @p x by exactly the tolerance.
bool canHaveBarrier(double x);

/// Whether a value fails, of some whose range is @p range.
bool isFailureIn(Range range, double x);

/// Whether the I2 of a neighbour matches.
bool hasEqualNeighbour(const TAVGraph &graph, Neighbours neighbours, double x);

/// A record from which a walk starts, and its I1.
struct Start {
    double x;
    int position;
};

/// The positions of those @p starts from which the walk reaches a neighbour that matches, and none that fails, although
/// each has something in sight that fails. @p ranges are, by position, what records whose I2 is present meet, with or
/// without that I2; records beyond the end meet nothing.
std::vector<int> listedBehindBarriers(const QVector<TAVGraph *> &graphs, Neighbours neighbours,
                                      const std::vector<Range> &ranges, std::vector<Start> starts);

#endif
