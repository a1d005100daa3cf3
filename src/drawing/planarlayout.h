#ifndef TAVOLINE_DRAWING_PLANARLAYOUT_H
#define TAVOLINE_DRAWING_PLANARLAYOUT_H

#include "places.h"

#include <optional>

/// Places between which straight edges neither cross nor touch, except at a common end; nothing when the graph is not
/// planar. The coordinates are integers. (Chrobak and Payne, "A linear-time algorithm for drawing a planar graph on a
/// grid", from Boost Graph.)
std::optional<Places> planarLayout(const Adjacency &graph);

#endif
