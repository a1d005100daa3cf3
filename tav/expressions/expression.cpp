#include "expression.h"

#include "commandline.h"
#include "nearestname.h"
#include "tolerance.h"

#include <QCommandLineParser>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <muParser.h>
#include <string>
#include <string_view>
#include <utility>

namespace
{
/// muParser reads no longer ones.
constexpr int longestExpression = 4000; // characters

constexpr int none = -1;

// Operations on numbers; NaN is an undefined one. muParser works with NaN as the processor does, where a comparison
// with it is false: so all operations are defined here.

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

double finite(double value)
{
    return std::isfinite(value) ? value : undefined;
}

bool areClose(double a, double b)
{
    constexpr double relativeTolerance = 1e-12;
    return std::abs(a - b) <= std::max(TOLERANCE, relativeTolerance * std::max(std::abs(a), std::abs(b)));
}

/// For the results of integers alone.
bool areEqual(double a, double b)
{
    return isExactInteger(a) && isExactInteger(b) ? a == b : areClose(a, b);
}

bool holds(double value)
{
    return !areClose(value, 0.0);
}

/// The truth of @p statement on two numbers, undefined when one of them is.
template<bool (*statement)(double, double)> double truth(double a, double b)
{
    return std::isnan(a) || std::isnan(b) ? undefined : double(statement(a, b));
}

// The other comparisons follow from what counts as equal.

template<bool (*equal)(double, double)> bool differ(double a, double b)
{
    return !equal(a, b);
}

template<bool (*equal)(double, double)> bool isLess(double a, double b)
{
    return a < b && !equal(a, b);
}

template<bool (*equal)(double, double)> bool isGreater(double a, double b)
{
    return isLess<equal>(b, a);
}

template<bool (*equal)(double, double)> bool isAtMost(double a, double b)
{
    return !isLess<equal>(b, a);
}

template<bool (*equal)(double, double)> bool isAtLeast(double a, double b)
{
    return !isLess<equal>(a, b);
}

bool bothHold(double a, double b)
{
    return holds(a) && holds(b);
}

bool eitherHolds(double a, double b)
{
    return holds(a) || holds(b);
}

double negation(double a)
{
    return std::isnan(a) ? undefined : double(!holds(a));
}

double sum(double a, double b)
{
    return finite(a + b);
}

double difference(double a, double b)
{
    return finite(a - b);
}

double product(double a, double b)
{
    return finite(a * b);
}

double quotient(double a, double b)
{
    return finite(a / b);
}

/// std::pow() is 1 for the base 1 and for the exponent 0 even when the other number is undefined.
double power(double a, double b)
{
    return std::isnan(a) || std::isnan(b) ? undefined : finite(std::pow(a, b));
}

/// What "not not" is.
double truthOf(double a)
{
    return std::isnan(a) ? undefined : double(holds(a));
}

double same(double a)
{
    return a;
}

double opposite(double a)
{
    return -a;
}

double squareRoot(double a)
{
    return finite(std::sqrt(a));
}

double naturalLogarithm(double a)
{
    return finite(std::log(a));
}

double exponential(double a)
{
    return finite(std::exp(a));
}

double absolute(double a)
{
    return std::abs(a);
}

/// A number that is equal to an integer has that integer as its floor and ceiling: 2.9999999999 is a computed 3.
template<double (*round)(double)> double rounded(double a)
{
    const double nearest = std::nearbyint(a);
    return areClose(a, nearest) ? nearest : round(a);
}

/// The first of @p count numbers that @p precedes all others, undefined when one of them is.
template<bool (*precedes)(double, double)> double extreme(const double *numbers, int count)
{
    if (std::any_of(numbers, numbers + count, [](double number) { return std::isnan(number); })) {
        return undefined;
    }
    return *std::min_element(numbers, numbers + count, precedes);
}

bool isBelow(double a, double b)
{
    return a < b;
}

bool isAbove(double a, double b)
{
    return a > b;
}

double choice(double condition, double a, double b)
{
    if (std::isnan(condition)) {
        return undefined;
    }
    return holds(condition) ? a : b;
}

const QStringList functions = {
    QStringLiteral("sqrt"), QStringLiteral("log"),   QStringLiteral("exp"),
    QStringLiteral("abs"),  QStringLiteral("floor"), QStringLiteral("ceil"),
    QStringLiteral("min"),  QStringLiteral("max"),   QStringLiteral("if"),
};

bool isSign(char symbol)
{
    return symbol == '+' || symbol == '-';
}

/// The prefix that does what @p first and @p second do one after the other: both signs, or both "not".
char combined(char first, char second)
{
    if (isSign(first)) {
        return first == second ? '+' : '-';
    }
    return first == '!' ? '~' : '!';
}

/// How the first character of a comparison is written where both sides are made of integers.
char exactComparison(char first)
{
    switch (first) {
    case '<':
        return '{';
    case '>':
        return '}';
    case '=':
        return '#';
    default: // '!'
        return '$';
    }
}

/// Defines the comparisons that follow from what counts as equal, under the symbols for ==, !=, <=, >=, < and >.
template<bool (*equal)(double, double)>
void defineComparisons(mu::Parser &parser, const std::array<const char *, 6> &symbols, int precedence)
{
    const std::array<mu::fun_type2, 6> operations{truth<equal>,           truth<differ<equal>>,
                                                  truth<isAtMost<equal>>, truth<isAtLeast<equal>>,
                                                  truth<isLess<equal>>,   truth<isGreater<equal>>};
    for (size_t i = 0; i < symbols.size(); ++i) {
        parser.DefineOprt(symbols[i], operations[i], precedence, mu::oaLEFT, true);
    }
}

/// Gives @p parser all operations and none of its own. The words are symbols to it, and some symbols are others: see
/// Reader.
void defineOperations(mu::Parser &parser)
{
    parser.EnableBuiltInOprt(false);
    parser.ClearFun();
    parser.ClearConst();
    parser.ClearInfixOprt();

    const bool canFold = true; // constant parts are computed once
    enum Precedence : int { Or = 1, And, Not, Comparison, Sum, Product, Sign, Power };
    const auto binary = [&](const char *name, mu::fun_type2 operation, Precedence precedence) {
        parser.DefineOprt(name, operation, precedence, precedence == Power ? mu::oaRIGHT : mu::oaLEFT, canFold);
    };
    binary("||", truth<eitherHolds>, Or);
    binary("&&", truth<bothHold>, And);
    defineComparisons<areClose>(parser, {"==", "!=", "<=", ">=", "<", ">"}, Comparison);
    defineComparisons<areEqual>(parser, {"#=", "$=", "{=", "}=", "{", "}"}, Comparison); // see exactComparison()
    binary("+", sum, Sum);
    binary("-", difference, Sum);
    binary("*", product, Product);
    binary("/", quotient, Product);
    binary("^", power, Power);
    parser.DefineInfixOprt("!", negation, Not);
    parser.DefineInfixOprt("~", truthOf, Not);
    parser.DefineInfixOprt("+", same, Sign);
    parser.DefineInfixOprt("-", opposite, Sign);

    parser.DefineFun("sqrt", squareRoot);
    parser.DefineFun("log", naturalLogarithm);
    parser.DefineFun("exp", exponential);
    parser.DefineFun("abs", absolute);
    parser.DefineFun("floor", rounded<std::floor>);
    parser.DefineFun("ceil", rounded<std::ceil>);
    parser.DefineFun("min", extreme<isBelow>);
    parser.DefineFun("max", extreme<isAbove>);
    parser.DefineFun("if", choice);
}

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isNameStart(QChar character)
{
    return (character >= QLatin1Char('a') && character <= QLatin1Char('z')) ||
           (character >= QLatin1Char('A') && character <= QLatin1Char('Z')) || character == QLatin1Char('_');
}

bool isNamePart(QChar character)
{
    return isNameStart(character) || isDigit(character);
}

QString withUnderscores(QString name)
{
    return name.replace(QLatin1Char('-'), QLatin1Char('_'));
}

QString withHyphens(QString name)
{
    return name.replace(QLatin1Char('_'), QLatin1Char('-'));
}

/// Goes through a text from left to right, finds the names in it and what would mean something else to muParser, and
/// writes it anew for muParser, with every character in its place, so that muParser's positions are those of the text.
class Reader
{
public:
    explicit Reader(QString expression) : text(std::move(expression)), result(size_t(text.size()), ' ') {}

