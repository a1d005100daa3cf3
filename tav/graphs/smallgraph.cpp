#include "smallgraph.h"

#include "counted.h"

#include <bitset>

namespace
{
int bitCount(uint64_t word)
{
    return int(std::bitset<64>(word).count());
}
} // namespace

void SmallGraph::addEdge(int u, int v)
{
    rows[u] |= bit(v);
    rows[v] |= bit(u);
}

void SmallGraph::removeEdge(int u, int v)
{
    rows[u] &= ~bit(v);
    rows[v] &= ~bit(u);
}

int SmallGraph::size() const
{
    int degrees = 0;
    for (int v = 0; v < order; ++v) {
        degrees += bitCount(rows[v]);
    }
    return degrees / 2;
}

bool SmallGraph::isConnected() const
{
    if (order == 0) {
        return false;
    }
    uint64_t reached = bit(0);
    for (uint64_t before = 0; before != reached;) {
        before = reached;
        for (int v = 0; v < order; ++v) {
            if ((before & bit(v)) != 0) {
                reached |= rows[v];
            }
        }
    }
    return bitCount(reached) == order;
}

SmallGraph SmallGraph::withoutVertex(int vertex) const
{
    const uint64_t before = ~(~uint64_t(0) >> vertex); // the bits of the vertices below @p vertex
    SmallGraph result;
    result.order = order - 1;
    for (int v = 0; v < result.order; ++v) {
        const uint64_t row = rows[v < vertex ? v : v + 1];
        const uint64_t behind = (row & ~before & ~bit(vertex)) << 1;
        result.rows[v] = (row & before) | behind;
    }
    return result;
}

QString parseGraph6(std::string_view text, SmallGraph &graph)
{
    if (text.empty()) {
        return QStringLiteral("not graph6: empty");
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (!graph6::isCharacter(text[i])) {
            return QStringLiteral("not graph6: byte %1 at column %2").arg(uchar(text[i])).arg(i + 1);
        }
    }
    graph.order = graph6::valueOf(text.front());
    if (graph.order > SmallGraph::maxOrder) { // graph6 writes such an order with further bytes
        return QStringLiteral("more than %1 vertices").arg(SmallGraph::maxOrder);
    }
    const size_t length = graph6::stringLength(graph.order);
    if (text.size() != length) {
        return QStringLiteral("not graph6: %1 where a graph on %2 has %3")
            .arg(counted(text.size(), "byte", "bytes"), counted(graph.order, "vertex", "vertices"),
                 QString::number(length));
    }
    const std::string_view pairs = text.substr(1);
    const int unused = graph6::pairLength(graph.order) * graph6::pairsPerCharacter - graph6::pairCount(graph.order);
    if (unused > 0 && (graph6::valueOf(text.back()) & ((1 << unused) - 1)) != 0) {
        return QStringLiteral("not graph6: bits are set behind the last pair of vertices");
    }
    graph.rows.fill(0);
    int pair = 0;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u, ++pair) {
            if (graph6::isEdge(pairs, pair)) {
                graph.addEdge(u, v);
            }
        }
    }
    return QString();
}

std::string adjacencyKey(const SmallGraph &graph)
{
    constexpr int bitsPerByte = 8;
    std::string key;
    key.reserve(graph6::pairCount(graph.order) / bitsPerByte + 1);
    int byte = 0;
    int filled = 0;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            byte = byte << 1 | (graph.adjacent(u, v) ? 1 : 0);
            if (++filled == bitsPerByte) {
                key.push_back(char(byte));
                byte = 0;
                filled = 0;
            }
        }
    }
    if (filled > 0) {
        key.push_back(char(byte << (bitsPerByte - filled)));
    }
    return key;
}
