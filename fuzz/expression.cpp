// Expressions over invariants.

#include "expression.h"

#include "commandline.h"
#include "fuzztarget.h"

#include <QCoreApplication>

#include <cmath>
#include <optional>
#include <vector>

namespace
{
void evaluate(const QString &text)
{
    Expression expression(text);
    using Value = std::optional<double>;
    for (const Value &each : {Value(0), Value(1), Value(-2), Value(62), Value(1e-9), Value(2.5), Value(1e300)}) {
        const std::vector<Value> values(expression.operands().size(), each);
        const Value first = expression.valueOf(values);
        require(!first || std::isfinite(*first), "a value is finite");
        require(expression.valueOf(values) == first, "a value depends on those of the operands only");
        require(int(isTrue(first)) + int(isFalse(first)) + int(!first) == 1, "a value is true, false or undefined");
    }
    std::vector<Value> values(expression.operands().size(), 3);
    if (!values.empty()) {
        values.back().reset();
        require(!expression.valueOf(values), "an undefined operand makes the value undefined");
    }
}
} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        evaluate(QString::fromUtf8(InputBytes(data, size).restAsBytes()));
    } catch (const CommandError &error) {
        require(error.status() == WrongUsage, "a wrong expression is a wrong command line");
        require(error.text().startsWith(QLatin1String("Expression '")) ||
                    error.text().startsWith(QLatin1String("Unknown invariant '")),
                "a message tells what is wrong");
    }
    return 0;
}
