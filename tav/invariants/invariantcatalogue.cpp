#include "invariantcatalogue.h"

#include "invariantgroups.h"

#include <algorithm>

namespace
{
std::vector<Invariant> joined(std::initializer_list<std::vector<Invariant>> groups)
{
    std::vector<Invariant> all;
    for (const std::vector<Invariant> &group : groups) {
        all.insert(all.end(), group.begin(), group.end());
    }
    return all;
}
} // namespace

const std::vector<Invariant> &invariants()
{
    static const std::vector<Invariant> all =
        joined({countInvariants(), degreeInvariants(), distanceInvariants(), cycleInvariants(), subsetInvariants(),
                spectralInvariants(), propertyInvariants()});
    return all;
}

const Invariant *findInvariant(const QString &name)
{
    const auto &all = invariants();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Invariant &one) { return name == QLatin1String(one.name); });
    return found != all.end() ? &*found : nullptr;
}
