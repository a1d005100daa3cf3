#ifndef TAVOLINE_IGRAPHOBJECTS_H
#define TAVOLINE_IGRAPHOBJECTS_H

#include "smallgraph.h"

#include <igraph.h>

// igraph's objects with destructors, and its errors as exceptions. igraph has global variables, as Debian builds it:
// only one thread may use it at a time.

/// Throws CommandError unless @p code, the result of a call of igraph, is IGRAPH_SUCCESS.
void checkIgraph(igraph_error_t code);

/// A graph of igraph. By default igraph aborts the program on an error; the first object switches that off, so that
/// checkIgraph() sees the code of the error.
class IgraphGraph
{
public:
    explicit IgraphGraph(const SmallGraph &graph);
    ~IgraphGraph() { igraph_destroy(&graph); }
    IgraphGraph(const IgraphGraph &) = delete;
    IgraphGraph &operator=(const IgraphGraph &) = delete;

    const igraph_t *get() const { return &graph; }
    igraph_integer_t order() const { return igraph_vcount(&graph); }
    igraph_integer_t size() const { return igraph_ecount(&graph); }

private:
    igraph_t graph;
};

/// An object that igraph's function @p init makes, of the sizes @p sizes, and @p destroy destroys.
template<typename Object, auto init, auto destroy, igraph_integer_t... sizes> class IgraphObject
{
public:
    IgraphObject() { checkIgraph(init(&object, sizes...)); }
    ~IgraphObject() { destroy(&object); }
    IgraphObject(const IgraphObject &) = delete;
    IgraphObject &operator=(const IgraphObject &) = delete;

    Object *get() { return &object; }

protected:
    Object object;
};

template<typename Vector, auto init, auto destroy> class IgraphVector : public IgraphObject<Vector, init, destroy, 0>
{
public:
    auto begin() const { return this->object.stor_begin; }
    auto end() const { return this->object.end; }
    igraph_integer_t size() const { return end() - begin(); }
    auto operator[](igraph_integer_t index) const { return begin()[index]; }
};

using IntegerVector = IgraphVector<igraph_vector_int_t, igraph_vector_int_init, igraph_vector_int_destroy>;
using RealVector = IgraphVector<igraph_vector_t, igraph_vector_init, igraph_vector_destroy>;
using RealMatrix = IgraphObject<igraph_matrix_t, igraph_matrix_init, igraph_matrix_destroy, 0, 0>;

#endif
