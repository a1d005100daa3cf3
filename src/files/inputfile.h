#ifndef TAVOLINE_INPUTFILE_H
#define TAVOLINE_INPUTFILE_H

class QFile;

/// Opens @p file for reading and returns whether that worked. Only a regular file can be opened: a pipe or a terminal
/// would keep the program waiting, and can be read but once. Nor is there a file under the empty path that a cancelled
/// dialog leaves behind; the toolkit, which would complain on its own account, is not asked.
bool openForReading(QFile &file);

#endif
