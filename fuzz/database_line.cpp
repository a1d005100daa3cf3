// One line of a database file: the short way through plain text gives what splitting the decoded line gives.

#include "databaseline.h"
#include "fuzztarget.h"

#include <QCoreApplication>

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view bytes = InputBytes(data, size).rest();
    DatabaseLine line;
    const bool named = parseDatabaseLine(bytes, line);

    QString text = QString::fromUtf8(bytes.data(), int(bytes.size()));
    text.remove(QLatin1Char('\r'));
    DatabaseLine expected;
    splitDatabaseLine(text, expected);
    require(named == !expected.name.isEmpty(), "a line names a graph unless its first field is empty");
    if (named) {
        require(line.name == expected.name, "the first field is the name");
        require(line.indices == expected.indices, "the further fields are the indices");
    }
    return 0;
}
