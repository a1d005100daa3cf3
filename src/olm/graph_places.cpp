#include "graph.h"
#include "levellayout.h"
#include "node.h"
#include "places.h"
#include "planarlayout.h"
#include "springlayout.h"

#include <algorithm>
#include <optional>

namespace
{
/// What is left blank around a drawing that fills the view, in scene units: half a label, or a vertex.
constexpr double leastBlank = 45.0;
constexpr double leastRoom = 100.0;
constexpr double mostRoom = 1200.0; // what the scene has
} // namespace

QVector<QVector<bool>> Graph::currentAdjacency() const
{
    const int n = usedSlots(nbNodes);
    QVector<QVector<bool>> joined(n, QVector<bool>(n, false));
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            joined[i][j] = edge(i, j);
        }
    }
    return joined;
}

/// The size of the box that a layout fills: the part of the scene that the view shows, without its margins.
QSizeF Graph::roomForDrawing() const
{
    const double blank = std::max(leastBlank, nodes.first()->getRadius() * 1.5);
    const QRectF part = mapToScene(viewport()->rect()).boundingRect();
    return {std::clamp(part.width() - 2 * blank, leastRoom, mostRoom),
            std::clamp(part.height() - 2 * blank, leastRoom, mostRoom)};
}

/// Places the vertices by the layout in force; where it is not possible, tells why and returns false.
bool Graph::placeByLayout()
{
    const Adjacency graph = currentAdjacency();
    Places places;
    Qt::AspectRatioMode mode = Qt::KeepAspectRatio;
    switch (layout) {
    case Layout::Circle:
        place_circle(circleDiameter);
        return true;
    case Layout::KamadaKawai:
        places = kamadaKawai(graph);
        break;
    case Layout::FruchtermanReingold:
        places = fruchtermanReingold(graph);
        break;
    case Layout::Planar: {
        const std::optional<Places> planar = planarLayout(graph);
        if (!planar) {
            tell(tr("The graph is not planar."));
            return false;
        }
        places = *planar;
        mode = Qt::IgnoreAspectRatio;
        break;
    }
    case Layout::Levels: {
        const QVector<int> sources = selectedVertices(nbNodes);
        if (sources.isEmpty()) {
            tell(tr("Levels are counted from selected vertices, and none is selected."));
            return false;
        }
        places = levelLayout(graph, sources);
        mode = Qt::IgnoreAspectRatio;
        break;
    }
    }
    centerOn(0, 0); // the wheel may have moved the view
    places = fitted(places, roomForDrawing(), mode);
    for (int i = 0; i < places.size(); ++i) {
        nodes[i]->setPosition(places[i].x(), places[i].y());
    }
    return true;
}

void Graph::choose(Layout chosen)
{
    layout = chosen;
    if (nbNodes > 0 && placeByLayout()) {
        changeBest();
        update_display();
    }
}

/// Places a graph from elsewhere: the circle is the layout in force then, as the menu shows.
void Graph::placeOnCircle()
{
    layout = Layout::Circle;
    place_circle(circleDiameter);
}

void Graph::slot_layout_circle()
{
    choose(Layout::Circle);
}

void Graph::slot_layout_kamada_kawai()
{
    choose(Layout::KamadaKawai);
}

void Graph::slot_layout_fruchterman_reingold()
{
    choose(Layout::FruchtermanReingold);
}

void Graph::slot_layout_planar()
{
    choose(Layout::Planar);
}

void Graph::slot_layout_levels()
{
    choose(Layout::Levels);
}

void Graph::slot_follow_layout()
{
    if (layout != Layout::Circle && nbNodes > 0) {
        placeByLayout();
        update_display();
    }
}
