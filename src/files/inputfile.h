#ifndef TAVOLINE_INPUTFILE_H
#define TAVOLINE_INPUTFILE_H

class QFile;
class QString;

/// Opens @p file for reading and returns whether that worked. Only a regular file is opened: a pipe or a terminal would
/// keep the program waiting, and can be read only once. The empty path, which a cancelled dialog returns, is refused
/// without QFile::open(), which would print a warning. Sets @p reason, if it is given, to why it did not work.
bool openForReading(QFile &file, QString *reason = nullptr);

/// Why a LineReader has not read @p file to its end, though there was memory.
QString readFault(const QFile &file);

#endif