    void read()
    {
        if (text.size() > longestExpression) {
            fail(QStringLiteral("more than %1 characters").arg(longestExpression));
        }
        static const QRegularExpression fileName(QStringLiteral("^\\S+\\.(tav|[gs]6|txt|tsv)$"));
        if (fileName.match(text).hasMatch()) {
            fail(QStringLiteral("the name of a file, where an expression is expected"));
        }
        for (position = 0; position < text.size();) {
            readPart();
        }
        if (parts.empty()) {
            fail(0, QStringLiteral("there is nothing"));
        }
        if (!parts.back().isComplete) {
            fail(parts.back().end, QStringLiteral("something is missing at the end"));
        }
        endStatement();
    }

    const std::string &translation() const { return result; }
    const std::vector<const Invariant *> &operands() const { return found; }

    /// Throws the fault @p fault at the character @p index.
    [[noreturn]] void fail(int index, const QString &fault) const
    {
        throw CommandError(QStringLiteral("Expression %1, column %2: %3").arg(quoted(text)).arg(index + 1).arg(fault),
                           WrongUsage);
    }

    [[noreturn]] void fail(const QString &fault) const
    {
        throw CommandError(QStringLiteral("Expression %1: %2").arg(quoted(text), fault), WrongUsage);
    }

    /// Throws what muParser found wrong.
    [[noreturn]] void fail(const mu::ParserError &error) const
    {
        const int place = std::clamp(int(error.GetPos()), 0, text.size());
        switch (error.GetCode()) {
        case mu::ecMISSING_PARENS:
            fail(place, QStringLiteral("')' is missing"));
        case mu::ecTOO_FEW_PARAMS:
            fail(place, QStringLiteral("too few arguments of a function"));
        case mu::ecTOO_MANY_PARAMS:
            fail(place, QStringLiteral("too many arguments of a function"));
        default:
            const Part &part = partAt(place, error.GetToken());
            fail(part.begin, QStringLiteral("unexpected %1").arg(quoted(textOf(part))));
        }
    }

private:
    /// A name, a word, a number or a symbol.
    struct Part {
        int begin;
        int end;
        bool isComplete; ///< the expression may end behind it
        bool isPrefix;   ///< a "not" or a sign
    };

