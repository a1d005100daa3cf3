// Reads a line of a database file as text, step by step by the rules of the file, to check the parser of bytes.
#ifndef TAVOLINE_PLAINREADING_H
#define TAVOLINE_PLAINREADING_H

#include "databaseline.h"

#include <QByteArray>
#include <QStringList>

/// Splits a line that is text at its tabs and converts the fields behind the first.
inline DatabaseLine splitText(const QString &text)
{
    const QStringList fields = text.split(QLatin1Char('\t'), Qt::KeepEmptyParts);
    DatabaseLine line{fields.first(), {}};
    for (int i = 1; i < fields.size(); ++i) {
        bool converts = false;
        const int index = fields.at(i).toInt(&converts, 10);
        line.indices.push_back(converts ? index : 0);
    }
    return line;
}

/// Decodes a line, removes the line ends and splits it. It names a graph unless its name is empty.
inline DatabaseLine readPlainly(const QByteArray &bytes)
{
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    text.remove(QLatin1Char('\n'));
    text.remove(QLatin1Char('\r'));
    return splitText(text);
}

#endif
