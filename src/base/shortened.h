#ifndef TAVOLINE_SHORTENED_H
#define TAVOLINE_SHORTENED_H

#include <QString>

/// The most characters of a name that a label or a tool tip shows.
constexpr int longestShownName = 1000;

/// The beginning of @p text, up to @p longest characters, the last of which is an ellipsis when more follow. Names from
/// files may have millions of characters, and Qt lays out all that a widget is given, even those out of sight.
inline QString shortened(const QString &text, int longest = longestShownName)
{
    return text.size() <= longest ? text : text.left(longest - 1) + QChar(0x2026);
}

#endif
