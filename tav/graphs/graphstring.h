#ifndef TAVOLINE_GRAPHSTRING_H
#define TAVOLINE_GRAPHSTRING_H

#include "smallgraph.h"

#include <QString>

#include <string>
#include <string_view>

/// The string of a graph that stands on a line of a graph file: the line without the header of graph6 or sparse6, and
/// the first line of a file, @p number 1, without a byte order mark. Empty when there is no graph on the line.
std::string_view graphOnLine(std::string_view line, qint64 number);

/// Reads a graph6 or sparse6 string of at most SmallGraph::maxOrder vertices into @p graph. Returns an empty text, or
/// what is wrong with the string, @p graph then being undefined; when it looks like another format, the fault tells
/// which, and what converts it.
QString parseGraph(std::string_view text, SmallGraph &graph);

/// The graph6 string of a graph.
std::string graph6Of(const SmallGraph &graph);

#endif
