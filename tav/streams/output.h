#ifndef TAVOLINE_OUTPUT_H
#define TAVOLINE_OUTPUT_H

#include <QByteArray>
#include <QString>

#include <functional>

/// Takes the next bytes of an output.
using Write = std::function<void(const QByteArray &bytes)>;

/// Writes the file @p path, or standard output for "-", with what @p produce gives to its argument. The file is
/// replaced when the new one is complete; when it cannot be written (CommandError), when a signal asks for the end
/// (Interrupted) or when @p produce throws, what stood there stays and nothing is left behind. Once something cannot be
/// written, or a signal has come, the next call of Write ends @p produce. A signal ends the program at once where
/// nothing is to be taken back: while it writes to standard output or to a device.
void writeOutput(const QString &path, const std::function<void(const Write &write)> &produce);

/// Writes out what was printed so far; throws CommandError when not everything could be written.
void flushStandardOutput();

#endif
