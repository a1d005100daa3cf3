#ifndef TAVOLINE_OUTPUT_H
#define TAVOLINE_OUTPUT_H

#include <QByteArray>
#include <QString>

#include <functional>

/// Takes the next bytes of an output.
using Write = std::function<void(const QByteArray &bytes)>;

/// Writes the file @p path, or standard output for "-", with the bytes that @p produce gives to its argument. An old
/// file is replaced when the new one is complete. When it cannot be written (CommandError), after a signal that ends
/// the program (Interrupted) and when @p produce throws, the old file stays and no unfinished one is left behind. The
/// exceptions for a write error and for a signal come from the argument of @p produce. While the program writes to
/// standard output or to a device, a signal ends it at once: there is no file to remove.
void writeOutput(const QString &path, const std::function<void(const Write &write)> &produce);

#endif
