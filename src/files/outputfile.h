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

/// A file that is being written. After an error it ignores further bytes, so that only the end needs a check.
class OutputFile
{
public:
    /// Writes to @p openDescriptor, which stays open.
    explicit OutputFile(int openDescriptor) : descriptor(openDescriptor) {}

    void write(const QByteArray &bytes);
    /// For when the content cannot be made: the write counts as failed, and the old file stays.
    void giveUp() { complete = false; }
    /// Whether every write so far has succeeded.
    bool tookEverything() const { return complete; }
    /// Why a write failed, in the words of the system.
    QString reason() const;

private:
    int descriptor;
    bool complete = true;
    int fault = 0; // the errno of the call that failed
};

/// Lets a write beyond the limit on the size of files (ulimit -f) fail, as on a full disk, instead of ending the
/// program. To be called once, at its beginning.
void failBeyondFileSizeLimit();

/// Whether writeFile() makes a new file at @p path, which replaces an old one. Otherwise it writes into what is there:
/// something other than a regular file, a device for example, or the file that a standard stream of the process writes.
bool isReplaced(const QString &path);

/// Writes the file @p path with the bytes that @p write gives to its argument. An old file is replaced when the new one
/// is complete and on the disk (see Replacement), and stays as it is on any result but Written. Where isReplaced() is
/// false the bytes are written into what is there, behind those of the standard stream; a FIFO that nobody reads cannot
/// be opened. Unless the result is Written, @p reason, if given, is set to the reason in the words of the system.
WriteResult writeFile(const QString &path, const std::function<void(OutputFile &)> &write, QString *reason = nullptr);

#endif
