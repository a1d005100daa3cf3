#ifndef TAVOLINE_RUN_H
#define TAVOLINE_RUN_H

#include <QStringList>

/// The command "run": repeats an investigation that a script describes.
void runScript(const QStringList &arguments);

#endif
