#ifndef TAVOLINE_SPARSE6_H
#define TAVOLINE_SPARSE6_H

#include "smallgraph.h"

#include <QString>

#include <string_view>

/// What a sparse6 string begins with.
constexpr char sparse6Mark = ':';

/// Reads a sparse6 string (B. D. McKay, "Description of graph6, sparse6 and digraph6 encodings") of a simple graph on
/// at most SmallGraph::maxOrder vertices into @p graph. Returns an empty text, or what is wrong with the string, @p
/// graph then being undefined.
QString parseSparse6(std::string_view text, SmallGraph &graph);

#endif
