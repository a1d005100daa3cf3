#include "databaselinks.h"

#include "parallel.h"

#include <QList>

#include <algorithm>
#include <cstddef>

namespace
{
using Records = QList<TAVGraph *>;
using Stop = std::function<bool()>;

/// A list of @p length + 1 null pointers. mid() of it is the quickest way to a list of a given size: QList has no
/// constructor for that. One entry more, because mid() of the whole list would not copy but share it.
Records blankList(quint32 length)
{
    Records blank;
    blank.reserve(int(length) + 1);
    for (quint32 i = 0; i <= length; ++i) {
        blank.append(nullptr);
    }
    return blank;
}

/// Makes the sub-graph lists of the records from the position @p first on, whose links are given. Frees the links, so
/// that the next lists can use their memory.
void linkDownwards(const QVector<TAVGraph *> &graphs, int first, RecordLinks &links)
{
    const auto longest = std::max_element(links.counts.begin(), links.counts.end());
    const Records blank = blankList(longest == links.counts.end() ? 0 : *longest);
    auto index = links.indices.begin();
    for (size_t i = 0; i < links.counts.size(); ++i) {
        Records subGraphs = blank.mid(0, int(links.counts[i]));
        for (TAVGraph *&subGraph : subGraphs) {
            subGraph = graphs.at(*index++);
        }
        graphs.at(first + int(i))->setSub(subGraphs);
    }
    links = RecordLinks();
}

/// By position: the number of links to the record.
std::vector<quint32> countNamings(int graphCount, const std::vector<RecordLinks> &links, const Stop &stop)
{
    std::vector<quint32> counts(size_t(graphCount), 0);
    for (const RecordLinks &piece : links) {
        if (stop()) {
            return counts;
        }
        for (const int index : piece.indices) {
            ++counts[size_t(index)];
        }
    }
    return counts;
}

/// Divides the positions, up to the last one with links to it, into at most @p parts ranges with about the same number
/// of links to each. Returns the bounds of the ranges.
std::vector<size_t> shareOut(const std::vector<quint32> &counts, size_t parts)
{
    quint64 total = 0;
    for (const quint32 count : counts) {
        total += count;
    }
    std::vector<size_t> bounds = {0};
    quint64 sum = 0;
    for (size_t i = 0; i < counts.size() && bounds.size() < parts; ++i) {
        sum += counts[i];
        if (sum * parts >= total * bounds.size()) {
            bounds.push_back(i + 1);
        }
    }
    if (sum < total) {
        const auto last = std::find_if(counts.rbegin(), counts.rend(), [](quint32 count) { return count > 0; });
        bounds.push_back(size_t(counts.rend() - last));
    }
    return bounds;
}

/// Makes the super-graph lists of the records at the positions [begin, end), unless it is stopped. @p counts are the
/// numbers of links to each position.
void linkUpwards(const QVector<TAVGraph *> &graphs, int first, const std::vector<RecordLinks> &links,
                 const std::vector<quint32> &counts, size_t begin, size_t end, const Stop &stop)
{
    const auto at = [&](size_t position) { return counts.begin() + std::ptrdiff_t(position); };
    const Records blank = blankList(*std::max_element(at(begin), at(end)));
    std::vector<Records> lists(end - begin);
    std::vector<Records::iterator> next(end - begin);
    for (size_t i = 0; i < lists.size(); ++i) {
        lists[i] = graphs.at(int(begin + i))->superGraphs();
        const int length = lists[i].size();
        lists[i] += blank.mid(0, int(counts[begin + i]));
        next[i] = lists[i].begin() + length;
    }
    int position = first;
    for (const RecordLinks &piece : links) {
        if (stop()) {
            return;
        }
        auto index = piece.indices.begin();
        for (const quint32 count : piece.counts) {
            TAVGraph *graph = graphs.at(position++);
            for (const auto last = index + std::ptrdiff_t(count); index != last; ++index) {
                const size_t place = size_t(*index) - begin; // a position before the range wraps to a large number
                if (place < next.size()) {
                    *next[place]++ = graph;
                }
            }
        }
    }
    for (size_t i = 0; i < lists.size(); ++i) {
        graphs.at(int(begin + i))->setOver(lists[i]);
    }
}
} // namespace

void linkRecords(const QVector<TAVGraph *> &graphs, int first, std::vector<RecordLinks> links,
                 const std::function<bool()> &stop)
{
    const std::vector<quint32> counts = countNamings(graphs.size(), links, stop);
    if (stop()) {
        return; // the counts are not those of all links
    }
    const std::vector<size_t> bounds = shareOut(counts, size_t(threadCount()));
    forEachRange(bounds.size() - 1, 1, threadCount(), [&](size_t part, size_t) {
        linkUpwards(graphs, first, links, counts, bounds[part], bounds[part + 1], stop);
    });
    std::vector<int> firstOfPiece = {first};
    for (const RecordLinks &piece : links) {
        firstOfPiece.push_back(firstOfPiece.back() + int(piece.counts.size()));
    }
    forEachRange(links.size(), 1, threadCount(), [&](size_t i, size_t) {
        if (!stop()) {
            linkDownwards(graphs, firstOfPiece[i], links[i]);
        }
    });
}
