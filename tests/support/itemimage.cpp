// Paints an item of the viewer into an image and looks at its pixels.

#include "itemimage.h"

#include <QGraphicsItem>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace
{
constexpr int reach = 128;
const QColor background(0x12, 0x34, 0x56);
} // namespace

ItemImage::ItemImage(QGraphicsItem &item) : image(2 * reach, 2 * reach, QImage::Format_RGB32)
{
    image.fill(background);
    QPainter painter(&image);
    painter.translate(reach, reach);
    const QStyleOptionGraphicsItem option;
    item.paint(&painter, &option, nullptr);
}

QColor ItemImage::at(int x, int y) const
{
    return image.pixelColor(x + reach, y + reach);
}

bool ItemImage::paints(int x, int y) const
{
    return at(x, y) != background;
}

QRect ItemImage::painted() const
{
    return unlike(background, image.rect().translated(-reach, -reach));
}

int ItemImage::countInColumn(int x, const QColor &colour) const
{
    int count = 0;
    for (int y = -reach; y < reach; ++y) {
        count += at(x, y) == colour ? 1 : 0;
    }
    return count;
}

QRect ItemImage::unlike(const QColor &colour, const QRect &area) const
{
    QRect found;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (at(x, y) != colour) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}
