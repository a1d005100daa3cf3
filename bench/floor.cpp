/// How fast the work on a database can be at best on one core: maps the file, parses it into flat arrays of links in
/// both directions, and passes over them once for each of an average over sub-graphs and super-graphs, a walk and a
/// comparison. The times of Tavoline are given as multiples of these.
///
///     floor DATABASE.tav
///
/// Prints lines "NAME SECONDS" with the shortest time of several rounds (in the first one the file may not be in memory
/// yet), lines "NAME-found COUNT" with the number of graphs that a pass has found, and the highest memory in bytes. The
/// walk and the comparison use the same values as the rows of bench_database. The averages are over values of which
/// none is missing: checking for missing ones, as Tavoline must, takes time.
///
/// The file is trusted: numbers of earlier lines, single tabs, "\n" after every line.

#include "values.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <malloc.h>
#include <memory>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{
/// Repeats @p work for half a second, but at least twice, prints the shortest time and returns the last result. The
/// time does not include the deletion of the results.
template<typename Work> auto measure(const char *name, Work work)
{
    using Clock = std::chrono::steady_clock;
    double least = std::numeric_limits<double>::infinity();
    double spent = 0;
    for (int round = 1;; ++round) {
        const Clock::time_point start = Clock::now();
        auto result = work();
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        least = std::min(least, seconds);
        spent += seconds;
        if (round >= 2 && spent >= 0.5) {
            std::printf("%s %.7f\n", name, least);
            return result;
        }
    }
}

/// Measures a pass, which returns the number of graphs that it has found, and prints that number, too.
template<typename Pass> void measurePass(const char *name, Pass pass)
{
    const size_t found = measure(name, pass);
    std::printf("%s-found %zu\n", name, found);
}

/// The bytes of a file.
class Mapping
{
public:
    explicit Mapping(const char *path)
    {
        const int file = open(path, O_RDONLY);
        struct stat status = {};
        if (file >= 0 && fstat(file, &status) == 0 && status.st_size > 0) {
            size = status.st_size;
            bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
        }
        if (bytes == MAP_FAILED) {
            std::perror(path);
            std::exit(1);
        }
        close(file);
    }
    ~Mapping() { munmap(bytes, size); }
    Mapping(const Mapping &) = delete;
    Mapping &operator=(const Mapping &) = delete;

    const char *begin() const { return static_cast<const char *>(bytes); }
    const char *end() const { return begin() + size; }

private:
    void *bytes = MAP_FAILED;
    size_t size = 0;
};

/// Links of one direction: those of graph i are targets[first[i]] to targets[first[i + 1]], the end excluded.
struct Links {
    std::vector<uint32_t> first;
    std::vector<uint32_t> targets;
};

struct Database {
    explicit Database(const char *path);

    Mapping file;
    std::vector<uint64_t> names; // where in the file each begins
    Links below;
    Links above;
};

size_t countLines(const Mapping &file)
{
    size_t lines = 0;
    for (const char *at = file.begin();
         (at = static_cast<const char *>(std::memchr(at, '\n', file.end() - at))) != nullptr; ++at) {
        ++lines;
    }
    return lines;
}

void parse(Database &database)
{
    constexpr size_t shortestLink = 2; // bytes; too much memory may be reserved: pages never written take none
    const char *const begin = database.file.begin();
    const char *const end = database.file.end();
    const size_t lines = countLines(database.file);
    Links &below = database.below;
    database.names.reserve(lines);
    below.first.reserve(lines + 1);
    below.targets.reserve((end - begin) / shortestLink);
    for (const char *at = begin; at < end; ++at) {
        database.names.push_back(at - begin);
        below.first.push_back(uint32_t(below.targets.size()));
        while (*at != '\t' && *at != '\n') {
            ++at;
        }
        while (*at == '\t') {
            uint32_t target = 0;
            for (++at; *at >= '0'; ++at) {
                target = 10 * target + uint32_t(*at - '0');
            }
            below.targets.push_back(target);
        }
    }
    below.first.push_back(uint32_t(below.targets.size()));
}

