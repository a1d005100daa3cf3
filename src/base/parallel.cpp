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

void forEachRange(int count, int pieceLength, int jobs, const std::function<void(int, int)> &work)
{
    const int pieceCount = count / pieceLength + (count % pieceLength > 0 ? 1 : 0);
    std::atomic<int> next = 0;
    const auto takePieces = [&] {
        for (int piece = 0; (piece = next++) < pieceCount;) {
            const int begin = piece * pieceLength;
            work(begin, begin + std::min(pieceLength, count - begin));
        }
    };
    std::vector<std::future<void>> helpers;
    try {
        for (int job = 1; job < std::min(jobs, pieceCount); ++job) {
            helpers.push_back(std::async(threadIfPossible, takePieces));
        }
    } catch (const std::bad_alloc &) { // the work goes on without another helper
    }
    takePieces();
    for (std::future<void> &helper : helpers) {
        helper.get();
    }
}

void forEachPiece(int count, int pieceLength, const std::function<QByteArray(int, int)> &make,
                  const std::function<void(const QByteArray &)> &take)
{
    const size_t mostAhead = threadCount();
    std::queue<std::future<QByteArray>> ahead;
    for (int begin = 0; begin < count || !ahead.empty();) {
        while (begin < count && ahead.size() <= mostAhead) {
            const int end = begin + std::min(pieceLength, count - begin);
            ahead.push(std::async(threadIfPossible, make, begin, end));
            begin = end;
        }
        take(ahead.front().get());
        ahead.pop();
    }
}
