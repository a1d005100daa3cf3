#ifndef TAVOLINE_INVARIANT_H
#define TAVOLINE_INVARIANT_H

#include "invariantcatalogue.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

struct InvariantOptions {
    const Invariant *invariant = nullptr;
    int jobs = 1;     ///< how many processes work; the result does not depend on it
    QString database; ///< the file of which the names are read
    QString output;
};

/// Writes the invariant file of the graphs of the database, in the order of its lines. Throws CommandError, with
/// nothing written, for a name that is no graph6 string of at most SmallGraph::maxOrder vertices and for a database
/// without graphs.
void writeInvariantFile(const InvariantOptions &options);

/// The value as text in an invariant file: 12 significant digits, "NA" for none. A value within 1e-12 of an integer is
/// written as that integer: the difference is a rounding error of the computation.
QByteArray invariantText(std::optional<double> value);

/// The command "invariant".
void runInvariant(const QStringList &arguments);

#endif
