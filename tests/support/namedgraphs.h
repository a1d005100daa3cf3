#ifndef TAVOLINE_NAMEDGRAPHS_H
#define TAVOLINE_NAMEDGRAPHS_H

// Graphs that have a name, and the values of the companion program's invariants for them as text.

#include "graphfacts.h"
#include "invariant.h"
#include "invariantcatalogue.h"
#include "support/testfiles.h"

#include <QByteArray>
#include <QtTest>

#include <initializer_list>
#include <utility>

inline SmallGraph decoded(const QByteArray &name)
{
    SmallGraph graph;
    const QString fault = parseGraph6(std::string_view(name.constData(), name.size()), graph);
    if (!fault.isEmpty()) {
        qFatal("%s: %s", name.constData(), qPrintable(fault));
    }
    return graph;
}

inline SmallGraph edgeless(int order)
{
    SmallGraph graph;
    graph.order = order;
    return graph;
}

/// Every vertex below @p a is adjacent to each of the other @p b.
inline SmallGraph completeBipartite(int a, int b)
{
    SmallGraph graph = edgeless(a + b);
    for (int u = 0; u < a; ++u) {
        for (int v = a; v < a + b; ++v) {
            graph.addEdge(u, v);
        }
    }
    return graph;
}

/// All edges but those for which @p isMissing holds, asked with the larger vertex first.
inline SmallGraph completeBut(int n, bool (*isMissing)(int v, int u))
{
    SmallGraph graph = edgeless(n);
    for (int v = 1; v < n; ++v) {
        for (int u = 0; u < v; ++u) {
            if (!isMissing(v, u)) {
                graph.addEdge(u, v);
            }
        }
    }
    return graph;
}

inline SmallGraph complete(int n)
{
    return completeBut(n, [](int, int) { return false; });
}

inline SmallGraph path(int n)
{
    SmallGraph graph = edgeless(n);
    for (int v = 1; v < n; ++v) {
        graph.addEdge(v - 1, v);
    }
    return graph;
}

inline SmallGraph cycle(int n)
{
    SmallGraph graph = path(n);
    graph.addEdge(n - 1, 0);
    return graph;
}

/// A cycle of five outside, a star of five inside.
inline SmallGraph petersen()
{
    SmallGraph graph = edgeless(10);
    for (int i = 0; i < 5; ++i) {
        graph.addEdge(i, (i + 1) % 5);
        graph.addEdge(i, i + 5);
        graph.addEdge(i + 5, (i + 2) % 5 + 5);
    }
    return graph;
}

/// The points and lines of the projective plane of order 2.
inline SmallGraph heawood()
{
    SmallGraph graph = cycle(14);
    for (int v = 0; v < 14; v += 2) {
        graph.addEdge(v, (v + 5) % 14);
    }
    return graph;
}

/// The words of @p dimension bits; adjacent are those that differ in one.
inline SmallGraph hypercube(int dimension)
{
    SmallGraph graph = edgeless(1 << dimension);
    for (int v = 0; v < graph.order; ++v) {
        for (int i = 0; i < dimension; ++i) {
            graph.addEdge(v, v ^ 1 << i);
        }
    }
    return graph;
}

/// The value of the invariant @p name.
inline std::optional<double> valueOf(const char *name, const SmallGraph &graph)
{
    GraphFacts facts(graph);
    return findInvariant(QLatin1String(name))->valueOf(facts);
}

/// The same as it is written to files.
inline QByteArray textOf(const char *name, const SmallGraph &graph)
{
    return invariantText(valueOf(name, graph));
}

/// The names of all graphs on one to seven vertices, one of each kind.
inline QList<QByteArray> namesUpToSeven()
{
    QList<QByteArray> names;
    for (const QByteArray &line : contents(QStringLiteral(TAVOLINE_TEST_DATA "/all-7-edge-deleted.tav")).split('\n')) {
        const QByteArray name = line.split('\t').first();
        if (!name.isEmpty()) {
            names.append(name);
        }
    }
    return names;
}

/// Adds a row for every pair of @p values, which are the name of an invariant and the text of its value for @p graph.
inline void addKnown(const char *graphName, const SmallGraph &graph,
                     std::initializer_list<std::pair<const char *, const char *>> values)
{
    for (const auto &[invariant, text] : values) {
        QTest::addRow("%s of %s", invariant, graphName) << graph << QByteArray(invariant) << QByteArray(text);
    }
}

Q_DECLARE_METATYPE(SmallGraph)

#endif
