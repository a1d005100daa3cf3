// The colours of a dark theme.
#ifndef TAVOLINE_TESTS_DARKTHEME_H
#define TAVOLINE_TESTS_DARKTHEME_H

#include <QPalette>

inline QPalette darkTheme()
{
    QPalette colours(QColor(49, 54, 59), QColor(42, 46, 50)); // the rest follows from buttons and background
    colours.setColor(QPalette::Base, QColor(27, 30, 32));
    colours.setColor(QPalette::AlternateBase, QColor(35, 38, 41));
    colours.setColor(QPalette::Highlight, QColor(48, 140, 198));
    return colours;
}

#endif
