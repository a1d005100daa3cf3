#ifndef TAVOLINE_INDEX_H
#define TAVOLINE_INDEX_H

#include <QStringList>

/// The command "index".
void runIndex(const QStringList &arguments);

#endif
