#ifndef TAVOLINE_SQL_H
#define TAVOLINE_SQL_H

#include <QStringList>

/// The command "sql": turns a script into SQL for the tables that "export" writes.
void runSql(const QStringList &arguments);

#endif
