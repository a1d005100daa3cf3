// Prints what an invariant file says of the graphs of a database after a derivation, with all digits: tav run tells
// six.
//   derivations DATABASE.tav VALUES OPERATION...
// A line for each graph that has a value then: the operation, the position of the graph and the value of I2.

#include "TAVgraph.h"
#include "TAVsearchengine.h"

#include <QCoreApplication>

#include <cstdio>
#include <map>
#include <string>

namespace
{
const std::map<std::string, void (TAVSearchEngine::*)()> operations = {
    {"avg-sub", &TAVSearchEngine::avgSub1},    {"min-sub", &TAVSearchEngine::minSub1},
    {"max-sub", &TAVSearchEngine::maxSub1},    {"avg-super", &TAVSearchEngine::avgOver1},
    {"min-super", &TAVSearchEngine::minOver1}, {"max-super", &TAVSearchEngine::maxOver1},
    {"avg-all", &TAVSearchEngine::avgAll1},    {"min-all", &TAVSearchEngine::minAll1},
    {"max-all", &TAVSearchEngine::maxAll1},    {"i2-gets-i1", &TAVSearchEngine::I2getsI1},
};
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    TAVSearchEngine engine;
    if (argc < 3) {
        std::fputs("usage: derivations DATABASE.tav VALUES OPERATION...\n", stderr);
        return 2;
    }
    engine.setFilename(QString::fromLocal8Bit(argv[1]));
    engine.run();
    if (!engine.loadInv1(QString::fromLocal8Bit(argv[2]))) {
        std::fprintf(stderr, "derivations: %s does not fit %s\n", argv[2], argv[1]);
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        (engine.*operations.at(argv[i]))();
        for (const TAVGraph *graph : engine.records()) {
            if (!graph->getErrInv2()) {
                std::printf("%s %d %.17g\n", argv[i], graph->getPosition(), graph->getInv2());
            }
        }
    }
    return 0;
}
