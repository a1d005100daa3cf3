#include "solve.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <numeric>
#include <utility>

namespace
{
const double smallestPivot = 0.0001;

void checkDimensions(const QVector<QVector<double>> &M, const QVector<double> &v)
{
    const auto fits = [&v](const QVector<double> &row) { return row.size() == v.size(); };
    if (M.size() == v.size() && std::all_of(M.cbegin(), M.cend(), fits)) {
        return;
    }
    std::cerr << "DIMENSION ERROR IN solve()" << std::endl
              << "VEC :" << v.size() << std::endl
              << "MAT :" << M.size() << " x " << M.value(0).size() << std::endl;
    throw 1;
}

/// The system A x = b during the elimination; column j of A belongs to the unknown perm[j].
struct System {
    QVector<QVector<double>> A;
    QVector<double> b;
    QVector<int> perm;

    /// Brings the largest entry, by magnitude, of the rows and columns from @p k on to (k, k), and returns it.
    double bringPivot(int k);
    /// Turns column @p k into a unit column.
    void eliminate(int k, double pivot);
};

double System::bringPivot(int k)
{
    const int n = b.size();
    int row = k;
    int column = k;
    for (int r = k; r < n; ++r) {
        for (int q = k; q < n; ++q) {
            if (std::abs(A[r][q]) > std::abs(A[row][column])) {
                row = r;
                column = q;
            }
        }
    }
    std::swap(A[k], A[row]);
    std::swap(b[k], b[row]);
    for (QVector<double> &line : A) {
        std::swap(line[k], line[column]);
    }
    std::swap(perm[k], perm[column]);
    return A[k][k];
}

void System::eliminate(int k, double pivot)
{
    const int n = b.size();
    for (double &entry : A[k]) {
        entry /= pivot;
    }
    b[k] /= pivot;
    for (int i = 0; i < n; ++i) {
        if (i == k) {
            continue;
        }
        const double factor = A[i][k];
        for (int j = 0; j < n; ++j) {
            if (j != k) {
                A[i][j] -= factor * A[k][j];
            }
        }
        b[i] -= factor * b[k];
        A[i][k] = 0.0;
    }
}
} // namespace

QVector<double> solve(QVector<QVector<double>> M, QVector<double> v)
{
    checkDimensions(M, v);
    const int n = v.size();

    QVector<double> columnMean(n, 0.0);
    for (const QVector<double> &row : qAsConst(M)) {
        for (int j = 0; j < n; ++j) {
            columnMean[j] += row[j];
        }
    }
    for (double &entry : columnMean) {
        entry /= n;
    }
    const double mean = std::accumulate(v.cbegin(), v.cend(), 0.0) / n;

    System system{std::move(M), std::move(v), QVector<int>(n)};
    for (QVector<double> &row : system.A) {
        for (int j = 0; j < n; ++j) {
            row[j] -= columnMean[j];
        }
    }
    for (double &entry : system.b) {
        entry -= mean;
    }
    std::iota(system.perm.begin(), system.perm.end(), 0);

    for (int k = 0; k < n; ++k) {
        const double pivot = system.bringPivot(k);
        if (!(std::abs(pivot) > smallestPivot)) {
            std::fill(system.b.begin() + k, system.b.end(), 0.0);
            break;
        }
        system.eliminate(k, pivot);
    }

    QVector<double> solution(n + 1);
    for (int j = 0; j < n; ++j) {
        solution[system.perm[j]] = system.b[j];
    }
    solution[n] = mean;
    for (int q = 0; q < n; ++q) {
        solution[n] -= solution[q] * columnMean[q];
    }
    return solution;
}