    /// What stands between two parentheses. A statement ends at "and", "or" and a comma.
    struct Level {
        bool hasArguments = false;  ///< the parentheses are those of a function
        int comparison = none;      ///< where the comparison of the current statement is
        bool isOfIntegers = true;   ///< nothing but integers is in the current statement
        bool wereOfIntegers = true; ///< nothing but integers is in those before it
    };

    QString textOf(const Part &part) const { return text.mid(part.begin, part.end - part.begin); }

    /// The part that muParser means. Where it found a sign or a "not", its position is behind that.
    const Part &partAt(int place, const std::string &token) const
    {
        const bool isBehind = !token.empty() && result.compare(place, 1, token, 0, 1) != 0;
        const auto next = std::find_if(parts.begin(), parts.end(), [&](const Part &part) {
            return isBehind ? part.end >= place : part.end > place;
        });
        return next != parts.end() ? *next : parts.back();
    }

    /// Whether @p name stands alone: then it may have hyphens.
    bool isWholeText(const QString &name) const { return text.trimmed() == name; }

    QChar at(int index) const { return index < text.size() ? text[index] : QChar(); }

    void readPart()
    {
        const QChar character = text[position];
        if (character.isSpace() && character.unicode() < 128) {
            ++position;
        } else if (isNameStart(character)) {
            readName();
        } else if (isDigit(character) || (character == QLatin1Char('.') && isDigit(at(position + 1)))) {
            readNumber();
        } else {
            readSymbol();
        }
    }

    void write(std::string_view symbols, int width, bool isComplete)
    {
        result.replace(position, symbols.size(), symbols);
        parts.push_back({position, position + width, isComplete, false});
        position += width;
    }

