// Expressions over invariants: their values, their operands, and the one-line messages of those that are wrong.

#include "commandline.h"
#include "expression.h"
#include "nearestname.h"
#include "support/literals.h"

#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>

namespace
{
using Value = std::optional<double>;

/// The value for operands with these values, in the order in which the expression names them.
Value valueOf(const char *expression, const std::vector<Value> &operands = {})
{
    return Expression(latin1(expression)).valueOf(operands);
}

QString faultOf(const QString &expression)
{
    try {
        const Expression parsed(expression);
    } catch (const CommandError &error) {
        return error.status() == WrongUsage ? error.text() : QStringLiteral("another status");
    }
    return {};
}

QByteArray asText(Value value)
{
    return value ? QByteArray::number(*value, 'g', 17) : QByteArray("NA");
}

constexpr double notRepresented = 2.9999999999; // what a sum of roots may be when it should be 3
} // namespace

class TestExpression : public QObject
{
    Q_OBJECT

private slots:
    void constants_data()
    {
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *expression, const char *expected) {
            QTest::newRow(expression) << QByteArray(expected);
        };
        row("2", "2");
        row("0.25", "0.25");
        row(".25", "0.25");
        row("25.", "25");
        row("25e-2", "0.25");
        row("2.5E+1", "25");
        row("1+2*3", "7");
        row("(1+2)*3", "9");
        row(" 7 - 2\t- 1\n", "4");
        row("7/2", "3.5");
        row("8/2/2", "2");
        row("2^3^2", "512");
        row("-2^2", "-4");
        row("(-2)^2", "4");
        row("2^-1", "0.5");
        row("2*-3", "-6");
        row("+3-+1", "2");
        row("3--1", "4");
        row("-2+5", "3");
        row("--2", "2");
        row("- -1", "1");
        row("-+1", "-1");
        row("+ - + - 3", "3");
        row("- - -2^2", "-4");
        row("5 - - 2", "7");
        row("5 - - - 2", "3");
        row("2^- -1", "2");
        row("-(-(2))", "2");

        row("2 < 3", "1");
        row("3 < 2", "0");
        row("2 < 2", "0");
        row("2 <= 2", "1");
        row("3 <= 2", "0");
        row("3 > 2", "1");
        row("2 > 2", "0");
        row("2 >= 2", "1");
        row("2 >= 3", "0");
        row("2 == 2", "1");
        row("2 != 2", "0");
        row("2 != 3", "1");
        row("1 + 1 == 2", "1");

        row("1 and 2", "1");
        row("1 and 0", "0");
        row("0 or 2", "1");
        row("0 or 0", "0");
        row("not 0", "1");
        row("not 5", "0");
        row("not 1 == 2", "1");
        row("not 1 and 0", "0");
        row("not not 5", "1");
        row("not not 0", "0");
        row("not not not 5", "0");
        row("not not not not 5", "1");
        row("not not 1 == 2", "0");
        row("not -1", "0");
        row("not - 0", "1");
        row("not +0", "1");
        row("not - -1", "0");
        row("not -2*3 == -6", "0");
        row("not -2 + 2", "1");
        row("not not -1 and 1", "1");
        row("not -2^2 == -4", "0");
        row("not (1 and 0)", "1");
        row("1 or 1 and 0", "1");
        row("(1 or 1) and 0", "0");
        row("not(0)and not(0)", "1");
        row("1 < 2 and 2 < 3", "1");
        row("(1 < 2) == (3 < 4)", "1");
        row("(3 > 2) + (2 > 1)", "2");

