#ifndef TAVOLINE_GRAPHNAMES_H
#define TAVOLINE_GRAPHNAMES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Names of graphs, in little memory.
class GraphNames
{
public:
    void add(std::string_view name)
    {
        text.append(name);
        ends.push_back(text.size());
    }
    void clear()
    {
        text.clear();
        ends.clear();
    }

    size_t count() const { return ends.size(); }
    std::string_view at(size_t index) const
    {
        const size_t begin = index > 0 ? ends[index - 1] : 0;
        return std::string_view(text).substr(begin, ends[index] - begin);
    }

private:
    std::string text;
    std::vector<size_t> ends; // by name: where the next one begins
};

#endif
