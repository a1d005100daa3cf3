#ifndef TAVOLINE_GRAPHFACTS_H
#define TAVOLINE_GRAPHFACTS_H

#include "canonicalform.h"
#include "distancematrix.h"
#include "graphmatrix.h"
#include "smallgraph.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

class IgraphGraph;

/// A graph, and what several invariants of it share: each fact is computed when it is asked for first, and kept. To
/// make one costs next to nothing. Throws CommandError when igraph fails. Only one thread may use objects of this class
/// at a time: neither igraph nor cliquer is thread-safe.
class GraphFacts
{
public:
    explicit GraphFacts(const SmallGraph &graph);
    ~GraphFacts();
    GraphFacts(const GraphFacts &) = delete;
    GraphFacts &operator=(const GraphFacts &) = delete;

    const SmallGraph &graph() const { return given; }
    int order() const { return given.order; }
    int size();
    /// Whether it has a vertex, and a path between any two.
    bool isConnected();
    /// By vertex: the number of its neighbours.
    const std::vector<int> &degrees();
    /// The graph must be connected.
    const DistanceMatrix &distances();
    /// The eigenvalues of @p matrix, the smallest first.
    const std::vector<double> &spectrum(GraphMatrix matrix);
    const SmallGraph &complement();
    /// The largest number of mutually adjacent vertices. The time is exponential in the worst case.
    int cliqueNumber();
    /// The largest number of mutually non-adjacent vertices. The time is exponential in the worst case.
    int independenceNumber();
    /// The largest number of edges without common vertices.
    int matchingNumber();
    const CanonicalForm &canonicalForm();
    const IgraphGraph &igraph();

private:
    const SmallGraph given;
    std::optional<int> edgeCount;
    std::optional<bool> connected;
    std::vector<int> neighbourCounts;
    std::optional<DistanceMatrix> allDistances;
    std::array<std::vector<double>, graphMatrixCount> spectra;
    std::optional<SmallGraph> complementGraph;
    std::optional<int> largestClique;
    std::optional<int> largestIndependentSet;
    std::optional<int> largestMatching;
    std::optional<CanonicalForm> canonical;
    std::unique_ptr<const IgraphGraph> igraphGraph;
};

#endif
