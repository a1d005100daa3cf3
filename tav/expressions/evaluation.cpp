#include "evaluation.h"

#include "graphstring.h"

#include <algorithm>
#include <utility>

Evaluation::Evaluation(std::vector<Expression> formulas, int jobs) : given(std::move(formulas)), processes(jobs)
{
    for (const Expression &expression : given) {
        std::vector<size_t> places;
        for (const Invariant *invariant : expression.operands()) {
            const auto found = std::find_if(needed.begin(), needed.end(),
                                            [=](const Known &known) { return known.invariant == invariant; });
            places.push_back(found - needed.begin());
            if (found == needed.end()) {
                needed.push_back({invariant, false, {}});
            }
        }
        operands.push_back(std::move(places));
    }
}

void Evaluation::compute(const GraphNames &names)
{
    // Few graphs at a time keep all processes busy to the end; many cost less.
    const size_t pieceLength = std::clamp<size_t>(names.count() / (size_t(8) * processes), 1, 64);
    values.emplace(names.count() * given.size());
    workInProcesses(
        names.count(), pieceLength, processes, [&](size_t graph) { computeGraph(names.at(graph), graph); },
        [](size_t) {});
}

std::optional<double> Evaluation::value(size_t graph, size_t expression) const
{
    return values->at(graph * given.size() + expression);
}

void Evaluation::computeGraph(std::string_view name, size_t graph)
{
    SmallGraph adjacency;
    parseGraph(name, adjacency);
    GraphFacts facts(adjacency);
    for (Known &known : needed) {
        known.isComputed = false;
    }
    for (size_t expression = 0; expression < given.size(); ++expression) {
        values->set(graph * given.size() + expression, valueOf(expression, facts));
    }
}

std::optional<double> Evaluation::valueOf(size_t expression, GraphFacts &facts)
{
    std::vector<std::optional<double>> operandValues;
    for (const size_t place : operands[expression]) {
        Known &known = needed[place];
        if (!known.isComputed) {
            known.value = known.invariant->valueOf(facts);
            known.isComputed = true;
        }
        if (!known.value) {
            return std::nullopt;
        }
        operandValues.push_back(known.value);
    }
    return given[expression].valueOf(operandValues);
}
