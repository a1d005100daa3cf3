#include "nameset.h"

#include "parallel.h"

#include <QHash>
#include <QRandomGenerator>

#include <utility>

namespace
{
/// The smallest power of two that leaves half of the places empty.
size_t tableLength(int nameCount)
{
    size_t length = 2;
    while (length < 2 * size_t(nameCount)) {
        length *= 2;
    }
    return length;
}
} // namespace

NameSet::NameSet(QStringList list)
    : names(std::move(list))
    , seed(QRandomGenerator::global()->generate())
    , hashes(size_t(names.size()))
    , places(tableLength(names.size()), 0)
{
    forEachRange(hashes.size(), recordsPerPiece, threadCount(), [this](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) {
            hashes[i] = qHash(names.at(int(i)), seed);
        }
    });
    for (size_t i = 0; i < hashes.size(); ++i) {
        places[slotOf(names.at(int(i)), hashes[i])] = quint32(i) + 1;
    }
}

bool NameSet::contains(const QString &name) const
{
    return places[slotOf(name, qHash(name, seed))] != 0;
}

/// Where @p name, which has this hash, stands in the table, or would stand.
size_t NameSet::slotOf(const QString &name, uint hash) const
{
    const size_t mask = places.size() - 1;
    size_t slot = hash & mask;
    while (places[slot] != 0) {
        const size_t place = places[slot] - 1;
        if (hashes[place] == hash && names.at(int(place)) == name) {
            break;
        }
        slot = (slot + 1) & mask;
    }
    return slot;
}
