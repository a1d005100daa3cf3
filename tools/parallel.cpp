#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <vector>

namespace
{
/// Small enough that no thread waits long for the last piece, large enough that taking one costs nothing.
constexpr std::size_t pieceLength = 64;
} // namespace

void forEachInParallel(std::size_t count, int jobs, const std::function<void(std::size_t)> &work)
{
    std::atomic<std::size_t> next = 0;
    const auto takePieces = [&] {
        for (std::size_t begin = 0; (begin = next.fetch_add(pieceLength)) < count;) {
            const std::size_t end = std::min(begin + pieceLength, count);
            for (std::size_t index = begin; index < end; ++index) {
                work(index);
            }
        }
    };
    std::vector<std::future<void>> helpers;
    for (int job = 1; job < jobs && std::size_t(job) * pieceLength < count; ++job) {
        helpers.push_back(std::async(std::launch::async, takePieces));
    }
    takePieces();
    for (std::future<void> &helper : helpers) {
        helper.get();
    }
}
