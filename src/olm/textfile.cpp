#include "textfile.h"

#include "inputfile.h"

#include <QFile>

#include <algorithm>

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
    // Not by QLatin1String::indexOf(), which makes a QString of all that is left at each call.
    const char *const end = std::find(rest.begin(), rest.end(), mark);
    const QLatin1String part(rest.begin(), end);
    ended = end == rest.end();
    rest = ended ? QLatin1String() : QLatin1String(end + 1, rest.end());
    return part;
}
