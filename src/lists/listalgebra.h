#ifndef TAVOLINE_LISTALGEBRA_H
#define TAVOLINE_LISTALGEBRA_H

#include <QStringList>

/// The names of both lists, sorted by code unit, each once.
QStringList unionOf(const QStringList &a, const QStringList &b);

/// The names of @p a that @p b contains, in the order of @p a and as often as there.
QStringList intersectionOf(const QStringList &a, const QStringList &b);

/// The names of @p a that @p b does not contain, in the order of @p a and as often as there.
QStringList differenceOf(const QStringList &a, const QStringList &b);

#endif
