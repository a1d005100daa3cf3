#ifndef TAVOLINE_EIGENVALUES_H
#define TAVOLINE_EIGENVALUES_H

#include <vector>

/// The eigenvalues of a real symmetric matrix on @p order rows and columns, the smallest first. @p matrix holds its
/// rows, one after the other; LAPACK overwrites them. Throws CommandError when LAPACK fails.
std::vector<double> eigenvalues(std::vector<double> &matrix, int order);

#endif
