#ifndef TAVOLINE_SELECTION_H
#define TAVOLINE_SELECTION_H

#include "neighbours.h"
#include "neighbourwalk.h"
#include "statements.h"

/// The tables of I1 and I2, and whether a value in one of them may differ from one in the other by exactly the
/// tolerance.
struct ComparedTables {
    QString inv1;
    QString inv2;
    bool canHaveBarriers;
};

/// Writes the statements that make the table @p list of the graphs whose I1 is at least I2, or at most with @p
/// isAtLeast false.
void writeComparison(const Writing &writing, const ComparedTables &tables, bool isAtLeast, const QString &list);

/// Writes the statements that make the table @p list of the graphs that walkNeighbours() lists.
void writeWalk(const Writing &writing, const ComparedTables &tables, Neighbours neighbours, Match match,
               const QString &list);

#endif
