#ifndef TAVOLINE_DRAWING_PLACES_H
#define TAVOLINE_DRAWING_PLACES_H

#include <QPointF>
#include <QSizeF>
#include <QVector>

/// A simple graph: entry (i, j) tells whether vertices i and j are joined. Symmetric, with an empty diagonal.
using Adjacency = QVector<QVector<bool>>;

/// Where the vertices of a graph are drawn, x to the right and y down.
using Places = QVector<QPointF>;

/// @p count vertices on a circle around the origin, the neighbours on it at distance 1.
Places circle(int count);

/// The places moved and stretched until they fill a box of size @p box around the origin. With Qt::KeepAspectRatio the
/// drawing is not distorted: it fills the box in one direction at least, and lies on its side when it fills more of the
/// box so. Places that have no extent in a direction are in the middle of the box.
Places fitted(const Places &places, QSizeF box, Qt::AspectRatioMode mode);

#endif
