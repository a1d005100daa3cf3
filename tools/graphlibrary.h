#ifndef TAVOLINE_GRAPHLIBRARY_H
#define TAVOLINE_GRAPHLIBRARY_H

#include "smallgraph.h"

#include <igraph.h>

// The objects of igraph with owners, and its failures as exceptions. The library is not for several threads at a time.

/// Throws CommandError when a call of the library, whose result is @p code, failed.
void check(igraph_error_t code);

/// A graph of the library. The first one made tells the library to leave the report of a failure to check().
class LibraryGraph
{
public:
    explicit LibraryGraph(const SmallGraph &graph);
    ~LibraryGraph() { igraph_destroy(&graph); }
    LibraryGraph(const LibraryGraph &) = delete;
    LibraryGraph &operator=(const LibraryGraph &) = delete;

    const igraph_t *get() const { return &graph; }
    igraph_integer_t order() const { return igraph_vcount(&graph); }
    igraph_integer_t size() const { return igraph_ecount(&graph); }

private:
    igraph_t graph;
};

/// A vector of integers of the library.
class IntegerVector
{
public:
    IntegerVector() { check(igraph_vector_int_init(&vector, 0)); }
    ~IntegerVector() { igraph_vector_int_destroy(&vector); }
    IntegerVector(const IntegerVector &) = delete;
    IntegerVector &operator=(const IntegerVector &) = delete;

    igraph_vector_int_t *get() { return &vector; }
    igraph_integer_t size() const { return igraph_vector_int_size(&vector); }
    igraph_integer_t operator[](igraph_integer_t index) const { return VECTOR(vector)[index]; }

private:
    igraph_vector_int_t vector;
};

/// A vector of real numbers of the library.
class RealVector
{
public:
    RealVector() { check(igraph_vector_init(&vector, 0)); }
    ~RealVector() { igraph_vector_destroy(&vector); }
    RealVector(const RealVector &) = delete;
    RealVector &operator=(const RealVector &) = delete;

    igraph_vector_t *get() { return &vector; }
    const double *begin() const { return vector.stor_begin; }
    const double *end() const { return vector.end; }
    igraph_integer_t size() const { return igraph_vector_size(&vector); }
    double operator[](igraph_integer_t index) const { return VECTOR(vector)[index]; }

private:
    igraph_vector_t vector;
};

/// A matrix of real numbers of the library.
class RealMatrix
{
public:
    RealMatrix() { check(igraph_matrix_init(&matrix, 0, 0)); }
    ~RealMatrix() { igraph_matrix_destroy(&matrix); }
    RealMatrix(const RealMatrix &) = delete;
    RealMatrix &operator=(const RealMatrix &) = delete;

    igraph_matrix_t *get() { return &matrix; }

private:
    igraph_matrix_t matrix;
};

#endif
