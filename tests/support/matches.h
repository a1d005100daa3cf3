// What a regular expression finds in a text of several lines.
#ifndef TAVOLINE_TESTS_MATCHES_H
#define TAVOLINE_TESTS_MATCHES_H

#include <QRegularExpression>
#include <QStringList>

/// All that the first group of @p expression takes in @p text; "^" and "$" are those of a line.
inline QStringList allMatches(const QString &text, const char *expression)
{
    QStringList found;
    const QRegularExpression pattern(QLatin1String(expression), QRegularExpression::MultilineOption);
    for (auto match = pattern.globalMatch(text); match.hasNext();) {
        found.append(match.next().captured(1));
    }
    return found;
}

#endif
