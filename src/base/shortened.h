#ifndef TAVOLINE_SHORTENED_H
#define TAVOLINE_SHORTENED_H

#include <QString>

/// The most characters of a name that a label or a tool tip shows.
constexpr int longestShownName = 1000;

/// The beginning of @p text, up to @p longest characters, the last of which is an ellipsis when more follow. The
/// toolkit lays out every character that a widget is given, seen or not: names from files may have millions.
inline QString shortened(const QString &text, int longest = longestShownName)
{
    return text.size() <= longest ? text : text.left(longest - 1) + QChar(0x2026);
}

#endif
