#ifndef TAVOLINE_BUILD_H
#define TAVOLINE_BUILD_H

#include <QStringList>

/// The command "build".
void runBuild(const QStringList &arguments);

#endif
