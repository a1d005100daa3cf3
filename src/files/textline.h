#ifndef TAVOLINE_TEXTLINE_H
#define TAVOLINE_TEXTLINE_H

#include <QByteArray>
#include <QString>

#include <string_view>

// The lines of the program's text files are UTF-8, their fields are separated by single tabs. They are parsed from
// their bytes, since nearly every line consists of plain ASCII; any other line is normalised to valid UTF-8 before.
// Database and invariant files drop every "\r", wherever it stands; list files and loadData() keep it.

/// Whether the bytes are ASCII without "\r", as which they are normalised already.
bool isPlain(std::string_view bytes);

/// Takes off every "\r" at the end of a line.
std::string_view withoutReturnsAtEnd(std::string_view line);

/// Takes a byte order mark off the beginning.
std::string_view withoutByteOrderMark(std::string_view bytes);

/// The valid UTF-8 that a line means: what is invalid becomes U+FFFD, and a byte order mark at the beginning is
/// dropped. The result is @p line itself when it is plain, else it is kept in @p memory.
std::string_view normaliseKeepingReturns(std::string_view line, QByteArray &memory);
/// The same without any "\r".
std::string_view normaliseDroppingReturns(std::string_view line, QByteArray &memory);

/// The text of bytes that stand inside a file: a byte order mark at their beginning is a character as any other.
QString textOf(std::string_view bytes);

/// Cuts the first field off @p rest, which is left without it and without the tab behind it, and returns it; sets
/// @p more to whether there was a tab.
std::string_view takeField(std::string_view &rest, bool &more);

#endif
