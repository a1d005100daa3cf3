#include "canonicalform.h"

#include <algorithm>
#include <nauty.h>

static_assert(sizeof(setword) == sizeof(uint64_t), "a row of a SmallGraph is a set of nauty with one word");

namespace
{
/// Frees the memory that nauty allocated for this thread when the thread ends.
struct NautyMemory {
    ~NautyMemory()
    {
        naugraph_freedyn();
        nautil_freedyn();
        nauty_freedyn();
    }
};

thread_local double groupSize = 1.0;

/// nauty calls this for each factor of the number of automorphisms. The product that it keeps itself is rounded where
/// it exceeds 10^10.
void multiplyGroupSize(int *, int *, int, int *, statsblk *, int, int factor, int, int, int, int)
{
    groupSize *= factor;
}
} // namespace

CanonicalForm canonicalForm(const SmallGraph &given)
{
    thread_local const NautyMemory memory;
    CanonicalForm form;
    form.graph.order = given.order;
    if (given.order == 0) {
        return form;
    }
    static DEFAULTOPTIONS_GRAPH(defaults);
    optionblk options = defaults;
    options.getcanon = TRUE;
    options.userlevelproc = multiplyGroupSize;
    groupSize = 1.0;
    statsblk statistics;
    std::array<setword, SmallGraph::maxOrder> rows{};
    std::array<setword, SmallGraph::maxOrder> canonicalRows{};
    std::copy_n(given.rows.begin(), given.order, rows.begin());
    std::array<int, SmallGraph::maxOrder> labels{};
    std::array<int, SmallGraph::maxOrder> partition{};
    densenauty(rows.data(), labels.data(), partition.data(), form.orbits.data(), &options, &statistics, 1, given.order,
               canonicalRows.data());
    std::copy_n(canonicalRows.begin(), given.order, form.graph.rows.begin());
    form.automorphisms = groupSize;
    return form;
}

unsigned canonicalFormVersion()
{
    return NAUTYVERSIONID;
}
