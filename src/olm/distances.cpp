#include "distances.h"

#include <algorithm>

namespace
{
QVector<int> degrees(const Distances &distances)
{
    QVector<int> degrees;
    for (const QVector<int> &row : distances) {
        degrees.append(int(std::count(row.cbegin(), row.cend(), 1)));
    }
    return degrees;
}
} // namespace

Distances distances(int n, int unreachable, const std::function<bool(int, int)> &joined)
{
    Distances distance(n, QVector<int>(n, unreachable));
    for (int s = 0; s < n; ++s) {
        distance[s][s] = 0;
        QVector<int> queue{s};
        for (int head = 0; head < queue.size(); ++head) {
            const int u = queue[head];
            for (int w = 0; w < n; ++w) {
                if (distance[s][w] == unreachable && joined(u, w)) {
                    distance[s][w] = distance[s][u] + 1;
                    queue.append(w);
                }
            }
        }
    }
    return distance;
}

int largestDistance(const Distances &distances)
{
    int largest = 0;
    for (const QVector<int> &row : distances) {
        largest = std::max(largest, *std::max_element(row.cbegin(), row.cend()));
    }
    return largest;
}

std::pair<int, int> diametralPair(const Distances &distances)
{
    const QVector<int> degree = degrees(distances);
    int best = 0;
    int bestDegree = -1;
    std::pair<int, int> pair(-1, -1);
    for (int i = 0; i < distances.size(); ++i) {
        for (int j = 0; j < distances.size(); ++j) {
            const int larger = std::max(degree[i], degree[j]);
            if (distances[i][j] > best || (distances[i][j] == best && larger < bestDegree)) {
                best = distances[i][j];
                bestDegree = larger;
                pair = {i, j};
            }
        }
    }
    return pair;
}
