#include "graph.h"

#include <QByteArray>

#include <iostream>

namespace
{
/// The value of a graph6 character: 0..63, and outside that range when it is none.
int graph6Value(char character)
{
    return static_cast<unsigned char>(character) - 63;
}

/// The six bits of a graph6 character, most significant first; false behind the end of @p text.
bool graph6Bit(const QByteArray &text, int index)
{
    const int at = index / 6;
    return at < text.size() && (static_cast<unsigned>(graph6Value(text[at])) >> (5 - index % 6) & 1U) != 0;
}
} // namespace

bool Graph::loadg6(const QString &g6, bool fresh)
{
    countChange();
    const QByteArray text = g6.toLatin1();
    const int n = graph6Value(text.isEmpty() ? '\0' : text[0]);
    setNbNodes(n);
    if (fresh) {
        clear();
        for (int i = 0; i < n; i++) {
            addNode();
        }
        best_backup();
    }
    if (n < 2 || n >= MAX_NODES) {
        return false;
    }
    const QByteArray bits = text.mid(1);
    int index = 0;
    for (int j = 1; j < n; j++) {
        for (int i = 0; i < j; i++) {
            if (graph6Bit(bits, index)) {
                addEdge(i, j);
            } else {
                remEdge(i, j);
            }
            index++;
        }
    }
    return true;
}

QString Graph::g6currentGraphData() const
{
    if (nbNodes > MAX_NODES) {
        std::cerr << "Graph too large for g6 format" << std::endl;
        return QStringLiteral("0");
    }
    const int n = usedSlots(nbNodes);
    const int bitCount = n * (n - 1) / 2;
    QByteArray text((bitCount + 5) / 6, '\0');
    int index = 0;
    for (int j = 1; j < n; j++) {
        for (int i = 0; i < j; i++) {
            if (edge(i, j)) {
                text[index / 6] = static_cast<char>(text[index / 6] | 1 << (5 - index % 6));
            }
            index++;
        }
    }
    for (char &value : text) {
        value = static_cast<char>(value + 63);
    }
    return QString::fromLatin1(text.prepend(static_cast<char>(n + 63)));
}
