// graph6 written the slow way, all bits into a list first: what the faster code is held against.
#ifndef TAVOLINE_TESTS_PLAINGRAPH6_H
#define TAVOLINE_TESTS_PLAINGRAPH6_H

#include <QByteArray>

/// The graph6 string of a graph on at most 62 vertices; @p adjacent tells whether u < v are joined.
template<typename Adjacent> QByteArray plainGraph6(int order, const Adjacent &adjacent)
{
    QByteArray bits;
    for (int v = 1; v < order; ++v) {
        for (int u = 0; u < v; ++u) {
            bits += adjacent(u, v) ? '1' : '0';
        }
    }
    while (bits.size() % 6 != 0) {
        bits += '0';
    }
    QByteArray name(1, char(order + 63));
    for (int i = 0; i < bits.size(); i += 6) {
        name += char(bits.mid(i, 6).toInt(nullptr, 2) + 63);
    }
    return name;
}

#endif
