#ifndef TAVOLINE_OUTPUTFOLDER_H
#define TAVOLINE_OUTPUTFOLDER_H

#include "interruption.h"
#include "outputfile.h"
#include "systemcalls.h"

#include <QByteArray>
#include <QString>

/// A new folder that has its name when it is complete, and else leaves no trace. Until then it has a random name beside
/// the final one. While one lives, the signals that end a process are only noted: see InterruptionScope.
class OutputFolder
{
public:
    /// Makes the folder for @p path, where nothing may be yet; throws CommandError when something is, or when that is
    /// not possible.
    explicit OutputFolder(const QString &path);
    /// Removes the folder unless it was committed.
    ~OutputFolder();
    OutputFolder(const OutputFolder &) = delete;
    OutputFolder &operator=(const OutputFolder &) = delete;

    /// Makes the folder @p name in it; throws CommandError when that is not possible.
    void makeFolder(const QString &name);
    /// Gives the folder its name; throws CommandError when that is not possible.
    void commit();

private:
    QString finalPath;
    QByteArray temporaryPath; // empty after commit()
    InterruptionScope scope;

    friend class FolderFile;
};

/// A new file in such a folder. Its operations throw CommandError when the file cannot be written, and Interrupted
/// after a signal.
class FolderFile
{
public:
    /// Makes the file @p name, a path from the folder.
    FolderFile(const OutputFolder &folder, const QString &name);

    void write(const QByteArray &bytes);
    /// Writes the file to the disk and closes it.
    void finish();

private:
    QString folderPath;
    FileDescriptor file;
    OutputFile output;
};

#endif
