#include "databaselinks.h"

#include "parallel.h"

#include <QList>

#include <algorithm>
#include <numeric>

namespace
{
using Records = QList<TAVGraph *>;
using Stop = std::function<bool()>;

/// A list of @p length + 1 null pointers. mid() of it is the quickest way to a list of a given size: QList has no
/// constructor for that. One entry more, because mid() of the whole list would not copy but share it.
Records blankList(int length)
{
    Records blank;
    blank.reserve(length + 1);
    for (int i = 0; i <= length; ++i) {
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
    int position = first;
    for (const int count : links.counts) {
        Records subGraphs = blank.mid(0, count);
        for (TAVGraph *&subGraph : subGraphs) {
            subGraph = graphs.at(*index++);
        }
        graphs.at(position++)->setSub(subGraphs);
    }
    links = RecordLinks();
}

/// By position: the number of links to the record.
std::vector<int> countLinksTo(int graphCount, const std::vector<RecordLinks> &links, const Stop &stop)
{
    std::vector<int> counts(graphCount, 0);
    for (const RecordLinks &piece : links) {
        if (stop()) {
            return counts;
        }
        for (const int index : piece.indices) {
            ++counts[index];
        }
    }
    return counts;
}

/// Divides the positions, up to the last one with links to it, into @p parts ranges, some of which may be empty, with
/// about the same number of links to each. Returns the bounds of the ranges.
std::vector<int> shareOut(const std::vector<int> &counts, int parts)
{
    const qint64 total = std::accumulate(counts.begin(), counts.end(), qint64(0));
    std::vector<int> bounds = {0};
    qint64 sum = 0;
    int position = 0;
    for (int part = 1; part < parts; ++part) {
        while (sum * parts < total * part) {
            sum += counts[position++];
        }
        bounds.push_back(position);
    }
    const auto last = std::find_if(counts.rbegin(), counts.rend(), [](int count) { return count > 0; });
    bounds.push_back(int(counts.rend() - last));
    return bounds;
}

/// Makes the super-graph lists of the records at the positions [begin, end), unless it is stopped. @p counts are the
/// numbers of links to each position.
void linkUpwards(const QVector<TAVGraph *> &graphs, int first, const std::vector<RecordLinks> &links,
                 const std::vector<int> &counts, int begin, int end, const Stop &stop)
{
    if (begin == end) {
        return;
    }
    const Records blank = blankList(*std::max_element(counts.begin() + begin, counts.begin() + end));
    const int listCount = end - begin;
    std::vector<Records> lists(listCount);
    std::vector<Records::iterator> next(listCount);
    for (int i = 0; i < listCount; ++i) {
        if (counts[begin + i] > 0) {
            lists[i] = graphs.at(begin + i)->superGraphs();
            const int length = lists[i].size();
            lists[i] += blank.mid(0, counts[begin + i]);
            next[i] = lists[i].begin() + length;
        }
    }
    int position = first;
    for (const RecordLinks &piece : links) {
        if (stop()) {
            return;
        }
        auto index = piece.indices.begin();
        for (const int count : piece.counts) {
            TAVGraph *graph = graphs.at(position++);
            for (const auto last = index + count; index != last; ++index) {
                const int place = *index - begin;
                if (place >= 0 && place < listCount) {
                    *next[place]++ = graph;
                }
            }
        }
    }
    for (int i = 0; i < listCount; ++i) {
        if (counts[begin + i] > 0) {
            graphs.at(begin + i)->setOver(lists[i]);
        }
    }
}
} // namespace

void linkRecords(const QVector<TAVGraph *> &graphs, int first, std::vector<RecordLinks> links,
                 const std::function<bool()> &stop)
{
    const std::vector<int> counts = countLinksTo(graphs.size(), links, stop);
    if (stop()) {
        return; // the counts are not those of all links
    }
    const int parts = threadCount();
    const std::vector<int> bounds = shareOut(counts, parts);
    forEachRange(parts, 1, parts, [&](int part, int) {
        linkUpwards(graphs, first, links, counts, bounds[part], bounds[part + 1], stop);
    });
    std::vector<int> firstOfPiece = {first};
    for (const RecordLinks &piece : links) {
        firstOfPiece.push_back(firstOfPiece.back() + int(piece.counts.size()));
    }
    forEachRange(int(links.size()), 1, parts, [&](int i, int) {
        if (!stop()) {
            linkDownwards(graphs, firstOfPiece[i], links[i]);
        }
    });
}
