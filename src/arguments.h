#ifndef TAVOLINE_ARGUMENTS_H
#define TAVOLINE_ARGUMENTS_H

#include <QString>
#include <QStringList>

#include <optional>

/// What the command line of the window asks for.
struct Arguments {
    bool help = false;
    bool version = false;
    std::optional<QString> database; ///< the file to load
    std::optional<QString> workDir;  ///< where the file dialogs start
    QString fault;                   ///< what is wrong with the command line, one line; empty when nothing is
};

/// Reads a command line, the name of the program first.
Arguments readArguments(const QStringList &commandLine);

/// @p commandLine without the options that QApplication may take out of it: those of X11 it takes on X11 alone.
QStringList withoutOptionsOfQt(const QStringList &commandLine);

/// What the option --help prints.
QString helpText();

#endif
