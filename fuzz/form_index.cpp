// An index of canonical forms: whatever it holds, it is refused or looked up within its bytes.

#include "formindex.h"
#include "fuzztarget.h"

#include <QCoreApplication>

#include <string>

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::string bytes(reinterpret_cast<const char *>(data), size);
    FormIndex index;
    const QString fault = index.open(bytes);
    if (bytes.size() >= shortestFormIndex) {
        sealFormIndex(bytes); // which no fuzzer finds
        require(index.open(bytes).isEmpty() || !fault.isEmpty(), "the right checksums make no index worse");
    }
    quint64 graphs = 0;
    for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
        const size_t keyLength = (graph6::pairCount(order) + 7) / 8;
        for (const char byte : {'\0', '\x80', '\xff'}) {
            const auto number = index.numberOf(order, std::string(keyLength, byte));
            require(!number || *number < index.graphCount(), "what is found is a graph of the database");
            require(!number || index.hasGraphsOf(order), "only what an order has is found");
        }
        graphs += index.hasGraphsOf(order) ? 1 : 0;
    }
    require(graphs <= index.graphCount(), "no more orders than graphs");
    return 0;
}
