#include "igraphobjects.h"
#include "invariantgroups.h"

#include <cmath>

namespace
{
/// A value computed by igraph, which returns an infinity or NaN where the invariant is undefined.
InvariantValue fromIgraph(double value)
{
    return std::isfinite(value) ? InvariantValue(value) : std::nullopt;
}

InvariantValue diameter(GraphFacts &facts)
{
    double longest = 0.0;
    checkIgraph(
        igraph_diameter(facts.igraph().get(), &longest, nullptr, nullptr, nullptr, nullptr, IGRAPH_UNDIRECTED, false));
    return fromIgraph(longest);
}

InvariantValue radius(GraphFacts &facts)
{
    if (!facts.isConnected()) {
        return std::nullopt;
    }
    double value = 0.0;
    checkIgraph(igraph_radius(facts.igraph().get(), &value, IGRAPH_ALL));
    return value;
}

InvariantValue averageDistance(GraphFacts &facts)
{
    double average = 0.0;
    checkIgraph(igraph_average_path_length(facts.igraph().get(), &average, nullptr, IGRAPH_UNDIRECTED, false));
    return fromIgraph(average);
}

InvariantValue wienerIndex(GraphFacts &facts)
{
    if (!facts.isConnected()) {
        return std::nullopt;
    }
    double sum = 0.0;
    for (int v = 1; v < facts.order(); ++v) {
        for (int u = 0; u < v; ++u) {
            sum += facts.distance(u, v);
        }
    }
    return sum;
}
} // namespace

std::vector<Invariant> distanceInvariants()
{
    const char *const group = "Distances";
    return {
        {"diameter", group, "largest distance of two vertices; NA unless connected", "", diameter},
        {"radius", group, "smallest eccentricity of a vertex; NA unless connected", "", radius},
        {"average-distance", group, "mean distance of two vertices; NA unless connected and with two vertices", "",
         averageDistance},
        {"wiener-index", group, "sum of the distances of all pairs of vertices; NA unless connected",
         "H. Wiener, \"Structural determination of paraffin boiling points\", 1947", wienerIndex},
    };
}
