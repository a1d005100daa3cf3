#ifndef TAVOLINE_STANDARDOUTPUT_H
#define TAVOLINE_STANDARDOUTPUT_H

#include <QString>

// What the commands print. It does not go through the streams of the C library: whoever flushes those, and libstdc++
// does it in any thread that writes to std::cerr, would take the reason of a failure with him.

/// Prints @p text in UTF-8: it waits until there is much or it is sent.
void print(const QString &text);

/// Sends what was printed so far.
void sendPrinted();

/// The same; throws CommandError, which tells why, when anything that was printed could not be written.
void flushStandardOutput();

#endif
