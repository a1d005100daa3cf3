#ifndef TAVOLINE_STANDARDOUTPUT_H
#define TAVOLINE_STANDARDOUTPUT_H

#include <QString>

// The standard output of the commands. It does not use stdout of glibc: libstdc++ flushes that before any thread writes
// to std::cerr, and when the flush fails the errno, which would tell why, is lost.

/// Prints @p text in UTF-8. It is kept in a buffer until there is much of it.
void print(const QString &text);

/// Writes the buffer.
void sendPrinted();

/// Writes the buffer; throws CommandError with the reason if any write to standard output has failed.
void flushStandardOutput();

#endif
