#include "neighbourwalk.h"

#include "TAVgraph.h"
#include "parallel.h"
#include "tolerance.h"

#include <algorithm>
#include <cmath>
#include <functional>
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
        , sights(size_t(database.size()))
    {
        for (const TAVGraph *graph : graphs) {
            if (takesPart(*graph) && std::fabs(graph->getInv2()) < 2 * barrierBound) {
                byInv2.push_back({graph->getInv2(), graph->getPosition()});
            }
        }
        std::sort(byInv2.begin(), byInv2.end(), [](const Entry &a, const Entry &b) { return a.inv2 < b.inv2; });
    }

    /// Whether the I2 of some record differs from x by exactly the tolerance.
    bool hasBarrier(double x) const
    {
        const auto above = firstFrom(x, TOLERANCE);
        const auto below = firstFrom(x, -TOLERANCE);
        return (above != byInv2.end() && above->inv2 - x == TOLERANCE) ||
               (below != byInv2.end() && below->inv2 - x == -TOLERANCE);
    }

    /// Calls @p list for each of the graphs at @p starts, all of which have the I1 @p x, that is to be listed.
    void decide(double x, const std::vector<int> &starts, const std::function<void(int)> &list)
    {
        std::vector<int> equal;
        const auto end = firstFrom(x, TOLERANCE);
        for (auto entry = firstFrom(x, -TOLERANCE); entry != end; ++entry) {
            if (isEqual(entry->inv2, x)) {
                equal.push_back(entry->position);
            }
        }
        // Links lead towards the beginning of the database, or all towards its end.
        std::sort(equal.begin(), equal.end());
        if (neighbours == Neighbours::Over) {
            std::reverse(equal.begin(), equal.end());
        }
        for (const int position : equal) {
            sights[size_t(position)] = look(position, x);
        }
        for (const int position : starts) {
            const TAVGraph &start = *graphs.at(position);
            const bool isKnown = takesPart(start) && isEqual(start.getInv2(), x);
            const Sight sight = isKnown ? sights[size_t(position)] : look(position, x);
            if (sight.noneFails && sight.someMatch) {
                list(position);
            }
        }
    }

private:
    struct Sight {
        bool noneFails = true;
        bool someMatch = false;
    };

    struct Entry {
        double inv2;
        int position;
    };

    /// The first record, by I2, whose difference to x is at least @p difference.
    std::vector<Entry>::const_iterator firstFrom(double x, double difference) const
    {
        return std::partition_point(byInv2.begin(), byInv2.end(),
                                    [x, difference](const Entry &entry) { return !(entry.inv2 - x >= difference); });
    }

    /// What a walk for @p x sees from one record on, given the same of the records that it goes on from. Without
    /// branches, since which neighbours match cannot be predicted; a NaN neither matches nor fails.
    Sight look(int position, double x) const
    {
        Sight sight;
        for (const TAVGraph *neighbour : linksOf(*graphs.at(position), neighbours)) {
            const bool isPresent = !neighbour->getErrInv2();
            const bool matches = isPresent & isEqual(neighbour->getInv2(), x);
            const bool fails = isPresent & (std::fabs(neighbour->getInv2() - x) > TOLERANCE);
            const int other = neighbour->getPosition();
            const bool failsBeyond = matches & (other != position) & !sights[size_t(other)].noneFails;
            sight.someMatch |= matches;
            sight.noneFails &= !(fails | failsBeyond);
        }
        return sight;
    }

    const QVector<TAVGraph *> &graphs;
    Neighbours neighbours;
    std::vector<Entry> byInv2; // by ascending I2: the records whose I2 can be near an undecided x
    std::vector<Sight> sights; // by position, for the x at hand: of the records whose I2 equals it
};

/// What the records of a walk over sub-graphs meet. The graphs below a graph are few, and near at hand when it is its
/// turn: it reads what they have met.
class FromBelow
{
public:
    static constexpr Neighbours neighbours = Neighbours::Sub;

