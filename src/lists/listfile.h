#ifndef TAVOLINE_LISTFILE_H
#define TAVOLINE_LISTFILE_H

#include <QStringList>

#include <optional>

class OutputFile;
class QIODevice;

// A list file has one graph name a line.

/// The lines of @p file that are not empty, "\r" kept; nothing when they cannot be read, or are more than a list holds.
std::optional<QStringList> readNames(QIODevice &file);

/// Writes the names in Latin-1, with a "\n" between any two.
void writeNames(const QStringList &names, OutputFile &file);

#endif
