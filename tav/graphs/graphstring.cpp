#include "graphstring.h"

#include "sparse6.h"
#include "textline.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

namespace
{
constexpr std::array<std::string_view, 2> headers = {">>graph6<<", ">>sparse6<<"};

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

/// The words of a line that holds nothing but integers; none when it holds anything else.
std::vector<std::string_view> integersOf(std::string_view line)
{
    std::vector<std::string_view> words;
    size_t begin = 0;
    for (size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && !isBlank(line[i])) {
            const bool isSign = line[i] == '-' && i == begin;
            if (!isSign && std::isdigit(static_cast<unsigned char>(line[i])) == 0) {
                return {};
            }
            continue;
        }
        if (i > begin) {
            words.push_back(line.substr(begin, i - begin));
        }
        begin = i + 1;
    }
    return words;
}

/// What a line of integers looks like: two ends of an edge, or a row of a matrix, with blanks in it or without.
QString numbersFormat(std::string_view line)
{
    const std::vector<std::string_view> integers = integersOf(line);
    if (integers.empty()) {
        return QString();
    }
    const bool isRow = integers.size() != 2 && std::all_of(line.begin(), line.end(), [](char byte) {
                           return byte == '0' || byte == '1' || isBlank(byte);
                       });
    return isRow ? QStringLiteral("an adjacency matrix, which nauty-amtog converts (its -n is the number of vertices)")
                 : QStringLiteral("an edge list, which Python's networkx converts (read_edgelist, write_graph6)");
}

struct Beginning {
    std::string_view text;
    const char *format;
};

constexpr const char *digraph6 = "digraph6, whose graphs are directed; nauty-underlyingg makes undirected ones of them";
constexpr const char *gml = "GML, which Python's networkx converts (read_gml, write_graph6)";
constexpr const char *json = "JSON; if it is of Python's networkx, that converts it (node_link_graph, write_graph6)";
constexpr const char *graphviz = "the language of Graphviz, which gv2gml makes GML of; Python's networkx converts that "
                                 "(read_gml with label='id', write_graph6)";

/// How lines of other formats begin.
constexpr std::array beginnings = {
    Beginning{"&", digraph6},
    Beginning{">>digraph6<<", digraph6},
    Beginning{";", "incremental sparse6, which nauty-copyg -s converts"},
    Beginning{">>planar_code", "planar code, in whose place plantri writes graph6 with -g"},
    Beginning{">>edge_code", "edge code, in whose place plantri writes graph6 with -g"},
    Beginning{"c ", "DIMACS, which nauty-dimacs2g converts if the line 'p' says 'edge'"},
    Beginning{"p edge ", "DIMACS, which nauty-dimacs2g converts"},
    Beginning{"p col ", "DIMACS, which nauty-dimacs2g converts once 'p col' is 'p edge'"},
    Beginning{"graph [", gml},
    Beginning{"Creator ", gml},
    Beginning{"<", "XML; if it is GraphML, Python's networkx converts it (read_graphml, write_graph6)"},
    Beginning{"{", json},
    Beginning{"[", json},
    Beginning{"graph ", graphviz},
    Beginning{"strict graph ", graphviz},
};

bool isDatabaseLine(std::string_view line)
{
    const size_t tab = line.find('\t');
    SmallGraph graph;
    return tab != std::string_view::npos && parseGraph6(line.substr(0, tab), graph).isEmpty();
}

/// What a line that is no graph looks like; empty when nobody knows.
QString foreignFormat(std::string_view line)
{
    if (line.size() > 1 && std::all_of(line.begin(), line.end(), graph6::isCharacter)) {
        return QString(); // a damaged graph6 string may begin with a brace, too
    }
    if (isDatabaseLine(line)) {
        return QStringLiteral("a database, whose names 'cut -f 1' takes");
    }
    const auto *const found = std::find_if(beginnings.begin(), beginnings.end(),
                                           [&](const Beginning &one) { return beginsWith(line, one.text); });
    return found != beginnings.end() ? QString::fromLatin1(found->format) : numbersFormat(line);
}
} // namespace

std::string_view graphOnLine(std::string_view line, qint64 number)
{
    if (number == 1) {
        line = withoutByteOrderMark(line);
    }
    for (const std::string_view header : headers) {
        if (beginsWith(line, header)) {
            line.remove_prefix(header.size());
            break;
        }
    }
    return line;
}

QString parseGraph(std::string_view text, SmallGraph &graph)
{
    if (beginsWith(text, std::string_view(&sparse6Mark, 1))) {
        return parseSparse6(text, graph);
    }
    QString fault = parseGraph6(text, graph);
    const QString format = fault.isEmpty() ? QString() : foreignFormat(text);
    return format.isEmpty() ? fault : fault + QStringLiteral("; this looks like ") + format;
}

std::string graph6Of(const SmallGraph &graph)
{
    return graph6::encode(graph.order, [&](int u, int v) { return graph.adjacent(u, v); });
}
