#include "graphinput.h"

#include "commandline.h"
#include "graphstring.h"
#include "input.h"
#include "sparse6.h"

void readGraphs(const QString &path, const std::function<void(const GraphLine &)> &take)
{
    SmallGraph graph;
    readLines(path, [&](std::string_view line, qint64 number) {
        const std::string_view text = graphOnLine(line, number);
        if (text.empty()) {
            return;
        }
        const QString fault = parseGraph(text, graph);
        if (!fault.isEmpty()) {
            throw CommandError(path, number, fault);
        }
        take({text, graph, number});
    });
}

size_t GraphGroup::count() const
{
    return strings.size() / graph6::stringLength(order);
}

std::string_view GraphGroup::string(size_t index) const
{
    const size_t length = graph6::stringLength(order);
    return std::string_view(strings).substr(index * length, length);
}

GraphInput::GraphInput(QStringList paths, bool connectedOnly, bool keepsPlaces)
    : inputs(std::move(paths))
    , isConnectedOnly(connectedOnly)
    , isKeepingPlaces(keepsPlaces)
{
}

void GraphInput::read()
{
    for (int input = 0; input < inputs.size(); ++input) {
        readGraphs(inputs.at(input), [&](const GraphLine &line) { take(line, input); });
    }
    if (groupsByKind.empty()) {
        const QString text = isConnectedOnly ? QStringLiteral("no connected graph in the input")
                                             : QStringLiteral("no graph in the input");
        throw CommandError(inputs.last(), 1, text);
    }
}

size_t GraphInput::count() const
{
    size_t sum = 0;
    for (const auto &[kind, group] : groupsByKind) {
        sum += group.count();
    }
    return sum;
}

QString GraphInput::locate(size_t index) const
{
    auto group = groupsByKind.begin();
    for (; index >= group->second.count(); ++group) {
        index -= group->second.count();
    }
    const InputPlace &place = group->second.places.at(index);
    return QStringLiteral("%1:%2").arg(inputName(inputs.at(place.input)), QString::number(place.line));
}

void GraphInput::take(const GraphLine &line, int input)
{
    if (isConnectedOnly && !line.graph.isConnected()) {
        ++disconnected;
        return;
    }
    const int size = line.graph.size();
    GraphGroup &group = groupsByKind[{line.graph.order, size}];
    group.order = line.graph.order;
    group.size = size;
    if (line.text.front() == sparse6Mark) {
        group.strings += graph6Of(line.graph);
    } else {
        group.strings += line.text;
    }
    if (isKeepingPlaces) {
        group.places.push_back({input, line.number});
    }
}
