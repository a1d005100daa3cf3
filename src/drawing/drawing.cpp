#include "drawing.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLineF>

namespace
{
/// Around everything, so that no line ends at the edge of the picture.
constexpr double margin = 2;

QRectF aroundLabel(const QString &label, QPointF place)
{
    QRectF box = QFontMetricsF(Drawing::labelFont()).boundingRect(label);
    box.moveCenter(place);
    return box;
}
} // namespace

const char *const Drawing::labelFamily = "Times";

QRectF Drawing::extent() const
{
    QRectF all(vertices.isEmpty() ? QPointF() : vertices.first().place, QSizeF(1, 1));
    for (const Vertex &vertex : vertices) {
        const double reach = vertex.radius + outlineWidth / 2;
        all |= QRectF(vertex.place - QPointF(reach, reach), QSizeF(2 * reach, 2 * reach));
        all |= aroundLabel(vertex.label, vertex.place);
    }
    for (const Edge &edge : edges) {
        all |= boxOfLabel(edge);
    }
    return all.adjusted(-margin, -margin, margin, margin);
}

QPointF Drawing::middleOf(const Edge &edge) const
{
    return QLineF(vertices[edge.from].place, vertices[edge.to].place).center();
}

QRectF Drawing::boxOfLabel(const Edge &edge) const
{
    return aroundLabel(edge.label, middleOf(edge));
}

QColor Drawing::inkOn(const QColor &colour)
{
    constexpr int darkest = 120; // for black: a bright green and magenta are 127
    return qGray(colour.rgb()) < darkest ? Qt::white : Qt::black;
}

QFont Drawing::labelFont()
{
    QFont font(QLatin1String(labelFamily), -1);
    font.setPixelSize(int(labelSize));
    return font;
}
