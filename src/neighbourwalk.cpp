#include "neighbourwalk.h"

#include "TAVgraph.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <vector>

namespace
{
/// The smallest and the largest of some values.
struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return low > high; }
    void include(const Range &other)
    {
        low = std::min(low, other.low);
        high = std::max(high, other.high);
    }
};

bool takesPart(const TAVGraph &graph)
{
    return !graph.getErrInv2() && !std::isnan(graph.getInv2());
}

bool isEqual(double y, double x)
{
    return std::fabs(y - x) < TOLERANCE;
}

/// A double of at least this magnitude, and any other that near to it, is a multiple of 2^-77, and so is their
/// difference; the tolerance is an odd multiple of 2^-78. Only smaller values can be apart by exactly the tolerance.
constexpr double barrierBound = 0x1p-24;

/// Whether some value can be at a distance of exactly the tolerance from x; false for NaN.
bool mayHaveBarrier(double x)
{
    return std::fabs(x) < barrierBound;
}

/// Whether every value of a range that is not empty matches. All tests but Equal hold for a whole range exactly when
/// they hold for one of its ends; rounding keeps the order of differences, so that Equal needs both ends.
bool allMatch(const Range &range, double x, Match match)
{
    switch (match) {
    case Match::Equal:
        return isEqual(range.low, x) && isEqual(range.high, x);
    case Match::AtLeast:
        return range.low >= x - TOLERANCE;
    case Match::AtMost:
        return x + TOLERANCE >= range.high;
    case Match::Above:
        return x - TOLERANCE > range.high;
    case Match::Below:
        return range.low > x + TOLERANCE;
    }
    return false;
}

/// Decides the graphs for which a value at a distance of exactly the tolerance may stand between them and a neighbour
/// that fails. Such a value depends on x, so that one pass over the links for all graphs is not possible; there is one
/// for each x, over the records whose I2 equals x.
class EqualityWalk
{
public:
    EqualityWalk(const QVector<TAVGraph *> &database, Neighbours direction)
        : graphs(database)
        , neighbours(direction)
        , holds(size_t(database.size()), false)
    {
        for (int position = 0; position < graphs.size(); ++position) {
            if (takesPart(*graphs.at(position)) && std::fabs(inv2(position)) < 2 * barrierBound) {
                byInv2.push_back(position);
            }
        }
        std::sort(byInv2.begin(), byInv2.end(), [this](int a, int b) { return inv2(a) < inv2(b); });
    }

    /// Whether the I2 of some record differs from x by exactly the tolerance.
    bool hasBarrier(double x) const
    {
        const auto above = firstFrom(x, TOLERANCE);
        const auto below = firstFrom(x, -TOLERANCE);
        return (above != byInv2.end() && inv2(*above) - x == TOLERANCE) ||
               (below != byInv2.end() && inv2(*below) - x == -TOLERANCE);
    }

    /// Sets the flag of each of the graphs at @p starts, all of which have the I1 @p x, that is to be listed.
    void decide(double x, const std::vector<int> &starts, std::vector<bool> &listed)
    {
        std::vector<int> equal(firstFrom(x, -TOLERANCE), firstFrom(x, TOLERANCE));
        equal.erase(std::remove_if(equal.begin(), equal.end(), [this, x](int i) { return !isEqual(inv2(i), x); }),
                    equal.end());
        // Links lead towards the beginning of the database, or all towards its end.
        std::sort(equal.begin(), equal.end());
        if (neighbours == Neighbours::Over) {
            std::reverse(equal.begin(), equal.end());
        }
        for (const int position : equal) {
            holds[size_t(position)] = look(position, x).noneFails;
        }
        for (const int position : starts) {
            const Sight sight = look(position, x);
            listed[size_t(position)] = sight.noneFails && sight.someMatch;
        }
    }

private:
    struct Sight {
        bool noneFails = true;
        bool someMatch = false;
    };

    double inv2(int position) const { return graphs.at(position)->getInv2(); }