    explicit FromBelow(const QVector<TAVGraph *> &graphs) : through(size_t(graphs.size())) {}

    /// Links lead towards the beginning of the database, where the walk starts.
    size_t positionOf(size_t step) const { return step; }
    size_t threads() const { return size_t(threadCount()); }

    /// Includes in @p met what is met in and beyond the neighbours of a record, which has the range @p own itself;
    /// false when one of them is not visited. A record that is its own neighbour meets itself.
    template<typename IsVisited>
    bool meet(const TAVGraph &graph, const Range &own, IsVisited isVisited, Range &met) const
    {
        for (const TAVGraph *neighbour : graph.subGraphs()) {
            if (!isVisited(neighbour->getPosition())) {
                return false;
            }
            met.include(neighbour == &graph ? own : through[size_t(neighbour->getPosition())]);
        }
        return true;
    }

    /// Keeps for the records above what is met in and beyond a record.
    void pass(const TAVGraph &graph, const Range &range, size_t /*thread*/)
    {
        through[size_t(graph.getPosition())] = range;
    }

private:
    std::vector<Range> through; // by position
};

/// What the records of a walk over super-graphs meet. The graphs above a graph are many, and lie anywhere: they hand
/// down what they have met, along the lists of sub-graphs.
class FromAbove
{
public:
    static constexpr Neighbours neighbours = Neighbours::Over;

    explicit FromAbove(const QVector<TAVGraph *> &graphs)
        : count(size_t(graphs.size()))
        , handedDown(size_t(std::min(threadCount(), mostThreads)), std::vector<Range>(linkedFromAbove(graphs)))
    {
    }

    /// Links lead towards the end of the database, where the walk starts.
    size_t positionOf(size_t step) const { return count - 1 - step; }
    size_t threads() const { return handedDown.size(); }

    /// As FromBelow::meet(). The first record above that is another one tells: the others are nearer to the end.
    template<typename IsVisited>
    bool meet(const TAVGraph &graph, const Range &own, IsVisited isVisited, Range &met) const
    {
        for (const TAVGraph *neighbour : graph.superGraphs()) {
            if (neighbour != &graph) {
                if (!isVisited(neighbour->getPosition())) {
                    return false; // it may be handing down just now
                }
                break;
            }
            met.include(own);
        }
        const auto position = size_t(graph.getPosition());
        for (const std::vector<Range> &part : handedDown) {
            if (position < part.size()) {
                met.include(part[position]);
            }
        }
        return true;
    }

    /// Hands down to the records below what is met in and beyond a record.
    void pass(const TAVGraph &graph, const Range &range, size_t thread)
    {
        for (const TAVGraph *subGraph : graph.subGraphs()) {
            handedDown[thread][size_t(subGraph->getPosition())].include(range);
        }
    }

private:
    /// The number of records up to the last that has super-graphs.
    static size_t linkedFromAbove(const QVector<TAVGraph *> &graphs)
    {
        const auto last = std::find_if(graphs.rbegin(), graphs.rend(),
                                       [](const TAVGraph *graph) { return !graph->superGraphs().isEmpty(); });
        return size_t(graphs.rend() - last);
    }

    /// Each thread hands down into memory of its own.
    static constexpr int mostThreads = 4;

    size_t count;
    std::vector<std::vector<Range>> handedDown; // by thread and position
};

