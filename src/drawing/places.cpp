#include "places.h"

#include <QPolygonF>
#include <QtMath>

#include <algorithm>

namespace
{
/// An extent below this is that of rounding.
constexpr double leastExtent = 1e-6;

double ratio(double size, double extent)
{
    return extent < leastExtent ? 0.0 : size / extent;
}
} // namespace

Places circle(int count)
{
    if (count < 2) {
        return Places(count);
    }
    const double radius = 0.5 / qSin(M_PI / count);
    Places places;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * M_PI * i / count;
        places.append({radius * qCos(angle), radius * qSin(angle)});
    }
    return places;
}

Places fitted(const Places &places, QSizeF box, Qt::AspectRatioMode mode)
{
    QRectF extent = QPolygonF(places).boundingRect();
    const bool turned =
        mode == Qt::KeepAspectRatio && (extent.width() - extent.height()) * (box.width() - box.height()) < 0;
    Places result;
    for (const QPointF &place : places) {
        const QPointF centred = place - extent.center();
        result.append(turned ? centred.transposed() : centred);
    }
    const QSizeF size = turned ? extent.size().transposed() : extent.size();
    double horizontal = ratio(box.width(), size.width());
    double vertical = ratio(box.height(), size.height());
    if (mode == Qt::KeepAspectRatio) {
        // An extent of 0 does not limit the other one.
        const double both =
            horizontal > 0 && vertical > 0 ? std::min(horizontal, vertical) : std::max(horizontal, vertical);
        horizontal = both;
        vertical = both;
    }
    for (QPointF &place : result) {
        place = {place.x() * horizontal, place.y() * vertical};
    }
    return result;
}
