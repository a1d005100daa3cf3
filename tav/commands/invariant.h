#ifndef TAVOLINE_INVARIANT_H
#define TAVOLINE_INVARIANT_H

#include <QByteArray>
#include <QStringList>

#include <optional>

/// The value as text in an invariant file: "NA" for none, all digits of an integer below 2^53, and else 12 significant
/// digits. A value within 1e-12 of an integer is written as that integer: the difference is a rounding error of the
/// computation.
QByteArray invariantText(std::optional<double> value);

/// The command "invariant".
void runInvariant(const QStringList &arguments);

#endif
