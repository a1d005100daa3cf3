#ifndef TAVOLINE_WORKERS_H
#define TAVOLINE_WORKERS_H

#include <cstddef>
#include <functional>
#include <optional>

/// Memory that is shared with the child processes made later; it is filled with zeros.
class SharedMemory
{
public:
    /// Throws std::bad_alloc when there is none.
    explicit SharedMemory(size_t size);
    ~SharedMemory();
    SharedMemory(const SharedMemory &) = delete;
    SharedMemory &operator=(const SharedMemory &) = delete;

    void *data() const { return begin; }

private:
    void *begin;
    size_t length;
};

/// A number, or none, for every index.
class SharedValues
{
public:
    explicit SharedValues(size_t count) : memory(count * sizeof(double)) {}

    std::optional<double> at(size_t index) const;
    void set(size_t index, std::optional<double> value);

private:
    double *numbers() const { return static_cast<double *>(memory.data()); }

    SharedMemory memory; // doubles; "not a number" stands for none
};

/// Calls @p work for every index below @p count, in @p jobs child processes, each of which takes @p pieceLength indices
/// at a time: for work that is not thread-safe. Its results reach this process in shared memory. Fewer children work
/// when the system allows no more. Calls @p report now and then with the number of indices that are done. Throws
/// CommandError when @p work throws (with the text of the exception), when a child ends in any other way before the
/// work is done, and when no child can be made; throws Interrupted after a signal that ends the program. No child lives
/// longer than the call, or than this process.
void workInProcesses(size_t count, size_t pieceLength, int jobs, const std::function<void(size_t index)> &work,
                     const std::function<void(size_t done)> &report);

#endif
