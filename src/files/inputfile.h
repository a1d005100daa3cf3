#ifndef TAVOLINE_INPUTFILE_H
#define TAVOLINE_INPUTFILE_H

class QFile;

/// Opens @p file for reading and returns whether that worked. Only a regular file is opened: a pipe or a terminal would
/// keep the program waiting, and can be read only once. The empty path, which a cancelled dialog returns, is refused
/// without QFile::open(), which would print a warning.
bool openForReading(QFile &file);

#endif
