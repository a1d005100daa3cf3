#ifndef TAVOLINE_INPUT_H
#define TAVOLINE_INPUT_H

#include <QString>

#include <functional>
#include <string_view>

/// Reads the file @p path, which may be a pipe, or standard input for "-", line by line: @p take gets each line,
/// without its "\n" and every "\r" before that, and its number, counted from 1. A line from a pipe or a terminal is
/// handed out as soon as it has come; when there are many, progress is shown. Throws CommandError when the file cannot
/// be opened or read.
void readLines(const QString &path, const std::function<void(std::string_view line, qint64 number)> &take);

#endif
