#ifndef TAVOLINE_OUTPUTFILE_H
#define TAVOLINE_OUTPUTFILE_H

#include <QByteArray>
#include <QString>

#include <functional>

enum class WriteResult {
    Written,
    NotOpened, ///< the file cannot be opened for writing
    Failed,    ///< it was opened and could not be written to its end
};

/// The file that is being written, and whether it took everything.
class OutputFile
{
public:
    /// Writes to @p openDescriptor, which stays open.
    explicit OutputFile(int openDescriptor) : descriptor(openDescriptor) {}

    /// Writes all of @p bytes; nothing once something was not taken.
    void write(const QByteArray &bytes);
    /// What was to be written cannot be had: the old file stays.
    void giveUp() { complete = false; }
    bool tookEverything() const { return complete; }
    /// Why it did not take everything, in the words of the system.
    QString reason() const;

private:
    int descriptor;
    bool complete = true;
    int fault = 0; // the errno of the call that failed
};

/// Lets a write beyond the limit on the size of files (ulimit -f) fail, as on a full disk, instead of ending the
/// program. To be called once, at its beginning.
void failBeyondFileSizeLimit();

/// Whether writeFile() makes the file @p path, in place of one that stands there: it does unless that is no regular
/// file, a device for example, or is where a standard stream of the process goes.
bool isReplaced(const QString &path);

/// Writes the file @p path with what @p write gives to the file. A file that stands there is replaced when the new one
/// is complete and on the disk (see Replacement), and stays as it is on any result but Written. What is not to be
/// replaced is written to directly, behind what a standard stream has written there; a FIFO that nobody reads cannot be
/// opened. Sets @p reason, if it is given, to why the result is not Written, in the words of the system.
WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write, QString *reason = nullptr);

#endif
