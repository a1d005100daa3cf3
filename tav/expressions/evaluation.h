#ifndef TAVOLINE_EVALUATION_H
#define TAVOLINE_EVALUATION_H

#include "expression.h"
#include "graphnames.h"
#include "workers.h"

#include <optional>
#include <vector>

/// Expressions that are computed for the same graphs, in child processes.
class Evaluation
{
public:
    /// @p jobs processes work; the values do not depend on it.
    Evaluation(std::vector<Expression> formulas, int jobs);

    const std::vector<Expression> &expressions() const { return given; }

    /// Computes the values for the graphs of these @p names, graph6 or sparse6 strings. An invariant is computed once
    /// for each graph, whatever expressions name it. Throws CommandError when a computation fails and Interrupted after
    /// a signal that ends the program.
    void compute(const GraphNames &names);
    /// The value of an expression for a graph of those that were computed last.
    std::optional<double> value(size_t graph, size_t expression) const;

private:
    /// What is known of an invariant of the graph at hand.
    struct Known {
        const Invariant *invariant;
        bool isComputed;
        std::optional<double> value;
    };

    void computeGraph(std::string_view name, size_t graph);
    std::optional<double> valueOf(size_t expression, GraphFacts &facts);

    std::vector<Expression> given;
    int processes;
    std::vector<Known> needed;                 // by all expressions, each invariant once
    std::vector<std::vector<size_t>> operands; // by expression: places in needed
    std::optional<SharedValues> values;
};

#endif