    /// The first record, by I2, whose difference to x is at least @p difference.
    std::vector<int>::const_iterator firstFrom(double x, double difference) const
    {
        return std::partition_point(byInv2.begin(), byInv2.end(),
                                    [this, x, difference](int i) { return !(inv2(i) - x >= difference); });
    }

    /// What a walk for @p x sees from one record on, given the same of the records that it goes on from.
    Sight look(int position, double x) const
    {
        Sight sight;
        for (const TAVGraph *neighbour : linksOf(*graphs.at(position), neighbours)) {
            if (!takesPart(*neighbour)) {
                continue;
            }
            if (isEqual(neighbour->getInv2(), x)) {
                sight.someMatch = true;
                const bool itself = neighbour->getPosition() == position;
                sight.noneFails = sight.noneFails && (itself || holds[size_t(neighbour->getPosition())]);
            } else if (std::fabs(neighbour->getInv2() - x) > TOLERANCE) {
                sight.noneFails = false;
            }
        }
        return sight;
    }

    const QVector<TAVGraph *> &graphs;
    Neighbours neighbours;
    std::vector<int> byInv2; // positions, by ascending I2, of the records whose I2 can be near an undecided x
    std::vector<bool> holds; // by position, for the x at hand: no walk that comes through the record fails beyond it
};

/// The walk of the whole database in one pass over the links. Only neighbours that match are followed, but as long as
/// none fails that is every neighbour whose I2 is present: the values that such a walk meets are those reachable
/// through present ones, whatever x is, and their range decides.
class NeighbourWalk
{
public:
    NeighbourWalk(const QVector<TAVGraph *> &database, Neighbours direction, Match test)
        : graphs(database)
        , neighbours(direction)
        , match(test)
        , through(size_t(database.size()))
        , listed(size_t(database.size()), false)
    {
    }

    QStringList run()
    {
        const int count = graphs.size();
        for (int step = 0; step < count; ++step) {
            visit(neighbours == Neighbours::Sub ? step : count - 1 - step);
        }
        decideBehindBarriers();
        QStringList names;
        for (int position = 0; position < count; ++position) {
            if (listed[size_t(position)]) {
                names.append(graphs.at(position)->getName());
            }
        }
        return names;
    }

private:
    void visit(int position)
    {
        const TAVGraph &graph = *graphs.at(position);
        Range &own = through[size_t(position)];
        const bool present = takesPart(graph);
        if (present) {
            own = {graph.getInv2(), graph.getInv2()}; // a self-link meets this value
        }
        Range met;
        for (const TAVGraph *neighbour : linksOf(graph, neighbours)) {
            met.include(through[size_t(neighbour->getPosition())]);
        }
        if (!graph.getErrInv1() && !met.isEmpty()) {
            if (allMatch(met, graph.getInv1(), match)) {
                listed[size_t(position)] = true;
            } else if (match == Match::Equal && mayHaveBarrier(graph.getInv1())) {
                undecided[graph.getInv1()].push_back(position);
            }
        }
        if (present) {
            own.include(met);
        }
    }

    void decideBehindBarriers()
    {
        if (undecided.empty()) {
            return;
        }
        EqualityWalk walk(graphs, neighbours);
        for (const auto &[x, starts] : undecided) {
            if (walk.hasBarrier(x)) {
                walk.decide(x, starts, listed);
            }
        }
    }

    const QVector<TAVGraph *> &graphs;
    Neighbours neighbours;
    Match match;
    std::vector<Range> through; // by position: what is met in and beyond a record; empty when its I2 is missing
    std::vector<bool> listed;   // by position
    std::map<double, std::vector<int>> undecided; // by I1: graphs with a value in reach that does not match
};
} // namespace

const QList<TAVGraph *> &linksOf(const TAVGraph &graph, Neighbours neighbours)
{
    return neighbours == Neighbours::Sub ? graph.subGraphs() : graph.superGraphs();
}

QStringList walkNeighbours(const QVector<TAVGraph *> &graphs, Neighbours neighbours, Match match)
{
    return NeighbourWalk(graphs, neighbours, match).run();
}
