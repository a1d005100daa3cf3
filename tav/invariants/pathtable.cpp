#include "pathtable.h"

#include <algorithm>
#include <bitset>
#include <vector>

namespace
{
int sizeOf(uint32_t set)
{
    return int(std::bitset<32>(set).count());
}

int first(uint32_t set)
{
    return __builtin_ctz(set);
}
} // namespace

PathTable::PathTable(const SmallGraph &graph) : order(graph.order)
{
    for (int v = 0; v < order; ++v) {
        for (int u = 0; u < order; ++u) {
            neighbours[v] |= Set(graph.adjacent(u, v) ? 1 : 0) << u;
        }
    }
}

int PathTable::longestPath() const
{
    std::vector<Set> ends(size_t(1) << order); // by set: the vertices with which a path through all of it can end
    for (int v = 0; v < order; ++v) {
        ends[Set(1) << v] = Set(1) << v;
    }
    int longest = 0;
    for (Set set = 1; set < ends.size(); ++set) {
        if (ends[set] == 0) {
            continue;
        }
        longest = std::max(longest, sizeOf(set));
        for (Set rest = ~set & Set(ends.size() - 1); rest != 0; rest &= rest - 1) {
            if ((neighbours[first(rest)] & ends[set]) != 0) {
                ends[set | (rest & -rest)] |= rest & -rest;
            }
        }
    }
    return longest;
}

int PathTable::longestCycle() const
{
    std::vector<Set> ends(size_t(1) << order); // the same for paths that start with the smallest vertex
    for (int v = 0; v < order; ++v) {
        ends[Set(1) << v] = Set(1) << v;
    }
    int longest = 0;
    for (Set set = 1; set < ends.size(); ++set) {
        if (ends[set] == 0) {
            continue;
        }
        if (sizeOf(set) > std::max(longest, 2) && (ends[set] & neighbours[first(set)]) != 0) {
            longest = sizeOf(set);
        }
        const Set behindStart = ~((set & -set) | ((set & -set) - 1)) & Set(ends.size() - 1);
        for (Set rest = ~set & behindStart; rest != 0; rest &= rest - 1) {
            if ((neighbours[first(rest)] & ends[set]) != 0) {
                ends[set | (rest & -rest)] |= rest & -rest;
            }
        }
    }
    return longest;
}

double PathTable::cycles() const
{
    std::vector<double> paths((size_t(1) << order) *
                              order); // by set and end: paths that start with the smallest vertex
    for (int v = 0; v < order; ++v) {
        paths[(size_t(1) << v) * order + v] = 1.0;
    }
    double doubled = 0.0; // either direction counts
    for (Set set = 1; set < Set(1) << order; ++set) {
        const int start = first(set);
        const Set free = ~set & ((Set(1) << order) - 1) & ~((Set(1) << start) - 1);
        for (Set left = set; left != 0; left &= left - 1) {
            const int end = first(left);
            const double ways = paths[size_t(set) * order + end];
            if (ways == 0.0) {
                continue;
            }
            if (sizeOf(set) > 2 && (neighbours[end] >> start & 1U) != 0) {
                doubled += ways;
            }
            for (Set rest = neighbours[end] & free; rest != 0; rest &= rest - 1) {
                paths[size_t(set | (rest & -rest)) * order + first(rest)] += ways;
            }
        }
    }
    return doubled / 2.0;
}
