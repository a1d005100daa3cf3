#include "invariantgroups.h"

#include <cmath>
#include <numeric>

namespace
{
/// The largest eigenvalue; no other exceeds it in absolute value (theorem of Perron and Frobenius).
InvariantValue spectralRadius(GraphFacts &facts)
{
    const std::vector<double> &spectrum = facts.spectrum(GraphMatrix::Adjacency);
    return spectrum.empty() ? std::nullopt : InvariantValue(spectrum.back());
}

InvariantValue energy(GraphFacts &facts)
{
    const std::vector<double> &spectrum = facts.spectrum(GraphMatrix::Adjacency);
    return std::accumulate(spectrum.begin(), spectrum.end(), 0.0,
                           [](double sum, double eigenvalue) { return sum + std::abs(eigenvalue); });
}

InvariantValue algebraicConnectivity(GraphFacts &facts)
{
    return facts.order() < 2 ? std::nullopt : InvariantValue(facts.spectrum(GraphMatrix::Laplacian)[1]);
}
} // namespace

std::vector<Invariant> spectralInvariants()
{
    const char *const group = "Eigenvalues";
    return {
        {"spectral-radius", group, "largest eigenvalue of the adjacency matrix; NA without vertices", "",
         spectralRadius},
        {"energy", group, "sum of the absolute eigenvalues of the adjacency matrix",
         "I. Gutman, \"The energy of a graph\", 1978", energy},
        {"algebraic-connectivity", group, "second smallest eigenvalue of the Laplacian; NA below two vertices",
         "M. Fiedler, \"Algebraic connectivity of graphs\", 1973", algebraicConnectivity},
    };
}
