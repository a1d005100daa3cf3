#ifndef TAVOLINE_FILTER_H
#define TAVOLINE_FILTER_H

#include <QStringList>

/// The command "filter": prints the graphs for which an expression holds.
void runFilter(const QStringList &arguments);

#endif
