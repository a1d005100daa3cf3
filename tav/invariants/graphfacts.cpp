#include "graphfacts.h"

#include "cliquesearch.h"
#include "igraphobjects.h"
#include "matchingnumber.h"

#include <bitset>

namespace
{
SmallGraph complementOf(const SmallGraph &graph)
{
    SmallGraph complement;
    complement.order = graph.order;
    for (int v = 1; v < graph.order; ++v) {
        for (int u = 0; u < v; ++u) {
            if (!graph.adjacent(u, v)) {
                complement.addEdge(u, v);
            }
        }
    }
    return complement;
}

void fill(RealMatrix &matrix, const IgraphGraph &graph, GraphMatrix kind)
{
    switch (kind) {
    case GraphMatrix::Adjacency:
        checkIgraph(
            igraph_get_adjacency(graph.get(), matrix.get(), IGRAPH_GET_ADJACENCY_BOTH, nullptr, IGRAPH_NO_LOOPS));
        break;
    case GraphMatrix::Laplacian:
        checkIgraph(
            igraph_get_laplacian(graph.get(), matrix.get(), IGRAPH_ALL, IGRAPH_LAPLACIAN_UNNORMALIZED, nullptr));
        break;
    }
}
} // namespace

GraphFacts::GraphFacts(const SmallGraph &graph) : given(graph) {}

GraphFacts::~GraphFacts() = default;

int GraphFacts::size()
{
    if (!edgeCount) {
        edgeCount = given.size();
    }
    return *edgeCount;
}

bool GraphFacts::isConnected()
{
    if (!connected) {
        connected = given.isConnected();
    }
    return *connected;
}

const std::vector<int> &GraphFacts::degrees()
{
    if (neighbourCounts.empty()) {
        for (int v = 0; v < given.order; ++v) {
            neighbourCounts.push_back(int(std::bitset<64>(given.rows[v]).count()));
        }
    }
    return neighbourCounts;
}

double GraphFacts::distance(int u, int v)
{
    if (allDistances.empty()) {
        RealMatrix matrix;
        checkIgraph(igraph_distances(igraph().get(), matrix.get(), igraph_vss_all(), igraph_vss_all(), IGRAPH_ALL));
        allDistances.assign(matrix.get()->data.stor_begin, matrix.get()->data.end);
    }
    return allDistances[u * given.order + v];
}

const std::vector<double> &GraphFacts::spectrum(GraphMatrix matrix)
{
    std::vector<double> &eigenvalues = spectra.at(int(matrix));
    if (eigenvalues.empty() && given.order > 0) {
        RealMatrix entries;
        fill(entries, igraph(), matrix);
        RealVector values;
        checkIgraph(igraph_lapack_dsyevr(entries.get(), IGRAPH_LAPACK_DSYEV_ALL, 0, 0, 0, 0, 0, 0.0, values.get(),
                                         nullptr, nullptr));
        eigenvalues.assign(values.begin(), values.end());
    }
    return eigenvalues;
}

const SmallGraph &GraphFacts::complement()
{
    if (!complementGraph) {
        complementGraph = complementOf(given);
    }
    return *complementGraph;
}

int GraphFacts::cliqueNumber()
{
    if (!largestClique) {
        largestClique = findLargestClique(given.order, given.rows.data());
    }
    return *largestClique;
}

/// An independent set is a clique of the complement.
int GraphFacts::independenceNumber()
{
    if (!largestIndependentSet) {
        largestIndependentSet = findLargestClique(given.order, complement().rows.data());
    }
    return *largestIndependentSet;
}

int GraphFacts::matchingNumber()
{
    if (!largestMatching) {
        largestMatching = ::matchingNumber(given);
    }
    return *largestMatching;
}

const CanonicalForm &GraphFacts::canonicalForm()
{
    if (!canonical) {
        canonical = ::canonicalForm(given);
    }
    return *canonical;
}

const IgraphGraph &GraphFacts::igraph()
{
    if (!igraphGraph) {
        igraphGraph = std::make_unique<const IgraphGraph>(given);
    }
    return *igraphGraph;
}
