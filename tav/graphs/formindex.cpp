#include "formindex.h"

#include "canonicalform.h"
#include "checksum.h"

#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

// An index begins with a header: 8 bytes by which it is known; the order of its bytes, its version and the checksum of
// some canonical forms (4 bytes each); the checksum of all that follows, the size and the checksum of the database
// file, the number of its graphs, and the number of those of each order (8 bytes each). Then, for each order that has
// graphs, come the starts of the buckets (4 bytes each, one more than there are buckets) and the entries: a key, which
// is as long for all graphs of the order, and a number of 4 bytes. The bucket of a key follows from its checksum; in a
// bucket the numbers ascend.

namespace
{
constexpr std::string_view magic = "tavforms";
constexpr quint32 byteOrder = 0x01020304;
constexpr quint32 otherByteOrder = 0x04030201;
constexpr quint32 version = 1;

constexpr size_t byteOrderPlace = magic.size();
constexpr size_t versionPlace = byteOrderPlace + sizeof(quint32);
constexpr size_t formsPlace = versionPlace + sizeof(quint32);
constexpr size_t checksumPlace = formsPlace + sizeof(quint32);
constexpr size_t checkedPlace = checksumPlace + sizeof(quint64); // where begins what has the checksum
constexpr size_t headerNumbers = 3 + SmallGraph::maxOrder + 1;
constexpr size_t headerLength = checkedPlace + headerNumbers * sizeof(quint64);
static_assert(headerLength == shortestFormIndex);

constexpr quint64 graphsPerBucket = 4;
constexpr quint64 mostGraphs = std::numeric_limits<quint32>::max();

template<typename Number> Number numberAt(std::string_view bytes, size_t place)
{
    Number number;
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

template<typename Number> void put(std::string &bytes, size_t place, Number number)
{
    std::memcpy(bytes.data() + place, &number, sizeof number);
}

template<typename Number> void append(std::string &bytes, Number number)
{
    bytes.resize(bytes.size() + sizeof number);
    put(bytes, bytes.size() - sizeof number, number);
}

size_t keyLengthOf(int order)
{
    constexpr int bitsPerByte = 8;
    return (graph6::pairCount(order) + bitsPerByte - 1) / bitsPerByte;
}

quint64 bucketsFor(quint64 count)
{
    return count / graphsPerBucket + 1;
}

/// The bytes that the table of so many graphs takes: the starts of its buckets, and its entries.
quint64 startsLength(quint64 count)
{
    return (bucketsFor(count) + 1) * sizeof(quint32);
}

quint64 entriesLength(quint64 count, size_t keyLength)
{
    return count * (keyLength + sizeof(quint32));
}

quint64 tableLength(quint64 count, size_t keyLength)
{
    return count == 0 ? 0 : startsLength(count) + entriesLength(count, keyLength);
}

quint64 bucketOf(std::string_view key, quint64 buckets)
{
    return (Checksum::of(key) >> 32) * buckets >> 32;
}

quint32 checksumOfForms()
{
    static const quint32 checksum = canonicalFormsChecksum();
    return checksum;
}

const QString anew = QStringLiteral("'tav index' makes it anew");
} // namespace

QString FormIndex::open(std::string_view index)
{
    *this = FormIndex();
    if (index.substr(0, magic.size()) != magic.substr(0, index.size())) {
        return QStringLiteral("not the index of a database"); // perhaps the user's own: no advice to replace it
    }
    if (index.size() < headerLength) {
        return QStringLiteral("damaged; ") + anew;
    }
    if (numberAt<quint32>(index, byteOrderPlace) == otherByteOrder) {
        return QStringLiteral("made on a machine with another order of bytes; ") + anew;
    }
    const auto found = numberAt<quint32>(index, versionPlace);
    if (found != version) {
        return QStringLiteral("an index of version %1, not %2; ").arg(found).arg(version) + anew;
    }
    if (numberAt<quint32>(index, formsPlace) != checksumOfForms()) {
        return QStringLiteral("made with another version of nauty; ") + anew;
    }
    if (numberAt<quint32>(index, byteOrderPlace) != byteOrder ||
        numberAt<quint64>(index, checksumPlace) != Checksum::of(index.substr(checkedPlace)) || !lay(index)) {
        *this = FormIndex();
        return QStringLiteral("damaged; ") + anew;
    }
    return QString();
}

/// Finds the tables, and returns whether they are what an index has.
bool FormIndex::lay(std::string_view index)
{
    size_t next = checkedPlace;
    const auto take = [&] { return numberAt<quint64>(index, std::exchange(next, next + sizeof(quint64))); };
    mark.size = take();
    mark.checksum = take();
    graphs = take();
    std::string_view rest = index.substr(headerLength);
    quint64 sum = 0;
    for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
        Table &table = tables[order];
        table.count = take();
        table.keyLength = keyLengthOf(order);
        sum += table.count;
        if (table.count > mostGraphs) {
            return false; // the lengths of more might not fit into 64 bits
        }
        if (table.count == 0) {
            continue;
        }
        const quint64 starts = startsLength(table.count);
        const quint64 length = tableLength(table.count, table.keyLength);
        if (length > rest.size()) {
            return false;
        }
        table.starts = rest.substr(0, starts);
        table.entries = rest.substr(starts, length - starts);
        rest.remove_prefix(length);
        if (!table.isSound(graphs)) {
            return false;
        }
    }
    return rest.empty() && sum == graphs;
}

