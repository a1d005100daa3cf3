#ifndef TAVOLINE_TOLERANCE_H
#define TAVOLINE_TOLERANCE_H

/// Two values of invariants closer than this are equal.
constexpr double TOLERANCE = 1.0e-8;

#endif
