#include "spanningtrees.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace
{
template<typename Number> using Matrix = std::array<std::array<Number, SmallGraph::maxOrder>, SmallGraph::maxOrder>;

/// The number of spanning trees without a subtraction, so that rounding hardly matters: a vertex goes, and of what its
/// edges weigh together each pair of its neighbours gets its share (the star-mesh transformation of electrical
/// networks).
double roundedCount(const SmallGraph &graph)
{
    Matrix<double> weights{};
    for (int v = 0; v < graph.order; ++v) {
        for (int u = 0; u < graph.order; ++u) {
            weights[u][v] = graph.adjacent(u, v) ? 1.0 : 0.0;
        }
    }
    double product = 1.0;
    for (int v = graph.order - 1; v > 0; --v) {
        double sum = 0.0;
        for (int u = 0; u < v; ++u) {
            sum += weights[u][v];
        }
        if (sum == 0.0) {
            return 0.0;
        }
        product *= sum;
        for (int u = 0; u < v; ++u) {
            for (int w = 0; w < u; ++w) {
                weights[u][w] += weights[u][v] * weights[w][v] / sum;
                weights[w][u] = weights[u][w];
            }
        }
    }
    return product;
}

/// A Mersenne prime, so that remainders are found by shifts.
constexpr uint64_t prime = (uint64_t(1) << 61) - 1;

uint64_t product(uint64_t a, uint64_t b)
{
    __extension__ using Wide = unsigned __int128;
    const Wide wide = Wide(a) * b;
    const uint64_t sum = (uint64_t(wide) & prime) + uint64_t(wide >> 61);
    return sum >= prime ? sum - prime : sum;
}

uint64_t difference(uint64_t a, uint64_t b)
{
    return a >= b ? a - b : a + prime - b;
}

/// 1 / @p number modulo the prime p, by Fermat's theorem its power p - 2.
uint64_t inverse(uint64_t number)
{
    uint64_t result = 1;
    for (uint64_t exponent = prime - 2; exponent > 0; exponent >>= 1) {
        if ((exponent & 1) != 0) {
            result = product(result, number);
        }
        number = product(number, number);
    }
    return result;
}

/// The remainder modulo the prime of the number of spanning trees, which is a determinant: that of the Laplacian
/// without its last row and column (G. Kirchhoff, 1847). Rows are multiplied by pivots, so that there is one division
/// at the end.
uint64_t remainderOfCount(const SmallGraph &graph)
{
    const int n = graph.order - 1;
    Matrix<uint64_t> laplacian{};
    for (int v = 0; v < n; ++v) {
        for (int u = 0; u < graph.order; ++u) {
            if (graph.adjacent(u, v)) {
                laplacian[v][u] = prime - 1;
                ++laplacian[v][v];
            }
        }
    }
    uint64_t determinant = 1;
    uint64_t factors = 1;
    for (int column = 0; column < n; ++column) {
        int pivot = column;
        while (pivot < n && laplacian[pivot][column] == 0) {
            ++pivot;
        }
        if (pivot == n) {
            return 0;
        }
        if (pivot != column) {
            std::swap(laplacian[pivot], laplacian[column]);
            determinant = difference(0, determinant);
        }
        const auto &top = laplacian[column];
        determinant = product(determinant, top[column]);
        for (int row = column + 1; row < n; ++row) {
            auto &entries = laplacian[row];
            const uint64_t first = entries[column];
            if (first != 0) {
                for (int i = column + 1; i < n; ++i) {
                    entries[i] = difference(product(entries[i], top[column]), product(top[i], first));
                }
                factors = product(factors, top[column]);
            }
        }
    }
    return product(determinant, inverse(factors));
}
} // namespace

double spanningTreeCount(const SmallGraph &graph)
{
    if (graph.order == 0) {
        return 0.0;
    }
    const double rounded = roundedCount(graph);
    constexpr double largestExact = 9007199254740992.0; // 2^53, far below the prime
    return rounded < largestExact ? double(remainderOfCount(graph)) : rounded;
}
