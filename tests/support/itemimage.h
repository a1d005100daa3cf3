#ifndef TAVOLINE_TESTS_ITEMIMAGE_H
#define TAVOLINE_TESTS_ITEMIMAGE_H

#include <QGraphicsItem>
#include <QImage>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

/// What @p item paints on gray, around its own origin.
inline QImage itemImage(QGraphicsItem *item)
{
    QImage image(400, 400, QImage::Format_RGB32);
    image.fill(Qt::gray);
    QPainter painter(&image);
    painter.translate(200, 200);
    QStyleOptionGraphicsItem option;
    item->paint(&painter, &option, nullptr);
    return image;
}

#endif
