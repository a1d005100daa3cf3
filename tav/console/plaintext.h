#ifndef TAVOLINE_PLAINTEXT_H
#define TAVOLINE_PLAINTEXT_H

#include <QString>

/// The text as a terminal may be given it, whatever a file or its name holds: control characters become \xNN; what
/// changes the order or the lines of the text around it, or is not seen, becomes \uNNNN, beyond 16 bits \UNNNNNNNN.
QString plainText(const QString &text);

#endif
