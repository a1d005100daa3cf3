#include "exactelimination.h"
#include "invariantgroups.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
template<GraphMatrix matrix> InvariantValue smallest(GraphFacts &facts)
{
    const std::vector<double> &spectrum = facts.spectrum(matrix);
    return spectrum.empty() ? std::nullopt : InvariantValue(spectrum.front());
}

template<GraphMatrix matrix> InvariantValue secondSmallest(GraphFacts &facts)
{
    return facts.order() < 2 ? std::nullopt : InvariantValue(facts.spectrum(matrix)[1]);
}

template<GraphMatrix matrix> InvariantValue largest(GraphFacts &facts)
{
    const std::vector<double> &spectrum = facts.spectrum(matrix);
    return spectrum.empty() ? std::nullopt : InvariantValue(spectrum.back());
}

InvariantValue secondEigenvalue(GraphFacts &facts)
{
    return facts.order() < 2 ? std::nullopt : InvariantValue(facts.spectrum(GraphMatrix::Adjacency)[facts.order() - 2]);
}

/// The sum of the distances of the eigenvalues from their mean.
template<GraphMatrix matrix> InvariantValue deviation(GraphFacts &facts, double mean)
{
    const std::vector<double> &spectrum = facts.spectrum(matrix);
    return std::accumulate(spectrum.begin(), spectrum.end(), 0.0,
                           [&](double sum, double eigenvalue) { return sum + std::abs(eigenvalue - mean); });
}

InvariantValue energy(GraphFacts &facts)
{
    return deviation<GraphMatrix::Adjacency>(facts, 0.0);
}

double averageDegree(GraphFacts &facts)
{
    return facts.order() > 0 ? 2.0 * facts.size() / facts.order() : 0.0;
}

InvariantValue laplacianEnergy(GraphFacts &facts)
{
    return deviation<GraphMatrix::Laplacian>(facts, averageDegree(facts));
}

InvariantValue signlessLaplacianEnergy(GraphFacts &facts)
{
    return deviation<GraphMatrix::SignlessLaplacian>(facts, averageDegree(facts));
}

InvariantValue distanceEnergy(GraphFacts &facts)
{
    return facts.isConnected() ? deviation<GraphMatrix::Distance>(facts, 0.0) : std::nullopt;
}

InvariantValue distanceSpectralRadius(GraphFacts &facts)
{
    return facts.isConnected() ? largest<GraphMatrix::Distance>(facts) : std::nullopt;
}

InvariantValue estradaIndex(GraphFacts &facts)
{
    const std::vector<double> &spectrum = facts.spectrum(GraphMatrix::Adjacency);
    return std::accumulate(spectrum.begin(), spectrum.end(), 0.0,
                           [](double sum, double eigenvalue) { return sum + std::exp(eigenvalue); });
}

InvariantValue rank(GraphFacts &facts)
{
    return exactRank(facts.graph(), 0);
}

InvariantValue nullity(GraphFacts &facts)
{
    return facts.order() - exactRank(facts.graph(), 0);
}

InvariantValue determinant(GraphFacts &facts)
{
    return exactDeterminant(facts.graph());
}
} // namespace

std::vector<Invariant> spectralInvariants()
{
    const char *const group = "Eigenvalues";
    const char *const spectra = "A. E. Brouwer and W. H. Haemers, \"Spectra of Graphs\", 2012";
    return {
        // Every other eigenvalue is smaller in absolute value, or equal (theorem of Perron and Frobenius).
        {"spectral-radius", group, "largest eigenvalue of the adjacency matrix; NA without vertices", spectra,
         largest<GraphMatrix::Adjacency>, ValueKind::Real},
        {"second-eigenvalue", group,
         "second largest eigenvalue of the adjacency matrix, counted with multiplicity; NA below two vertices", spectra,
         secondEigenvalue, ValueKind::Real},
        {"smallest-eigenvalue", group, "smallest eigenvalue of the adjacency matrix; NA without vertices", spectra,
         smallest<GraphMatrix::Adjacency>, ValueKind::Real},
        {"energy", group, "sum of the absolute eigenvalues of the adjacency matrix",
         "I. Gutman, \"The energy of a graph\", 1978", energy, ValueKind::Real},
        {"estrada-index", group, "sum of exp(x) over the eigenvalues x of the adjacency matrix",
         "E. Estrada, \"Characterization of 3D molecular structure\", 2000", estradaIndex, ValueKind::Real},
        {"rank", group, "rank of the adjacency matrix", spectra, rank},
        {"nullity", group, "multiplicity of the eigenvalue 0 of the adjacency matrix", spectra, nullity},
        {"determinant", group, "determinant of the adjacency matrix; 1 without vertices", spectra, determinant},
        {"algebraic-connectivity", group, "second smallest eigenvalue of the Laplacian; NA below two vertices",
         "M. Fiedler, \"Algebraic connectivity of graphs\", 1973", secondSmallest<GraphMatrix::Laplacian>,
         ValueKind::Real},
        {"laplacian-radius", group, "largest eigenvalue of the Laplacian; NA without vertices", spectra,
         largest<GraphMatrix::Laplacian>, ValueKind::Real},
        {"laplacian-energy", group, "sum of |x - 2m/n| over the eigenvalues x of the Laplacian",
         "I. Gutman and B. Zhou, \"Laplacian energy of a graph\", 2006", laplacianEnergy, ValueKind::Real},
        {"signless-laplacian-radius", group, "largest eigenvalue of the signless Laplacian D + A; NA without vertices",
         "D. Cvetković, P. Rowlinson and S. K. Simić, \"Signless Laplacians of finite graphs\", 2007",
         largest<GraphMatrix::SignlessLaplacian>, ValueKind::Real},
        {"signless-laplacian-smallest", group, "smallest eigenvalue of the signless Laplacian; NA without vertices",
         "M. Desai and V. Rao, \"A characterization of the smallest eigenvalue of a graph\", 1994",
         smallest<GraphMatrix::SignlessLaplacian>, ValueKind::Real},
        {"signless-laplacian-energy", group, "sum of |x - 2m/n| over the eigenvalues x of the signless Laplacian",
         "N. Abreu, D. M. Cardoso, I. Gutman, E. A. Martins and M. Robbiano, \"Bounds for the signless Laplacian "
         "energy\", 2011",
         signlessLaplacianEnergy, ValueKind::Real},
        {"normalized-laplacian-second", group,
         "second smallest eigenvalue of the normalized Laplacian; NA below two vertices",
         "F. R. K. Chung, \"Spectral Graph Theory\", 1997", secondSmallest<GraphMatrix::NormalizedLaplacian>,
         ValueKind::Real},
        {"distance-spectral-radius", group, "largest eigenvalue of the distance matrix; NA unless connected",
         "M. Aouchiche and P. Hansen, \"Distance spectra of graphs: a survey\", 2014", distanceSpectralRadius,
         ValueKind::Real},
        {"distance-energy", group, "sum of the absolute eigenvalues of the distance matrix; NA unless connected",
         "G. Indulal, I. Gutman and A. Vijayakumar, \"On distance energy of graphs\", 2008", distanceEnergy,
         ValueKind::Real},
    };
}
