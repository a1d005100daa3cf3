#ifndef TAVOLINE_OUTPUT_H
#define TAVOLINE_OUTPUT_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// Throws CommandError (WrongUsage) when one of the @p outputs is the same file as the @p input or another output,
/// however the names are written.
void expectDifferentFiles(const QString &input, const QStringList &outputs);

/// Takes the next bytes of an output.
using Write = std::function<void(const QByteArray &bytes)>;

/// Writes the file @p path, or standard output for "-", with the bytes that @p produce gives to its argument. An old
/// file is replaced when the new one is complete. When it cannot be written (CommandError), after a signal that ends
/// the program (Interrupted) and when @p produce throws, the old file stays and no unfinished one is left behind. The
/// exceptions for a write error and for a signal come from the argument of @p produce. While the program writes to
/// standard output or to a device, a signal ends it at once: there is no file to remove.
void writeOutput(const QString &path, const std::function<void(const Write &write)> &produce);

/// The same with several outputs at once: @p produce is given one argument for each. When one cannot be put in its
/// place at the end, those behind it in @p paths are in theirs already.
void writeOutputs(const QStringList &paths, const std::function<void(const std::vector<Write> &writes)> &produce);

#endif
