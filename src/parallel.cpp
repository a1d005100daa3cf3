#include "parallel.h"

#include <QThread>
#include <queue>

#include <algorithm>
#include <atomic>
#include <future>
#include <vector>

namespace
{
/// Makes a thread for the work. Where no more can be made, get() of the future does it: the library falls back on that
/// when both are allowed.
constexpr std::launch threadIfPossible = std::launch::async | std::launch::deferred;
} // namespace

int processorCount()
{
    return std::max(1, QThread::idealThreadCount());
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
    for (int job = 1; job < jobs && std::size_t(job) * pieceLength < count; ++job) {
        helpers.push_back(std::async(threadIfPossible, takePieces));
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
        for (; begin < count && ahead.size() <= std::size_t(processorCount()); begin += pieceLength) {
            ahead.push(std::async(threadIfPossible, make, begin, std::min(begin + pieceLength, count)));
        }
        take(ahead.front().get());
        ahead.pop();
    }
}