/// The walk of the whole database in one pass over the links. Only neighbours that match are followed, but as long as
/// none fails that is every neighbour whose I2 is present: the values that such a walk meets are those reachable
/// through present ones, whatever x is, and their range decides. @p Way is FromBelow or FromAbove.
template<typename Way> class NeighbourWalk
{
public:
    NeighbourWalk(const QVector<TAVGraph *> &database, Match test)
        : graphs(database)
        , match(test)
        , way(database)
        , verdicts(size_t(database.size()), Verdict::NotListed)
    {
    }

    QStringList run()
    {
        for (size_t done = 0; done < verdicts.size(); done += batchLength) {
            visitBatch(done, std::min(done + batchLength, verdicts.size()));
        }
        decideBehindBarriers();
        std::vector<TAVGraph *> listed;
        for (size_t position = 0; position < verdicts.size(); ++position) {
            if (verdicts[position] == Verdict::Listed) {
                listed.push_back(graphs.at(int(position)));
            }
        }
        return namesOf(listed);
    }

private:
    enum class Verdict : char {
        NotListed,
        Listed,
        Undecided, ///< it has a value in reach that does not match, perhaps behind a barrier
        Waiting,   ///< it has a neighbour in its own batch
    };

    size_t stepOf(size_t position) const { return way.positionOf(position); } // which is its own inverse

    /// Visits the records of the steps [begin, end): those whose neighbours were all visited in earlier batches, nearly
    /// all as a rule, at the same time, and then the others one after the other.
    void visitBatch(size_t begin, size_t end)
    {
        const size_t threads = way.threads();
        const size_t share = (end - begin + threads - 1) / threads;
        forEachRange(threads, 1, end - begin > shortBatch ? int(threads) : 1, [&](size_t thread, size_t) {
            const size_t last = std::min(begin + (thread + 1) * share, end);
            for (size_t step = begin + thread * share; step < last; ++step) {
                visit(way.positionOf(step), begin, thread);
            }
        });
        for (size_t step = begin; step < end; ++step) {
            if (verdicts[way.positionOf(step)] == Verdict::Waiting) {
                visit(way.positionOf(step), end, 0);
            }
        }
    }

    /// Visits a record unless it has to wait for a neighbour whose step is not before @p visited.
    void visit(size_t position, size_t visited, size_t thread)
    {
        const TAVGraph &graph = *graphs.at(int(position));
        Range own;
        if (takesPart(graph)) {
            own = {graph.getInv2(), graph.getInv2()};
        }
        Range met;
        if (!way.meet(
                graph, own, [&](int other) { return stepOf(size_t(other)) < visited; }, met)) {
            verdicts[position] = Verdict::Waiting;
            return;
        }
        verdicts[position] = judge(graph, met);
        if (!own.isEmpty()) {
            own.include(met);
            way.pass(graph, own, thread);
        }
    }

    Verdict judge(const TAVGraph &graph, const Range &met) const
    {
        if (graph.getErrInv1() || met.isEmpty()) {
            return Verdict::NotListed;
        }
        if (allMatch(met, graph.getInv1(), match)) {
            return Verdict::Listed;
        }
        return match == Match::Equal && mayHaveBarrier(graph.getInv1()) ? Verdict::Undecided : Verdict::NotListed;
    }

    void decideBehindBarriers()
    {
        std::map<double, std::vector<int>> undecided; // by I1
        for (size_t position = 0; position < verdicts.size(); ++position) {
            if (verdicts[position] == Verdict::Undecided) {
                undecided[graphs.at(int(position))->getInv1()].push_back(int(position));
            }
        }
        if (undecided.empty()) {
            return;
        }
        EqualityWalk walk(graphs, Way::neighbours);
        for (const auto &[x, starts] : undecided) {
            if (walk.hasBarrier(x)) {
                walk.decide(x, starts, [this](int position) { verdicts[size_t(position)] = Verdict::Listed; });
            }
        }
    }

    /// As long as a batch is short, against the number of graphs of one order and size, few have to wait.
    static constexpr size_t batchLength = 1 << 15;
    /// A batch up to this length is not shared out.
    static constexpr size_t shortBatch = 1 << 12;

    const QVector<TAVGraph *> &graphs;
    Match match;
    Way way;
    std::vector<Verdict> verdicts; // by position
};
} // namespace

QStringList walkNeighbours(const QVector<TAVGraph *> &graphs, Neighbours neighbours, Match match)
{
    return neighbours == Neighbours::Sub ? NeighbourWalk<FromBelow>(graphs, match).run()
                                         : NeighbourWalk<FromAbove>(graphs, match).run();
}
