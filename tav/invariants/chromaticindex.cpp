#include "chromaticindex.h"

#include "vertexset.h"

#include <algorithm>
#include <array>
#include <random>
#include <utility>
#include <vector>

namespace
{
/// A set of colours, like a set of vertices.
using ColourSet = VertexSet;

/// A colouring of some edges with as many colours as the largest degree.
class EdgeColouring
{
public:
    EdgeColouring(const SmallGraph &given, int colourCount) : graph(given), colours(colourCount)
    {
        freeColours.fill(allVertices(colourCount));
        lacking.fill(allVertices(graph.order));
        uncoloured = graph.rows;
        edgesLeft = graph.size();
    }

    /// Colours one edge after the other at random; where its ends have no free colour in common, two colours are
    /// exchanged along a path (A. B. Kempe, 1879), or another edge loses its colour. Returns whether all edges have a
    /// colour after @p mostSteps steps; if not, there may yet be a colouring.
    bool isFoundAtRandom(int mostSteps)
    {
        std::minstd_rand random;
        std::vector<std::pair<int, int>> waiting;
        for (int v = 1; v < graph.order; ++v) {
            for (const int u : VerticesOf(graph.rows[v] & allVertices(v))) {
                waiting.emplace_back(u, v);
            }
        }
        for (int step = 0; step < mostSteps && !waiting.empty(); ++step) {
            const auto [u, v] = waiting.back();
            waiting.pop_back();
            if ((freeColours[u] & freeColours[v]) == 0) {
                const int a = oneOf(freeColours[u], random);
                const int b = oneOf(freeColours[v], random);
                if (!exchange(v, a, b, u)) {
                    const int w = mates[u][b];
                    remove(u, w, b);
                    waiting.insert(waiting.begin(), {std::min(u, w), std::max(u, w)});
                }
            }
            add(u, v, firstVertex(freeColours[u] & freeColours[v]));
        }
        return waiting.empty();
    }

    /// Whether there is a colouring of all edges, by trial of all: the next edge is the one with the fewest colours.
    bool isPossible(int coloursUsed = 0)
    {
        if (edgesLeft == 0) {
            return true;
        }
        int left = 0; // how many edges the colours can have at most
        for (int colour = 0; colour < colours; ++colour) {
            left += vertexCount(lacking[colour]) / 2;
        }
        if (left < edgesLeft) {
            return false;
        }
        int first = -1;
        int second = -1;
        int fewest = colours + 1;
        for (int v = 1; v < graph.order && fewest > 0; ++v) {
            for (const int u : VerticesOf(uncoloured[v] & allVertices(v))) {
                const int count = vertexCount(freeColours[u] & freeColours[v]);
                if (count < fewest) {
                    fewest = count;
                    first = u;
                    second = v;
                }
            }
        }
        // Colours that no edge has are all alike.
        const ColourSet worthTrying = allVertices(std::min(coloursUsed + 1, colours));
        for (const int colour : VerticesOf(freeColours[first] & freeColours[second] & worthTrying)) {
            add(first, second, colour);
            if (isPossible(std::max(coloursUsed, colour + 1))) {
                return true;
            }
            remove(first, second, colour);
        }
        return false;
    }

private:
    void add(int u, int v, int colour)
    {
        freeColours[u] &= ~SmallGraph::bit(colour);
        freeColours[v] &= ~SmallGraph::bit(colour);
        lacking[colour] &= ~SmallGraph::bit(u) & ~SmallGraph::bit(v);
        mates[u][colour] = v;
        mates[v][colour] = u;
        uncoloured[u] &= ~SmallGraph::bit(v);
        uncoloured[v] &= ~SmallGraph::bit(u);
        --edgesLeft;
    }

    void remove(int u, int v, int colour)
    {
        freeColours[u] |= SmallGraph::bit(colour);
        freeColours[v] |= SmallGraph::bit(colour);
        lacking[colour] |= SmallGraph::bit(u) | SmallGraph::bit(v);
        uncoloured[u] |= SmallGraph::bit(v);
        uncoloured[v] |= SmallGraph::bit(u);
        ++edgesLeft;
    }

    /// Exchanges the colours on the path from @p start whose edges have @p a, @p b, @p a, ...; @p start lacks @p b.
    /// Does nothing and returns false when it ends at @p forbidden.
    bool exchange(int start, int a, int b, int forbidden)
    {
        std::vector<int> path{start};
        for (int colour = a; (freeColours[path.back()] & SmallGraph::bit(colour)) == 0; colour = a + b - colour) {
            path.push_back(mates[path.back()][colour]);
        }
        if (path.back() == forbidden) {
            return false;
        }
        for (size_t i = 1; i < path.size(); ++i) {
            remove(path[i - 1], path[i], i % 2 == 1 ? a : b);
        }
        for (size_t i = 1; i < path.size(); ++i) {
            add(path[i - 1], path[i], i % 2 == 1 ? b : a);
        }
        return true;
    }

    static int oneOf(ColourSet set, std::minstd_rand &random)
    {
        auto colour = VerticesOf(set).begin();
        std::advance(colour, int(random() % vertexCount(set)));
        return *colour;
    }

    const SmallGraph &graph;
    const int colours;
    int edgesLeft = 0;
    std::array<ColourSet, SmallGraph::maxOrder> freeColours; // by vertex: the colours of none of its edges
    std::array<VertexSet, SmallGraph::maxOrder> lacking;     // by colour: the vertices none of whose edges has it
    std::array<VertexSet, SmallGraph::maxOrder> uncoloured;  // by vertex: the other ends of edges without a colour
    std::array<std::array<int, SmallGraph::maxOrder>, SmallGraph::maxOrder>
        mates; // by vertex and colour: the other end
};
} // namespace

int chromaticIndex(const SmallGraph &graph)
{
    int most = 0;
    for (int v = 0; v < graph.order; ++v) {
        most = std::max(most, vertexCount(graph.rows[v]));
    }
    const int size = graph.size();
    if (size > most * (graph.order / 2)) {
        return most + 1;
    }
    constexpr int stepsPerEdge = 50;
    if (EdgeColouring(graph, most).isFoundAtRandom(stepsPerEdge * size)) {
        return most;
    }
    return EdgeColouring(graph, most).isPossible() ? most : most + 1;
}
