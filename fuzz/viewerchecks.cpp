// Looks at all that is visible of a graph in the viewer, and requires that it is consistent.

#include "viewerchecks.h"

#include "fuzztarget.h"
#include "node.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>

namespace
{
using Matrix = QList<QList<QByteArray>>;

Matrix matrixBehind(const QList<QByteArray> &lines, const char *title, int size)
{
    Matrix matrix;
    for (const QByteArray &line : lines.mid(lines.indexOf(title) + 1, size)) {
        matrix.append(line.trimmed().split(' '));
    }
    return matrix;
}

bool isSymmetric(const Matrix &matrix, int size)
{
    for (int i = 0; i < size; ++i) {
        for (int j = 0; j < i; ++j) {
            if (matrix[i][j] != matrix[j][i]) {
                return false;
            }
        }
    }
    return true;
}

/// Closes every dialog as soon as it shows.
class DialogCloser : public QObject
{
public:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *dialog = qobject_cast<QDialog *>(object);
        if (dialog != nullptr && event->type() == QEvent::Show) {
            QMetaObject::invokeMethod(dialog, &QDialog::reject, Qt::QueuedConnection);
        }
        return false;
    }
};

/// Whether the item belongs to the current graph. The flag itself has no getter: this copies it to where there is one,
/// and restores both afterwards.
bool exists(Node &vertex)
{
    const bool visible = vertex.getVisible();
    vertex.best_backup();
    const bool result = vertex.getVisible();
    vertex.resetVisible(visible, false);
    vertex.setExists(result);
    return result;
}
} // namespace

int startViewerTarget(int *argc, char ***argv)
{
    const int result = startTarget<QApplication>(argc, argv);
    static DialogCloser closer;
    qApp->installEventFilter(&closer);
    return result;
}

QString scratchPath(const QString &name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "a file that was written can be read");
    return file.readAll();
}

void requireCount(const Graph &graph)
{
    require(graph.getNbNodes() >= 0 && graph.getNbNodes() <= Graph::MAX_NODES, "there are 0..32 vertices");
}

void requireSound(Graph &graph)
{
    const int n = qBound(0, graph.getNbNodes(), Graph::MAX_NODES);
    const CerrText written;
    graph.display();
    const QList<QByteArray> lines = written.text().split('\n');
    const Matrix current = matrixBehind(lines, "--cur graph--", n);
    require(isSymmetric(current, n), "the current graph is symmetric");
    require(isSymmetric(matrixBehind(lines, "--best graph--", n), n), "the best graph is symmetric");

    int edges = 0;
    for (int i = 0; i < n; ++i) {
        int neighbours = current[i][i] == "1" ? 1 : 0; // the complement sets the diagonal
        for (int j = 0; j < n; ++j) {
            require(graph.edge(i, j) == (i != j && current[i][j] == "1"), "an edge is an entry of the matrix");
            neighbours += graph.edge(i, j) ? 1 : 0;
            edges += i < j && graph.edge(i, j) ? 1 : 0;
        }
        require(graph.degree(i) == neighbours, "the degree is the number of neighbours");
    }
    require(graph.getNbEdges() == edges, "the number of edges is that of the joined pairs");
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        const QPointF place = graph.node(i)->position();
        // z may be NaN: scaling a flat drawing to a height divides by zero.
        require(std::isfinite(place.x()) && std::isfinite(place.y()), "every vertex has a place");
    }
}

void requirePublished(const Graph &graph)
{
    require(graph.graphData() == graph.currentGraphData(), "the best graph is the current one");
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        require(exists(*graph.node(i)) == (i < graph.getNbNodes()), "the items of the vertices exist, and no others");
        for (int j = 0; j < Graph::MAX_NODES; ++j) {
            require(graph.bestEdge(i, j) == graph.edge(i, j), "the best graph has the edges of the current one");
        }
    }
}

void requireItemsInStep(const Graph &graph)
{
    const int best = graph.graphData().section(QLatin1Char(' '), 0, 0).toInt();
    const int current = qBound(0, graph.getNbNodes(), Graph::MAX_NODES);
    int count = 0;
    while (count < Graph::MAX_NODES && exists(*graph.node(count))) {
        ++count;
    }
    require(count == current || count == best, "as many vertex items exist as the current or the best graph has");
    for (int i = count; i < Graph::MAX_NODES; ++i) {
        require(!exists(*graph.node(i)), "the vertex items that exist are the first ones");
    }
}

void exercise(Graph &graph)
{
    requireSound(graph);
    graph.g6currentGraphData();
    graph.best_backup();
    graph.update_display();
    graph.slot_select_all();
    graph.slot_complement();
    graph.addK();
    graph.remNode(1);
    graph.slot_link_diameter();
    graph.slot_undo();
    graph.place_circle(100);
    graph.relabel();
    requireSound(graph);
    requireItemsInStep(graph);
    graph.slot_remv();
    requireSound(graph);
    requireCount(graph);
    requirePublished(graph);
}