    void readNumber()
    {
        int end = position;
        const auto skipDigits = [&] {
            while (isDigit(at(end))) {
                ++end;
            }
        };
        skipDigits();
        const int digits = end - position;
        if (at(end) == QLatin1Char('.')) {
            ++end;
            skipDigits();
        }
        const bool isSigned = at(end + 1) == QLatin1Char('+') || at(end + 1) == QLatin1Char('-');
        if (at(end).toLower() == QLatin1Char('e') && isDigit(at(end + (isSigned ? 2 : 1)))) {
            end += isSigned ? 2 : 1;
            skipDigits();
        }
        const QString number = text.mid(position, end - position);
        bool isRepresented = false;
        number.toDouble(&isRepresented);
        if (!isRepresented || isNamePart(at(end)) || at(end) == QLatin1Char('.')) {
            fail(position, QStringLiteral("not a number: %1").arg(quoted(text.mid(position, end + 1 - position))));
        }
        if (number.size() > digits) {
            levels.back().isOfIntegers = false;
        }
        write(number.toStdString(), number.size(), true);
    }

    void readName()
    {
        int end = position;
        while (isNamePart(at(end))) {
            ++end;
        }
        const QString name = text.mid(position, end - position);
        if (name == QLatin1String("and") || name == QLatin1String("or")) {
            endStatement();
            write(name == QLatin1String("and") ? "&&" : "||", name.size(), false);
        } else if (name == QLatin1String("not")) {
            writePrefix('!', name.size());
        } else if (functions.contains(name)) {
            readFunction(name);
        } else {
            expectLowerCase(name);
            readInvariant(name);
        }
    }

    /// "And" is no name of an invariant that somebody mistyped.
    void expectLowerCase(const QString &name) const
    {
        static const QStringList words =
            functions + QStringList{QStringLiteral("and"), QStringLiteral("or"), QStringLiteral("not")};
        const QString lower = name.toLower();
        if (words.contains(lower)) {
            fail(position, QStringLiteral("write '%1'").arg(lower));
        }
    }

    /// muParser takes one prefix at a time: of several the last stands for all, and not -x becomes not 0-x.
    void writePrefix(char prefix, int width)
    {
        if (isBehindPrefix()) {
            char &before = result[size_t(parts.back().begin)];
            if (isSign(prefix) == isSign(before)) {
                prefix = combined(before, prefix);
                before = ' ';
            } else if (isSign(prefix)) {
                result[size_t(parts.back().end) - 1] = '0';
            }
        }
        write(std::string_view(&prefix, 1), width, false);
        parts.back().isPrefix = true;
    }

    bool isBehindPrefix() const { return !parts.empty() && parts.back().isPrefix; }

    void readFunction(const QString &name)
    {
        int next = position + name.size();
        while (at(next).isSpace()) {
            ++next;
        }
        if (next < text.size() && text[next] != QLatin1Char('(')) {
            fail(position, QStringLiteral("write '%1(...)'").arg(name));
        }
        const bool isRoundedAlways =
            name == QLatin1String("sqrt") || name == QLatin1String("log") || name == QLatin1String("exp");
        levels.back().isOfIntegers = levels.back().isOfIntegers && !isRoundedAlways;
        write(name.toStdString(), name.size(), false);
    }

    void readInvariant(const QString &name)
    {
        const QString full = hyphenatedName();
        const Invariant *invariant = isWholeText(full) ? findInvariant(withHyphens(full)) : nullptr;
        const int width = invariant != nullptr ? full.size() : name.size();
        if (invariant == nullptr) {
            invariant = findInvariant(withHyphens(name));
        }
        if (invariant == nullptr) {
            failAt(name);
        }
        levels.back().isOfIntegers = levels.back().isOfIntegers && invariant->kind == ValueKind::Integer;
        if (std::find(found.begin(), found.end(), invariant) == found.end()) {
            found.push_back(invariant);
        }
        write(withUnderscores(QLatin1String(invariant->name)).toStdString(), width, true);
    }

    /// The letters, digits, underscores and hyphens from here on.
    QString hyphenatedName() const
    {
        int end = position;
        while (isNamePart(at(end)) || (at(end) == QLatin1Char('-') && isNamePart(at(end + 1)))) {
            ++end;
        }
        return text.mid(position, end - position);
    }

