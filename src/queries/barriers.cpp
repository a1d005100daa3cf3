// A start is listed behind barriers when they bar all ways from it to records that fail. Which records are barriers
// depends on x, and there can be as many x as graphs: one more visit of all records for each would take too long. So
// these starts are walked from, one after the other, which is short:
//
//   - A walk leaves out neighbours that have nothing in sight that fails.
//   - It follows a way to its end before it tries another, and ends with the first record that fails. Where nothing is
//     barred it goes straight to one.
//   - It leaves out what was gone through before, for the same x or for one that no I2 tells apart from it.
//
// A walk thus only turns back where all ways are barred. For any record this is so for few x, however many there are: a
// way to a record that fails has no more barriers than records.

#include "barriers.h"

#include "TAVgraph.h"
#include "tolerance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <tuple>

namespace
{
/// An x of at least this has no barrier: doubles from half of it on are multiples of 2^-77, and so are their
/// differences, but the tolerance is an odd multiple of 2^-78.
constexpr double bound = 0x1p-24;

bool matches(double y, double x)
{
    return std::fabs(y - x) < TOLERANCE;
}

bool fails(double y, double x)
{
    return std::fabs(y - x) > TOLERANCE;
}

/// The values of I2 that can be barriers, each once, in ascending order.
std::vector<double> smallValues(const QVector<TAVGraph *> &graphs)
{
    std::vector<double> values;
    for (const TAVGraph *graph : graphs) {
        const double y = graph->getInv2();
        const bool isRepeated = !values.empty() && values.back() == y;
        if (!graph->getErrInv2() && std::fabs(y) < 2 * bound && !isRepeated) {
            values.push_back(y);
        }
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

/// How ascending values of I2 stand to an x: where those end that are below it by more than the tolerance, those that
/// are below it by exactly the tolerance, those that match, and those that are above it by exactly the tolerance.
using Standing = std::array<ptrdiff_t, 4>;

Standing standingOf(double x, const std::vector<double> &ascending)
{
    const auto endOf = [&](auto isBefore) { // rounding keeps differences in the order of the values
        return std::partition_point(ascending.begin(), ascending.end(), [&](double y) { return isBefore(y - x); }) -
               ascending.begin();
    };
    return {endOf([](double difference) { return difference < -TOLERANCE; }),
            endOf([](double difference) { return difference <= -TOLERANCE; }),
            endOf([](double difference) { return difference < TOLERANCE; }),
            endOf([](double difference) { return difference <= TOLERANCE; })};
}

bool hasBarriers(const Standing &standing)
{
    return standing[0] != standing[1] || standing[2] != standing[3];
}

/// The walks for x of one standing, and, after forget(), of another.
class BarredWalks
{
public:
    BarredWalks(const QVector<TAVGraph *> &database, Neighbours direction, const std::vector<Range> &rangesMet)
        : graphs(database)
        , neighbours(direction)
        , ranges(rangesMet)
        , known(database.size(), Known::Nothing)
    {
    }

    void forget()
    {
        for (const int position : entered) {
            known[position] = Known::Nothing;
        }
        entered.clear();
    }

    /// Whether a record that fails is reached.
    bool fail(const Start &start)
    {
        if (known[start.position] == Known::Nothing) {
            enter(start.position);
        }
        while (!path.empty()) {
            goOn(start.x);
        }
        return known[start.position] == Known::Failure;
    }

private:
    /// What is known of the walk from a record on.
    enum class Known : char {
        Nothing,
        NoFailure, ///< or none yet, as long as the record is on the path
        Failure,
    };

    /// A record on the path, and the next of its links to look at.
    struct Step {
        int position;
        int link;
    };

    void enter(int position)
    {
        known[position] = Known::NoFailure;
        entered.push_back(position);
        path.push_back({position, 0});
    }

    /// Goes on from the last record on the path to a neighbour of which nothing is known, or else back.
    void goOn(double x)
    {
        Step &step = path.back();
        const QList<TAVGraph *> &links = linksOf(*graphs.at(step.position), neighbours);
        while (step.link < links.size()) {
            const TAVGraph &neighbour = *links.at(step.link++);
            const Known ahead = look(neighbour, x);
            if (ahead == Known::Failure) {
                failPath();
                return;
            }
            if (ahead == Known::Nothing) {
                enter(neighbour.getPosition());
                return;
            }
        }
        path.pop_back();
    }

    void failPath()
    {
        for (const Step &step : path) {
            known[step.position] = Known::Failure;
        }
        path.clear();
    }

    /// What is known of the way to a neighbour and the walk from it on.
    Known look(const TAVGraph &neighbour, double x) const
    {
        const double y = neighbour.getInv2();
        const size_t position = neighbour.getPosition();
        if (neighbour.getErrInv2()) {
            return Known::NoFailure;
        }
        if (fails(y, x)) {
            return Known::Failure;
        }
        const bool isFollowed = matches(y, x) && position < ranges.size() && isFailureIn(ranges[position], x);
        return isFollowed ? known[position] : Known::NoFailure;
    }

    const QVector<TAVGraph *> &graphs;
    Neighbours neighbours;
    const std::vector<Range> &ranges;
    std::vector<Known> known; // by position
    std::vector<int> entered; // the positions of which something is known
    std::vector<Step> path;   // from a start on; not recursion, since a chain of links can be as long as the database
};
} // namespace

bool canHaveBarrier(double x)
{
    return std::fabs(x) < bound;
}

bool isFailureIn(Range range, double x)
{
    return !range.isEmpty() && (fails(range.low, x) || fails(range.high, x));
}

bool hasEqualNeighbour(const TAVGraph &graph, Neighbours neighbours, double x)
{
    const QList<TAVGraph *> &links = linksOf(graph, neighbours);
    return std::any_of(links.begin(), links.end(), [x](const TAVGraph *neighbour) {
        return !neighbour->getErrInv2() && matches(neighbour->getInv2(), x);
    });
}

std::vector<int> listedBehindBarriers(const QVector<TAVGraph *> &graphs, Neighbours neighbours,
                                      const std::vector<Range> &ranges, std::vector<Start> starts)
{
    const auto isBefore = [](const Start &a, const Start &b) {
        return std::tie(a.x, a.position) < std::tie(b.x, b.position);
    };
    if (!std::is_sorted(starts.begin(), starts.end(), isBefore)) { // they are when all have the same x
        std::sort(starts.begin(), starts.end(), isBefore);
    }
    const std::vector<double> values = smallValues(graphs);
    std::vector<int> listed;
    BarredWalks walks(graphs, neighbours, ranges);
    Standing standing = {};
    for (auto start = starts.begin(); start != starts.end(); ++start) {
        if (start == starts.begin() || start->x != std::prev(start)->x) {
            const Standing next = standingOf(start->x, values);
            if (next != standing) {
                walks.forget();
                standing = next;
            }
        }
        if (hasBarriers(standing) && hasEqualNeighbour(*graphs.at(start->position), neighbours, start->x) &&
            !walks.fail(*start)) {
            listed.push_back(start->position);
        }
    }
    return listed;
}
