#ifndef TAVOLINE_NEIGHBOURWALK_H
#define TAVOLINE_NEIGHBOURWALK_H

#include "neighbours.h"

#include <QStringList>
#include <QVector>

/// What must hold for every neighbour reached, with x the I1 of the graph from which the walk starts, y the I2 of the
/// neighbour and e the tolerance. Note the orientation: AtLeast and AtMost speak of y, Above and Below of x.
enum class Match {
    Equal,   ///< |y - x| < e; a difference of exactly e neither matches nor fails
    AtLeast, ///< y >= x - e
    AtMost,  ///< x + e >= y
    Above,   ///< x - e > y
    Below,   ///< y > x + e
};

/// The names, in database order, of the graphs whose I1 is present, from which the walk reaches at least one neighbour
/// that matches, and none that fails. The walk goes on from neighbours that match; a neighbour whose I2 is missing or
/// NaN counts neither for nor against, and the walk does not go on from it.
///
/// @p graphs is the database: each record knows its position in it, its sub-graphs are earlier records or itself, links
/// go both ways, and its super-graphs are in the order of the database.
/// Takes time in proportion to the number of links, and for Equal, once more for each different I1 below 6e-8 in
/// magnitude from which some I2 is exactly 1e-8 away, to the number of records with about that I2 and of their links.
QStringList walkNeighbours(const QVector<TAVGraph *> &graphs, Neighbours neighbours, Match match);

#endif
