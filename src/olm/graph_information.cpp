#include "distances.h"
#include "graph.h"
#include "node.h"
#include "shortened.h"

#include <QStringList>

#include <algorithm>

/// Lists in the information dialog of a vertex what is true of it in the best graph.
void Graph::describeVertex(int vertex)
{
    const auto joined = [this](int i, int j) { return bestEdge(i, j); };
    const int n = usedSlots(bestNbNodes);
    if (vertex >= n) {
        return; // The best graph no longer has it; the display, which was not updated yet, still shows it.
    }
    int degree = 0;
    int triangles = 0;
    QStringList neighbours;
    for (int i = 0; i < n; ++i) {
        if (!joined(vertex, i)) {
            continue;
        }
        ++degree;
        neighbours.append(nodes[i]->getName());
        for (int j = 0; j < i; ++j) {
            triangles += joined(vertex, j) && joined(i, j) ? 1 : 0;
        }
    }
    const QVector<int> row = distances(n, MAX_NODES, joined).at(vertex);
    const int eccentricity = *std::max_element(row.cbegin(), row.cend());

    Node *item = nodes[vertex];
    item->resetValues();
    item->setValue(tr("Degree"), degree);
    if (eccentricity == MAX_NODES) {
        item->setText(tr("Eccentricity"), tr("infinite"));
    } else {
        item->setValue(tr("Eccentricity"), eccentricity);
    }
    item->setValue(tr("Triangles"), triangles);
    item->setText(tr("Neighbours"),
                  neighbours.isEmpty() ? tr("none") : shortened(neighbours.join(QStringLiteral(", "))));
}

/// Keeps the open information dialogs true after a change of the best graph. That of a vertex that is gone is closed.
void Graph::refreshInformation()
{
    for (int i = 0; i < MAX_NODES; ++i) {
        if (!nodes[i]->isNodeDisplayShown()) {
            continue;
        }
        if (i < usedSlots(bestNbNodes)) {
            describeVertex(i);
        } else {
            nodes[i]->toggleNodeDisplay();
        }
    }
}

/// Shows the new name of a vertex wherever names are shown.
void Graph::refreshNames()
{
    refreshInformation();
    if (written == Shown::Names) {
        slot_show_names();
    }
}
