#include "smallgraph.h"

#include "counted.h"

#include <bitset>

namespace
{
constexpr int bitsPerCharacter = 6;
constexpr unsigned char firstByte = 63;
constexpr unsigned char lastByte = 126;

int bitCount(std::uint64_t word)
{
    return int(std::bitset<64>(word).count());
}

int pairCount(int order)
{
    return order * (order - 1) / 2;
}

bool isGraph6Byte(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= firstByte && code <= lastByte;
}

int sixBits(char byte)
{
    return static_cast<unsigned char>(byte) - firstByte;
}
} // namespace

void SmallGraph::addEdge(int u, int v)
{
    rows[size_t(u)] |= bit(v);
    rows[size_t(v)] |= bit(u);
}

void SmallGraph::removeEdge(int u, int v)
{
    rows[size_t(u)] &= ~bit(v);
    rows[size_t(v)] &= ~bit(u);
}

int SmallGraph::size() const
{
    int degrees = 0;
    for (int v = 0; v < order; ++v) {
        degrees += bitCount(rows[size_t(v)]);
    }
    return degrees / 2;
}

bool SmallGraph::isConnected() const
{
    if (order == 0) {
        return false;
    }
    std::uint64_t reached = bit(0);
    for (std::uint64_t before = 0; before != reached;) {
        before = reached;
        for (int v = 0; v < order; ++v) {
            if ((before & bit(v)) != 0) {
                reached |= rows[size_t(v)];
            }
        }
    }
    return bitCount(reached) == order;
}

SmallGraph SmallGraph::withoutVertex(int vertex) const
{
    const std::uint64_t before = ~(~std::uint64_t(0) >> vertex); // the bits of the vertices before it
    SmallGraph result;
    result.order = order - 1;
    for (int v = 0; v < result.order; ++v) {
        const std::uint64_t row = rows[size_t(v < vertex ? v : v + 1)];
        const std::uint64_t behind = (row & ~before & ~bit(vertex)) << 1;
        result.rows[size_t(v)] = (row & before) | behind;
    }
    return result;
}

std::size_t graph6Length(int order)
{
    return 1 + (std::size_t(pairCount(order)) + bitsPerCharacter - 1) / bitsPerCharacter;
}

QString parseGraph6(std::string_view text, SmallGraph &graph)
{
    if (text.empty()) {
        return QStringLiteral("not graph6: empty");
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (!isGraph6Byte(text[i])) {
            return QStringLiteral("not graph6: byte %1 at column %2")
                .arg(static_cast<unsigned char>(text[i]))
                .arg(i + 1);
        }
    }
    graph.order = sixBits(text.front());
    if (graph.order > SmallGraph::MaxOrder) { // The number of vertices follows, in several bytes.
        return QStringLiteral("more than %1 vertices").arg(SmallGraph::MaxOrder);
    }
    const std::size_t length = graph6Length(graph.order);
    if (text.size() != length) {
        return QStringLiteral("not graph6: %1 where a graph on %2 has %3")
            .arg(counted(qint64(text.size()), "byte", "bytes"), counted(graph.order, "vertex", "vertices"),
                 QString::number(length));
    }
    const int unused = int(length - 1) * bitsPerCharacter - pairCount(graph.order);
    if (unused > 0 && (sixBits(text.back()) & ((1 << unused) - 1)) != 0) {
        return QStringLiteral("not graph6: bits are set behind the last pair of vertices");
    }
    graph.rows.fill(0);
    int pair = 0;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u, ++pair) {
            const int byte = sixBits(text[1 + size_t(pair) / bitsPerCharacter]);
            if ((byte >> (bitsPerCharacter - 1 - pair % bitsPerCharacter) & 1) != 0) {
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
    key.reserve(size_t(pairCount(graph.order)) / bitsPerByte + 1);
    unsigned char byte = 0;
    int filled = 0;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            byte = static_cast<unsigned char>(byte << 1 | int(graph.adjacent(u, v)));
            if (++filled == bitsPerByte) {
                key.push_back(static_cast<char>(byte));
                filled = 0;
            }
        }
    }
    if (filled > 0) {
        key.push_back(static_cast<char>(byte << (bitsPerByte - filled)));
    }
    return key;
}
