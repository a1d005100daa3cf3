#ifndef TAVOLINE_LISTFILE_H
#define TAVOLINE_LISTFILE_H

#include <QStringList>

#include <optional>

class OutputFile;
class QIODevice;

// A list file has one graph name a line.

/// The lines of @p file that are not empty, each with its "\r"s; nothing when the file cannot be read or has more lines
/// than a QStringList can hold.
std::optional<QStringList> readNames(QIODevice &file);

/// Writes the names in Latin-1, with a "\n" between any two.
void writeNames(const QStringList &names, OutputFile &file);

#endif
