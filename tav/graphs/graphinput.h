#ifndef TAVOLINE_GRAPHINPUT_H
#define TAVOLINE_GRAPHINPUT_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// The graphs of some files of graph6 strings, by order, then size, then place in the files.
class GraphInput
{
public:
    /// Reads nothing yet. locate() needs @p keepsPlaces, which takes memory.
    GraphInput(QStringList paths, bool connectedOnly, bool keepsPlaces);

    /// Reads the files. Throws CommandError for one that cannot be read, for a line that is no graph6 string of at most
    /// SmallGraph::maxOrder vertices, and when there is no graph.
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
    void readLine(std::string_view line, InputPlace place);

    QStringList inputs;
    bool isConnectedOnly;
    bool isKeepingPlaces;
    std::map<std::pair<int, int>, GraphGroup> groupsByKind;
    qint64 disconnected = 0;
};

#endif