    [[noreturn]] void failAt(const QString &name) const
    {
        int next = position + name.size();
        while (at(next).isSpace()) {
            ++next;
        }
        if (at(next) == QLatin1Char('(')) {
            fail(position, QStringLiteral("unknown function %1; there are %2")
                               .arg(quoted(name), functions.join(QStringLiteral(", "))));
        }
        QStringList names;
        for (const Invariant &invariant : invariants()) {
            names.append(QLatin1String(invariant.name));
        }
        // In 'average-distance + 1' the name with the hyphen is what is wrong.
        const QString full = hyphenatedName();
        const bool isHyphenated = full != name && (isWholeText(full) || names.contains(full));
        const QString wrong = isHyphenated ? full : name;
        const QString nearest = nearestName(withHyphens(wrong), names);
        throw CommandError(
            QStringLiteral("Unknown invariant %1 (did you mean '%2'?); 'tav invariant --list' names them.")
                .arg(quoted(wrong), isWholeText(wrong) ? nearest : withUnderscores(nearest)),
            WrongUsage);
    }

    void readSymbol()
    {
        static const QStringList symbols = {
            QStringLiteral("=="), QStringLiteral("!="), QStringLiteral("<="), QStringLiteral(">="), QStringLiteral("<"),
            QStringLiteral(">"),  QStringLiteral("+"),  QStringLiteral("-"),  QStringLiteral("*"),  QStringLiteral("/"),
            QStringLiteral("^"),  QStringLiteral("("),  QStringLiteral(")"),  QStringLiteral(","),
        };
        const auto symbol = std::find_if(symbols.begin(), symbols.end(), [this](const QString &one) {
            return text.midRef(position, one.size()) == one;
        });
        if (symbol == symbols.end()) {
            failAtSymbol();
        }
        followStructure(*symbol);
        const bool isPrefix = isSign(symbol->front().toLatin1()) && (parts.empty() || !parts.back().isComplete);
        if (isPrefix) {
            writePrefix(symbol->front().toLatin1(), symbol->size());
        } else {
            write(symbol->toStdString(), symbol->size(), *symbol == QLatin1String(")"));
        }
    }

    [[noreturn]] void failAtSymbol() const
    {
        constexpr std::array advice = {std::pair('=', "=="), std::pair('!', "not"), std::pair('&', "and"),
                                       std::pair('|', "or")};
        for (const auto &[symbol, word] : advice) {
            if (text[position] == QLatin1Char(symbol)) {
                fail(position, QStringLiteral("write '%1'").arg(QLatin1String(word)));
            }
        }
        const int width = text[position].isHighSurrogate() ? 2 : 1;
        fail(position, QStringLiteral("unexpected %1").arg(quoted(text.mid(position, width))));
    }

    /// Keeps account of parentheses and comparisons, and refuses what muParser would take: 1 < x < 3, which is always
    /// true when read as (1 < x) < 3, and several expressions in a row.
    void followStructure(const QString &symbol)
    {
        if (symbol == QLatin1String("(")) {
            levels.emplace_back();
            levels.back().hasArguments = isBehindFunction();
        } else if (symbol == QLatin1String(")")) {
            closeParenthesis();
        } else if (symbol == QLatin1String(",")) {
            if (!levels.back().hasArguments) {
                fail(position, QStringLiteral("unexpected ','"));
            }
            endStatement();
        } else if (symbol == QLatin1String("/")) {
            levels.back().isOfIntegers = false;
        } else if (symbol.contains(QLatin1Char('<')) || symbol.contains(QLatin1Char('>')) ||
                   symbol.contains(QLatin1Char('='))) {
            if (levels.back().comparison != none) {
                fail(position, QStringLiteral("comparisons are joined by 'and', as in 'a < b and b < c'"));
            }
            levels.back().comparison = position;
        }
    }

    void closeParenthesis()
    {
        if (levels.size() == 1) {
            fail(position, QStringLiteral("unexpected ')'"));
        }
        endStatement();
        const bool wereOfIntegers = levels.back().wereOfIntegers;
        levels.pop_back();
        levels.back().isOfIntegers = levels.back().isOfIntegers && wereOfIntegers;
    }

    /// A comparison is exact when nothing but integers stands in its statement.
    void endStatement()
    {
        Level &level = levels.back();
        if (level.comparison != none && level.isOfIntegers) {
            char &first = result[size_t(level.comparison)];
            first = exactComparison(first);
        }
        level.wereOfIntegers = level.wereOfIntegers && level.isOfIntegers;
        level.isOfIntegers = true;
        level.comparison = none;
    }

    bool isBehindFunction() const { return !parts.empty() && functions.contains(textOf(parts.back())); }

