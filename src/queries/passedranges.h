#ifndef TAVOLINE_PASSEDRANGES_H
#define TAVOLINE_PASSEDRANGES_H

#include "TAVgraph.h"
#include "neighbours.h"
#include "parallel.h"
#include "range.h"

#include <QVector>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

// What is passed on in a walk, one class for each direction. The words are explained in neighbourwalk.cpp. Both classes
// go along the lists of sub-graphs: these are short, and the records in them few, so that the caches hold them.

/// In a walk over sub-graphs records read what the records below them have passed on.
class FromBelow
{
public:
    static constexpr Neighbours neighbours = Neighbours::Sub;

    explicit FromBelow(const QVector<TAVGraph *> &graphs) : passed(graphs.size()) {}

    /// The record that is visited in a step, counted from 0, and the step of a record.
    int positionAt(int step) const { return step; }
    int stepOf(int position) const { return position; }

    /// In how many shares records can be visited at the same time.
    int shares() const { return threadCount(); }

    /// Includes in @p met what a record meets, whose own I2, if present, is @p own; false when a neighbour was not
    /// visited in the first @p visited steps. A record that is its own neighbour meets itself.
    bool meet(const TAVGraph &graph, const Range &own, int visited, Range &met) const
    {
        for (const TAVGraph *neighbour : graph.subGraphs()) {
            const int position = neighbour->getPosition();
            if (stepOf(position) >= visited) {
                return false;
            }
            met.include(neighbour == &graph ? own : passed[position]);
        }
        return true;
    }

    /// Passes the range of a record on, which is visited in the given share.
    void pass(const TAVGraph &graph, const Range &range, int /*share*/) { passed[graph.getPosition()] = range; }

    /// After all visits: what a record whose I2 is present meets, with or without that I2, by position. Records beyond
    /// the end meet nothing.
    std::vector<Range> takeRanges() { return std::move(passed); }

private:
    std::vector<Range> passed; // by the position of the record that passes it on
};

/// In a walk over super-graphs, which are many and lie anywhere, records pass their ranges down to those below them.
class FromAbove
{
public:
    static constexpr Neighbours neighbours = Neighbours::Over;

    explicit FromAbove(const QVector<TAVGraph *> &graphs)
        : count(graphs.size())
        , passed(std::min(threadCount(), mostShares), std::vector<Range>(linkedFromAbove(graphs)))
    {
    }

    int positionAt(int step) const { return count - 1 - step; }
    int stepOf(int position) const { return count - 1 - position; }
    int shares() const { return int(passed.size()); }

    /// As FromBelow::meet(). The first record above that is another one tells: the others are visited before it.
    bool meet(const TAVGraph &graph, const Range &own, int visited, Range &met) const
    {
        for (const TAVGraph *neighbour : graph.superGraphs()) {
            if (neighbour != &graph) {
                if (stepOf(neighbour->getPosition()) >= visited) {
                    return false; // it may be passing its range down just now
                }
                break;
            }
            met.include(own);
        }
        includePassed(graph.getPosition(), met);
        return true;
    }

    void pass(const TAVGraph &graph, const Range &range, int share)
    {
        for (const TAVGraph *subGraph : graph.subGraphs()) {
            passed[share][subGraph->getPosition()].include(range);
        }
    }

    std::vector<Range> takeRanges()
    {
        std::vector<Range> ranges(passed.front().size());
        for (size_t position = 0; position < ranges.size(); ++position) {
            includePassed(position, ranges[position]);
        }
        return ranges;
    }

private:
    void includePassed(size_t position, Range &met) const
    {
        for (const std::vector<Range> &part : passed) {
            if (position < part.size()) {
                met.include(part[position]);
            }
        }
    }

    /// The number of records up to the last that has super-graphs.
    static size_t linkedFromAbove(const QVector<TAVGraph *> &graphs)
    {
        const auto last = std::find_if(graphs.rbegin(), graphs.rend(),
                                       [](const TAVGraph *graph) { return !graph->superGraphs().isEmpty(); });
        return graphs.rend() - last;
    }

    /// Each share takes memory.
    static constexpr int mostShares = 4;

    int count;
    // By share, and by the position of the record that it is passed to. One array with ends that are changed atomically
    // makes the walk slower by 5 to 15 %, and records that read what is above them make it take twice as long.
    std::vector<std::vector<Range>> passed;
};

#endif
