// What an item of the viewer paints, pixel by pixel.
#ifndef TAVOLINE_TESTS_ITEMIMAGE_H
#define TAVOLINE_TESTS_ITEMIMAGE_H

#include <QColor>
#include <QImage>
#include <QRect>

class QGraphicsItem;

/// The picture of an item in its own coordinates, on a background of a colour that no item uses.
class ItemImage
{
public:
    explicit ItemImage(QGraphicsItem &item);

    /// The colour of the pixel whose top left corner is (x, y); both within -128..127.
    QColor at(int x, int y) const;
    /// Whether the item painted that pixel.
    bool paints(int x, int y) const;
    /// The smallest rectangle that holds every painted pixel; empty when the item paints nothing.
    QRect painted() const;
    /// The number of pixels of that colour in the column @p x.
    int countInColumn(int x, const QColor &colour) const;
    /// The smallest rectangle within @p area that holds every pixel of another colour than @p colour.
    QRect unlike(const QColor &colour, const QRect &area) const;

    bool operator==(const ItemImage &other) const { return image == other.image; }
    bool operator!=(const ItemImage &other) const { return image != other.image; }

private:
    QImage image;
};

#endif
