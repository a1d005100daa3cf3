#include "pictures.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

namespace
{
constexpr double pointsPerUnit = 0.75; // 96 units to an inch, as on a screen
constexpr int dotsPerInch = 1200;

/// Paints the label with its middle at @p place.
void paintLabel(QPainter &painter, const QString &label, QPointF place, const QColor &ink)
{
    constexpr double room = 1e4; // wider than any label
    QRectF box(0, 0, room, room);
    box.moveCenter(place);
    painter.setPen(ink);
    painter.drawText(box, Qt::AlignCenter | Qt::TextSingleLine, label);
}

void paint(QPainter &painter, const Drawing &drawing)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(Drawing::labelFont());
    for (const Drawing::Edge &edge : drawing.edges) {
        painter.setPen(QPen(edge.colour, edge.width, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(drawing.vertices[edge.from].place, drawing.vertices[edge.to].place);
    }
    for (const Drawing::Edge &edge : drawing.edges) {
        painter.fillRect(drawing.boxOfLabel(edge), Qt::white);
        paintLabel(painter, edge.label, drawing.middleOf(edge), Qt::black);
    }
    for (const Drawing::Vertex &vertex : drawing.vertices) {
        painter.setPen(QPen(Qt::black, Drawing::outlineWidth));
        painter.setBrush(vertex.colour);
        painter.drawEllipse(vertex.place, vertex.radius, vertex.radius);
        paintLabel(painter, vertex.label, vertex.place, Drawing::inkOn(vertex.colour));
    }
}
} // namespace

QImage image(const Drawing &drawing, int width, bool transparent)
{
    const QRectF extent = drawing.extent();
    const double scale = std::min(width / extent.width(), mostPixels / extent.height());
    const QSize size(std::max(1, qRound(extent.width() * scale)), std::max(1, qRound(extent.height() * scale)));
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull()) {
        return picture;
    }
    picture.fill(transparent ? Qt::transparent : Qt::white);
    QPainter painter(&picture);
    painter.scale(scale, scale);
    painter.translate(-extent.topLeft());
    paint(painter, drawing);
    return picture;
}

QByteArray png(const Drawing &drawing, int width, bool transparent)
{
    QImage picture = image(drawing, width, transparent);
    if (!transparent) {
        picture = picture.convertToFormat(QImage::Format_RGB32);
    }
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    return picture.save(&file, "PNG") ? file.data() : QByteArray();
}

QByteArray pdf(const Drawing &drawing)
{
    const QRectF extent = drawing.extent();
    // QPdfWriter makes pages of whole points.
    const QSizeF page(std::ceil(extent.width() * pointsPerUnit), std::ceil(extent.height() * pointsPerUnit));
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QPdfWriter writer(&file);
    writer.setResolution(dotsPerInch);
    writer.setPageSize(QPageSize(page, QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    constexpr double pointsPerInch = 72;
    const double scale = dotsPerInch / pointsPerInch * pointsPerUnit;
    painter.scale(scale, scale);
    painter.translate(-extent.topLeft());
    paint(painter, drawing);
    painter.end();
    return file.data();
}
