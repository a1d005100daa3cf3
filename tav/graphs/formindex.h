#ifndef TAVOLINE_FORMINDEX_H
#define TAVOLINE_FORMINDEX_H

#include "smallgraph.h"

#include <QString>
#include <QtGlobal>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The contents of a file, by which it is known again.
struct FileMark {
    quint64 size = 0;
    quint64 checksum = 0;

    bool operator==(const FileMark &other) const { return size == other.size && checksum == other.checksum; }
};

/// The numbers of the graphs of a database by their canonical forms, in bytes that may be the contents of a file.
/// Threads may look up at the same time.
class FormIndex
{
public:
    /// Takes @p index, which must outlive the object, and returns an empty text, or what is wrong with it: it is none,
    /// comes from another version, of nauty also, or another kind of machine, or is damaged. After a fault there is
    /// nothing to look up.
    QString open(std::string_view index);

    /// The number of the graph of that key (see IsomorphismTable::keyOf()), the first one if there are several; none
    /// when the database does not have it.
    std::optional<quint32> numberOf(int order, std::string_view key) const;
    bool hasGraphsOf(int order) const { return tables[order].count > 0; }
    /// How many graphs the database has.
    quint64 graphCount() const { return graphs; }
    /// The database file.
    const FileMark &database() const { return mark; }

private:
    /// The graphs of one order, in buckets.
    struct Table {
        quint64 count = 0;
        std::string_view starts;  ///< by bucket: the place of its first entry; behind the last bucket their number
        std::string_view entries; ///< a key and a number each
        size_t keyLength = 0;

        std::string_view entry(size_t place) const;
        bool isSound(quint64 graphCount) const;
    };

    bool lay(std::string_view index);

    std::array<Table, SmallGraph::maxOrder + 1> tables;
    quint64 graphs = 0;
    FileMark mark;
};

/// Makes the bytes of a FormIndex.
class FormIndexMaker
{
public:
    /// Adds the next graph of the database.
    void add(int order, std::string_view key);
    quint64 graphCount() const { return graphs; }

    /// The index of the graphs added, which are those of @p database. Then the maker is empty.
    std::string finish(const FileMark &database);

private:
    struct Graphs {
        std::string keys;
        std::vector<quint32> numbers;
    };

    static void appendTable(std::string &index, const Graphs &some, size_t keyLength);

    std::array<Graphs, SmallGraph::maxOrder + 1> byOrder;
    quint64 graphs = 0;
};

/// How many bytes an index without graphs has.
constexpr size_t shortestFormIndex = 556;

/// Puts into @p index, which is no shorter than that, the checksums that belong there.
void sealFormIndex(std::string &index);

#endif
