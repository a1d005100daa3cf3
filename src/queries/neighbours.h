#ifndef TAVOLINE_NEIGHBOURS_H
#define TAVOLINE_NEIGHBOURS_H

#include <QList>
#include <QStringList>

#include <vector>

class TAVGraph;

/// Which neighbours of a graph a query follows.
enum class Neighbours { Sub, Over };

/// The list of @p graph that a query follows.
const QList<TAVGraph *> &linksOf(const TAVGraph &graph, Neighbours neighbours);

/// The names of @p graphs, in their order.
QStringList namesOf(const std::vector<TAVGraph *> &graphs);

#endif
