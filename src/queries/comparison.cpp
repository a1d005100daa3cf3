#include "comparison.h"

#include "TAVgraph.h"
#include "neighbours.h"
#include "tolerance.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace
{
/// The names of the graphs whose invariants are both present and pass the test.
template<typename Test> QStringList namesWhere(const QVector<TAVGraph *> &graphs, Test test)
{
    std::vector<TAVGraph *> found;
    std::copy_if(graphs.begin(), graphs.end(), std::back_inserter(found), [test](const TAVGraph *graph) {
        return !graph->getErrInv1() && !graph->getErrInv2() && test(graph->getInv1(), graph->getInv2());
    });
    return namesOf(found);
}
} // namespace

QStringList namesWhereI1AtLeastI2(const QVector<TAVGraph *> &graphs)
{
    return namesWhere(graphs, [](double inv1, double inv2) { return inv1 >= inv2 - TOLERANCE; });
}

QStringList namesWhereI1AtMostI2(const QVector<TAVGraph *> &graphs)
{
    return namesWhere(graphs, [](double inv1, double inv2) { return inv2 + TOLERANCE >= inv1; });
}
