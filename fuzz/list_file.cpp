// A list file.

#include "TAVmanager.h"
#include "fuzztarget.h"

#include <QCoreApplication>

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const InputBytes input(data, size);
    const MemoryFile file(input.rest());
    const QString name = QStringLiteral("list");
    TAVManager manager;
    require(manager.addListFromFile(name, file.path()), "a file that can be read is a list");
    const QStringList names = manager.getList(name);
    require(manager.listNames() == (names.isEmpty() ? QStringList() : QStringList(name)), "an empty list is not added");
    require(!names.contains(QString()), "an empty line names no graph");
    const QString text = QString::fromUtf8(input.restAsBytes().constData(), int(size));
    require(names == text.split(QLatin1Char('\n'), Qt::SkipEmptyParts), "every other line names one");
    require(manager.addUnionList(QStringLiteral("union"), name, name) == !names.isEmpty(),
            "a list that is there can be combined");
    return 0;
}
