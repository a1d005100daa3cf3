#include "eigenvalues.h"

#include "commandline.h"
#include "smallgraph.h"

#include <algorithm>
#include <array>
#include <lapacke.h>

std::vector<double> eigenvalues(std::vector<double> &matrix, int order)
{
    // LAPACK works on 32 columns at a time when it has room for 34.
    constexpr int workspaceLength = 64 * SmallGraph::maxOrder;
    std::array<double, workspaceLength> workspace;
    std::vector<double> values(order);
    const lapack_int fault = LAPACKE_dsyev_work(LAPACK_COL_MAJOR, 'N', 'U', order, matrix.data(), std::max(order, 1),
                                                values.data(), workspace.data(), workspaceLength);
    if (fault != 0) {
        throw CommandError(QStringLiteral("LAPACK: no convergence"));
    }
    return values;
}
