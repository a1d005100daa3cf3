// Preloaded into a program, lets one of its calls of the operating system fail, as these variables say:
//   FAILING_CALLS_FOLDER       only the calls on files in this folder count
//   FAILING_CALLS_KIND         the kind of the call (see SystemCall)
//   FAILING_CALLS_OCCURRENCE   which call of that kind, counted from 1
//   FAILING_CALLS_ERROR        the number of its error
//   FAILING_CALLS_NAMED        if it is set, no file without a name can be made
//   FAILING_CALLS_COUNTS       the file that tells at the end, in the order of the first ones, how many calls of each
//                              kind there were: a line of the kind, a blank and the number

#include "watchedcalls.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace
{
std::string variable(const char *name)
{
    const char *const value = std::getenv(name);
    return value != nullptr ? value : "";
}

int numberOf(const char *name)
{
    return std::atoi(variable(name).c_str());
}

/// Counts the calls and decides which fails.
class Plan
{
public:
    int errorOf(const SystemCall &call)
    {
        if (call.isUnnamed && named) {
            return EOPNOTSUPP;
        }
        const int count = countOf(call.kind);
        return call.kind == kind && count == occurrence ? error : 0;
    }

    void writeCounts() const
    {
        std::ofstream file(variable("FAILING_CALLS_COUNTS"));
        for (const auto &[name, count] : counts) {
            file << name << ' ' << count << '\n';
        }
    }

private:
    /// How many calls of the kind there were, with this one.
    int countOf(const std::string &name)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        for (auto &[counted, count] : counts) {
            if (counted == name) {
                return ++count;
            }
        }
        counts.emplace_back(name, 1);
        return 1;
    }

    const std::string kind = variable("FAILING_CALLS_KIND");
    const int occurrence = numberOf("FAILING_CALLS_OCCURRENCE");
    const int error = numberOf("FAILING_CALLS_ERROR");
    const bool named = !variable("FAILING_CALLS_NAMED").empty();
    std::mutex mutex;
    std::vector<std::pair<std::string, int>> counts;
};

Plan *plan = nullptr;

__attribute__((constructor)) void watch()
{
    plan = new Plan; // the calls go on until the very end of the process
    CallWatch::forProcess(variable("FAILING_CALLS_FOLDER"), [](const SystemCall &call) { return plan->errorOf(call); });
}

__attribute__((destructor)) void tell()
{
    plan->writeCounts();
}
} // namespace
