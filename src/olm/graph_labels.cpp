#include "distances.h"
#include "graph.h"
#include "node.h"
#include "shortened.h"

#include <QLabel>

#include <algorithm>
#include <limits>

namespace
{
/// What the box of a label has room for, about.
constexpr int longestShownLabel = 14;
/// Of vertices that cannot be reached: dark gray, which no other distance up to 10 has.
constexpr double unreachedColour = 11;
/// Where a line for the user begins, in pixels of the view.
const QPoint noticePlace(8, 6);
} // namespace

/// Shows a line about the command that was just given, until the best graph changes.
void Graph::tell(const QString &line)
{
    if (interactive) {
        delete notice;
        notice = new QLabel(line, this);
        notice->setObjectName(QStringLiteral("notice"));
        notice->setTextFormat(Qt::PlainText);
        notice->setAttribute(Qt::WA_TransparentForMouseEvents);
        notice->move(noticePlace);
        notice->show();
    }
    emit signal_console(line, false, 0, Qt::blue);
}

/// Writes @p values on the vertices of the best graph, a number each.
void Graph::write(Shown what, const QVector<double> &values)
{
    resetLabels();
    resetColors();
    resetSizes();
    if (!values.isEmpty()) {
        setLabels(values);
    }
    written = what;
    shownGraph = graphData();
}

/// What is written on the vertices is true of the graph that it was written for.
void Graph::clearWhatIsOutdated()
{
    delete notice;
    notice = nullptr;
    if (written != Shown::Nothing && graphData() != shownGraph) {
        write(Shown::Nothing, {});
    } else if (written == Shown::Names) {
        slot_show_names(); // which a file can change without a change of the graph
    }
}

void Graph::slot_show_numbers()
{
    QVector<double> numbers;
    for (int i = 0; i < usedSlots(bestNbNodes); ++i) {
        numbers.append(i);
    }
    write(Shown::Numbers, numbers);
}

void Graph::slot_show_names()
{
    write(Shown::Names, {});
    for (int i = 0; i < usedSlots(bestNbNodes); ++i) {
        nodes[i]->setLabel(shortened(nodes[i]->getName(), longestShownLabel));
    }
}

void Graph::slot_show_degrees()
{
    const int n = usedSlots(bestNbNodes);
    QVector<double> degrees(n, 0);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            degrees[i] += bestEdge(i, j) ? 1 : 0;
        }
    }
    write(Shown::Degrees, degrees);
    setSizes(degrees);
}

void Graph::slot_show_distances()
{
    const int n = usedSlots(bestNbNodes);
    const QVector<int> sources = selectedVertices(n);
    if (sources.isEmpty()) {
        tell(tr("Distances are those from selected vertices, and none is selected."));
        return;
    }
    const Distances between = distances(n, MAX_NODES, [this](int i, int j) { return bestEdge(i, j); });
    QVector<double> labels;
    QVector<double> colours;
    for (int i = 0; i < n; ++i) {
        int nearest = MAX_NODES;
        for (const int source : sources) {
            nearest = std::min(nearest, between[source][i]);
        }
        const bool reached = nearest < MAX_NODES;
        labels.append(reached ? nearest : std::numeric_limits<double>::infinity());
        colours.append(reached ? nearest : unreachedColour);
    }
    write(Shown::FromSelection, labels);
    setColors(colours);
}

void Graph::slot_show_nothing()
{
    write(Shown::Nothing, {});
}
