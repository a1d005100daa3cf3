#ifndef TAVOLINE_PARALLEL_H
#define TAVOLINE_PARALLEL_H

#include <QByteArray>

#include <functional>
#include <future>

/// The policy for std::async(). With both flags libstdc++ makes a thread for the work, and when the system has no more
/// threads, leaves the work to get() of the future; with std::launch::async alone it would throw.
constexpr std::launch threadIfPossible = std::launch::async | std::launch::deferred;

/// The number of processors, at least 1.
int processorCount();

/// The number of threads for parallel work: the one that setThreadCount() set, by default processorCount().
int threadCount();
/// Sets threadCount() for work that starts from now on; 0 restores the default.
void setThreadCount(int count);

/// How many records or names a thread takes at a time. Work on fewer takes less time than the start of a second thread.
constexpr int recordsPerPiece = 1 << 14;

/// Calls @p work for ranges [begin, end) that together make up [0, @p count), on @p jobs threads, the caller's being
/// one of them. A thread takes a range of @p pieceLength at a time, in ascending order. Returns when all are done;
/// throws what @p work throws. Fewer threads work when no more can be made.
void forEachRange(int count, int pieceLength, int jobs, const std::function<void(int begin, int end)> &work);

/// Calls @p make for ranges of @p pieceLength that together make up [0, @p count), several at the same time on all
/// processors, and @p take, in the caller's thread, for what it returns, in the order of the ranges. When no thread can
/// be made, the caller's thread does the work.
void forEachPiece(int count, int pieceLength, const std::function<QByteArray(int begin, int end)> &make,
                  const std::function<void(const QByteArray &piece)> &take);

#endif
