#ifndef TAVOLINE_OUTPUTFILE_H
#define TAVOLINE_OUTPUTFILE_H

#include <QString>

#include <functional>

class QIODevice;

enum class WriteResult {
    Written,
    NotOpened, ///< the file cannot be opened for writing
    Failed,    ///< it was opened and could not be written to its end
};

/// Writes the file @p path with what @p write sends to the device that it is given. A file that stands there is
/// replaced when the new one is complete, and stays as it is on any result but Written. What is no regular file, a
/// device for example, is written to directly.
WriteResult writeFile(const QString &path, const std::function<void(QIODevice &)> &write);

#endif
