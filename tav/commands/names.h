#ifndef TAVOLINE_NAMES_H
#define TAVOLINE_NAMES_H

#include <QStringList>

/// The command "names".
void runNames(const QStringList &arguments);

#endif
