#include "chromaticnumber.h"

#include "vertexset.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace
{
class Colouring
{
public:
    Colouring(const SmallGraph &given, int bound) : graph(given), lowerBound(bound), best(given.order) {}

    int fewestColours()
    {
        extend(0, 0);
        return best;
    }

private:
    /// Colours the other vertices in every way that may need fewer colours than the best way so far. @p coloured is the
    /// set of the vertices that have a colour; they use the first @p used colours.
    void extend(uint64_t coloured, int used)
    {
        if (used >= best) {
            return;
        }
        const int v = nextVertex(coloured, used);
        if (v < 0) {
            best = used;
            return;
        }
        for (int colour = 0; colour <= used && colour < best - 1 && best > lowerBound; ++colour) {
            uint64_t &colourClass = classes[colour];
            if ((graph.rows[v] & colourClass) == 0) {
                colourClass |= SmallGraph::bit(v);
                extend(coloured | SmallGraph::bit(v), std::max(used, colour + 1));
                colourClass &= ~SmallGraph::bit(v);
            }
        }
    }

    /// The vertex outside @p coloured whose neighbours have the most colours, and of several such vertices the one with
    /// the most neighbours outside; -1 when all vertices are coloured.
    int nextVertex(uint64_t coloured, int used) const
    {
        int next = -1;
        auto most = std::make_tuple(-1, -1);
        for (int v = 0; v < graph.order; ++v) {
            if ((coloured & SmallGraph::bit(v)) == 0) {
                const auto urgency = std::make_tuple(coloursAround(v, used), neighboursOutside(v, coloured));
                if (urgency > most) {
                    most = urgency;
                    next = v;
                }
            }
        }
        return next;
    }

    int coloursAround(int v, int used) const
    {
        return int(std::count_if(classes.begin(), classes.begin() + used,
                                 [&](uint64_t colourClass) { return (graph.rows[v] & colourClass) != 0; }));
    }

    int neighboursOutside(int v, uint64_t coloured) const { return vertexCount(graph.rows[v] & ~coloured); }

    const SmallGraph &graph;
    const int lowerBound;
    int best;                                             // the fewest colours found so far
    std::array<uint64_t, SmallGraph::maxOrder> classes{}; // by colour: the vertices that have it
};
} // namespace

int chromaticNumber(const SmallGraph &graph, int lowerBound)
{
    return Colouring(graph, lowerBound).fewestColours();
}
