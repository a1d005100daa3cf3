#include "sparse6.h"

#include "graph6.h"

namespace
{
/// The number of bits that the largest vertex takes.
int vertexLength(int order)
{
    int length = 0;
    for (int largest = order - 1; largest > 0; largest >>= 1) {
        ++length;
    }
    return length;
}

/// Takes the bits of some graph6 characters one after the other.
class BitReader
{
public:
    explicit BitReader(std::string_view characters) : text(characters) {}

    int left() const { return int(text.size()) * graph6::pairsPerCharacter - next; }

    int take(int count)
    {
        int number = 0;
        for (; count > 0; --count, ++next) {
            number = number << 1 | (graph6::isEdge(text, next) ? 1 : 0);
        }
        return number;
    }

private:
    std::string_view text;
    int next = 0;
};

QString readEdges(std::string_view characters, SmallGraph &graph)
{
    BitReader bits(characters);
    const int length = vertexLength(graph.order);
    int current = 0;
    while (bits.left() > length) {
        // The bits that fill up the last character make a vertex beyond the order, or fewer bits than a step has.
        const bool isInLast = bits.left() < graph6::pairsPerCharacter;
        current += bits.take(1);
        const int vertex = bits.take(length);
        if (current >= graph.order || vertex >= graph.order) {
            return isInLast ? QString() : QStringLiteral("not sparse6: bytes behind the last edge");
        }
        if (vertex > current) {
            current = vertex;
        } else if (vertex == current) {
            return QStringLiteral("a loop: only simple graphs are read");
        } else if (graph.adjacent(vertex, current)) {
            return QStringLiteral("a multiple edge: only simple graphs are read");
        } else {
            graph.addEdge(vertex, current);
        }
    }
    return QString();
}
} // namespace

QString parseSparse6(std::string_view text, SmallGraph &graph)
{
    if (text.substr(0, 1) != std::string_view(&sparse6Mark, 1)) {
        return QStringLiteral("not sparse6: no ':' at the beginning");
    }
    if (text.size() == 1) {
        return QStringLiteral("not sparse6: nothing behind ':'");
    }
    for (size_t i = 1; i < text.size(); ++i) {
        if (!graph6::isCharacter(text[i])) {
            return QStringLiteral("not sparse6: byte %1 at column %2").arg(uchar(text[i])).arg(i + 1);
        }
    }
    graph.order = graph6::valueOf(text[1]);
    if (graph.order > SmallGraph::maxOrder) { // written with further bytes, as in graph6
        return QStringLiteral("more than %1 vertices").arg(SmallGraph::maxOrder);
    }
    graph.rows.fill(0);
    return readEdges(text.substr(2), graph);
}
