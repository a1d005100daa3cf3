#ifndef TAVOLINE_ISOMORPHISMTABLE_H
#define TAVOLINE_ISOMORPHISMTABLE_H

#include "canonicalform.h"

#include <QtGlobal>

#include <optional>
#include <string>
#include <unordered_map>

/// Numbers of graphs of the same order; isomorphic graphs share theirs. Threads may look up at the same time.
class IsomorphismTable
{
public:
    /// The key of a graph: isomorphic graphs of the same order have the same, others have not.
    static std::string keyOf(const CanonicalForm &form);

    /// An entry that is there now.
    struct Entry {
        quint32 number;
        bool isNew; ///< it was not there before
    };

    /// Gives the graph with that key the number @p number, unless it has one.
    Entry add(std::string key, quint32 number);
    /// The number of the graph with that key; none when the table does not have it.
    std::optional<quint32> numberOf(const std::string &key) const;
    bool isEmpty() const { return numbers.empty(); }
    void clear() { numbers.clear(); }

private:
    std::unordered_map<std::string, quint32> numbers; // by key
};

#endif
