#include "parallel.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <new>
#include <queue>
#include <vector>

namespace
{
std::atomic<int> chosenThreadCount = 0;
} // namespace

int processorCount()
{
    return std::max(1, QThread::idealThreadCount());
}

int threadCount()
{
    const int chosen = chosenThreadCount;
    return chosen > 0 ? chosen : processorCount();
}

void setThreadCount(int count)
{
    chosenThreadCount = count;
}

void forEachRange(std::size_t count, std::size_t pieceLength, int jobs,
                  const std::function<void(std::size_t, std::size_t)> &work)
{
    std::atomic<std::size_t> next = 0;
    const auto takePieces = [&] {
        for (std::size_t begin = 0; (begin = next.fetch_add(pieceLength)) < count;) {
            work(begin, std::min(begin + pieceLength, count));
        }
    };
    std::vector<std::future<void>> helpers;
    try {
        for (int job = 1; job < jobs && std::size_t(job) * pieceLength < count; ++job) {
            helpers.push_back(std::async(threadIfPossible, takePieces));
        }
    } catch (const std::bad_alloc &) { // the work goes on without another helper
    }
    takePieces();
    for (std::future<void> &helper : helpers) {
        helper.get();
    }
}

void forEachPiece(std::size_t count, std::size_t pieceLength,
                  const std::function<QByteArray(std::size_t, std::size_t)> &make,
                  const std::function<void(const QByteArray &)> &take)
{
    std::queue<std::future<QByteArray>> ahead;
    for (std::size_t begin = 0; begin < count || !ahead.empty();) {
        for (; begin < count && ahead.size() <= std::size_t(threadCount()); begin += pieceLength) {
            ahead.push(std::async(threadIfPossible, make, begin, std::min(begin + pieceLength, count)));
        }
        take(ahead.front().get());
        ahead.pop();
    }
}
