#include "pictures.h"

#include <QString>

#include <algorithm>
#include <iterator>

namespace
{
constexpr double pointsPerUnit = 0.75; // 96 units to an inch, as on a screen
constexpr double pointsPerInch = 72;
/// How far below its middle a line of letters ends, in heights of a letter.
constexpr double belowMiddle = 0.35;

/// With two decimals at most, and never with an exponent.
QString number(double value)
{
    QString text = QString::number(value, 'f', 2);
    while (text.endsWith(QLatin1Char('0'))) {
        text.chop(1);
    }
    if (text.endsWith(QLatin1Char('.'))) {
        text.chop(1);
    }
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

QString points(double units)
{
    return number(units * pointsPerUnit);
}

/// XML has no way to write most control characters, and neither U+FFFE nor U+FFFF.
QString xmlText(const QString &text)
{
    QString clean;
    for (const QChar character : text) {
        const bool impossible =
            (character < QLatin1Char(' ') && character != QLatin1Char('\t')) || character.unicode() >= 0xFFFE;
        clean += impossible ? QChar(QChar::ReplacementCharacter) : character;
    }
    return clean.toHtmlEscaped();
}

/// @p style is written into the element as it is.
QString svgText(QPointF place, const QString &label, const QString &style)
{
    return QStringLiteral("<text x=\"%1\" y=\"%2\" %3>%4</text>\n")
        .arg(number(place.x()), number(place.y() + belowMiddle * Drawing::labelSize), style, xmlText(label));
}

/// What LaTeX reads as a command, and how it is written.
struct TexSpecial {
    char character;
    const char *written;
};
const TexSpecial texSpecials[] = {
    {'\\', "\\textbackslash{}"},
    {'~', "\\textasciitilde{}"},
    {'^', "\\textasciicircum{}"},
    {'<', "\\textless{}"},
    {'>', "\\textgreater{}"},
    {'|', "\\textbar{}"},
    {'{', "\\{"},
    {'}', "\\}"},
    {'$', "\\$"},
    {'&', "\\&"},
    {'#', "\\#"},
    {'%', "\\%"},
    {'_', "\\_"},
};

/// Whether plain LaTeX knows a character: one of ASCII, or a letter of Latin-1 that its fonts have.
bool isInLatex(QChar character)
{
    const int code = character.unicode();
    if (code < 0x80) {
        return character.isPrint();
    }
    return code < 0x100 && character.isLetter() &&
           !QStringLiteral(u"\u00AA\u00B5\u00BA\u00D0\u00DE\u00F0\u00FE").contains(character);
}

QString texText(const QString &text)
{
    QString result;
    for (const QChar character : text) {
        const auto *special =
            std::find_if(std::begin(texSpecials), std::end(texSpecials),
                         [=](const TexSpecial &entry) { return character == QLatin1Char(entry.character); });
        if (special != std::end(texSpecials)) {
            result += QLatin1String(special->written);
        } else {
            result += isInLatex(character) ? character : QLatin1Char('?');
        }
    }
    return result;
}

QString texColour(const QColor &colour)
{
    return QStringLiteral("{rgb,255:red,%1;green,%2;blue,%3}").arg(colour.red()).arg(colour.green()).arg(colour.blue());
}

/// Graphviz reads a backslash and an ampersand in a label as the beginning of something else.
QString dotText(const QString &text)
{
    QString result = text;
    result.remove(QChar(0));
    result.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    result.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    result.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return result;
}
} // namespace

QByteArray svg(const Drawing &drawing)
{
    const QRectF extent = drawing.extent();
    QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                  "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%3\" height=\"%4\" "
                                  "viewBox=\"%1 %2 %3 %4\">\n"
                                  "<g font-family=\"%5, serif\" font-size=\"%6\" text-anchor=\"middle\">\n")
                       .arg(number(extent.x()), number(extent.y()), number(extent.width()), number(extent.height()),
                            QLatin1String(Drawing::labelFamily), number(Drawing::labelSize));
    for (const Drawing::Edge &edge : drawing.edges) {
        const QPointF from = drawing.vertices[edge.from].place;
        const QPointF to = drawing.vertices[edge.to].place;
        text += QStringLiteral("<line x1=\"%1\" y1=\"%2\" x2=\"%3\" y2=\"%4\" stroke=\"%5\" stroke-width=\"%6\" "
                               "stroke-linecap=\"round\"/>\n")
                    .arg(number(from.x()), number(from.y()), number(to.x()), number(to.y()), edge.colour.name(),
                         number(edge.width));
    }
    for (const Drawing::Edge &edge : drawing.edges) {
        if (!edge.label.isEmpty()) {
            const QRectF box = drawing.boxOfLabel(edge);
            text += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"#ffffff\"/>\n")
                        .arg(number(box.x()), number(box.y()), number(box.width()), number(box.height()));
            text += svgText(drawing.middleOf(edge), edge.label, QStringLiteral("fill=\"#000000\""));
        }
    }
    for (const Drawing::Vertex &vertex : drawing.vertices) {
        text += QStringLiteral("<circle cx=\"%1\" cy=\"%2\" r=\"%3\" fill=\"%4\" stroke=\"#000000\" "
                               "stroke-width=\"%5\"/>\n")
                    .arg(number(vertex.place.x()), number(vertex.place.y()), number(vertex.radius),
                         vertex.colour.name(), number(Drawing::outlineWidth));
        if (!vertex.label.isEmpty()) {
            text += svgText(vertex.place, vertex.label,
                            QStringLiteral("fill=\"%1\"").arg(Drawing::inkOn(vertex.colour).name()));
        }
    }
    text += QStringLiteral("</g>\n</svg>\n");
    return text.toUtf8();
}

