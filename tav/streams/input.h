#ifndef TAVOLINE_INPUT_H
#define TAVOLINE_INPUT_H

#include "linereader.h"

#include <QString>

#include <functional>
#include <string_view>

/// Reads the file @p path line by line; it may be a pipe, and "-" is standard input. Calls @p take with each line,
/// without its "\n" and the "\r"s before it, and the number of the line, counted from 1. A line from a pipe or a
/// terminal is handed out as soon as it has arrived. Shows progress when there are many lines. Throws CommandError when
/// the file cannot be opened or read, or a line has more than @p longestLine bytes, a number of MiB.
void readLines(const QString &path, const std::function<void(std::string_view line, qint64 number)> &take,
               int longestLine = LineReader::maxLineLength);

/// The same until @p take or @p pause returns false. Calls @p pause before it waits for the next lines of a pipe or a
/// terminal. The progress is called @p work.
void readLinesWhile(const QString &path, const QString &work,
                    const std::function<bool(std::string_view line, qint64 number)> &take,
                    const std::function<bool()> &pause);

#endif
