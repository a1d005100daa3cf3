#ifndef TAVOLINE_DRAWING_DRAWING_H
#define TAVOLINE_DRAWING_DRAWING_H

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>

class QFont;

/// A graph as it is drawn: discs joined by straight lines. x runs to the right and y down; a unit of length is a pixel
/// on the screen.
struct Drawing {
    struct Vertex {
        QPointF place;
        double radius = 0;
        QColor colour;
        QString label; ///< in the middle of the disc
    };

    struct Edge {
        int from = 0; ///< a position in vertices, as is the next
        int to = 0;
        QColor colour;
        double width = 0;
        QString label; ///< at the middle of the line
    };

    static constexpr double outlineWidth = 1;
    static constexpr double labelSize = 11;
    static const char *const labelFamily;

    /// What holds the discs, the lines and the labels. It is never empty.
    QRectF extent() const;
    /// Where the label of an edge stands.
    QPointF middleOf(const Edge &edge) const;
    /// What is white under the label of an edge. The edge would make a colon of the point of a number.
    QRectF boxOfLabel(const Edge &edge) const;
    /// Black or white: what is read best on @p colour.
    static QColor inkOn(const QColor &colour);
    static QFont labelFont();

    QVector<Vertex> vertices;
    QVector<Edge> edges;
};

#endif
