// The file in which the viewer keeps its graph between two runs of the program.

#include "fuzztarget.h"
#include "viewerchecks.h"

#include <QFile>

namespace
{
/// The file without its second line, the change counter.
QByteArray withoutCounter(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    lines.removeAt(1);
    return lines.join('\n');
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startViewerTarget(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = scratchPath(QStringLiteral(".olmgr"));
    {
        QFile file(path);
        require(file.open(QIODevice::WriteOnly), "the file can be written");
        file.write(InputBytes(data, size).restAsBytes());
    }
    Graph graph(QStringLiteral("graph"), false);
    graph.setWD(scratchPath(QString()));
    const bool loaded = graph.autoload();
    requireCount(graph);
    if (loaded) {
        requirePublished(graph);
        graph.autosave();
        const QByteArray text = contentOf(path);
        require(graph.autoload(), "a graph that was kept can be loaded");
        graph.autosave();
        require(withoutCounter(contentOf(path)) == withoutCounter(text), "a graph is loaded as it was kept");
    }
    exercise(graph);
    return 0;
}
