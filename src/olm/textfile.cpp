#include "textfile.h"

#include "inputfile.h"

#include <QFile>

namespace
{
constexpr qint64 maxFileSize = 1 << 24;
} // namespace

bool readTextFile(const QString &path, QByteArray &text)
{
    QFile file(path);
    if (!openForReading(file)) {
        return false;
    }
    text = file.read(maxFileSize + 1);
    if (file.error() != QFileDevice::NoError || text.size() > maxFileSize || text.contains('\0')) {
        return false;
    }
    text.replace("\r", "");
    return true;
}

QLatin1String TextParts::next()
{
    const int length = rest.indexOf(mark);
    ended = length < 0;
    const QLatin1String part = ended ? rest : rest.left(length);
    rest = ended ? QLatin1String() : rest.mid(length + 1);
    return part;
}
