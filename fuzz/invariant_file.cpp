// An invariant file for a database of four graphs. Each of its lines is also written again, and read once more.

#include "TAVgraph.h"
#include "TAVsearchengine.h"
#include "fuzztarget.h"
#include "invariantline.h"

#include <QCoreApplication>

namespace
{
/// The line that is written after reading a line; empty when it cannot be read.
QByteArray rewritten(const QByteArray &bytes)
{
    InvariantLine line;
    QByteArray text;
    if (parseInvariantLine(std::string_view(bytes.constData(), bytes.size()), line)) {
        appendInvariantLine(text, line.name, line.value, line.missing);
    }
    return text;
}

void checkLine(const QByteArray &bytes)
{
    const QByteArray once = rewritten(bytes);
    if (!once.isEmpty() && !once.contains('\r')) {
        const QByteArray twice = rewritten(once.left(once.indexOf('\n', once.indexOf('\t'))));
        require(once.mid(once.indexOf('\t')) == twice.mid(twice.indexOf('\t')), "a value is read as it was written");
    }
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryFile database("@\nA_\t0\nBW\t1\nBw\t1\n");
    const MemoryFile invariants(InputBytes(data, size).rest());
    TAVSearchEngine engine;
    engine.setFilename(database.path());
    engine.run();
    require(engine.records().size() == 4, "the database is loaded");

    const bool loaded = engine.loadInv1(invariants.path());
    require(engine.loadInv2(invariants.path()) == loaded, "both invariants are read alike");
    for (const TAVGraph *graph : engine.records()) {
        const double difference = graph->getInv1() - graph->getInv2();
        require(graph->getErrInv1() == graph->getErrInv2() && !(difference < 0.0) && !(difference > 0.0),
                "both invariants are read alike");
    }
    engine.eraseDatabase();

    for (const QByteArray &line : InputBytes(data, size).restAsBytes().split('\n')) {
        checkLine(line);
    }
    return 0;
}
