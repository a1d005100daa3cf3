#ifndef TAVOLINE_TEXTLINE_H
#define TAVOLINE_TEXTLINE_H

#include <QByteArray>
#include <QString>

#include <string_view>

// The lines of the program's text files are UTF-8, their fields are separated by single tabs. They are parsed as bytes,
// since nearly every line is plain ASCII; any other line is normalised to valid UTF-8 first.
// What becomes of "\r": the loader of databases, the reader of invariant files, tav info and tav invariant drop each
// one, wherever it stands. Graph files and scripts of tav lose those at the end of a line. List files and loadData()
// keep all.

/// Whether the bytes are ASCII without "\r": normalising would not change them.
bool isPlain(std::string_view bytes);

/// The line without the "\r"s at its end.
std::string_view withoutReturnsAtEnd(std::string_view line);

/// The bytes without a byte order mark at their beginning.
std::string_view withoutByteOrderMark(std::string_view bytes);

/// The line as valid UTF-8: invalid bytes become U+FFFD, and a byte order mark at the beginning is dropped. The result
/// is @p line itself when it is plain, and otherwise lives in @p memory.
std::string_view normaliseKeepingReturns(std::string_view line, QByteArray &memory);
/// The same without any "\r".
std::string_view normaliseDroppingReturns(std::string_view line, QByteArray &memory);

/// Decodes UTF-8. Unlike QString::fromUtf8() it keeps a byte order mark at the beginning: the bytes may come from the
/// middle of a file, where the mark is a character like any other.
QString textOf(std::string_view bytes);

/// Takes the first field and the tab behind it off @p rest and returns the field; sets @p more to whether there was a
/// tab.
std::string_view takeField(std::string_view &rest, bool &more);

#endif
