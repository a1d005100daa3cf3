// A viewer's graph as text, for literals in tests.
#ifndef TAVOLINE_TESTS_GRAPHTEXT_H
#define TAVOLINE_TESTS_GRAPHTEXT_H

#include "graph.h"
#include "node.h"

#include <QApplication>
#include <QPair>
#include <QStringList>
#include <QVector>

/// A viewer's graph as text, for literals in tests: vertices are "0 2", edges are "0-1 1-2".
namespace graphtext
{
inline QString vertices(const QVector<int> &numbers)
{
    QStringList words;
    for (const int number : numbers) {
        words.append(QString::number(number));
    }
    return words.join(QLatin1Char(' '));
}

/// The current graph's edges, in the order 0-1 0-2 1-2.
inline QString edges(const Graph &graph)
{
    QStringList words;
    for (int j = 1; j < graph.getNbNodes(); ++j) {
        for (int i = 0; i < j; ++i) {
            if (graph.edge(i, j)) {
                words.append(QStringLiteral("%1-%2").arg(i).arg(j));
            }
        }
    }
    return words.join(QLatin1Char(' '));
}

/// The selected vertices of the current graph.
inline QString selection(const Graph &graph)
{
    QVector<int> selected;
    for (int i = 0; i < graph.getNbNodes(); ++i) {
        if (graph.node(i)->isSelected()) {
            selected.append(i);
        }
    }
    return vertices(selected);
}

/// Selects exactly these vertices, of all slots.
inline void select(Graph &graph, const QVector<int> &selected)
{
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        graph.node(i)->setSelected(selected.contains(i));
    }
}

/// Replaces the graph by one on @p n vertices with these edges, and publishes and shows it.
inline void build(Graph &graph, int n, const QVector<QPair<int, int>> &edges)
{
    graph.clear();
    for (int i = 0; i < n; ++i) {
        graph.addNode();
    }
    for (const auto &[i, j] : edges) {
        graph.addEdge(i, j);
    }
    graph.changeBest();
    graph.update_display();
}

/// The same from a text, and selects exactly @p selected.
inline void set(Graph &graph, int n, const QString &edgeText, const QVector<int> &selected = {})
{
    QVector<QPair<int, int>> edges;
    const QStringList words = edgeText.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        const QStringList ends = word.split(QLatin1Char('-'));
        edges.append({ends.value(0).toInt(), ends.value(1).toInt()});
    }
    build(graph, n, edges);
    select(graph, selected);
}

/// Whether the best graph is the current one.
inline bool published(const Graph &graph)
{
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        for (int j = 0; j < Graph::MAX_NODES; ++j) {
            if (graph.edge(i, j) != graph.bestEdge(i, j)) {
                return false;
            }
        }
    }
    return true;
}

/// The number of Graph objects: the views, and the states in their histories.
inline int living()
{
    int count = 0;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        count += qobject_cast<Graph *>(widget) != nullptr ? 1 : 0;
    }
    return count;
}
} // namespace graphtext

#endif
