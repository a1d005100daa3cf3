#ifndef TAVOLINE_TEXTLINE_H
#define TAVOLINE_TEXTLINE_H

#include <QString>

#include <string_view>

// The lines of the program's text files are UTF-8, their fields are separated by single tabs, and every "\r" is
// dropped. Nearly every line there is consists of plain ASCII, whose fields can be taken without making text of it.

/// Whether the bytes are ASCII without "\r": whether they mean the same as the text that they stand for.
bool isPlain(std::string_view bytes);

/// Drops the "\r" at the end of a line.
std::string_view withoutLineEnd(std::string_view bytes);

/// The text of a line of any bytes, "\r" and all. A byte order mark, which only the beginning of a file can have, is
/// dropped from the first line.
QString decodeText(std::string_view bytes, bool isFirstLine);

/// The text of a line of any bytes.
QString decodeLine(std::string_view bytes);

/// The text of plain bytes.
QString plainText(std::string_view bytes);

/// Cuts the first field off @p rest, which is left without it and without the tab behind it, and returns it; sets
/// @p more to whether there was a tab.
std::string_view takeField(std::string_view &rest, bool &more);
QStringRef takeField(QStringRef &rest, bool &more);

#endif
