#include "nearestname.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace
{
constexpr int missing = 1;
constexpr int change = 2;

/// The cost of the changes that turn @p from into @p to (the distance of Damerau and Levenshtein, with costs, where no
/// part of the text is changed twice).
int distance(const QString &from, const QString &to)
{
    const int columns = to.size() + 1;
    std::vector<int> beforeLast(columns);
    std::vector<int> last(columns);
    std::vector<int> current(columns);
    for (int j = 0; j < columns; ++j) {
        current[j] = j * missing;
    }
    for (int i = 1; i <= from.size(); ++i) {
        beforeLast.swap(last);
        last.swap(current);
        current[0] = i * change;
        for (int j = 1; j < columns; ++j) {
            const bool equal = from[i - 1] == to[j - 1];
            current[j] = std::min({last[j - 1] + (equal ? 0 : change), last[j] + change, current[j - 1] + missing});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                current[j] = std::min(current[j], beforeLast[j - 2] + change);
            }
        }
    }
    return current.back();
}
} // namespace

QString nearestName(const QString &name, const QStringList &names)
{
    QString nearest;
    int least = std::numeric_limits<int>::max();
    for (const QString &candidate : names) {
        const int cost = distance(name, candidate);
        if (cost < least) {
            least = cost;
            nearest = candidate;
        }
    }
    return nearest;
}
