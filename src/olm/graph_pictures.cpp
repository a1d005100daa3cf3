#include "drawing.h"
#include "edge.h"
#include "graph.h"
#include "node.h"
#include "outputfile.h"
#include "pictures.h"
#include "places.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QMimeData>
#include <QPolygonF>
#include <QSpinBox>
#include <QUrl>

namespace
{
/// A drawing that reaches further, after an import for example, is made smaller.
constexpr double largestExtent = 1200.0;
/// Beyond any drawing, and well within the range of what can be multiplied.
constexpr double farAway = 1e6;
constexpr int initialPixels = 1200;
/// The pixels of a unit of the drawing in the clipboard.
constexpr double clipboardScale = 2.0;

/// The places, closer together where they reach too far for a page.
Places forPage(Places places)
{
    for (QPointF &place : places) {
        place = {qBound(-farAway, place.x(), farAway), qBound(-farAway, place.y(), farAway)};
    }
    const QSizeF size = QPolygonF(places).boundingRect().size();
    const QSizeF page(largestExtent, largestExtent);
    const bool fits = size.width() <= page.width() && size.height() <= page.height();
    return fits ? places : fitted(places, page, Qt::KeepAspectRatio);
}

/// The file to show that is dragged: one local file of a kind that holds graphs; otherwise empty.
QString draggedFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    const QStringList suffixes{QStringLiteral("g6"), QStringLiteral("golm3"), QStringLiteral("edgelist")};
    if (urls.size() != 1 || !suffixes.contains(QFileInfo(urls.first().toLocalFile()).suffix(), Qt::CaseInsensitive)) {
        return {};
    }
    return urls.first().toLocalFile();
}

bool holdsGraph(const QDropEvent *event)
{
    const QMimeData *data = event->mimeData();
    const bool text = data->hasText() && !data->hasUrls();
    return event->possibleActions().testFlag(Qt::CopyAction) && (text || !draggedFile(data).isEmpty());
}

/// Takes a copy of what the viewer can show. The rest is ignored, and goes on to the window.
void judge(QDropEvent *event)
{
    if (holdsGraph(event)) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}
} // namespace

Drawing Graph::drawing() const
{
    const int n = usedSlots(bestNbNodes);
    Places places;
    for (int i = 0; i < n; ++i) {
        places.append(nodes[i]->pos());
    }
    places = forPage(places);
    Drawing result;
    for (int i = 0; i < n; ++i) {
        result.vertices.append({places[i], nodes[i]->shownRadius(), nodes[i]->shownColor(), nodes[i]->getLabel()});
        for (int j = 0; j < i; ++j) {
            if (bestEdge(i, j)) {
                const Edge *line = edges[i][j];
                result.edges.append({j, i, line->shownColor(), double(line->shownWidth()), line->getLabel()});
            }
        }
    }
    return result;
}

// Files.

/// Asks what a picture in pixels is to be; false when the user gave up.
bool Graph::askForPixels(int &width, bool &transparent)
{
    QDialog dialog(this);
    dialog.setWindowTitle(tr("Export picture"));
    auto *widthBox = new QSpinBox;
    widthBox->setRange(1, mostPixels);
    widthBox->setValue(initialPixels);
    widthBox->setSuffix(tr(" pixels"));
    widthBox->setToolTip(tr("How many pixels the picture has from left to right."));
    auto *transparentBox = new QCheckBox(tr("&Transparent background"));
    transparentBox->setToolTip(tr("What is behind the picture shows between the edges; otherwise it is white."));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto *form = new QFormLayout(&dialog);
    form->addRow(tr("&Width"), widthBox);
    form->addRow(transparentBox);
    form->addRow(buttons);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    width = widthBox->value();
    transparent = transparentBox->isChecked();
    return accepted;
}

void Graph::slot_export_picture()
{
    if (bestNbNodes <= 0) {
        return;
    }
    const QString filter = tr("SVG (*.svg);;PNG (*.png);;PDF (*.pdf);;TikZ (*.tex);;DOT (*.dot)");
    const QString path = askForFile(tr("Export picture as"), filter,
                                    {QStringLiteral("svg"), QStringLiteral("png"), QStringLiteral("pdf"),
                                     QStringLiteral("tex"), QStringLiteral("dot")},
                                    Qt::CaseInsensitive);
    releaseModifiers();
    const QString suffix = QFileInfo(path).suffix().toLower();
    int width = 0;
    bool transparent = false;
    if (path.isEmpty() || (suffix == QLatin1String("png") && !askForPixels(width, transparent))) {
        return;
    }
    const bool done = withinMemory([&] {
        const Drawing picture = drawing();
        const QByteArray bytes = suffix == QLatin1String("svg")   ? svg(picture)
                                 : suffix == QLatin1String("pdf") ? pdf(picture)
                                 : suffix == QLatin1String("tex") ? tikz(picture)
                                 : suffix == QLatin1String("dot") ? dot(picture)
                                                                  : png(picture, width, transparent);
        return !bytes.isEmpty() &&
               writeFile(path, [&](OutputFile &file) { file.write(bytes); }) == WriteResult::Written;
    });
    concludeFileCommand(done, path, tr("Failed to export picture."));
}

// The clipboard.

void Graph::slot_copy_graph6()
{
    QApplication::clipboard()->setText(g6currentGraphData());
}

void Graph::slot_copy_picture()
{
    if (bestNbNodes <= 0) {
        return;
    }
    const Drawing shownDrawing = drawing();
    auto *picture = new QMimeData;
    picture->setImageData(image(shownDrawing, qRound(shownDrawing.extent().width() * clipboardScale), false));
    picture->setData(QStringLiteral("image/svg+xml"), svg(shownDrawing));
    QApplication::clipboard()->setMimeData(picture);
}

void Graph::slot_paste_graph6()
{
    showGraph6(QApplication::clipboard()->text().trimmed());
}

// What is dropped.

void Graph::dragEnterEvent(QDragEnterEvent *event)
{
    judge(event);
}

void Graph::dragMoveEvent(QDragMoveEvent *event)
{
    judge(event);
}

void Graph::dropEvent(QDropEvent *event)
{
    judge(event);
    if (!event->isAccepted()) {
        return;
    }
    const QString path = draggedFile(event->mimeData());
    if (path.isEmpty()) {
        showGraph6(event->mimeData()->text().trimmed());
    } else {
        // The program from which it comes waits for the end of this function, and a file may bring up a box.
        QMetaObject::invokeMethod(
            this, [this, path] { showDroppedFile(path); }, Qt::QueuedConnection);
    }
}
