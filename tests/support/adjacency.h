// Adjacency matrices for the tests of the layouts.
#ifndef TAVOLINE_TESTS_ADJACENCY_H
#define TAVOLINE_TESTS_ADJACENCY_H

#include "places.h"
#include "runprogram.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <cmath>
#include <initializer_list>
#include <random>
#include <utility>

inline Adjacency emptyGraph(int order)
{
    return Adjacency(order, QVector<bool>(order, false));
}

inline Adjacency graphOf(int order, std::initializer_list<std::pair<int, int>> edges)
{
    Adjacency graph = emptyGraph(order);
    for (const auto &[i, j] : edges) {
        graph[i][j] = true;
        graph[j][i] = true;
    }
    return graph;
}

/// The graph of a graph6 string of at most 62 vertices.
inline Adjacency fromGraph6(const QByteArray &name)
{
    Adjacency graph = emptyGraph(name.at(0) - 63);
    int pair = 0;
    for (int j = 1; j < graph.size(); ++j) {
        for (int i = 0; i < j; ++i, ++pair) {
            const bool joined = ((name.at(1 + pair / 6) - 63) >> (5 - pair % 6) & 1) != 0;
            graph[i][j] = joined;
            graph[j][i] = joined;
        }
    }
    return graph;
}

/// The names of all graphs on @p order vertices, the disconnected ones too, each once up to isomorphism.
inline QList<QByteArray> allGraphs(int order)
{
    return outputOf(QStringLiteral("nauty-geng"), {QStringLiteral("-q"), QString::number(order)}).trimmed().split('\n');
}

/// A graph in which each pair of vertices is joined with the probability @p percent of 100.
inline Adjacency randomGraph(int order, unsigned percent, std::mt19937 &random)
{
    Adjacency graph = emptyGraph(order);
    for (int j = 1; j < order; ++j) {
        for (int i = 0; i < j; ++i) {
            graph[i][j] = random() % 100 < percent;
            graph[j][i] = graph[i][j];
        }
    }
    return graph;
}

/// The least distance between two of the places.
inline double leastDistance(const Places &places)
{
    double least = 1e9;
    for (int j = 1; j < places.size(); ++j) {
        for (int i = 0; i < j; ++i) {
            const QPointF difference = places[i] - places[j];
            least = qMin(least, QPointF::dotProduct(difference, difference));
        }
    }
    return std::sqrt(least);
}

#endif
