#include "edgesum.h"
#include "invariantgroups.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace
{
InvariantValue minimumDegree(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return degrees.empty() ? std::nullopt : InvariantValue(*std::min_element(degrees.begin(), degrees.end()));
}

InvariantValue maximumDegree(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return degrees.empty() ? std::nullopt : InvariantValue(*std::max_element(degrees.begin(), degrees.end()));
}

InvariantValue averageDegree(GraphFacts &facts)
{
    return facts.order() > 0 ? InvariantValue(2.0 * facts.size() / facts.order()) : std::nullopt;
}

int sumOfSquares(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return std::inner_product(degrees.begin(), degrees.end(), degrees.begin(), 0);
}

/// One division of integers, so that it is 0 for regular graphs.
InvariantValue degreeVariance(GraphFacts &facts)
{
    const int order = facts.order();
    const int sum = 2 * facts.size();
    return order > 0 ? InvariantValue(double(order * sumOfSquares(facts) - sum * sum) / (order * order)) : std::nullopt;
}

/// The sum of @p term(d(u), d(v)) over the edges uv.
template<typename Term> double sumOverDegrees(GraphFacts &facts, Term term)
{
    const std::vector<int> &degrees = facts.degrees();
    return sumOverEdges(facts.graph(), [&](int u, int v) -> double { return term(degrees[u], degrees[v]); });
}

InvariantValue irregularity(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](int a, int b) { return std::abs(a - b); });
}

InvariantValue firstZagrebIndex(GraphFacts &facts)
{
    return sumOfSquares(facts);
}

InvariantValue secondZagrebIndex(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](int a, int b) { return a * b; });
}

InvariantValue randicIndex(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](double a, double b) { return 1.0 / std::sqrt(a * b); });
}

InvariantValue sumConnectivityIndex(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](double a, double b) { return 1.0 / std::sqrt(a + b); });
}

InvariantValue harmonicIndex(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](double a, double b) { return 2.0 / (a + b); });
}

InvariantValue abcIndex(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](double a, double b) { return std::sqrt((a + b - 2.0) / (a * b)); });
}

InvariantValue geometricArithmeticIndex(GraphFacts &facts)
{
    return sumOverDegrees(facts, [](double a, double b) { return 2.0 * std::sqrt(a * b) / (a + b); });
}
} // namespace

std::vector<Invariant> degreeInvariants()
{
    const char *const group = "Degrees";
    const char *const zagreb = "I. Gutman and N. Trinajstić, \"Graph theory and molecular orbitals. Total π-electron "
                               "energy of alternant hydrocarbons\", 1972";
    return {
        {"minimum-degree", group, "smallest degree; NA without vertices", "", minimumDegree},
        {"maximum-degree", group, "largest degree; NA without vertices", "", maximumDegree},
        {"average-degree", group, "mean of the degrees; NA without vertices", "", averageDegree, ValueKind::Real},
        {"degree-variance", group,
         "mean of the squares of the degrees less the square of their mean; NA without vertices",
         "F. K. Bell, \"A note on the irregularity of graphs\", 1992", degreeVariance, ValueKind::Real},
        {"irregularity", group, "sum of |d(u) - d(v)| over the edges uv",
         "M. O. Albertson, \"The irregularity of a graph\", 1997", irregularity},
        {"first-zagreb-index", group, "sum of the squares of the degrees", zagreb, firstZagrebIndex},
        {"second-zagreb-index", group, "sum of d(u)d(v) over the edges uv",
         "I. Gutman, B. Ruščić, N. Trinajstić and C. F. Wilcox, \"Graph theory and molecular orbitals. XII. Acyclic "
         "polyenes\", 1975",
         secondZagrebIndex},
        {"randic-index", group, "sum of 1/sqrt(d(u)d(v)) over the edges uv",
         "M. Randić, \"On characterization of molecular branching\", 1975", randicIndex, ValueKind::Real},
        {"sum-connectivity-index", group, "sum of 1/sqrt(d(u) + d(v)) over the edges uv",
         "B. Zhou and N. Trinajstić, \"On a novel connectivity index\", 2009", sumConnectivityIndex, ValueKind::Real},
        {"harmonic-index", group, "sum of 2/(d(u) + d(v)) over the edges uv",
         "S. Fajtlowicz, \"On conjectures of Graffiti-II\", 1987", harmonicIndex, ValueKind::Real},
        {"abc-index", group, "atom-bond connectivity: sum of sqrt((d(u) + d(v) - 2)/(d(u)d(v))) over the edges uv",
         "E. Estrada, L. Torres, L. Rodríguez and I. Gutman, \"An atom-bond connectivity index: modelling the enthalpy "
         "of formation of alkanes\", 1998",
         abcIndex, ValueKind::Real},
        {"geometric-arithmetic-index", group, "sum of 2 sqrt(d(u)d(v))/(d(u) + d(v)) over the edges uv",
         "D. Vukičević and B. Furtula, \"Topological index based on the ratios of geometrical and arithmetical means "
         "of "
         "end-vertex degrees of edges\", 2009",
         geometricArithmeticIndex, ValueKind::Real},
    };
}
