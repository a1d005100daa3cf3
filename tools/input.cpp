#include "input.h"

#include "commandline.h"
#include "linereader.h"
#include "textline.h"

#include <QFile>

#include <unistd.h>

void readLines(const QString &path, const std::function<bool(std::string_view, qint64)> &take)
{
    QFile file(path);
    const bool opened = path == standardStream ? file.open(STDIN_FILENO, QIODevice::ReadOnly) : openForReading(file);
    if (!opened) {
        throw CommandError(QStringLiteral("%1: cannot be opened").arg(inputName(path)));
    }
    LineReader reader(file);
    std::string_view line;
    LineReader::Status status = LineReader::Status::Line;
    qint64 number = 1;
    for (; (status = reader.next(line)) == LineReader::Status::Line; ++number) {
        if (!take(withoutLineEnd(line), number)) {
            return;
        }
    }
    if (status == LineReader::Status::TooLong) {
        throw CommandError(path, number, QStringLiteral("a line of more than 1 GiB"));
    }
    if (status == LineReader::Status::Failed) {
        throw CommandError(path, number, QStringLiteral("cannot be read"));
    }
}
