#include "graphpass.h"

#include "commandline.h"
#include "graphstring.h"
#include "input.h"
#include "textline.h"

#include <QElapsedTimer>

#include <algorithm>

namespace
{
/// Collects graphs and computes them.
class Batch
{
public:
    Batch(Evaluation &use, const std::function<bool(const GraphNames &)> &receiver) : evaluation(use), take(receiver) {}

    bool isFull() const { return names.count() >= limit; }
    void add(std::string_view name) { names.add(name); }

    /// Returns whether more graphs are wanted.
    bool finish()
    {
        if (names.count() == 0 || !isGoingOn) {
            return isGoingOn;
        }
        QElapsedTimer timer;
        timer.start();
        evaluation.compute(names);
        adapt(timer.elapsed());
        isGoingOn = take(names);
        names.clear();
        return isGoingOn;
    }

private:
    /// A batch is to take about half a second: processes are made for each, and nothing is written meanwhile.
    void adapt(qint64 milliseconds)
    {
        constexpr size_t smallest = 16;
        constexpr size_t largest = 1 << 15;
        if (milliseconds > 1000) {
            limit = std::max(limit / 2, smallest);
        } else if (milliseconds < 250) {
            limit = std::min(limit * 2, largest);
        }
    }

    Evaluation &evaluation;
    const std::function<bool(const GraphNames &)> &take;
    GraphNames names;
    size_t limit = 1 << 10;
    bool isGoingOn = true;
};
} // namespace

void passGraphs(const QString &path, Evaluation &evaluation, const std::function<bool(const GraphNames &)> &take)
{
    Batch batch(evaluation, take);
    SmallGraph graph;
    const auto readLine = [&](std::string_view line, qint64 number) {
        bool more = false;
        QByteArray memory;
        const std::string_view name = graphOnLine(normaliseDroppingReturns(takeField(line, more), memory), number);
        if (name.empty()) {
            return true;
        }
        const QString fault = parseGraph(name, graph);
        if (!fault.isEmpty()) {
            if (!batch.finish()) {
                return false;
            }
            throw CommandError(path, number, fault);
        }
        batch.add(name);
        return !batch.isFull() || batch.finish();
    };
    readLinesWhile(path, QStringLiteral("Computing"), readLine, [&] { return batch.finish(); });
    batch.finish();
}