        row("sqrt(16)", "4");
        row("log(exp(2))", "2");
        row("exp(0)", "1");
        row("abs(-3)", "3");
        row("floor(2.5)", "2");
        row("ceil(2.5)", "3");
        row("floor(-2.5)", "-3");
        row("ceil(-2.5)", "-2");
        row("min(3, 1, 2)", "1");
        row("max(3, 1, 4, 2)", "4");
        row("min(3)", "3");
        row("if(1 < 2, 5, 6)", "5");
        row("if(1 > 2, 5, 6)", "6");
        row("min(if(0, 1, 2), sqrt(9)) + 1", "3");
    }

    void constants()
    {
        QFETCH(QByteArray, expected);
        QCOMPARE(asText(valueOf(QTest::currentDataTag())), expected);
    }

    /// Within the tolerance of the lists, or 1e-12 of the larger.
    void comparisons_data()
    {
        QTest::addColumn<double>("a");
        QTest::addColumn<double>("b");
        QTest::addColumn<QString>("relation");
        QTest::newRow("integers") << 3.0 << 4.0 << "<";
        QTest::newRow("equal integers") << 4.0 << 4.0 << "=";
        QTest::newRow("a rounded integer") << notRepresented << 3.0 << "=";
        QTest::newRow("within 1e-8") << 1.5 << 1.500000005 << "=";
        QTest::newRow("not within 1e-8") << 1.5 << 1.50000002 << "<";
        QTest::newRow("large reals") << 1e12 + 0.25 << 1e12 + 0.5 << "=";
        QTest::newRow("other large reals") << 1e12 + 0.25 << 1e12 + 2.5 << "<";
        QTest::newRow("large negative reals") << -1e12 - 0.5 << -1e12 - 0.25 << "=";
        QTest::newRow("reals") << 1.25 << 1.5 << "<";
        QTest::newRow("a small real and 0") << 0.5e-8 << 0.0 << "=";
    }

    void comparisons()
    {
        QFETCH(double, a);
        QFETCH(double, b);
        QFETCH(QString, relation);
        const bool equal = relation == QLatin1String("=");
        const auto holds = [&](const char *comparison) {
            const Value there = valueOf(comparison, {a, b});
            const QByteArray turned = QByteArray(comparison).replace('<', '~').replace('>', '<').replace('~', '>');
            [&] { QCOMPARE(valueOf(turned.constData(), {b, a}), there); }();
            return *there;
        };
        QCOMPARE(holds("energy == randic_index"), double(equal));
        QCOMPARE(holds("energy != randic_index"), double(!equal));
        QCOMPARE(holds("energy < randic_index"), double(!equal));
        QCOMPARE(holds("energy > randic_index"), 0.0);
        QCOMPARE(holds("energy <= randic_index"), 1.0);
        QCOMPARE(holds("energy >= randic_index"), double(equal));
    }

    /// Exactly where both sides are made of integers, and as far as a double holds every one.
    void integers_data()
    {
        QTest::addColumn<double>("a");
        QTest::addColumn<double>("b");
        QTest::addColumn<bool>("areEqual");
        const auto row = [](const char *expression, double a, double b, bool areEqual) {
            QTest::addRow("%s: %.0f, %.0f", expression, a, b) << a << b << areEqual;
        };
        const double far = 4503599627370496; // 2^52: from here on a double has no fraction
        const double end = 9007199254740992; // 2^53: from here on it does not hold every integer
        const char *const integers = "spanning_trees == cycles";
        row(integers, 3, 4, false);
        row(integers, 1e12, 1e12 + 1, false);
        row(integers, far - 1, far, false);
        row(integers, far, far, true);
        row(integers, far, far + 1, false);
        row(integers, end - 2, end - 1, false);
        row(integers, 1 - end, 2 - end, false);
        row(integers, end - 1, end, true);
        row(integers, end, end + 2, true);
        row(integers, end, end + 20000, false);
        const char *const reals = "estrada_index == randic_index";
        row(reals, 1e11, 1e11 + 1, false);
        row(reals, far - 1, far, true);
        row(reals, far, far + 1, true);
        row(reals, far, far + 10000, false);
        row("estrada_index == cycles", far, far + 1, true);
        row("cycles == estrada_index", far, far + 1, true);
        for (const char *expression :
             {"cycles + 1 == order - -1", "max(cycles, 1)*1 == abs(order)^1", "(cycles) == if(order > 0, order, 0)",
              "floor(cycles) == ceil(order)", "not not (cycles == order)", "1 == 0 or cycles == order",
              "0*energy == 0 and cycles == order", "cycles == order and 0/1 == 0", "if(cycles == order, 1, 0*sqrt(1))",
              "max(cycles == order, 0.5 == 1)"}) {
            row(expression, far, far + 1, false);
        }
        for (const char *expression : {"cycles/1 == order", "cycles == order/1", "cycles == order + 0.0",
                                       "cycles == order*1e0", "cycles == order + 0*sqrt(1)", "cycles == order + log(1)",
                                       "cycles == order*exp(0)", "cycles == (order + (0*energy))",
                                       "cycles == if(1/1 > 0, order, 0)", "cycles == max(order, 0*energy, 1)"}) {
            row(expression, far, far + 1, true);
        }
    }

    void integers()
    {
        QFETCH(double, a);
        QFETCH(double, b);
        QFETCH(bool, areEqual);
        const QByteArray equality = QByteArray(QTest::currentDataTag()).split(':').first();
        Expression expression(QString::fromLatin1(equality));
        // The first invariant that is compared has the value a, the second b; the energy beside them is 0.
        std::vector<Value> values;
        bool isFirst = true;
        for (const Invariant *invariant : expression.operands()) {
            const bool isBeside = qstrcmp(invariant->name, "energy") == 0;
            values.emplace_back(isBeside ? 0.0 : isFirst ? a : b);
            isFirst = isFirst && isBeside;
        }
        QCOMPARE(expression.valueOf(values), Value(areEqual));
    }

    /// Each of the comparisons, at 2^52 with integers and with others.
    void comparisonsOfIntegers()
    {
        const double far = 4503599627370496;
        const auto values = [&](const char *comparison) {
            const QString formula = QStringLiteral("cycles %1 order").arg(latin1(comparison));
            const QString rounded = QStringLiteral("cycles %1 energy").arg(latin1(comparison));
            QStringList found;
            for (const double b : {far - 1, far, far + 1}) {
                found << QString::number(*Expression(formula).valueOf({far, b}))
                      << QString::number(*Expression(rounded).valueOf({far, b}));
            }
            return found.join(QLatin1Char(' '));
        };
        QCOMPARE(values("=="), latin1("0 1 1 1 0 1"));
        QCOMPARE(values("!="), latin1("1 0 0 0 1 0"));
        QCOMPARE(values("<="), latin1("0 1 1 1 1 1"));
        QCOMPARE(values(">="), latin1("1 1 1 1 0 1"));
        QCOMPARE(values("<"), latin1("0 0 0 0 1 0"));
        QCOMPARE(values(">"), latin1("1 0 0 0 0 0"));
    }

    void whatIsEqualToAnIntegerHasItAsFloorAndCeiling()
    {
        QCOMPARE(valueOf("floor(energy)", {notRepresented}), Value(3));
        QCOMPARE(valueOf("ceil(energy)", {notRepresented}), Value(3));
        QCOMPARE(valueOf("ceil(energy)", {3.0000000001}), Value(3));
        QCOMPARE(valueOf("floor(energy)", {2.9999999}), Value(2));
        QCOMPARE(valueOf("ceil(energy)", {3.0000001}), Value(4));
    }

    void truth()
    {
        QVERIFY(isTrue(1.0) && isTrue(-0.5) && isTrue(1e-7));
        QVERIFY(!isTrue(0.0) && !isTrue(1e-9) && !isTrue(std::nullopt));
        QVERIFY(isFalse(0.0) && isFalse(-1e-9));
        QVERIFY(!isFalse(2.0) && !isFalse(std::nullopt));
        QCOMPARE(valueOf("not energy", {1e-9}), Value(1));
        QCOMPARE(valueOf("energy and 1", {1e-9}), Value(0));
        QCOMPARE(valueOf("energy or 0", {1e-9}), Value(0));
        QCOMPARE(valueOf("if(energy, 2, 3)", {1e-9}), Value(3));
    }

    /// The algebraic connectivity of a disconnected graph may be computed as 1e-16.
    void aRoundingErrorOfAnInvariantIsTakenOff()
    {
        QCOMPARE(valueOf("1 / algebraic_connectivity", {1e-16}), Value());
        QCOMPARE(valueOf("sqrt(algebraic_connectivity)", {-1e-16}), Value(0));
        QCOMPARE(valueOf("energy", {3 + 1e-11}), Value(3 + 1e-11));
        QCOMPARE(withoutRoundingError(2.0 - 1e-13), 2.0);
        QCOMPARE(withoutRoundingError(0.5), 0.5);
    }

    void anUndefinedInvariantMakesTheValueUndefined_data()
    {
        QTest::addColumn<QByteArray>("expression");
        for (const char *expression :
             {"girth", "girth + 1", "girth == 1", "girth != 1", "not girth", "girth and 0", "girth or 1", "0 * girth",
              "girth ^ 0", "1 ^ girth", "min(girth, 1)", "max(1, girth)", "if(1, 2, girth)", "if(0, girth, 2)",
              "if(girth, 1, 1)", "floor(girth)", "-girth", "(girth < 0) == (girth > 0)"}) {
            QTest::newRow(expression) << QByteArray(expression);
        }
    }

    void anUndefinedInvariantMakesTheValueUndefined()
    {
        QFETCH(QByteArray, expression);
        QCOMPARE(valueOf(expression.constData(), {Value()}), Value());
        QVERIFY(valueOf(expression.constData(), {Value(3)}));
    }

    void anOperationWithoutAFiniteResultMakesTheValueUndefined_data()
    {
        QTest::addColumn<bool>("defined");
        for (const char *expression :
             {"not not (1/0)",  "1/0",       "0/0",           "log(0)",     "log(-1)",      "sqrt(-1)",
              "exp(1000)",      "10^400",    "(-8)^0.5",      "0^-1",       "1e308*10",     "1e308 + 1e308",
              "-1e308 - 1e308", "not (1/0)", "1/0 == 1/0",    "1/0 != 1",   "1/0 < 1",      "1/0 and 0",
              "0 and 1/0",      "1/0 or 1",  "1 or 1/0",      "(1/0)^0",    "1^(1/0)",      "min(1/0, 1)",
              "max(1, 1/0)",    "abs(1/0)",  "if(1/0, 1, 2)", "floor(1/0)", "exp(1000) > 5"}) {
            QTest::newRow(expression) << false;
        }
        for (const char *expression : {"if(1, 2, 1/0)", "if(0, 1/0, 2)", "0^0", "exp(-1000)"}) {
            QTest::newRow(expression) << true;
        }
    }

    void anOperationWithoutAFiniteResultMakesTheValueUndefined()
    {
        QFETCH(bool, defined);
        QCOMPARE(valueOf(QTest::currentDataTag()).has_value(), defined);
    }

    void operandsAreNamedOnce()
    {
        Expression expression(latin1("average_distance + order*average_distance - matching_number"));
        QStringList names;
        for (const Invariant *invariant : expression.operands()) {
            names.append(latin1(invariant->name));
        }
        QCOMPARE(names, words({"average-distance", "order", "matching-number"}));
        QCOMPARE(expression.valueOf({2.0, 10.0, 3.0}), Value(19));
        QCOMPARE(expression.valueOf({1.0, 4.0, 0.0}), Value(5)); // not the values of the last time
        QCOMPARE(expression.text(), latin1("average_distance + order*average_distance - matching_number"));
    }

    /// Each invariant can be named, alone as it is and in an expression with underscores.
    void everyInvariant()
    {
        for (const Invariant &invariant : invariants()) {
            const QString name = latin1(invariant.name);
            QCOMPARE(Expression(name).operands(), std::vector<const Invariant *>{&invariant});
            QCOMPARE(Expression(QLatin1Char(' ') + name + QLatin1Char('\n')).operands().size(), size_t(1));
            Expression doubled(QStringLiteral("2*") + QString(name).replace(QLatin1Char('-'), QLatin1Char('_')));
            QCOMPARE(doubled.operands(), std::vector<const Invariant *>{&invariant});
            QCOMPARE(doubled.valueOf({4.5}), Value(9));
        }
    }

    void aHyphenBetweenNamesIsAMinus() { QCOMPARE(valueOf("order-size", {7.0, 4.0}), Value(3)); }

    void unknownNames_data()
    {
        QTest::addColumn<QString>("message");
        const auto row = [](const char *expression, const char *name, const char *nearest) {
            QTest::newRow(expression) << QStringLiteral("Unknown invariant '%1' (did you mean '%2'?); "
                                                        "'tav invariant --list' names them.")
                                             .arg(latin1(name), latin1(nearest));
        };
        row("grith", "grith", "girth");
        row("2*diamter + 1", "diamter", "diameter");
        row("avg_degree > 2", "avg_degree", "average_degree");
        row("avg-degree", "avg-degree", "average-degree");
        row("average-distance + 1", "average-distance", "average_distance");
        row("1 + average-distance", "average-distance", "average_distance");
        row("1 + average-order", "average", "average_degree");
        row("Order", "Order", "order");
        row("andorder", "andorder", "order");
        row("notorder", "notorder", "order");
    }

    void unknownNames()
    {
        QFETCH(QString, message);
        QCOMPARE(faultOf(latin1(QTest::currentDataTag())), message);
    }

    void namesOfFiles()
    {
        for (const char *name : {"p.tav", "order.g6", "some/where/x-1.s6", "girth.txt", "table.tsv", "./3.tav"}) {
            QCOMPARE(faultOf(latin1(name)),
                     QStringLiteral("Expression '%1': the name of a file, where an expression is expected")
                         .arg(latin1(name)));
        }
        QCOMPARE(faultOf(latin1("order.size")), latin1("Expression 'order.size', column 6: unexpected '.'"));
    }

    void nearestNames()
    {
        QCOMPARE(nearestName(latin1("abc"), {}), QString());
        QCOMPARE(nearestName(latin1("abc"), words({"abd", "bac", "abcde"})), latin1("abd"));
        QCOMPARE(nearestName(latin1("chromatic"), words({"chordal", "chromatic-number"})), latin1("chromatic-number"));
        QCOMPARE(nearestName(latin1("grith"), words({"grit", "girth", "wrath"})), latin1("grit"));
        QCOMPARE(nearestName(latin1("ab"), words({"xy", "ba", "bb"})), latin1("ba"));
        QCOMPARE(nearestName(latin1("radiuss"), words({"radial", "radius"})), latin1("radius"));
    }

    void mistakes_data()
    {
        QTest::addColumn<QString>("fault");
        const auto row = [](const char *expression, const char *fault) { QTest::newRow(expression) << latin1(fault); };
        row("", "column 1: there is nothing");
        row("  ", "column 1: there is nothing");
        row("1 +", "column 4: something is missing at the end");
        row("not", "column 4: something is missing at the end");
        row("2 * sqrt(  ", "column 10: something is missing at the end");
        row("not or 2", "column 5: unexpected 'or'");
        row("(not)", "column 5: unexpected ')'");
        row("2 * (- )", "column 8: unexpected ')'");
        row("(1 + 2", "column 7: ')' is missing");
        row("1 + 2)", "column 6: unexpected ')'");
        row("()", "column 2: unexpected ')'");
        row("1 2", "column 3: unexpected '2'");
        row("order size", "column 7: unexpected 'size'");
        row("order (2)", "column 7: unexpected '('");
        row("2 sqrt(4)", "column 3: unexpected 'sqrt'");
        row("* 2", "column 1: unexpected '*'");
        row("2 ** 3", "column 4: unexpected '*'");
        row("2 and or 3", "column 7: unexpected 'or'");
        row("2 not 3", "column 3: unexpected 'not'");
        row("order = 3", "column 7: write '=='");
        row("!tree", "column 1: write 'not'");
        row("1 && 2", "column 3: write 'and'");
        row("1 || 2", "column 3: write 'or'");
        row("1 ? 2 : 3", "column 3: unexpected '?'");
        row("1; 2", "column 2: unexpected ';'");
        row("\"text\"", "column 1: unexpected '\"'");
        row("1 + 'text'", "column 5: unexpected '''");
        row("1, 2", "column 2: unexpected ','");
        row("(1, 2)", "column 3: unexpected ','");
        row("sqrt", "column 5: something is missing at the end");
        row("sqrt + 1", "column 1: write 'sqrt(...)'");
        row("2 * sqrt order", "column 5: write 'sqrt(...)'");
        row("if 1", "column 1: write 'if(...)'");
        row("- not 1", "column 3: unexpected 'not'");
        row("1 And 2", "column 3: write 'and'");
        row("1 OR 2", "column 3: write 'or'");
        row("Not 1", "column 1: write 'not'");
        row("1 + SQRT(2)", "column 5: write 'sqrt'");
        row("sqrt()", "column 6: too few arguments of a function");
        row("sqrt(1, 2)", "column 10: too many arguments of a function");
        row("if(1, 2)", "column 8: too few arguments of a function");
        row("if(1, 2, 3, 4)", "column 14: too many arguments of a function");
        row("min()", "column 6: too few arguments of a function");
        row("min(1,)", "column 7: unexpected ')'");
        row("sin(1)", "column 1: unknown function 'sin'; there are sqrt, log, exp, abs, floor, ceil, min, max, if");
        row("1 + foo (1)",
            "column 5: unknown function 'foo'; there are sqrt, log, exp, abs, floor, ceil, min, max, if");
        row("1 < 2 < 3", "column 7: comparisons are joined by 'and', as in 'a < b and b < c'");
        row("1 == 2 != 3", "column 8: comparisons are joined by 'and', as in 'a < b and b < c'");
        row("1e999", "column 1: not a number: '1e999'");
        row("2order", "column 1: not a number: '2o'");
        row("1.2.3", "column 1: not a number: '1.2.'");
        row("0x10", "column 1: not a number: '0x'");
        row("1e", "column 1: not a number: '1e'");
    }

    void mistakes()
    {
        QFETCH(QString, fault);
        const QString expression = latin1(QTest::currentDataTag());
        QCOMPARE(faultOf(expression), QStringLiteral("Expression '%1', %2").arg(expression, fault));
    }

    void otherCharacters()
    {
        QCOMPARE(faultOf(text("1 \u2264 2")), text("Expression '1 \u2264 2', column 3: unexpected '\u2264'"));
        QCOMPARE(faultOf(text("1 + \U0001F600")),
                 text("Expression '1 + \U0001F600', column 5: unexpected '\U0001F600'"));
        const QString zero = QChar(0);
        QCOMPARE(faultOf(zero), QStringLiteral("Expression '%1', column 1: unexpected '%1'").arg(zero));
        QVERIFY(!faultOf(text("1\u00A0+ 2")).isEmpty());
    }

    void longExpressions()
    {
        const QString longest = latin1("1") + QString(latin1("+1")).repeated(1999) + QLatin1Char(' ');
        QCOMPARE(longest.size(), 4000);
        QCOMPARE(Expression(longest).valueOf({}), Value(2000));
        const auto tooLong = [](const QString &expression) {
            return faultOf(expression) ==
                   QStringLiteral("Expression '%1...': more than 4000 characters").arg(expression.left(60));
        };
        QVERIFY(tooLong(longest + QLatin1Char(' ')));
        QVERIFY(tooLong(QString(1 << 20, QLatin1Char('('))));
        QVERIFY(tooLong(QString(latin1("1+")).repeated(1 << 19)));
    }

    void deepNesting()
    {
        const auto nested = [](const char *begin, int depth, const char *end) {
            return QString(latin1(begin)).repeated(depth) + QLatin1Char('1') + QString(latin1(end)).repeated(depth);
        };
        QCOMPARE(Expression(nested("(", 1999, ")")).valueOf({}), Value(1));
        QCOMPARE(Expression(nested("-(", 1300, ")")).valueOf({}), Value(1));
        QCOMPARE(Expression(nested("abs(", 799, ")")).valueOf({}), Value(1));
        QCOMPARE(Expression(nested("if(1,", 499, ",2)")).valueOf({}), Value(1));
        QCOMPARE(Expression(nested("2^", 1, "")).valueOf({}), Value(2));
        QCOMPARE(Expression(nested("1^(", 900, ")")).valueOf({}), Value(1));
        QVERIFY(faultOf(nested("(", 1999, "")).contains(latin1("')' is missing")));
    }
};

QTEST_APPLESS_MAIN(TestExpression)
#include "tst_expression.moc"