/// Whether every look-up stays within the table, and every number is one of the database.
bool FormIndex::Table::isSound(quint64 graphCount) const
{
    quint32 before = 0;
    for (size_t place = 0; place < starts.size(); place += sizeof(quint32)) {
        const auto start = numberAt<quint32>(starts, place);
        if (start < before) {
            return false;
        }
        before = start;
    }
    if (before != count) {
        return false;
    }
    for (size_t place = 0; place < count; ++place) {
        if (numberAt<quint32>(entry(place), keyLength) >= graphCount) {
            return false;
        }
    }
    return true;
}

std::string_view FormIndex::Table::entry(size_t place) const
{
    const size_t length = keyLength + sizeof(quint32);
    return entries.substr(place * length, length);
}

std::optional<quint32> FormIndex::numberOf(int order, std::string_view key) const
{
    const Table &table = tables[order];
    if (table.count == 0) {
        return std::nullopt;
    }
    const size_t bucket = bucketOf(key, bucketsFor(table.count)) * sizeof(quint32);
    const auto end = numberAt<quint32>(table.starts, bucket + sizeof(quint32));
    for (auto place = numberAt<quint32>(table.starts, bucket); place < end; ++place) {
        const std::string_view entry = table.entry(place);
        if (entry.substr(0, table.keyLength) == key) {
            return numberAt<quint32>(entry, table.keyLength);
        }
    }
    return std::nullopt;
}

void FormIndexMaker::add(int order, std::string_view key)
{
    byOrder[order].keys.append(key);
    byOrder[order].numbers.push_back(quint32(graphs));
    ++graphs;
}

std::string FormIndexMaker::finish(const FileMark &database)
{
    quint64 length = headerLength;
    for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
        length += tableLength(byOrder[order].numbers.size(), keyLengthOf(order));
    }
    std::string index(magic);
    index.reserve(length);
    append(index, byteOrder);
    append(index, version);
    append(index, quint32(0)); // the checksums, once there is all that they are of
    append(index, quint64(0));
    append(index, database.size);
    append(index, database.checksum);
    append(index, std::exchange(graphs, 0));
    for (const Graphs &some : byOrder) {
        append(index, quint64(some.numbers.size()));
    }
    for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
        appendTable(index, std::exchange(byOrder[order], Graphs()), keyLengthOf(order));
    }
    sealFormIndex(index);
    return index;
}

void FormIndexMaker::appendTable(std::string &index, const Graphs &some, size_t keyLength)
{
    const size_t count = some.numbers.size();
    if (count == 0) {
        return;
    }
    const quint64 buckets = bucketsFor(count);
    const auto keyOf = [&](size_t i) { return std::string_view(some.keys).substr(i * keyLength, keyLength); };
    std::vector<quint32> next(buckets + 1, 0); // by bucket: where its next entry goes
    for (size_t i = 0; i < count; ++i) {
        ++next[bucketOf(keyOf(i), buckets) + 1];
    }
    std::partial_sum(next.begin(), next.end(), next.begin());
    for (const quint32 start : next) {
        append(index, start);
    }
    const size_t entries = index.size();
    index.resize(entries + entriesLength(count, keyLength));
    for (size_t i = 0; i < count; ++i) {
        const quint32 place = next[bucketOf(keyOf(i), buckets)]++;
        const size_t entry = entries + entriesLength(place, keyLength);
        keyOf(i).copy(index.data() + entry, keyLength);
        put(index, entry + keyLength, some.numbers[i]);
    }
}

void sealFormIndex(std::string &index)
{
    put(index, formsPlace, checksumOfForms());
    put(index, checksumPlace, Checksum::of(std::string_view(index).substr(checkedPlace)));
}
