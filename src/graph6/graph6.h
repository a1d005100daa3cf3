#ifndef TAVOLINE_GRAPH6_H
#define TAVOLINE_GRAPH6_H

#include <cstddef>
#include <string>
#include <string_view>

/// The graph6 format (B. D. McKay, "Description of graph6, sparse6 and digraph6 encodings") of graphs on at most 62
/// vertices: a character for the order, then those of the pairs of vertices (0, 1), (0, 2), (1, 2), (0, 3), ..., six to
/// a character, the first at the highest bit and 1 for an edge. Each reader decides how strictly it checks a string.
namespace graph6
{
constexpr int largestOrder = 62;
constexpr int pairsPerCharacter = 6;
constexpr char zeroCharacter = 63;

constexpr int pairCount(int order)
{
    return order * (order - 1) / 2;
}

/// The number of characters that the pairs of a graph on @p order vertices take.
constexpr int pairLength(int order)
{
    return (pairCount(order) + pairsPerCharacter - 1) / pairsPerCharacter;
}

/// The length of the whole string of a graph on @p order vertices.
constexpr int stringLength(int order)
{
    return 1 + pairLength(order);
}

/// What a character stands for: 0 to 63; a number outside that range for a character that is not graph6's.
constexpr int valueOf(char character)
{
    return static_cast<unsigned char>(character) - zeroCharacter;
}

constexpr bool isCharacter(char character)
{
    const int value = valueOf(character);
    return value >= 0 && value < 1 << pairsPerCharacter;
}

/// Whether the pair number @p pair is an edge. @p pairs is the string without its first character; a pair beyond its
/// end is no edge.
inline bool isEdge(std::string_view pairs, int pair)
{
    const size_t place = pair / pairsPerCharacter;
    if (place >= pairs.size()) {
        return false;
    }
    const unsigned value = valueOf(pairs[place]);
    return (value >> (pairsPerCharacter - 1 - pair % pairsPerCharacter) & 1U) != 0;
}

/// The string of the graph on @p order vertices whose edges isJoined(u, v), u < v, tells.
template<typename IsJoined> std::string encode(int order, IsJoined isJoined)
{
    std::string text(stringLength(order), zeroCharacter);
    text.front() = char(zeroCharacter + order);
    int pair = 0;
    for (int v = 1; v < order; ++v) {
        for (int u = 0; u < v; ++u, ++pair) {
            if (isJoined(u, v)) {
                char &character = text[1 + pair / pairsPerCharacter];
                // The bit is clear: the sum sets it.
                character = char(character + (1 << (pairsPerCharacter - 1 - pair % pairsPerCharacter)));
            }
        }
    }
    return text;
}
} // namespace graph6

#endif
