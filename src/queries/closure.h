#ifndef TAVOLINE_CLOSURE_H
#define TAVOLINE_CLOSURE_H

#include "neighbours.h"

#include <QStringList>
#include <QVector>

/// The names of the records of @p graphs that are named in @p names, in the order of the database, then, breadth first,
/// of all that are reached from them through @p neighbours. Marks every record that it lists; none may be marked
/// before.
QStringList closureOf(const QVector<TAVGraph *> &graphs, const QStringList &names, Neighbours neighbours);

#endif
