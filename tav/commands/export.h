#ifndef TAVOLINE_EXPORT_H
#define TAVOLINE_EXPORT_H

#include <QStringList>

/// The command "export": writes a database as tables for an SQL engine.
void runExport(const QStringList &arguments);

#endif
