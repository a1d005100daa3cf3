#include "listalgebra.h"

#include "nameset.h"
#include "parallel.h"

#include <algorithm>
#include <vector>

namespace
{
/// Sorts by code unit, as QStringList::sort() does, on @p jobs threads.
void sortNames(const QStringList::iterator &begin, const QStringList::iterator &end, int jobs)
{
    if (jobs < 2 || end - begin < recordsPerPiece) {
        std::sort(begin, end);
        return;
    }
    const QStringList::iterator middle = begin + (end - begin) / 2;
    forEachRange(2, 1, 2, [=](int half, int) {
        if (half == 0) {
            sortNames(begin, middle, jobs - jobs / 2);
        } else {
            sortNames(middle, end, jobs / 2);
        }
    });
    std::inplace_merge(begin, middle, end);
}

/// The names of @p a that are in @p b, or with @p inB false, those that are not.
QStringList selectFrom(const QStringList &a, const QStringList &b, bool inB)
{
    const std::vector<char> isInB =
        NameSet(b).containsEach(a.size(), [&a](int i) -> const QString & { return a.at(i); });
    QStringList names;
    for (int i = 0; i < a.size(); ++i) {
        if ((isInB[i] != 0) == inB) {
            names.append(a.at(i));
        }
    }
    return names;
}
} // namespace

QStringList unionOf(const QStringList &a, const QStringList &b)
{
    QStringList names = a + b;
    sortNames(names.begin(), names.end(), threadCount());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

QStringList intersectionOf(const QStringList &a, const QStringList &b)
{
    return selectFrom(a, b, true);
}

QStringList differenceOf(const QStringList &a, const QStringList &b)
{
    return selectFrom(a, b, false);
}
