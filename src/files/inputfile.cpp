#include "inputfile.h"

#include <QFile>
#include <QFileInfo>

bool openForReading(QFile &file)
{
    const QFileInfo entry(file.fileName());
    return entry.isFile() && file.open(QIODevice::ReadOnly);
}
