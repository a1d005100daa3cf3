#ifndef TAVOLINE_NAMESET_H
#define TAVOLINE_NAMESET_H

#include "parallel.h"

#include <QStringList>

#include <vector>

/// The names of a list, to be looked up in. It takes a fraction of the memory and the time of a QSet, for which each
/// name is an allocation of its own.
class NameSet
{
public:
    explicit NameSet(QStringList names);

    /// Whether @p name is in the list. Threads may ask at the same time.
    bool contains(const QString &name) const;

    /// Whether nameAt(i) is in the list, for each i below @p count; asked on all processors.
    template<typename NameAt> std::vector<char> containsEach(int count, NameAt nameAt) const
    {
        std::vector<char> isThere(count, 0);
        forEachRange(count, recordsPerPiece, threadCount(), [&](int begin, int end) {
            for (int i = begin; i < end; ++i) {
                isThere[i] = contains(nameAt(i)) ? 1 : 0;
            }
        });
        return isThere;
    }

private:
    quint32 hashOf(const QString &name) const;
    size_t slotOf(const QString &name, quint32 hash) const;

    QStringList names;
    quint32 base;                // of the hash; random each time: nobody can choose names that all have the same hash
    quint64 multiplier;          // of the hash; random each time
    std::vector<quint32> hashes; // by place in the list
    std::vector<int> places;     // by hash, with linear probing: a place in the list and one, or 0
};

#endif
