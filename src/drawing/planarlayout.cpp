#include "planarlayout.h"

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/boyer_myrvold_planar_test.hpp>
#include <boost/graph/chrobak_payne_drawing.hpp>
#include <boost/graph/make_biconnected_planar.hpp>
#include <boost/graph/make_connected.hpp>
#include <boost/graph/make_maximal_planar.hpp>
#include <boost/graph/planar_canonical_ordering.hpp>
#include <vector>

namespace
{
using PlanarGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS, boost::no_property,
                                          boost::property<boost::edge_index_t, int>>;
using Edge = boost::graph_traits<PlanarGraph>::edge_descriptor;
/// The edges of each vertex in the order around it.
using Embedding = std::vector<std::vector<Edge>>;

struct GridPlace {
    size_t x = 0;
    size_t y = 0;
};

void numberEdges(PlanarGraph &graph)
{
    int number = 0;
    for (auto [edge, end] = boost::edges(graph); edge != end; ++edge) {
        boost::put(boost::edge_index, graph, *edge, number);
        ++number;
    }
}

/// Finds the embedding of the graph as it is now; false when it has none.
bool embed(PlanarGraph &graph, Embedding &embedding)
{
    numberEdges(graph);
    embedding.assign(boost::num_vertices(graph), {});
    return boost::boyer_myrvold_planarity_test(boost::boyer_myrvold_params::graph = graph,
                                               boost::boyer_myrvold_params::embedding = embedding.data());
}

PlanarGraph plainGraph(const Adjacency &graph)
{
    PlanarGraph result(graph.size());
    for (int j = 1; j < graph.size(); ++j) {
        for (int i = 0; i < j; ++i) {
            if (graph[i][j]) {
                boost::add_edge(i, j, result);
            }
        }
    }
    return result;
}
} // namespace

std::optional<Places> planarLayout(const Adjacency &adjacency)
{
    constexpr int fewest = 3; // what the drawing takes
    if (adjacency.size() < fewest) {
        Places row;
        for (int i = 0; i < adjacency.size(); ++i) {
            row.append(QPointF(i, 0));
        }
        return row;
    }
    PlanarGraph graph = plainGraph(adjacency);
    Embedding embedding;
    if (!embed(graph, embedding)) {
        return std::nullopt;
    }

    // The drawing is that of a graph to which no edge can be added. Each step needs the embedding of what the one
    // before made.
    boost::make_connected(graph);
    embed(graph, embedding);
    boost::make_biconnected_planar(graph, embedding.data(), boost::get(boost::edge_index, graph));
    embed(graph, embedding);
    boost::make_maximal_planar(graph, embedding.data());
    embed(graph, embedding);

    std::vector<size_t> order;
    const auto around = boost::make_iterator_property_map(embedding.begin(), boost::get(boost::vertex_index, graph));
    boost::planar_canonical_ordering(graph, around, std::back_inserter(order));
    std::vector<GridPlace> grid(boost::num_vertices(graph));
    boost::chrobak_payne_straight_line_drawing(
        graph, around, order.begin(), order.end(),
        boost::make_iterator_property_map(grid.begin(), boost::get(boost::vertex_index, graph)));

    Places places;
    for (const GridPlace &place : grid) {
        places.append(QPointF(int(place.x), int(place.y)));
    }
    return places;
}
