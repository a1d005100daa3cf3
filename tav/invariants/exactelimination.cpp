#include "exactelimination.h"

#include "vertexset.h"

#include <algorithm>
#include <array>
#include <boost/integer/mod_inverse.hpp>
#include <cmath>
#include <utility>

namespace
{
/// No determinant of zeros and ones on 62 rows needs more bits.
__extension__ using WideInteger = unsigned __int128;

/// The largest below 2^32: a product of two residues fits 64 bits.
constexpr std::array<uint64_t, 12> primes = {4294967291, 4294967279, 4294967231, 4294967197, 4294967189, 4294967161,
                                             4294967143, 4294967111, 4294967087, 4294967029, 4294966997, 4294966981};
constexpr double bitsOfPrime = 31.99;

/// So many primes that their product is more than twice the absolute value of every minor (J. Hadamard, "Résolution
/// d'une question relative aux déterminants", 1893).
int primesNeeded(const SmallGraph &graph, int shift)
{
    double bits = 0.0; // of the product of the lengths of all rows
    for (int v = 0; v < graph.order; ++v) {
        bits += std::log2(std::max(1, vertexCount(graph.rows[v]) + shift * shift)) / 2.0;
    }
    if (shift == 0) { // Hadamard's bound for zeros and ones
        bits = std::min(bits, (graph.order + 1) / 2.0 * std::log2(graph.order + 1) - graph.order);
    }
    return int((bits + 1.0) / bitsOfPrime) + 1;
}

uint64_t inverse(uint64_t number, uint64_t prime)
{
    return uint64_t(boost::integer::mod_inverse(int64_t(number), int64_t(prime)));
}

struct Residues {
    int rank = 0;
    uint64_t determinant = 1;
};

/// Of the adjacency matrix less @p shift times the identity matrix, modulo @p prime.
Residues eliminate(const SmallGraph &graph, int shift, uint64_t prime)
{
    const int order = graph.order;
    std::array<std::array<uint64_t, SmallGraph::maxOrder>, SmallGraph::maxOrder> rows; // as far as used
    for (int u = 0; u < order; ++u) {
        for (int v = 0; v < order; ++v) {
            rows[u][v] = graph.adjacent(u, v) ? 1 : 0;
        }
        rows[u][u] = shift > 0 ? prime - shift : -shift;
    }
    Residues result;
    for (int column = 0; column < order; ++column) {
        int pivot = result.rank;
        while (pivot < order && rows[pivot][column] == 0) {
            ++pivot;
        }
        if (pivot == order) {
            result.determinant = 0;
            continue;
        }
        const auto &pivotRow = rows[result.rank];
        if (pivot != result.rank) {
            std::swap_ranges(rows[pivot].begin() + column, rows[pivot].begin() + order,
                             rows[result.rank].begin() + column);
            result.determinant = prime - result.determinant;
        }
        result.determinant = result.determinant * pivotRow[column] % prime;
        const uint64_t reciprocal = inverse(pivotRow[column], prime);
        for (int v = result.rank + 1; v < order; ++v) {
            if (rows[v][column] != 0) {
                const uint64_t factor = prime - rows[v][column] * reciprocal % prime;
                for (int w = column; w < order; ++w) {
                    rows[v][w] = (rows[v][w] + factor * pivotRow[w]) % prime;
                }
            }
        }
        ++result.rank;
    }
    return result;
}
} // namespace

int exactRank(const SmallGraph &graph, int shift)
{
    const int needed = primesNeeded(graph, shift);
    int rank = 0;
    for (int i = 0; i < needed && rank < graph.order; ++i) {
        rank = std::max(rank, eliminate(graph, shift, primes[i]).rank);
    }
    return rank;
}

double exactDeterminant(const SmallGraph &graph)
{
    // The number modulo the product of the primes so far (H. L. Garner, "The residue number system", 1959).
    WideInteger number = 0;
    WideInteger product = 1;
    const int needed = primesNeeded(graph, 0);
    for (int i = 0; i < needed; ++i) {
        const uint64_t prime = primes[i];
        const uint64_t difference = eliminate(graph, 0, prime).determinant + prime - uint64_t(number % prime);
        number += product * (difference % prime * inverse(uint64_t(product % prime), prime) % prime);
        product *= prime;
    }
    return number > product / 2 ? -double(product - number) : double(number);
}