    const QString text;
    std::string result;
    std::vector<Part> parts;
    std::vector<const Invariant *> found;
    std::vector<Level> levels = std::vector<Level>(1); // the first is outside of all parentheses
    int position = 0;
};

/// For the help of the commands that take expressions: what stands in one.
const QString expressionHelp =
    QStringLiteral("\nExpressions:\n"
                   "  invariants, with underscores for hyphens   average_distance; --list of 'tav\n"
                   "                                             invariant' names them\n"
                   "  arithmetic                                 + - * / ^ ( )\n"
                   "  comparisons, 1 or 0                        == != < <= > >=\n"
                   "  conditions                                 and or not if(condition, a, b)\n"
                   "  functions                                  sqrt log exp abs floor ceil min max\n"
                   "An invariant that is NA makes the expression NA. One that begins with '-' stands\n"
                   "behind '--', and options before that.\n");

/// Whether @p argument, which begins with '-', goes on like an expression and not like an option.
bool isExpressionWithSign(const QString &argument)
{
    static const QRegularExpression sign(QStringLiteral("^-(?!-)[-+\\s]*(?:[0-9.(]|([A-Za-z_][A-Za-z0-9_]*))"));
    const QRegularExpressionMatch match = sign.match(argument);
    const QString name = match.captured(1);
    return match.hasMatch() &&
           (name.isEmpty() || functions.contains(name) || findInvariant(withHyphens(name)) != nullptr);
}

} // namespace

/// muParser and the memory that its variables stand for.
class Expression::Formula
{
public:
    explicit Formula(QString expression) : text(std::move(expression))
    {
        Reader reader(text);
        reader.read();
        operands = reader.operands();
        values.resize(operands.size());
        try {
            defineOperations(parser);
            for (size_t i = 0; i < operands.size(); ++i) {
                parser.DefineVar(withUnderscores(QLatin1String(operands[i]->name)).toStdString(), &values[i]);
            }
            parser.SetExpr(reader.translation());
            parser.Eval(); // parses it
        } catch (const mu::ParserError &error) {
            reader.fail(error);
        }
    }

    QString text;
    std::vector<const Invariant *> operands;
    std::vector<double> values;
    mu::Parser parser;
};

Expression::Expression(const QString &text) : formula(std::make_unique<Formula>(text)) {}

Expression::~Expression() = default;
Expression::Expression(Expression &&) noexcept = default;
Expression &Expression::operator=(Expression &&) noexcept = default;

const QString &Expression::text() const
{
    return formula->text;
}

const std::vector<const Invariant *> &Expression::operands() const
{
    return formula->operands;
}

std::optional<double> Expression::valueOf(const std::vector<std::optional<double>> &values)
{
    for (size_t i = 0; i < values.size(); ++i) {
        if (!values[i]) {
            return std::nullopt;
        }
        formula->values[i] = withoutRoundingError(*values[i]);
    }
    const double result = formula->parser.Eval();
    return std::isnan(result) ? std::nullopt : std::optional(result);
}

bool parseExpressionArguments(QCommandLineParser &parser, const QStringList &arguments)
{
    parser.parse(arguments); // which finds the values of options also when another argument is wrong
    const QStringList options = parser.optionNames();
    for (const QString &argument : arguments.mid(0, arguments.indexOf(QStringLiteral("--")))) {
        const bool isValue = std::any_of(options.begin(), options.end(), [&](const QString &option) {
            return parser.values(option).contains(argument);
        });
        if (!isValue && isExpressionWithSign(argument)) {
            throw CommandError(QStringLiteral("%1 is taken for options: an expression that begins with '-' stands "
                                              "behind '--'.")
                                   .arg(quoted(argument)),
                               WrongUsage);
        }
    }
    return parseArguments(parser, arguments, expressionHelp);
}

bool isTrue(std::optional<double> value)
{
    return value && holds(*value);
}

bool isFalse(std::optional<double> value)
{
    return value && !holds(*value);
}

bool isExactInteger(double value)
{
    constexpr double end = 0x1p53;
    return std::abs(value) < end && std::nearbyint(value) == value;
}

double withoutRoundingError(double value)
{
    constexpr double rounding = 1e-12;
    const double integer = std::nearbyint(value);
    return std::abs(value - integer) <= rounding ? integer : value;
}
