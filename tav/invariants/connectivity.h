#ifndef TAVOLINE_CONNECTIVITY_H
#define TAVOLINE_CONNECTIVITY_H

#include "smallgraph.h"

/// The smallest number of vertices without which @p graph is disconnected or has one vertex left; 0 without vertices.
/// It is the smallest number of paths without common vertices between a vertex of smallest degree and one that is not
/// adjacent to it, or between two of its neighbours (A. H. Esfahanian and S. L. Hakimi, "On computing the
/// connectivities of graphs and digraphs", 1984).
int vertexConnectivity(const SmallGraph &graph);

/// The smallest number of edges without which @p graph is disconnected; 0 below two vertices. It is the smallest number
/// of paths without common edges between a vertex and any other (K. Menger, "Zur allgemeinen Kurventheorie", 1927).
int edgeConnectivity(const SmallGraph &graph);

#endif