Links turnRound(const Links &below)
{
    const size_t graphs = below.first.size() - 1;
    Links above;
    above.first.assign(graphs + 1, 0);
    above.targets.resize(below.targets.size());
    for (const uint32_t target : below.targets) {
        ++above.first[target + 1];
    }
    for (size_t i = 0; i < graphs; ++i) {
        above.first[i + 1] += above.first[i];
    }
    std::vector<uint32_t> next(above.first.begin(), above.first.end() - 1);
    for (size_t i = 0; i < graphs; ++i) {
        for (uint32_t k = below.first[i]; k < below.first[i + 1]; ++k) {
            above.targets[next[below.targets[k]]++] = uint32_t(i);
        }
    }
    return above;
}

Database::Database(const char *path) : file(path)
{
    parse(*this);
    above = turnRound(below);
}

/// Sets inv2 to the averages of the neighbours' inv1, which has no missing value, and returns how many graphs have one.
size_t average(const Links &links, const std::vector<double> &inv1, std::vector<double> &inv2)
{
    size_t found = 0;
    for (size_t i = 0; i < inv1.size(); ++i) {
        double sum = 0;
        for (uint32_t k = links.first[i]; k < links.first[i + 1]; ++k) {
            sum += inv1[links.targets[k]];
        }
        const uint32_t count = links.first[i + 1] - links.first[i];
        inv2[i] = sum / count; // NaN without a neighbour
        found += count > 0 ? 1 : 0;
    }
    return found;
}

/// The number of graphs such that the walk to the graphs below meets a value of I2 and none less than I1 of the graph.
/// The walk stops at graphs without I2.
size_t walk(const Links &below, const std::vector<double> &inv1, const std::vector<double> &inv2)
{
    const double nothing = std::numeric_limits<double>::infinity();
    std::vector<double> least(inv1.size());
    size_t found = 0;
    for (size_t i = 0; i < inv1.size(); ++i) {
        double met = nothing;
        for (uint32_t k = below.first[i]; k < below.first[i + 1]; ++k) {
            const uint32_t target = below.targets[k];
            met = std::min({met, inv2[target], least[target]}); // a NaN is never the smallest
        }
        least[i] = std::isnan(inv2[i]) ? nothing : met;
        found += met < nothing && met >= inv1[i] - 1e-8 ? 1 : 0;
    }
    return found;
}

size_t compare(const std::vector<double> &inv1, const std::vector<double> &inv2)
{
    size_t found = 0;
    for (size_t i = 0; i < inv1.size(); ++i) {
        found += inv1[i] >= inv2[i] - 1e-8 ? 1 : 0;
    }
    return found;
}

std::vector<double> invariant(size_t graphs, double (*value)(uint32_t line))
{
    std::vector<double> values(graphs);
    for (size_t i = 0; i < graphs; ++i) {
        values[i] = value(uint32_t(i));
    }
    return values;
}
} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("usage: floor DATABASE.tav\n", stderr);
        return 2;
    }
    mallopt(M_MMAP_THRESHOLD, 64 << 10); // like the first round, each one gets new memory from the system
    const auto database = measure("load", [path = argv[1]] { return std::make_unique<Database>(path); });
    const Links &sub = database->below;
    const Links &over = database->above;
    const size_t graphs = database->names.size();
    const std::vector<double> higher = invariant(graphs, above);
    std::vector<double> averages(graphs);
    measurePass("average-sub", [&] { return average(sub, higher, averages); });
    measurePass("average-over", [&] { return average(over, higher, averages); });
    const std::vector<double> first = invariant(graphs, variedFirst);
    const std::vector<double> second = invariant(graphs, variedSecond);
    measurePass("walk-varied", [&] { return walk(sub, first, second); });
    const std::vector<double> lower = invariant(graphs, level);
    measurePass("walk-matching", [&] { return walk(sub, lower, higher); });
    measurePass("compare", [&] { return compare(first, second); });

    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("memory %ld\n", usage.ru_maxrss * 1024);
    return 0;
}
