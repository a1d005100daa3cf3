// One line of a database file: parsing its bytes gives the same as splitting its text.

#include "databaseline.h"
#include "fuzztarget.h"
#include "support/plainreading.h"

#include <QCoreApplication>

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view input = InputBytes(data, size).rest();
    const std::string_view bytes = input.substr(0, input.find('\n'));
    DatabaseLine line;
    const bool named = parseDatabaseLine(bytes, line);
    const DatabaseLine expected = readPlainly(QByteArray(bytes.data(), int(bytes.size())));
    require(named == !expected.name.isEmpty(), "a line names a graph unless its first field is empty");
    if (named) {
        require(line.name == expected.name, "the first field is the name");
        require(line.indices == expected.indices, "the further fields are the indices");
    }
    return 0;
}
