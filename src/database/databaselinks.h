#ifndef TAVOLINE_DATABASELINKS_H
#define TAVOLINE_DATABASELINKS_H

#include "databasechunk.h"

#include <QVector>

#include <functional>
#include <vector>

/// Links the records of a database both ways, on all processors. @p links are the links, in pieces, of the records of
/// @p graphs from the position @p first on; every index in them is a position in @p graphs. When @p stop becomes true
/// the rest is left undone.
///
/// Each list is made once, at its final size: lists that grow link by link would take most of the time and much of the
/// memory of a load.
void linkRecords(const QVector<TAVGraph *> &graphs, int first, std::vector<RecordLinks> links,
                 const std::function<bool()> &stop);

#endif
