#include "isomorphismtable.h"

#include <utility>

std::string IsomorphismTable::keyOf(const CanonicalForm &form)
{
    return adjacencyKey(form.graph);
}

IsomorphismTable::Entry IsomorphismTable::add(std::string key, quint32 number)
{
    const auto [place, isNew] = numbers.try_emplace(std::move(key), number);
    return {place->second, isNew};
}

std::optional<quint32> IsomorphismTable::numberOf(const std::string &key) const
{
    const auto place = numbers.find(key);
    return place != numbers.end() ? std::optional<quint32>(place->second) : std::nullopt;
}
