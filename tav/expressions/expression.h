#ifndef TAVOLINE_EXPRESSION_H
#define TAVOLINE_EXPRESSION_H

#include "invariantcatalogue.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class QCommandLineParser;

/// A formula over the invariants of a graph: their names with underscores in place of hyphens, numbers, + - * / ^,
/// comparisons, "and", "or", "not", "if(condition, a, b)" and a few functions. The name of an invariant alone may keep
/// its hyphens.
///
/// A comparison is 1 or 0. Two numbers are equal when they differ by at most TOLERANCE, as in the lists of the window,
/// or by at most 1e-12 of the larger one: that far computed eigenvalues and sums of roots may be off. Integers below
/// 2^53 are compared exactly where nothing but integers stands on both sides: invariants that are integers, numbers
/// without point and exponent, and no "/", "sqrt", "log" or "exp". Elsewhere a large number may have become an integer
/// by rounding. "true" is whatever is not equal to 0.
///
/// The value is undefined when any of the invariants is, and when an operation has no finite result (a division by
/// zero, the logarithm of 0), unless that stands in the branch that an "if" does not take.
class Expression
{
public:
    /// Throws CommandError (WrongUsage), in one line, for a text that is no expression.
    explicit Expression(const QString &text);
    ~Expression();
    Expression(Expression &&) noexcept;
    Expression &operator=(Expression &&) noexcept;

    /// The expression as it was given.
    const QString &text() const;
    /// The invariants that it names, each once.
    const std::vector<const Invariant *> &operands() const;
    /// Its value for a graph of which the operands have the @p values, in the order of operands(). Only one thread may
    /// call this at a time.
    std::optional<double> valueOf(const std::vector<std::optional<double>> &values);

private:
    class Formula;
    std::unique_ptr<Formula> formula;
};

/// parseArguments() for a command that takes expressions: the help tells what stands in one, and an expression that
/// begins with '-' and would be taken for options is refused with what to do (CommandError, WrongUsage).
bool parseExpressionArguments(QCommandLineParser &parser, const QStringList &arguments);

/// Whether @p value counts as true: it is there, and not equal to 0.
bool isTrue(std::optional<double> value);
/// Whether @p value counts as false: it is there, and equal to 0.
bool isFalse(std::optional<double> value);

/// Whether @p value is an integer that cannot have been rounded: one below 2^53 in absolute value.
bool isExactInteger(double value);

/// A value within 1e-12 of an integer becomes that integer: the difference is a rounding error of the computation.
double withoutRoundingError(double value);

#endif
