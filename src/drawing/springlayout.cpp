#include "springlayout.h"

#include <QPolygonF>

#include <algorithm>
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/fruchterman_reingold.hpp>
#include <boost/graph/kamada_kawai_spring_layout.hpp>
#include <boost/graph/topology.hpp>
#include <boost/random/linear_congruential.hpp>
#include <cmath>
#include <vector>

namespace
{
using Weight = boost::property<boost::edge_weight_t, double>;
using WeightedGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS, boost::no_property, Weight>;
using Plane = boost::rectangle_topology<boost::minstd_rand>;
using Points = std::vector<Plane::point_type>;

/// The blank between two components, in lengths of an edge.
constexpr double gap = 1.0;

using Component = QVector<int>;

/// The vertices of each component in increasing order; the largest components first.
QVector<Component> componentsOf(const Adjacency &graph)
{
    QVector<Component> components;
    QVector<bool> seen(graph.size(), false);
    for (int start = 0; start < graph.size(); ++start) {
        if (seen[start]) {
            continue;
        }
        Component component{start};
        seen[start] = true;
        for (int i = 0; i < component.size(); ++i) {
            for (int other = 0; other < graph.size(); ++other) {
                if (graph[component[i]][other] && !seen[other]) {
                    seen[other] = true;
                    component.append(other);
                }
            }
        }
        std::sort(component.begin(), component.end());
        components.append(component);
    }
    std::stable_sort(components.begin(), components.end(),
                     [](const Component &a, const Component &b) { return a.size() > b.size(); });
    return components;
}

/// Rectangles in rows from left to right and from top to bottom, as wide as they are high altogether, about.
class Rows
{
public:
    explicit Rows(const QVector<QRectF> &rectangles)
    {
        double area = 0;
        for (const QRectF &rectangle : rectangles) {
            area += (rectangle.width() + gap) * (rectangle.height() + gap);
        }
        width = std::sqrt(area);
    }

    /// Where the centre of the next rectangle is.
    QPointF place(QSizeF size)
    {
        if (corner.x() > 0 && corner.x() + size.width() > width) {
            corner = {0, corner.y() + height + gap};
            height = 0;
        }
        const QRectF placed(corner, size);
        corner.rx() += size.width() + gap;
        height = std::max(height, size.height());
        return placed.center();
    }

private:
    double width;
    QPointF corner;
    double height = 0;
};

/// Lays out each component with @p layOut, which moves points that start on the circle, an edge about 1 long.
template<typename LayOut> Places byComponents(const Adjacency &graph, LayOut layOut)
{
    const QVector<Component> components = componentsOf(graph);
    QVector<Places> parts;
    QVector<QRectF> extents;
    for (const Component &component : components) {
        const int order = component.size();
        WeightedGraph part(order);
        for (int j = 1; j < order; ++j) {
            for (int i = 0; i < j; ++i) {
                if (graph[component[i]][component[j]]) {
                    boost::add_edge(i, j, Weight(1.0), part);
                }
            }
        }
        // It stays where it is drawn from wide enough a plane.
        boost::minstd_rand random;
        const Plane plane(random, -order - 1.0, -order - 1.0, order + 1.0, order + 1.0);
        Points points(order);
        const Places start = circle(order);
        for (int i = 0; i < order; ++i) {
            points[i][0] = start[i].x();
            points[i][1] = start[i].y();
        }
        if (order > 1) {
            layOut(part, plane, points);
        }
        Places places;
        for (const Plane::point_type &point : points) {
            places.append(QPointF(point[0], point[1]));
        }
        parts.append(places);
        extents.append(QPolygonF(places).boundingRect());
    }

    Rows rows(extents);
    Places result(graph.size());
    for (int c = 0; c < components.size(); ++c) {
        const QPointF shift = rows.place(extents[c].size()) - extents[c].center();
        for (int i = 0; i < components[c].size(); ++i) {
            result[components[c][i]] = parts[c][i] + shift;
        }
    }
    return result;
}

auto positionsOf(const WeightedGraph &graph, Points &points)
{
    return boost::make_iterator_property_map(points.begin(), boost::get(boost::vertex_index, graph));
}

/// Tells Boost when a spring layout is done: as soon as the springs hardly pull any more. The number of steps has a
/// limit beside, because a vertex can overshoot for ever; a few steps a move are enough for one that does not, and
/// leave one that does near the others.
struct IsBalanced {
    static constexpr double weakestPull = 1e-4;
    static constexpr int mostMovesPerVertex = 40;
    static constexpr int mostStepsPerMove = 5;

    template<typename Vertex> bool operator()(double pull, Vertex, const WeightedGraph &graph, bool global)
    {
        if (global) {
            steps = 0;
            ++moves;
            return pull < weakestPull || moves > mostMovesPerVertex * int(boost::num_vertices(graph));
        }
        ++steps;
        return pull < weakestPull || steps >= mostStepsPerMove;
    }

    int moves = 0;
    int steps = 0;
};
} // namespace

Places kamadaKawai(const Adjacency &graph)
{
    return byComponents(graph, [](const WeightedGraph &part, const Plane &plane, Points &points) {
        boost::kamada_kawai_spring_layout(part, positionsOf(part, points), boost::get(boost::edge_weight, part), plane,
                                          boost::edge_length(1.0), IsBalanced());
    });
}

Places fruchtermanReingold(const Adjacency &graph)
{
    return byComponents(graph, [](const WeightedGraph &part, const Plane &plane, Points &points) {
        constexpr int iterations = 200;
        constexpr double firstStep = 1.0;
        const auto attraction = [](const auto &, double, double distance, const WeightedGraph &) {
            return distance * distance;
        };
        const auto repulsion = [](auto, auto, double, double distance, const WeightedGraph &) { return 1 / distance; };
        boost::fruchterman_reingold_force_directed_layout(
            part, positionsOf(part, points), plane,
            boost::attractive_force(attraction)
                .repulsive_force(repulsion)
                .cooling(boost::linear_cooling<double>(iterations, firstStep)));
    });
}
