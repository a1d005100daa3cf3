#ifndef TAVOLINE_GRAPHPASS_H
#define TAVOLINE_GRAPHPASS_H

#include "evaluation.h"

#include <QString>

#include <functional>

/// Goes once through the graphs of the file @p path, a database or a file of graph6 or sparse6 strings ("-" is standard
/// input), in memory that does not grow with their number: reads some, computes @p evaluation for them, and calls
/// @p take with their names, as often as there are graphs and until it returns false. What a pipe holds is computed
/// before more is waited for. Throws CommandError for a file that cannot be read and, when @p take has had the graphs
/// before it, for a line that is no graph on at most SmallGraph::maxOrder vertices.
void passGraphs(const QString &path, Evaluation &evaluation, const std::function<bool(const GraphNames &names)> &take);

#endif
