#include "invariantgroups.h"

#include <algorithm>
#include <cmath>

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

/// The sum of @p term(d(u), d(v)) over the edges uv.
template<typename Term> double sumOverEdges(GraphFacts &facts, Term term)
{
    const std::vector<int> &degrees = facts.degrees();
    double sum = 0.0;
    for (int v = 1; v < facts.order(); ++v) {
        for (int u = 0; u < v; ++u) {
            if (facts.graph().adjacent(u, v)) {
                sum += term(degrees[u], degrees[v]);
            }
        }
    }
    return sum;
}

InvariantValue randicIndex(GraphFacts &facts)
{
    return sumOverEdges(facts, [](double a, double b) { return 1.0 / std::sqrt(a * b); });
}
} // namespace

std::vector<Invariant> degreeInvariants()
{
    const char *const group = "Degrees";
    return {
        {"minimum-degree", group, "smallest degree; NA without vertices", "", minimumDegree},
        {"maximum-degree", group, "largest degree; NA without vertices", "", maximumDegree},
        {"average-degree", group, "mean of the degrees; NA without vertices", "", averageDegree},
        {"randic-index", group, "sum of 1/sqrt(d(u)d(v)) over the edges uv",
         "M. Randić, \"On characterization of molecular branching\", 1975", randicIndex},
    };
}
