#ifndef TAVOLINE_WORKERS_H
#define TAVOLINE_WORKERS_H

#include <cstddef>
#include <functional>
#include <optional>

/// Memory that is shared with the child processes made after it; zero at first.
class SharedMemory
{
public:
    /// Throws std::bad_alloc when there is none.
    explicit SharedMemory(std::size_t size);
    ~SharedMemory();
    SharedMemory(const SharedMemory &) = delete;
    SharedMemory &operator=(const SharedMemory &) = delete;

    void *data() const { return begin; }

private:
    void *begin;
    std::size_t length;
};

/// A number, or none, for every index.
class SharedValues
{
public:
    explicit SharedValues(std::size_t count) : memory(count * sizeof(double)) {}

    std::optional<double> at(std::size_t index) const;
    void set(std::size_t index, std::optional<double> value);

private:
    double *numbers() const { return static_cast<double *>(memory.data()); }

    SharedMemory memory; // doubles; "not a number" stands for none
};

/// Sets every index below @p count of @p values to what @p work gives for it, in @p jobs child processes, which share
/// the indices out among themselves: for work that threads cannot do at the same time. Fewer children work when no more
/// can be made. Tells @p report now and then how many are done. Throws CommandError, with what the exception says, when
/// @p work throws, when a child ends in any other way before the work is done, and when no child can be made;
/// Interrupted when a signal asks for the end. No child outlives the call, nor this process.
void computeInProcesses(SharedValues &values, std::size_t count, int jobs,
                        const std::function<std::optional<double>(std::size_t index)> &work,
                        const std::function<void(std::size_t done)> &report);

#endif
