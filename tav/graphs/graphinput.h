#ifndef TAVOLINE_GRAPHINPUT_H
#define TAVOLINE_GRAPHINPUT_H

#include "smallgraph.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A line of a graph file, with its graph.
struct GraphLine {
    std::string_view text; ///< the graph6 or sparse6 string
    const SmallGraph &graph;
    qint64 number; ///< of the line in the file, counted from 1
};

/// Reads the graphs of the file @p path, one by one; "-" is standard input. A line is a graph6 or a sparse6 string,
/// which a header may precede; empty lines are passed over. Calls @p take with each. Throws CommandError for a file
/// that cannot be read and for a line that is no such string of a simple graph on at most SmallGraph::maxOrder
/// vertices.
void readGraphs(const QString &path, const std::function<void(const GraphLine &line)> &take);

/// Where a graph was read.
struct InputPlace {
    int input; ///< index of the file among the inputs
    qint64 line;
};

/// Graphs of one order and size, in the order in which they were read.
struct GraphGroup {
    int order = 0;
    int size = 0;
    std::string strings; ///< their graph6 strings, one after the other: they are of the same length
    std::vector<InputPlace> places;

    size_t count() const;
    std::string_view string(size_t index) const;
};

/// The graphs of some files (see readGraphs()), by order, then size, then place in the files.
class GraphInput
{
public:
    /// Reads nothing yet. locate() needs @p keepsPlaces, which takes memory.
    GraphInput(QStringList paths, bool connectedOnly, bool keepsPlaces);

    /// Reads the files, each as readGraphs() does. Throws CommandError also when there is no graph.
    void read();

    /// The graphs by order and size.
    const std::map<std::pair<int, int>, GraphGroup> &groups() const { return groupsByKind; }
    int largestOrder() const { return groupsByKind.rbegin()->second.order; }
    size_t count() const;
    /// How many graphs were left out because they are disconnected.
    qint64 disconnectedCount() const { return disconnected; }

    /// The file and line of the graph @p index, counted through all groups, as text for a message.
    QString locate(size_t index) const;

private:
    void take(const GraphLine &line, int input);

    QStringList inputs;
    bool isConnectedOnly;
    bool isKeepingPlaces;
    std::map<std::pair<int, int>, GraphGroup> groupsByKind;
    qint64 disconnected = 0;
};

#endif
