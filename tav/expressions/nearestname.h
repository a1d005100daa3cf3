#ifndef TAVOLINE_NEARESTNAME_H
#define TAVOLINE_NEARESTNAME_H

#include <QString>
#include <QStringList>

/// The first of those @p names into which the fewest changes turn @p name, or an empty text when there are none. A
/// character that is missing is half a change, since names are abbreviated more often than mistyped; two neighbours
/// exchanged are one.
QString nearestName(const QString &name, const QStringList &names);

#endif
