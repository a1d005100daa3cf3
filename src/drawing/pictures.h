#ifndef TAVOLINE_DRAWING_PICTURES_H
#define TAVOLINE_DRAWING_PICTURES_H

#include "drawing.h"

#include <QByteArray>
#include <QImage>

// A drawing as the bytes of a file. The bytes are those of the whole picture, or none when it cannot be made.

/// A picture of so many pixels from left to right, or fewer where its height would be more than @p mostPixels; on white
/// unless @p transparent.
QImage image(const Drawing &drawing, int width, bool transparent);
constexpr int mostPixels = 10000;

QByteArray png(const Drawing &drawing, int width, bool transparent);
/// A page that is as large as the drawing.
QByteArray pdf(const Drawing &drawing);
QByteArray svg(const Drawing &drawing);
/// A LaTeX document with one picture, which needs the package tikz. Characters that LaTeX does not know by itself are
/// written as "?".
QByteArray tikz(const Drawing &drawing);
/// For neato -n, which keeps the places.
QByteArray dot(const Drawing &drawing);

#endif
