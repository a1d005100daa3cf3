#include "edgesum.h"
#include "effectiveresistance.h"
#include "invariantgroups.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
/// @p value(facts) of a connected graph, otherwise nothing.
template<double (*value)(GraphFacts &facts)> InvariantValue ifConnected(GraphFacts &facts)
{
    return facts.isConnected() ? InvariantValue(value(facts)) : std::nullopt;
}

/// The same, but nothing for the graph on one vertex either.
template<double (*value)(GraphFacts &facts)> InvariantValue ifConnectedPairs(GraphFacts &facts)
{
    return facts.order() > 1 ? ifConnected<value>(facts) : std::nullopt;
}

double sum(const std::vector<int> &numbers)
{
    return std::accumulate(numbers.begin(), numbers.end(), 0);
}

double smallest(const std::vector<int> &numbers)
{
    return *std::min_element(numbers.begin(), numbers.end());
}

double largest(const std::vector<int> &numbers)
{
    return *std::max_element(numbers.begin(), numbers.end());
}

/// The sum of @p term(d) over the distances d of all pairs of vertices.
template<typename Term> double sumOverPairs(GraphFacts &facts, Term term)
{
    const DistanceMatrix &distances = facts.distances();
    double sum = 0.0;
    for (int v = 1; v < facts.order(); ++v) {
        for (int u = 0; u < v; ++u) {
            sum += term(distances.at(u, v));
        }
    }
    return sum;
}

double diameter(GraphFacts &facts)
{
    return largest(facts.distances().eccentricities());
}

double radius(GraphFacts &facts)
{
    return smallest(facts.distances().eccentricities());
}

double averageEccentricity(GraphFacts &facts)
{
    return sum(facts.distances().eccentricities()) / facts.order();
}

double averageDistance(GraphFacts &facts)
{
    return sum(facts.distances().transmissions()) / (facts.order() * (facts.order() - 1));
}

double proximity(GraphFacts &facts)
{
    return smallest(facts.distances().transmissions()) / (facts.order() - 1);
}

double remoteness(GraphFacts &facts)
{
    return largest(facts.distances().transmissions()) / (facts.order() - 1);
}

double wienerIndex(GraphFacts &facts)
{
    return sum(facts.distances().transmissions()) / 2;
}

double hyperWienerIndex(GraphFacts &facts)
{
    return sumOverPairs(facts, [](int distance) { return distance * (distance + 1) / 2; });
}

double hararyIndex(GraphFacts &facts)
{
    return sumOverPairs(facts, [](int distance) { return 1.0 / distance; });
}

double eccentricConnectivityIndex(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return std::inner_product(degrees.begin(), degrees.end(), facts.distances().eccentricities().begin(), 0);
}

double szegedIndex(GraphFacts &facts)
{
    const DistanceMatrix &distances = facts.distances();
    return sumOverEdges(facts.graph(), [&](int u, int v) {
        int nearerToU = 0;
        int nearerToV = 0;
        for (int w = 0; w < facts.order(); ++w) {
            const int difference = distances.at(w, v) - distances.at(w, u);
            nearerToU += difference > 0 ? 1 : 0;
            nearerToV += difference < 0 ? 1 : 0;
        }
        return nearerToU * nearerToV;
    });
}

double balabanIndex(GraphFacts &facts)
{
    const std::vector<int> &transmissions = facts.distances().transmissions();
    const double cyclomaticNumber = facts.size() - facts.order() + 1;
    return facts.size() / (cyclomaticNumber + 1) * sumOverEdges(facts.graph(), [&](int u, int v) {
               return 1.0 / std::sqrt(double(transmissions[u]) * transmissions[v]);
           });
}

double kirchhoffIndex(GraphFacts &facts)
{
    return sumOfResistances(facts.graph());
}
} // namespace

std::vector<Invariant> distanceInvariants()
{
    const char *const group = "Distances";
    return {
        {"diameter", group, "largest distance of two vertices; NA unless connected", "", ifConnected<diameter>},
        {"radius", group, "smallest eccentricity of a vertex; NA unless connected", "", ifConnected<radius>},
        {"average-eccentricity", group, "mean of the eccentricities of the vertices; NA unless connected",
         "F. Buckley and F. Harary, \"Distance in Graphs\", 1990", ifConnected<averageEccentricity>, ValueKind::Real},
        {"average-distance", group, "mean distance of two vertices; NA unless connected and with two vertices",
         "J. K. Doyle and J. E. Graver, \"Mean distance in a graph\", 1977", ifConnectedPairs<averageDistance>,
         ValueKind::Real},
        {"proximity", group,
         "smallest mean distance of a vertex from the others; NA unless connected and with two vertices",
         "M. Aouchiche and P. Hansen, \"Nordhaus-Gaddum relations for proximity and remoteness in graphs\", 2010",
         ifConnectedPairs<proximity>, ValueKind::Real},
        {"remoteness", group,
         "largest mean distance of a vertex from the others; NA unless connected and with two vertices",
         "M. Aouchiche and P. Hansen, \"Nordhaus-Gaddum relations for proximity and remoteness in graphs\", 2010",
         ifConnectedPairs<remoteness>, ValueKind::Real},
        {"wiener-index", group, "sum of the distances of all pairs of vertices; NA unless connected",
         "H. Wiener, \"Structural determination of paraffin boiling points\", 1947", ifConnected<wienerIndex>},
        {"hyper-wiener-index", group,
         "sum of d(d+1)/2 over the distances d of all pairs of vertices; NA unless connected",
         "D. J. Klein, I. Lukovits and I. Gutman, \"On the definition of the hyper-Wiener index for cycle-containing "
         "structures\", 1995",
         ifConnected<hyperWienerIndex>},
        {"harary-index", group, "sum of 1/d over the distances d of all pairs of vertices; NA unless connected",
         "D. Plavšić, S. Nikolić, N. Trinajstić and Z. Mihalić, \"On the Harary index for the characterization of "
         "chemical graphs\", 1993",
         ifConnected<hararyIndex>, ValueKind::Real},
        {"eccentric-connectivity-index", group,
         "sum of degree times eccentricity over the vertices; NA unless connected",
         "V. Sharma, R. Goswami and A. K. Madan, \"Eccentric connectivity index: a novel highly discriminating "
         "topological descriptor for structure-property and structure-activity studies\", 1997",
         ifConnected<eccentricConnectivityIndex>},
        {"szeged-index", group,
         "sum over the edges uv of the number of vertices nearer to u than to v times that of those nearer to v; NA "
         "unless connected",
         "I. Gutman, \"A formula for the Wiener number of trees and its extension to graphs containing cycles\", 1994",
         ifConnected<szegedIndex>},
        {"balaban-index", group,
         "m/(m-n+2) times the sum over the edges uv of 1/sqrt(s(u)s(v)), where s(v) is the sum of the distances from "
         "v; "
         "NA unless connected",
         "A. T. Balaban, \"Highly discriminating distance-based topological index\", 1982", ifConnected<balabanIndex>,
         ValueKind::Real},
        {"kirchhoff-index", group,
         "sum over all pairs of vertices of the resistance between them when every edge has resistance 1; NA unless "
         "connected",
         "D. J. Klein and M. Randić, \"Resistance distance\", 1993", ifConnected<kirchhoffIndex>, ValueKind::Real},
    };
}
