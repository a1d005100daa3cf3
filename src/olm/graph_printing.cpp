#include "edge.h"
#include "graph.h"
#include "node.h"
#include "outputfile.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QPainter>
#include <QPrinter>

#include <algorithm>
#include <sys/mman.h>

namespace
{
constexpr int dotsPerInch = 300;
constexpr double pageSide = 80.0; // millimetres

// In device units.
constexpr double vertexRadius = 40.0;
/// What is left blank on both sides together, beside the discs of the outermost vertices.
constexpr double blank = 20.0;

/// Paints an item as if the origin of its scene were at @p origin.
template<typename Item> void paintAt(QPainter *painter, Item *item, QPointF origin)
{
    const QPointF place = item->pos() + origin;
    painter->translate(place);
    item->paint(painter, nullptr, nullptr);
    painter->translate(-place);
}

/// Writes the page with @p graph to the PDF file @p path. The vertices are left where the page has them.
void printToFile(Graph &graph, const QString &path)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setResolution(dotsPerInch);
    printer.setFullPage(true);
    printer.setOutputFileName(path);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSizeMM(QSizeF(pageSide, pageSide));
    const QRect page = printer.pageRect();

    QPainter painter(&printer);
    graph.print(&painter, std::min(page.width(), page.height()));
}
} // namespace

void Graph::slot_print()
{
    const QString path =
        QFileDialog::getSaveFileName(this, QStringLiteral("Save  graphs as "), workDir, QStringLiteral("*.pdf"));
    releaseModifiers();
    if (path.isEmpty()) {
        return;
    }
    setWD(QFileInfo(path).dir().path());

    // QPrinter would empty a file that stands there before it writes, and does not tell when the disk is full: it gets
    // a file that is in memory only.
    QFile pdf;
    if (!pdf.open(::memfd_create("page", MFD_CLOEXEC), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        return;
    }
    writeFile(path, [&](OutputFile &output) {
        printToFile(*this, QStringLiteral("/proc/self/fd/%1").arg(pdf.handle()));
        slot_rescale(uniformScale);
        const QByteArray bytes = pdf.readAll();
        if (bytes.endsWith("%%EOF\n")) {
            output.write(bytes);
        } else {
            output.giveUp();
        }
    });
}

void Graph::print(QPainter *painter, double size, double dx, double dy)
{
    const double side = size - 2 * vertexRadius - blank;
    scaleCoords(side, side);
    const double offset = side / 2 + vertexRadius + blank / 2;
    const QPointF origin(offset + dx, offset + dy);
    const int n = usedSlots(nbNodes);

    // The edges first, so that the discs cover their ends.
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (edge(i, j)) {
                Edge *line = edges[i][j];
                const bool shown = line->isVisible();
                line->resetVisible(true); // A hidden edge does not follow its vertices.
                paintAt(painter, line, origin);
                line->resetVisible(shown);
            }
        }
    }
    for (int i = 0; i < n; ++i) {
        Node *vertex = nodes[i];
        const double radius = vertex->getRadius();
        vertex->setRadius(vertexRadius);
        vertex->setPrintMode(true);
        paintAt(painter, vertex, origin);
        vertex->setRadius(radius);
        vertex->setPrintMode(false);
    }
}
