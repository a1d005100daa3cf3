#include "TAVgraph.h"

#include <functional>
#include <utility>

TAVGraph::TAVGraph(QString graphName) : name(std::move(graphName)) {}

void TAVGraph::setInv1(double value, bool err)
{
    inv1 = value;
    errInv1 = err;
}

void TAVGraph::setInv2(double value, bool err)
{
    inv2 = value;
    errInv2 = err;
}

void TAVGraph::exch_1_2()
{
    std::swap(inv1, inv2);
    std::swap(errInv1, errInv2);
}

void TAVGraph::I1getsI2()
{
    setInv1(inv2, errInv2);
}

void TAVGraph::I2getsI1()
{
    setInv2(inv1, errInv1);
}

// clang-format off
void TAVGraph::avgSub1()  { average({&sub}); }
void TAVGraph::avgOver1() { average({&over}); }
void TAVGraph::avgAll1()  { average({&sub, &over}); }
void TAVGraph::minSub1()  { extremum({&sub}, std::less<>()); }
void TAVGraph::minOver1() { extremum({&over}, std::less<>()); }
void TAVGraph::minAll1()  { extremum({&sub, &over}, std::less<>()); }
void TAVGraph::maxSub1()  { extremum({&sub}, std::greater<>()); }
void TAVGraph::maxOver1() { extremum({&over}, std::greater<>()); }
void TAVGraph::maxAll1()  { extremum({&sub, &over}, std::greater<>()); }
// clang-format on

void TAVGraph::average(Lists lists)
{
    double sum = 0.0;
    double count = 0.0;
    for (const QList<TAVGraph *> *list : lists) {
        for (const TAVGraph *neighbour : *list) {
            if (!neighbour->errInv1) {
                count += 1.0;
                sum += neighbour->inv1;
            }
        }
    }
    errInv2 = count == 0.0;
    if (!errInv2) {
        inv2 = sum / count;
    }
}

// With a strict comparison a NaN that comes first stays, and a later one is ignored.
template<typename Better> void TAVGraph::extremum(Lists lists, Better better)
{
    bool found = false;
    double best = inv2;
    for (const QList<TAVGraph *> *list : lists) {
        for (const TAVGraph *neighbour : *list) {
            if (!neighbour->errInv1) {
                const double value = neighbour->inv1;
                if (!found) {
                    best = value;
                }
                // Without a branch: the values come in no order, so that half of the predictions would be wrong.
                best = better(value, best) ? value : best;
                found = true;
            }
        }
    }
    setInv2(best, !found);
}
