#include "invariantcatalogue.h"

#include "canonicalform.h"
#include "chromaticnumber.h"
#include "cliquesearch.h"
#include "igraphobjects.h"
#include "matchingnumber.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
using Value = std::optional<double>;

/// A value computed by igraph, which returns an infinity or NaN where the invariant is undefined.
Value fromIgraph(double value)
{
    return std::isfinite(value) ? Value(value) : std::nullopt;
}

/// @name Counts
/// @{

Value order(const SmallGraph &graph)
{
    return graph.order;
}

Value size(const SmallGraph &graph)
{
    return graph.size();
}

Value components(const SmallGraph &graph)
{
    igraph_integer_t count = 0;
    checkIgraph(igraph_connected_components(IgraphGraph(graph).get(), nullptr, nullptr, &count, IGRAPH_WEAK));
    return count;
}

Value triangles(const SmallGraph &graph)
{
    IntegerVector corners;
    checkIgraph(igraph_list_triangles(IgraphGraph(graph).get(), corners.get()));
    return corners.size() / 3;
}

Value automorphisms(const SmallGraph &graph)
{
    return canonicalForm(graph).automorphisms;
}

/// @}
/// @name Degrees
/// @{

void findDegrees(const IgraphGraph &graph, IntegerVector &degrees)
{
    checkIgraph(igraph_degree(graph.get(), degrees.get(), igraph_vss_all(), IGRAPH_ALL, IGRAPH_LOOPS));
}

Value minimumDegree(const SmallGraph &graph)
{
    IntegerVector degrees;
    findDegrees(IgraphGraph(graph), degrees);
    return degrees.size() > 0 ? Value(igraph_vector_int_min(degrees.get())) : std::nullopt;
}

Value maximumDegree(const SmallGraph &graph)
{
    IntegerVector degrees;
    findDegrees(IgraphGraph(graph), degrees);
    return degrees.size() > 0 ? Value(igraph_vector_int_max(degrees.get())) : std::nullopt;
}

Value averageDegree(const SmallGraph &graph)
{
    return graph.order > 0 ? Value(2.0 * graph.size() / graph.order) : std::nullopt;
}

/// The sum of 1 / sqrt(d(u) d(v)) over the edges uv (M. Randić, "On characterization of molecular branching", 1975).
Value randicIndex(const SmallGraph &given)
{
    const IgraphGraph graph(given);
    IntegerVector degrees;
    findDegrees(graph, degrees);
    double sum = 0.0;
    for (igraph_integer_t edge = 0; edge < graph.size(); ++edge) {
        const igraph_integer_t u = IGRAPH_FROM(graph.get(), edge);
        const igraph_integer_t v = IGRAPH_TO(graph.get(), edge);
        sum += 1.0 / std::sqrt(degrees[u] * degrees[v]);
    }
    return sum;
}

/// @}
/// @name Distances and cycles
/// @{

Value girth(const SmallGraph &graph)
{
    double length = 0.0;
    checkIgraph(igraph_girth(IgraphGraph(graph).get(), &length, nullptr));
    return fromIgraph(length);
}

Value diameter(const SmallGraph &graph)
{
    double longest = 0.0;
    checkIgraph(igraph_diameter(IgraphGraph(graph).get(), &longest, nullptr, nullptr, nullptr, nullptr,
                                IGRAPH_UNDIRECTED, false));
    return fromIgraph(longest);
}

Value radius(const SmallGraph &given)
{
    if (!given.isConnected()) {
        return std::nullopt;
    }
    double value = 0.0;
    checkIgraph(igraph_radius(IgraphGraph(given).get(), &value, IGRAPH_ALL));
    return value;
}

Value averageDistance(const SmallGraph &graph)
{
    double average = 0.0;
    checkIgraph(igraph_average_path_length(IgraphGraph(graph).get(), &average, nullptr, IGRAPH_UNDIRECTED, false));
    return fromIgraph(average);
}

/// The sum of the distances of all pairs of vertices (H. Wiener, "Structural determination of paraffin boiling points",
/// 1947).
Value wienerIndex(const SmallGraph &graph)
{
    RealVector pairs; // of the distance 1, 2, ...
    double unconnected = 0.0;
    checkIgraph(igraph_path_length_hist(IgraphGraph(graph).get(), pairs.get(), &unconnected, IGRAPH_UNDIRECTED));
    if (graph.order == 0 || unconnected > 0.0) {
        return std::nullopt;
    }
    double sum = 0.0;
    for (igraph_integer_t i = 0; i < pairs.size(); ++i) {
        sum += (i + 1) * pairs[i];
    }
    return sum;
}

/// @}
/// @name Sets of vertices and edges
/// @{

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

int largestClique(const SmallGraph &graph)
{
    return findLargestClique(graph.order, graph.rows.data());
}

Value cliqueNumber(const SmallGraph &graph)
{
    return largestClique(graph);
}

/// An independent set is a clique of the complement.
Value independenceNumber(const SmallGraph &graph)
{
    return largestClique(complementOf(graph));
}

Value fewestColours(const SmallGraph &graph)
{
    return chromaticNumber(graph, largestClique(graph));
}

