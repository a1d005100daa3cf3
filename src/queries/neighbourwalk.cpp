// Walks from all records at once. The words, for a walk from a record whose I1 is x; a NaN counts as missing:
//
//   sight     what a record has in sight: its neighbours, those of neighbours whose I2 is present, and so on
//   range     the smallest and the largest of some present I2
//   meet      a record meets the range of what it has in sight
//   pass      a record whose I2 is present passes that I2, and what it meets, on to the records whose neighbour it is
//   barrier   a record whose I2 differs from x by exactly the tolerance: it does not fail, but the walk ends there
//
// A walk goes on from neighbours that match. Without barriers, and as long as nothing fails, these are all whose I2 is
// present: whatever x is, what the walk goes through is what the start has in sight, and the range of that decides. So
// each record is visited once, after the records that it has in sight:
//
//   a walk over sub-graphs,                         a walk over super-graphs,
//   from the first record to the last               from the last record to the first
//
//              c    meets what they pass                       c    passes its range down
//             ^ ^                                             / |
//            /   |                                           v  v
//           a    b  pass their ranges up                    a   b   meet what is passed to them
//
// Only walks for equality have barriers, and normally there are none: barriers.cpp.

#include "neighbourwalk.h"

#include "TAVgraph.h"
#include "barriers.h"
#include "parallel.h"
#include "passedranges.h"
#include "range.h"
#include "tolerance.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace
{
/// Whether all values of a range that is not empty match. That is so for AtLeast, AtMost, Above and Below when the end
/// does that is nearer to failing, and for Equal when both ends do, since rounding keeps the order of differences.
bool allMatch(const Range &range, double x, Match match)
{
    switch (match) {
    case Match::Equal:
        return std::fabs(range.low - x) < TOLERANCE && std::fabs(range.high - x) < TOLERANCE;
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

/// The walks from all records. @p Way is FromBelow or FromAbove.
template<typename Way> class NeighbourWalk
{
public:
    NeighbourWalk(const QVector<TAVGraph *> &database, Match test)
        : graphs(database)
        , match(test)
        , way(database)
        , verdicts(database.size(), Verdict::NotListed)
    {
    }

    QStringList run()
    {
        for (int done = 0; done < graphs.size(); done += batchLength) {
            visitBatch(done, std::min(done + batchLength, graphs.size()));
        }
        decideBehindBarriers();
        std::vector<TAVGraph *> listed;
        for (int position = 0; position < graphs.size(); ++position) {
            if (verdicts[position] == Verdict::Listed) {
                listed.push_back(graphs.at(position));
            }
        }
        return namesOf(listed);
    }

private:
    enum class Verdict : char {
        NotListed,
        Listed,
        Undecided, ///< something in sight fails, perhaps behind a barrier
        Waiting,   ///< for a neighbour in its own batch
    };

    /// Visits the records of the steps [begin, end): those whose neighbours were all visited in earlier batches, nearly
    /// all as a rule, at the same time, and then the others one after the other.
    void visitBatch(int begin, int end)
    {
        const int shares = end - begin > shortBatch ? way.shares() : 1;
        const int length = (end - begin + shares - 1) / shares;
        forEachRange(shares, 1, shares, [&](int share, int) {
            const int last = std::min(begin + (share + 1) * length, end);
            for (int step = begin + share * length; step < last; ++step) {
                visit(way.positionAt(step), begin, share);
            }
        });
        for (int step = begin; step < end; ++step) {
            const int position = way.positionAt(step);
            if (verdicts[position] == Verdict::Waiting) {
                visit(position, end, 0);
            }
        }
    }

    /// Visits a record unless it has to wait for a neighbour that is not among the first @p visited.
    void visit(int position, int visited, int share)
    {
        const TAVGraph &graph = *graphs.at(position);
        Range own;
        if (!graph.getErrInv2() && !std::isnan(graph.getInv2())) {
            own = {graph.getInv2(), graph.getInv2()};
        }
        Range met;
        if (!way.meet(graph, own, visited, met)) {
            verdicts[position] = Verdict::Waiting;
            return;
        }
        verdicts[position] = judge(graph, met);
        if (!own.isEmpty()) {
            own.include(met);
            way.pass(graph, own, share);
        }
    }

    Verdict judge(const TAVGraph &graph, const Range &met) const
    {
        const double x = graph.getInv1();
        if (graph.getErrInv1() || met.isEmpty()) {
            return Verdict::NotListed;
        }
        if (allMatch(met, x, match)) {
            return Verdict::Listed;
        }
        return match == Match::Equal && canHaveBarrier(x) ? judgeBehindBarriers(graph, met) : Verdict::NotListed;
    }

    /// The verdict if not all that the record meets match. Most walks never need it, and are slower when it is inlined.
    [[gnu::noinline]] Verdict judgeBehindBarriers(const TAVGraph &graph, const Range &met) const
    {
        const double x = graph.getInv1();
        if (isFailureIn(met, x)) {
            return Verdict::Undecided;
        }
        return hasEqualNeighbour(graph, Way::neighbours, x) ? Verdict::Listed : Verdict::NotListed;
    }

    void decideBehindBarriers()
    {
        std::vector<Start> starts;
        for (int position = 0; position < graphs.size(); ++position) {
            if (verdicts[position] == Verdict::Undecided) {
                starts.push_back({graphs.at(position)->getInv1(), position});
            }
        }
        if (starts.empty()) {
            return;
        }
        for (const int position : listedBehindBarriers(graphs, Way::neighbours, way.takeRanges(), std::move(starts))) {
            verdicts[position] = Verdict::Listed;
        }
    }

    /// As long as a batch is short, against the number of graphs of one order and size, few have to wait.
    static constexpr int batchLength = 1 << 15;
    /// A batch up to this length is not shared out.
    static constexpr int shortBatch = 1 << 12;

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
