/// The straightforward program for the work of "tav build", on one core and without use of the automorphisms that nauty
/// finds: reads graph6 strings from standard input, one a line, and writes the same database to standard output.
///
/// The input is trusted: graph6 of at most 62 vertices and "\n" after every line.

#include <algorithm>
#include <array>
#include <cstdint>
#include <iostream>
#include <nauty.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace
{
constexpr int maximalOrder = 62;
using Rows = std::array<setword, maximalOrder>;

struct Line {
    std::string name;
    int order;
    int size;
};

Rows decode(const std::string &name)
{
    Rows rows{};
    int pair = 0;
    for (int v = 1; v < name[0] - 63; ++v) {
        for (int u = 0; u < v; ++u, ++pair) {
            if ((name[1 + pair / 6] - 63) >> (5 - pair % 6) & 1) {
                ADDONEEDGE(rows.data(), u, v, 1);
            }
        }
    }
    return rows;
}

std::string canonicalForm(Rows rows, int order)
{
    static DEFAULTOPTIONS_GRAPH(options);
    options.getcanon = TRUE;
    std::array<int, maximalOrder> labels;
    std::array<int, maximalOrder> partition;
    std::array<int, maximalOrder> orbits;
    statsblk statistics;
    Rows form;
    densenauty(rows.data(), labels.data(), partition.data(), orbits.data(), &options, &statistics, 1, order,
               form.data());
    return {reinterpret_cast<const char *>(form.data()), order * sizeof(setword)};
}

Rows withoutVertex(const Rows &rows, int order, int vertex)
{
    const setword before = ~(~setword(0) >> vertex);
    Rows result;
    for (int v = 0; v < order - 1; ++v) {
        const setword row = rows[v < vertex ? v : v + 1];
        result[v] = (row & before) | (row << 1 & ~before);
    }
    return result;
}

std::vector<Line> readLines()
{
    std::vector<Line> lines;
    for (std::string name; std::getline(std::cin, name);) {
        int degrees = 0;
        for (const setword row : decode(name)) {
            degrees += POPCOUNT(row);
        }
        lines.push_back({name, name[0] - 63, degrees / 2});
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Line &a, const Line &b) {
        return a.order < b.order || (a.order == b.order && a.size < b.size);
    });
    return lines;
}
} // namespace

int main()
{
    std::ios::sync_with_stdio(false);
    std::unordered_map<std::string, uint32_t> numbers; // by canonical form: the number in the database
    std::vector<uint32_t> links;
    for (const Line &line : readLines()) {
        const Rows rows = decode(line.name);
        if (!numbers.try_emplace(canonicalForm(rows, line.order), uint32_t(numbers.size())).second) {
            continue;
        }
        links.clear();
        for (int v = 0; v < line.order; ++v) {
            const auto subGraph = numbers.find(canonicalForm(withoutVertex(rows, line.order, v), line.order - 1));
            if (subGraph != numbers.end()) {
                links.push_back(subGraph->second);
            }
        }
        std::sort(links.begin(), links.end());
        links.erase(std::unique(links.begin(), links.end()), links.end());
        std::cout << line.name;
        for (const uint32_t link : links) {
            std::cout << '\t' << link;
        }
        std::cout << '\n';
    }
}
