#include "levellayout.h"

#include <algorithm>

namespace
{
/// How much further up the ends of the longest row are than its middle.
constexpr double sag = 0.3;

using Row = QVector<int>;

/// The vertices by their distance from the first row, which is given; those that are not reached come last, behind an
/// empty row.
QVector<Row> rowsFrom(const Adjacency &graph, const Row &first)
{
    QVector<bool> reached(graph.size(), false);
    for (const int vertex : first) {
        reached[vertex] = true;
    }
    QVector<Row> rows{first};
    while (!rows.last().isEmpty()) {
        Row next;
        for (const int vertex : qAsConst(rows.last())) {
            for (int other = 0; other < graph.size(); ++other) {
                if (graph[vertex][other] && !reached[other]) {
                    reached[other] = true;
                    next.append(other);
                }
            }
        }
        rows.append(next);
    }
    Row rest;
    for (int vertex = 0; vertex < graph.size(); ++vertex) {
        if (!reached[vertex]) {
            rest.append(vertex);
        }
    }
    rows.append(rest);
    return rows;
}

/// The mean x of the neighbours of @p vertex in the row above: a row in this order has few crossings.
double meanAbove(const Adjacency &graph, int vertex, const Row &above, const Places &places)
{
    double sum = 0;
    int count = 0;
    for (const int other : above) {
        if (graph[vertex][other]) {
            sum += places[other].x();
            ++count;
        }
    }
    return count == 0 ? 0.0 : sum / count;
}
} // namespace

Places levelLayout(const Adjacency &graph, const QVector<int> &sources)
{
    QVector<Row> rows = rowsFrom(graph, sources);
    int longest = 1;
    for (const Row &row : qAsConst(rows)) {
        longest = std::max(longest, row.size());
    }
    Places places(graph.size());
    for (int level = 0; level < rows.size(); ++level) {
        Row &row = rows[level];
        if (level > 0) {
            const Row &above = rows[level - 1];
            std::stable_sort(row.begin(), row.end(), [&](int a, int b) {
                return meanAbove(graph, a, above, places) < meanAbove(graph, b, above, places);
            });
        }
        for (int i = 0; i < row.size(); ++i) {
            const double x = i - (row.size() - 1) / 2.0;
            const double share = 2 * x / longest;
            places[row[i]] = QPointF(x, level - sag * share * share);
        }
    }
    return places;
}
