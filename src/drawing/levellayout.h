#ifndef TAVOLINE_DRAWING_LEVELLAYOUT_H
#define TAVOLINE_DRAWING_LEVELLAYOUT_H

#include "places.h"

/// The vertices in rows, at y = d in the middle of the row of those at distance d from the nearest of @p sources.
/// Vertices that cannot be reached make a last row, one row further down. A row sags by less than half the distance to
/// the next one, so that no edge within it runs through a vertex between its ends.
Places levelLayout(const Adjacency &graph, const QVector<int> &sources);

#endif
