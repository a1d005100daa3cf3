#ifndef TAVOLINE_APPLICATIONTITLE_H
#define TAVOLINE_APPLICATIONTITLE_H

/// The program's name and version as the application, its window and its dialogs show it.
constexpr char applicationTitle[] = "Tavoline version " TAVOLINE_VERSION " alpha";

#endif
