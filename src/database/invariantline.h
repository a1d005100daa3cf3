#ifndef TAVOLINE_INVARIANTLINE_H
#define TAVOLINE_INVARIANTLINE_H

#include <QByteArray>
#include <QString>

#include <string_view>

/// What one line of an invariant file says: a graph's name and the value of its invariant.
struct InvariantLine {
    QString name;
    double value = 0.0;  ///< what the conversion gave, also when it failed
    bool missing = true; ///< the second field is no number
};

/// Reads a line without its "\n": name, tab, value; further fields are ignored. Every "\r" is dropped, wherever it
/// stands. Returns false, with @p line undefined, when there are fewer than two fields.
bool parseInvariantLine(std::string_view bytes, InvariantLine &line);

/// Appends to @p lines the line, with its "\n", of a graph and its invariant: six significant digits, or "NA" when it
/// is missing.
void appendInvariantLine(QByteArray &lines, const QString &name, double value, bool missing);

#endif