Value matchingSize(const SmallGraph &graph)
{
    return matchingNumber(graph);
}

Value vertexConnectivity(const SmallGraph &graph)
{
    igraph_integer_t vertices = 0;
    checkIgraph(igraph_vertex_connectivity(IgraphGraph(graph).get(), &vertices, true));
    return vertices;
}

Value edgeConnectivity(const SmallGraph &graph)
{
    igraph_integer_t edges = 0;
    checkIgraph(igraph_edge_connectivity(IgraphGraph(graph).get(), &edges, true));
    return edges;
}

/// @}
/// @name Eigenvalues
/// @{

/// Sets @p values to the eigenvalues of a symmetric @p matrix, the smallest first.
void findEigenvalues(RealMatrix &matrix, RealVector &values)
{
    if (igraph_matrix_nrow(matrix.get()) > 0) {
        checkIgraph(igraph_lapack_dsyevr(matrix.get(), IGRAPH_LAPACK_DSYEV_ALL, 0, 0, 0, 0, 0, 0.0, values.get(),
                                         nullptr, nullptr));
    }
}

void findSpectrum(const SmallGraph &graph, RealVector &values)
{
    RealMatrix adjacency;
    checkIgraph(igraph_get_adjacency(IgraphGraph(graph).get(), adjacency.get(), IGRAPH_GET_ADJACENCY_BOTH, nullptr,
                                     IGRAPH_NO_LOOPS));
    findEigenvalues(adjacency, values);
}

/// The largest eigenvalue; no other exceeds it in absolute value (theorem of Perron and Frobenius).
Value spectralRadius(const SmallGraph &graph)
{
    RealVector spectrum;
    findSpectrum(graph, spectrum);
    return spectrum.size() > 0 ? Value(spectrum[spectrum.size() - 1]) : std::nullopt;
}

/// The sum of the absolute values of the eigenvalues (I. Gutman, "The energy of a graph", 1978).
Value energy(const SmallGraph &graph)
{
    RealVector spectrum;
    findSpectrum(graph, spectrum);
    return std::accumulate(spectrum.begin(), spectrum.end(), 0.0,
                           [](double sum, double eigenvalue) { return sum + std::abs(eigenvalue); });
}

/// The second smallest eigenvalue of the Laplacian (M. Fiedler, "Algebraic connectivity of graphs", 1973).
Value algebraicConnectivity(const SmallGraph &graph)
{
    if (graph.order < 2) {
        return std::nullopt;
    }
    RealMatrix laplacian;
    checkIgraph(igraph_get_laplacian(IgraphGraph(graph).get(), laplacian.get(), IGRAPH_ALL,
                                     IGRAPH_LAPLACIAN_UNNORMALIZED, nullptr));
    RealVector spectrum;
    findEigenvalues(laplacian, spectrum);
    return spectrum[1];
}

/// @}
} // namespace

const std::vector<Invariant> &invariants()
{
    static const std::vector<Invariant> all = {
        {"order", "number of vertices", order},
        {"size", "number of edges", size},
        {"minimum-degree", "smallest degree; NA without vertices", minimumDegree},
        {"maximum-degree", "largest degree; NA without vertices", maximumDegree},
        {"average-degree", "mean of the degrees; NA without vertices", averageDegree},
        {"triangles", "number of triangles", triangles},
        {"components", "number of connected components", components},
        {"girth", "length of a shortest cycle; NA for a forest", girth},
        {"diameter", "largest distance of two vertices; NA unless connected", diameter},
        {"radius", "smallest eccentricity of a vertex; NA unless connected", radius},
        {"average-distance", "mean distance of two vertices; NA unless connected and with two vertices",
         averageDistance},
        {"wiener-index", "sum of the distances of all pairs of vertices; NA unless connected", wienerIndex},
        {"randic-index", "sum of 1/sqrt(d(u)d(v)) over the edges uv", randicIndex},
        {"clique-number", "largest number of mutually adjacent vertices", cliqueNumber},
        {"independence-number", "largest number of mutually non-adjacent vertices", independenceNumber},
        {"chromatic-number", "smallest number of colours of a proper vertex colouring", fewestColours},
        {"matching-number", "largest number of edges without common vertices", matchingSize},
        {"vertex-connectivity", "smallest number of vertices that disconnect the graph or leave one",
         vertexConnectivity},
        {"edge-connectivity", "smallest number of edges that disconnect the graph; 0 below two vertices",
         edgeConnectivity},
        {"spectral-radius", "largest eigenvalue of the adjacency matrix; NA without vertices", spectralRadius},
        {"energy", "sum of the absolute eigenvalues of the adjacency matrix", energy},
        {"algebraic-connectivity", "second smallest eigenvalue of the Laplacian; NA below two vertices",
         algebraicConnectivity},
        {"automorphisms", "number of automorphisms", automorphisms},
    };
    return all;
}

const Invariant *findInvariant(const QString &name)
{
    const auto &all = invariants();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Invariant &one) { return name == QLatin1String(one.name); });
    return found != all.end() ? &*found : nullptr;
}
