#include "graphfacts.h"

#include "cliquesearch.h"
#include "eigenvalues.h"
#include "igraphobjects.h"
#include "matchingnumber.h"
#include "vertexset.h"

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
            neighbourCounts.push_back(vertexCount(given.rows[v]));
        }
    }
    return neighbourCounts;
}

const DistanceMatrix &GraphFacts::distances()
{
    if (!allDistances) {
        allDistances.emplace(given);
    }
    return *allDistances;
}

const std::vector<double> &GraphFacts::spectrum(GraphMatrix matrix)
{
    std::vector<double> &spectrum = spectra.at(int(matrix));
    if (spectrum.empty()) {
        std::vector<double> rows = rowsOf(matrix, *this);
        spectrum = eigenvalues(rows, given.order);
    }
    return spectrum;
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
