/// The least that one core can do with a database file: map it, parse it into flat arrays of links both ways, and pass
/// over them once for an average in either direction, a walk and a comparison. Prints "NAME SECONDS" lines and the
/// highest memory in bytes; the program's own figures are read as multiples of these.
///
/// The file is trusted: numbers of earlier lines, single tabs, "\n" after every line.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{
class Stopwatch
{
public:
    double lap()
    {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - start).count();
        start = now;
        return seconds;
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

/// Links of one direction: those of graph i are targets[first[i]] to targets[first[i + 1]], the end excluded.
struct Links {
    std::vector<uint32_t> first;
    std::vector<uint32_t> targets;
};

size_t countLines(const char *begin, const char *end)
{
    size_t lines = 0;
    for (const char *at = begin; (at = static_cast<const char *>(std::memchr(at, '\n', size_t(end - at)))) != nullptr;
         ++at) {
        ++lines;
    }
    return lines;
}

Links parse(const char *at, const char *end, size_t lines)
{
    constexpr size_t shortestLink = 7; // bytes of a link in a file of millions of lines, as a rule
    Links below;
    below.first.reserve(lines + 1);
    below.targets.reserve(size_t(end - at) / shortestLink);
    while (at < end) {
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
        ++at;
    }
    below.first.push_back(uint32_t(below.targets.size()));
    return below;
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

void average(const Links &links, const std::vector<double> &inv1, std::vector<double> &inv2)
{
    for (size_t i = 0; i < inv1.size(); ++i) {
        double sum = 0;
        for (uint32_t k = links.first[i]; k < links.first[i + 1]; ++k) {
            sum += inv1[links.targets[k]];
        }
        const uint32_t count = links.first[i + 1] - links.first[i];
        inv2[i] = count > 0 ? sum / count : 0;
    }
}

/// How many graphs have only graphs below them whose second invariant is at least their first.
size_t walk(const Links &below, const std::vector<double> &inv1, const std::vector<double> &inv2)
{
    std::vector<double> least(inv1.size());
    size_t found = 0;
    for (size_t i = 0; i < inv1.size(); ++i) {
        double met = std::numeric_limits<double>::infinity();
        for (uint32_t k = below.first[i]; k < below.first[i + 1]; ++k) {
            const uint32_t target = below.targets[k];
            met = std::min({met, inv2[target], least[target]});
        }
        least[i] = met;
        found += below.first[i] < below.first[i + 1] && met >= inv1[i] - 1e-8 ? 1 : 0;
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
} // namespace

int main(int argc, char *argv[])
{
    Stopwatch watch;
    const int file = argc == 2 ? open(argv[1], O_RDONLY) : -1;
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0 || status.st_size == 0) {
        std::fputs("usage: floor DATABASE.tav\n", stderr);
        return 2;
    }
    const auto size = size_t(status.st_size);
    void *map = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    if (map == MAP_FAILED) {
        std::perror("floor");
        return 1;
    }
    const char *begin = static_cast<const char *>(map);
    const Links below = parse(begin, begin + size, countLines(begin, begin + size));
    const Links above = turnRound(below);
    std::printf("load %.4f\n", watch.lap());

    const std::vector<double> inv1(below.first.size() - 1, 1.0);
    std::vector<double> inv2(inv1.size());
    watch.lap();
    average(above, inv1, inv2);
    std::printf("average-over %.4f\n", watch.lap());
    average(below, inv1, inv2);
    std::printf("average-sub %.4f\n", watch.lap());
    size_t found = walk(below, inv1, inv1);
    std::printf("walk %.4f\n", watch.lap());
    found += compare(inv1, inv2);
    std::printf("compare %.4f\n", watch.lap());

    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("memory %ld\nfound %zu\n", usage.ru_maxrss * 1024, found);
    return 0;
}
