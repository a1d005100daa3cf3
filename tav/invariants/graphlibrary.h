#ifndef TAVOLINE_GRAPHLIBRARY_H
#define TAVOLINE_GRAPHLIBRARY_H

#include "smallgraph.h"

#include <igraph.h>

// The objects of igraph with owners, and its failures as exceptions. The library is not for several threads at a time.

/// Throws CommandError when a call of the library, whose result is @p code, failed.
void checkLibrary(igraph_error_t code);

/// A graph of the library. The first one made tells the library to leave the report of a failure to checkLibrary().
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

/// An object of the library that @p init makes, of the sizes @p sizes, and @p destroy destroys.
template<typename Object, auto init, auto destroy, igraph_integer_t... sizes> class LibraryObject
{
public:
    LibraryObject() { checkLibrary(init(&object, sizes...)); }
    ~LibraryObject() { destroy(&object); }
    LibraryObject(const LibraryObject &) = delete;
    LibraryObject &operator=(const LibraryObject &) = delete;

    Object *get() { return &object; }

protected:
    Object object;
};

template<typename Vector, auto init, auto destroy> class LibraryVector : public LibraryObject<Vector, init, destroy, 0>
{
public:
    auto begin() const { return this->object.stor_begin; }
    auto end() const { return this->object.end; }
    igraph_integer_t size() const { return end() - begin(); }
    auto operator[](igraph_integer_t index) const { return begin()[index]; }
};

using IntegerVector = LibraryVector<igraph_vector_int_t, igraph_vector_int_init, igraph_vector_int_destroy>;
using RealVector = LibraryVector<igraph_vector_t, igraph_vector_init, igraph_vector_destroy>;
using RealMatrix = LibraryObject<igraph_matrix_t, igraph_matrix_init, igraph_matrix_destroy, 0, 0>;

#endif
