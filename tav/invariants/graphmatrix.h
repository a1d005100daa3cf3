#ifndef TAVOLINE_GRAPHMATRIX_H
#define TAVOLINE_GRAPHMATRIX_H

#include <vector>

class GraphFacts;

/// The matrices of a graph whose eigenvalues are invariants. With the adjacency matrix A and the diagonal matrix D of
/// the degrees, the Laplacian is D - A, the signless one D + A. The normalised one is I - D^(-1/2) A D^(-1/2); the row
/// and the column of a vertex without neighbours are zero (F. R. K. Chung, "Spectral Graph Theory", 1997). The distance
/// matrix is defined for connected graphs only.
enum class GraphMatrix { Adjacency, Laplacian, SignlessLaplacian, NormalizedLaplacian, Distance };
constexpr int graphMatrixCount = 5;

/// The rows of the matrix, one after the other.
std::vector<double> rowsOf(GraphMatrix matrix, GraphFacts &facts);

#endif
