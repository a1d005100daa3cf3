#ifndef TAVOLINE_PARALLEL_H
#define TAVOLINE_PARALLEL_H

#include <cstddef>
#include <functional>

/// Calls @p work for every index below @p count, on @p jobs threads, which share the indices out among themselves in
/// small pieces. Returns when all are done; throws what @p work throws.
void forEachInParallel(std::size_t count, int jobs, const std::function<void(std::size_t index)> &work);

#endif