QByteArray tikz(const Drawing &drawing)
{
    QString text = QStringLiteral("\\documentclass{article}\n"
                                  "\\usepackage{tikz}\n"
                                  "\\pagestyle{empty}\n"
                                  "\\begin{document}\n"
                                  "\\begin{tikzpicture}[x=1bp, y=1bp, vertex/.style={circle, draw, inner sep=0, "
                                  "line width=%1bp}, font=\\scriptsize]\n")
                       .arg(points(Drawing::outlineWidth));
    for (int i = 0; i < drawing.vertices.size(); ++i) {
        const QPointF place = drawing.vertices[i].place;
        text += QStringLiteral("\\coordinate (v%1) at (%2, %3);\n").arg(i).arg(points(place.x()), points(-place.y()));
    }
    // Below the discs, as everywhere: an edge may run under one that is not its end.
    for (const Drawing::Edge &edge : drawing.edges) {
        text += QStringLiteral("\\draw[line width=%1bp, draw=%2] (v%3) -- (v%4);\n")
                    .arg(points(edge.width), texColour(edge.colour))
                    .arg(edge.from)
                    .arg(edge.to);
    }
    for (const Drawing::Edge &edge : drawing.edges) {
        if (!edge.label.isEmpty()) {
            text += QStringLiteral("\\path (v%1) -- node[fill=white, inner sep=1bp] {").arg(edge.from) +
                    texText(edge.label) + QStringLiteral("} (v%1);\n").arg(edge.to);
        }
    }
    for (int i = 0; i < drawing.vertices.size(); ++i) {
        const Drawing::Vertex &vertex = drawing.vertices[i];
        text += QStringLiteral("\\node[vertex, minimum size=%1bp, fill=%2")
                    .arg(points(2 * vertex.radius), texColour(vertex.colour));
        if (!vertex.label.isEmpty()) {
            text += QStringLiteral(", label={[text=%1]center:{")
                        .arg(Drawing::inkOn(vertex.colour) == QColor(Qt::white) ? QStringLiteral("white")
                                                                                : QStringLiteral("black")) +
                    texText(vertex.label) + QStringLiteral("}}");
        }
        text += QStringLiteral("] at (v%1) {};\n").arg(i);
    }
    text += QStringLiteral("\\end{tikzpicture}\n\\end{document}\n");
    return text.toUtf8();
}

QByteArray dot(const Drawing &drawing)
{
    QString text =
        QStringLiteral("graph {\n"
                       "    outputorder=edgesfirst;\n"
                       "    node [shape=circle, style=filled, fixedsize=true, fontname=\"%1\", fontsize=%2];\n"
                       "    edge [fontname=\"%1\", fontsize=%2];\n")
            .arg(QLatin1String(Drawing::labelFamily), points(Drawing::labelSize));
    for (int i = 0; i < drawing.vertices.size(); ++i) {
        const Drawing::Vertex &vertex = drawing.vertices[i];
        text += QStringLiteral("    %1 [pos=\"%2,%3\", width=%4, fillcolor=\"%5\", fontcolor=\"%6\", label=\"")
                    .arg(i)
                    .arg(points(vertex.place.x()), points(-vertex.place.y()),
                         number(2 * vertex.radius * pointsPerUnit / pointsPerInch), vertex.colour.name(),
                         Drawing::inkOn(vertex.colour).name()) +
                dotText(vertex.label) + QStringLiteral("\"];\n");
    }
    for (const Drawing::Edge &edge : drawing.edges) {
        text += QStringLiteral("    %1 -- %2 [color=\"%3\", penwidth=%4, label=\"")
                    .arg(edge.from)
                    .arg(edge.to)
                    .arg(edge.colour.name(), points(edge.width)) +
                dotText(edge.label) + QStringLiteral("\"];\n");
    }
    text += QStringLiteral("}\n");
    return text.toUtf8();
}
