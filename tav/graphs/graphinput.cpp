#include "graphinput.h"

#include "commandline.h"
#include "input.h"
#include "smallgraph.h"
#include "textline.h"

namespace
{
constexpr std::string_view header = ">>graph6<<";
} // namespace

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
        readLines(inputs.at(input), [&](std::string_view line, qint64 number) { readLine(line, {input, number}); });
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

void GraphInput::readLine(std::string_view line, InputPlace place)
{
    if (place.line == 1) {
        line = withoutByteOrderMark(line);
        if (line.substr(0, header.size()) == header) {
            line.remove_prefix(header.size());
        }
    }
    if (line.empty()) {
        return;
    }
    SmallGraph graph;
    const QString fault = parseGraph6(line, graph);
    if (!fault.isEmpty()) {
        throw CommandError(inputs.at(place.input), place.line, fault);
    }
    if (isConnectedOnly && !graph.isConnected()) {
        ++disconnected;
        return;
    }
    const int size = graph.size();
    GraphGroup &group = groupsByKind[{graph.order, size}];
    group.order = graph.order;
    group.size = size;
    group.strings += line;
    if (isKeepingPlaces) {
        group.places.push_back(place);
    }
}
