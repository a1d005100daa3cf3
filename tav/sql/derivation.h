#ifndef TAVOLINE_DERIVATION_H
#define TAVOLINE_DERIVATION_H

#include "statements.h"

/// How a value of a graph is made of those of its direct neighbours.
struct Derivation {
    enum Function { Average, Minimum, Maximum };

    Function function;
    bool overSubs;
    bool overSupers;
};

/// Writes the statements that make the table @p target of the values in the table @p source. @p isOrdinary tells that
/// none of these is NaN.
void writeDerivation(const Writing &writing, const Derivation &derivation, const QString &source, bool isOrdinary,
                     const QString &target);

#endif
