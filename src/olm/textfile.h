#ifndef TAVOLINE_OLM_TEXTFILE_H
#define TAVOLINE_OLM_TEXTFILE_H

#include <QByteArray>
#include <QLatin1String>
#include <QString>

/// Reads the whole file @p path into @p text, without its "\r". Returns false when it cannot be read, and for what is
/// not a text of reasonable size: more than 16 MiB, a device without an end, a file with NUL bytes.
bool readTextFile(const QString &path, QByteArray &text);

/// Hands out the parts of a text between separators, the empty ones too. The parts point into the text, which must
/// outlive them.
class TextParts
{
public:
    TextParts(QLatin1String text, char separator) : rest(text), mark(separator) {}
    static TextParts lines(const QByteArray &text) { return {QLatin1String(text), '\n'}; }
    static TextParts fields(QLatin1String line) { return {line, '\t'}; }

    /// Whether the last part has been handed out.
    bool atEnd() const { return ended; }
    /// The next part, empty behind the last one.
    QLatin1String next();

private:
    QLatin1String rest;
    char mark;
    bool ended = false;
};

#endif
