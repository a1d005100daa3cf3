#ifndef TAVOLINE_INVARIANTLINE_H
#define TAVOLINE_INVARIANTLINE_H

#include <QByteArray>
#include <QString>

#include <string_view>

/// One line of an invariant file: a graph's name and the value of its invariant.
struct InvariantLine {
    QString name;
    double value = 0.0;  ///< the result of QString::toDouble(), even where that failed
    bool missing = true; ///< the second field is no number
};

/// Reads a line without its "\n": name, tab, value; further fields are ignored. Every "\r" is dropped, wherever it
/// stands. Returns false, with @p line undefined, when there are fewer than two fields.
bool parseInvariantLine(std::string_view bytes, InvariantLine &line);

/// Appends the line of a graph, with its "\n", to @p lines: the value has six significant digits; "NA" stands for a
/// missing one.
void appendInvariantLine(QByteArray &lines, const QString &name, double value, bool missing);

#endif
