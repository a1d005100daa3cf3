#include "nameset.h"

#include <QRandomGenerator>

#include <utility>

namespace
{
constexpr int primeBits = 31;
constexpr quint64 prime = (quint64(1) << primeBits) - 1;

/// The smallest power of two that leaves half of the places empty.
size_t tableLength(size_t nameCount)
{
    size_t length = 2;
    while (length < 2 * nameCount) {
        length *= 2;
    }
    return length;
}
} // namespace

NameSet::NameSet(QStringList list)
    : names(std::move(list))
    , base(QRandomGenerator::global()->bounded(quint32(1), quint32(prime / 2)))
    , multiplier(QRandomGenerator::global()->generate64() | 1)
    , hashes(names.size())
    , places(tableLength(names.size()), 0)
{
    forEachRange(names.size(), recordsPerPiece, threadCount(), [this](int begin, int end) {
        for (int i = begin; i < end; ++i) {
            hashes[i] = hashOf(names.at(i));
        }
    });
    for (int i = 0; i < names.size(); ++i) {
        places[slotOf(names.at(i), hashes[i])] = i + 1;
    }
}

bool NameSet::contains(const QString &name) const
{
    return places[slotOf(name, hashOf(name))] != 0;
}

/// The characters are the coefficients, behind a leading 1, of a polynomial, whose value at the base in the field of
/// the prime is scattered by the multiplier. For two different names of n characters at most the value is the same with
/// a probability of n / (2^30 - 2) at most, over the choice of the base. (J. L. Carter, M. N. Wegman: Universal classes
/// of hash functions, 1979; the scattering is that of M. Dietzfelbinger et al.: A reliable randomized algorithm for the
/// closest-pair problem, 1997.)
/// qHash() of Qt is linear: names that have the same for one seed have it for the others.
quint32 NameSet::hashOf(const QString &name) const
{
    quint64 value = 1;
    for (const QChar character : name) {
        value = value * base + character.unicode();
        value = (value & prime) + (value >> primeBits); // the same modulo the prime, and less than 2^33: no overflow
    }
    return quint32((value * multiplier) >> 32);
}

/// Where @p name, which has this hash, stands in the table, or would stand.
size_t NameSet::slotOf(const QString &name, quint32 hash) const
{
    const size_t mask = places.size() - 1;
    size_t slot = hash & mask;
    while (places[slot] != 0) {
        const int place = places[slot] - 1;
        if (hashes[place] == hash && names.at(place) == name) {
            break;
        }
        slot = (slot + 1) & mask;
    }
    return slot;
}
