#include "namesearch.h"

#include "graphstring.h"
#include "parallel.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace
{
/// How many names are compared at a time, and how many of them a thread takes: enough to make the threads worthwhile.
constexpr size_t batchLength = 1 << 15;
constexpr int pieceLength = 1 << 9;

/// A number in which every bit depends on every bit of @p number (the finaliser of SplitMix64: G. L. Steele, D. Lea and
/// C. H. Flood, "Fast splittable pseudorandom number generators", 2014).
uint64_t mixed(uint64_t number)
{
    number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31);
}

/// A number that isomorphic graphs share, and that others seldom do: of the degrees of the vertices, those of their
/// neighbours, and so on. It takes a fraction of the time of a canonical form.
uint64_t signatureOf(const SmallGraph &graph)
{
    constexpr int rounds = 3;
    std::array<uint64_t, SmallGraph::maxOrder> values;
    std::fill_n(values.begin(), graph.order, 1);
    for (int round = 0; round < rounds; ++round) {
        std::array<uint64_t, SmallGraph::maxOrder> next;
        for (int v = 0; v < graph.order; ++v) {
            uint64_t sum = 3 * values[v]; // not what a neighbour adds
            for (uint64_t rest = graph.rows[v]; rest != 0; rest &= rest - 1) {
                sum += values[63 - __builtin_ctzll(rest)];
            }
            next[v] = mixed(sum);
        }
        std::copy_n(next.begin(), graph.order, values.begin());
    }
    return mixed(std::accumulate(values.begin(), values.begin() + graph.order, uint64_t(graph.order)));
}
} // namespace

NameSearch::NameSearch(const std::vector<std::string> &list, int jobCount, FaultReceiver fault)
    : jobs(jobCount)
    , tellFault(std::move(fault))
{
    enter(list);
}

void NameSearch::enter(const std::vector<std::string> &list)
{
    struct Sought {
        int order;
        uint64_t signature;
        std::string key;
    };
    std::vector<Sought> all(list.size());
    forEachRange(int(list.size()), pieceLength, jobs, [&](int begin, int end) {
        SmallGraph graph;
        for (int i = begin; i < end; ++i) {
            parseGraph(list[i], graph);
            all[i] = {graph.order, signatureOf(graph), IsomorphismTable::keyOf(canonicalForm(graph))};
        }
    });
    for (Sought &sought : all) {
        signatures.insert(sought.signature);
        const auto entry = tables[sought.order].add(std::move(sought.key), quint32(names.size()));
        if (entry.isNew) {
            names.emplace_back();
        }
        numbers.push_back(entry.number);
    }
}

void NameSearch::offer(std::string_view name, qint64 number)
{
    batch.push_back({std::string(name), number, std::nullopt, QString()});
    if (batch.size() == batchLength) {
        compare();
    }
}

void NameSearch::finish()
{
    compare();
}

void NameSearch::compare()
{
    forEachRange(int(batch.size()), pieceLength, jobs, [&](int begin, int end) {
        for (int i = begin; i < end; ++i) {
            compare(batch[i]);
        }
    });
    for (Offer &offer : batch) {
        if (!offer.fault.isEmpty()) {
            tellFault(offer.name, offer.number, offer.fault);
        }
        if (offer.found && names[*offer.found].empty()) {
            names[*offer.found] = std::move(offer.name);
        }
    }
    batch.clear();
}

void NameSearch::compare(Offer &offer) const
{
    SmallGraph graph;
    offer.fault = parseGraph(offer.name, graph);
    if (offer.fault.isEmpty() && signatures.count(signatureOf(graph)) > 0) {
        const auto table = tables.find(graph.order);
        if (table != tables.end()) {
            offer.found = table->second.numberOf(IsomorphismTable::keyOf(canonicalForm(graph)));
        }
    }
}
