#include "canonicalform.h"

#include "checksum.h"

#include <algorithm>
#include <nauty.h>
#include <random>
#include <utility>
#include <vector>

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
/// Hardly any two vertices of it are alike.
SmallGraph randomGraph(int order, std::mt19937 &random)
{
    SmallGraph graph;
    graph.order = order;
    for (int v = 1; v < order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (random() % 2 == 0) {
                graph.addEdge(u, v);
            }
        }
    }
    return graph;
}

/// A cycle with a chord from nearly each vertex. Their degrees do not tell the vertices apart, so that nauty has to
/// search.
SmallGraph cycleWithChords(int order, std::mt19937 &random)
{
    SmallGraph graph;
    graph.order = order;
    std::vector<int> withoutChord;
    for (int v = 0; v < order; ++v) {
        graph.addEdge(v, (v + 1) % order);
        withoutChord.push_back(v);
    }
    const auto takeVertex = [&] {
        std::swap(withoutChord[random() % withoutChord.size()], withoutChord.back());
        const int vertex = withoutChord.back();
        withoutChord.pop_back();
        return vertex;
    };
    while (withoutChord.size() > 1) {
        const int end = takeVertex();
        graph.addEdge(end, takeVertex());
    }
    return graph;
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

quint32 canonicalFormsChecksum()
{
    constexpr int graphs = 16;
    constexpr int smallestOrder = 10;
    constexpr int orders = 5;
    std::mt19937 random; // whose numbers are the same everywhere
    Checksum checksum;
    for (int i = 0; i < graphs; ++i) {
        const int order = smallestOrder + i % orders;
        const CanonicalForm form =
            canonicalForm(i % 2 == 0 ? randomGraph(order, random) : cycleWithChords(order, random));
        for (int v = 0; v < order; ++v) {
            const uint64_t row = form.graph.rows[v];
            checksum.add({reinterpret_cast<const char *>(&row), sizeof row});
        }
    }
    return quint32(checksum.value());
}
