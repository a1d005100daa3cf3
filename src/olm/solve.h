#ifndef TAVOLINE_OLM_SOLVE_H
#define TAVOLINE_OLM_SOLVE_H

#include <QVector>

/// Solves M x = v on centred data: the mean of each column of @p M and the mean of @p v are taken off first, and the
/// intercept that they leave is returned behind the unknowns.
///
/// @param M  square matrix, a vector of rows
/// @param v  right-hand side, one entry a row
/// @return   the n unknowns, then the intercept; unknowns that the centred system does not determine are 0
/// @throw    the int 1, with the sizes on the standard error stream, when the sizes do not fit
///
/// Gauss-Jordan elimination with complete pivoting; pivots of at most 0.0001 count as zero. Nothing in this program
/// calls it.
QVector<double> solve(QVector<QVector<double>> M, QVector<double> v);

#endif
