// The parsing of one line of a database file.

#include "databaseline.h"
#include "support/literals.h"
#include "support/plainreading.h"

#include <QtTest>

#include <algorithm>
#include <iterator>
#include <random>

namespace
{
/// What a line says, as text: the name and the indices separated by bars, or "no graph".
QString describe(bool isGraph, const DatabaseLine &line)
{
    if (!isGraph) {
        return QStringLiteral("no graph");
    }
    QStringList words{line.name};
    std::transform(line.indices.begin(), line.indices.end(), std::back_inserter(words),
                   [](int index) { return QString::number(index); });
    return words.join(QLatin1Char('|'));
}

QString parse(const QByteArray &line)
{
    DatabaseLine result;
    const bool isGraph = parseDatabaseLine(std::string_view(line.constData(), line.size()), result);
    return describe(isGraph, result);
}

QString parseAsText(const QByteArray &bytes)
{
    const DatabaseLine line = readPlainly(bytes);
    return describe(!line.name.isEmpty(), line);
}

/// Random lines made of what the rules treat in a way of its own, and of anything else.
class RandomLines
{
public:
    explicit RandomLines(unsigned seed) : generator(seed) {}

    QByteArray next()
    {
        QByteArray line;
        // Half of the lines stay within ASCII without "\r", so that the short cut for them is taken often enough.
        const bool plain = below(2) == 0;
        for (int pieces = below(16); pieces > 0; --pieces) {
            line += plain ? plainPieces.at(below(plainPieces.size())) : anyPiece();
        }
        return line;
    }

private:
    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(generator); }

    QByteArray anyPiece()
    {
        const int kind = below(plainPieces.size() + otherPieces.size() + 2);
        if (kind < plainPieces.size()) {
            return plainPieces.at(kind);
        }
        if (kind < plainPieces.size() + otherPieces.size()) {
            return otherPieces.at(kind - plainPieces.size());
        }
        const char byte = char(below(256));
        return byte == '\n' ? QByteArray() : QByteArray(1, byte);
    }

    const QList<QByteArray> plainPieces{"\t",          "\t",        "\t",         "\t",         "\t",
                                        "0",           "1",         "2",          "7",          "9",
                                        "12",          "345",       "2147483647", "2147483648", "-2147483648",
                                        "-2147483649", "999999999", "1000000000", "4294967296", "00000000000001",
                                        " ",           "  ",        "+",          "-",          ".",
                                        ",",           "e",         "x",          "0x1",        "1e5",
                                        "A",           "E?Bw",      "nan",        "\v",         "\f",
                                        bytes("\0"),   "\x7f",      "\x1b"};
    const QList<QByteArray> otherPieces{"\r",
                                        "\r",
                                        "\t\r",
                                        "\xEF\xBB\xBF", // byte-order mark
                                        "\xEF",         // and parts of it
                                        "\xBB",
                                        "\xBF",
                                        "\xC2\xA0",         // no-break space
                                        "\xC2\x85",         // next line
                                        "\xE2\x80\x83",     // em space
                                        "\xE3\x80\x80",     // ideographic space
                                        "\xD9\xA3",         // Arabic-Indic digit three
                                        "\xEF\xBC\x91",     // full-width digit one
                                        "\xE2\x88\x92",     // minus sign
                                        "\xC3\xA9",         // a letter
                                        "\xF0\x9F\x98\x80", // beyond the first plane
                                        "\xED\xA0\x80",     // a surrogate
                                        "\xC0\x80",         // an overlong NUL
                                        "\xE2\x82",         // cut off
                                        "\xF0\x9F",
                                        "\x80",
                                        "\xFF"};
    std::mt19937 generator;
};
} // namespace

class TestDatabaseLine : public QObject
{
    Q_OBJECT

private slots:
    void line_data();
    void line();
    void randomLinesReadAsText_data();
    void randomLinesReadAsText();
    void splitKeepsAnEmptyNameAndCarriageReturns();
    void nothingIsLeftOfThePreviousLine();
};

void TestDatabaseLine::line_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    const QString none = QStringLiteral("no graph");
    const auto row = [](const char *title, const QByteArray &line, const QString &expected) {
        QTest::newRow(title) << line << expected;
    };

    row("empty", "", none);
    row("name only", "E?Bw", QStringLiteral("E?Bw"));
    row("indices", "E?Bw\t10\t11\t0", QStringLiteral("E?Bw|10|11|0"));
    row("blanks are part of the name", " A B \t1", QStringLiteral(" A B |1"));
    row("leading tab", "\tA\t1", none);
    row("tab alone", "\t", none);
    row("trailing tab", "A\t", QStringLiteral("A|0"));
    row("index and trailing tab", "A\t3\t", QStringLiteral("A|3|0"));
    row("adjacent tabs", "A\t1\t\t2", QStringLiteral("A|1|0|2"));

    row("word", "A\tword\t2", QStringLiteral("A|0|2"));
    row("number and letter", "A\t1a", QStringLiteral("A|0"));
    row("blank before", "A\t 1", QStringLiteral("A|1"));
    row("blank behind", "A\t1 ", QStringLiteral("A|1"));
    row("other white space", "A\t\v1\f", QStringLiteral("A|1"));
    row("blank alone", "A\t \t5", QStringLiteral("A|0|5"));
    row("blank inside", "A\t1 2", QStringLiteral("A|0"));
    row("plus", "A\t+1", QStringLiteral("A|1"));
    row("sign alone", "A\t+\t-", QStringLiteral("A|0|0"));
    row("two signs", "A\t+-1\t--1", QStringLiteral("A|0|0"));
    row("minus zero", "A\t-0", QStringLiteral("A|0"));
    row("negative", "A\t-1", QStringLiteral("A|-1"));
    row("leading zeros", "A\t007\t0000000000012", QStringLiteral("A|7|12"));
    row("nine digits", "A\t999999999", QStringLiteral("A|999999999"));
    row("ten digits", "A\t1000000000", QStringLiteral("A|1000000000"));
    row("largest", "A\t2147483647", QStringLiteral("A|2147483647"));
    row("smallest", "A\t-2147483648", QStringLiteral("A|-2147483648"));
    row("too large", "A\t2147483648\t4294967296\t99999999999\t99999999999999999999999", QStringLiteral("A|0|0|0|0"));
    row("too small", "A\t-2147483649", QStringLiteral("A|0"));
    row("hexadecimal", "A\t0x1", QStringLiteral("A|0"));
    row("exponent", "A\t1e5", QStringLiteral("A|0"));
    row("fraction", "A\t1.0\t1.", QStringLiteral("A|0|0"));
    row("group separator", "A\t1,000", QStringLiteral("A|0"));

    row("DOS line end", "A\t1\r", QStringLiteral("A|1"));
    row("several carriage returns", "A\t1\r\r\r", QStringLiteral("A|1"));
    row("carriage return alone", "\r", none);
    row("carriage returns alone", "\r\r", none);
    row("carriage return before a leading tab", "\r\t1", none);
    row("carriage return inside", "A\rB\t1\r2\t\r3", QStringLiteral("AB|12|3"));
    row("carriage return as a field", "A\t\r", QStringLiteral("A|0"));

    row("mark at the start",
        bytes("\xEF\xBB\xBF"
              "A\t1"),
        QStringLiteral("A|1"));
    row("mark alone", bytes("\xEF\xBB\xBF"), none);
    row("mark before a leading tab", bytes("\xEF\xBB\xBF\t1"), none);
    row("two marks at the start",
        bytes("\xEF\xBB\xBF\xEF\xBB\xBF"
              "A"),
        QStringLiteral("\uFEFFA"));
    row("mark in the name",
        bytes("A\xEF\xBB\xBF"
              "B\t1"),
        QStringLiteral("A\uFEFFB|1"));
    row("mark behind a carriage return",
        bytes("\r\xEF\xBB\xBF"
              "A"),
        QStringLiteral("\uFEFFA"));
    row("mark in an index",
        bytes("A\t\xEF\xBB\xBF"
              "1"),
        QStringLiteral("A|0"));

    row("letters", bytes("\xC3\xA9\xF0\x9F\x98\x80\t1"), QStringLiteral("\u00E9\U0001F600|1"));
    row("invalid byte", bytes("A\xFF\t1"), QStringLiteral("A\uFFFD|1"));
    row("invalid byte alone", bytes("\x80"), QStringLiteral("\uFFFD"));
    row("cut-off sequence at the end", bytes("A\xE2\x82"), QStringLiteral("A\uFFFD\uFFFD"));
    row("cut-off sequence before the line end", bytes("A\xE2\x82\r"), QStringLiteral("A\uFFFD\uFFFD"));
    row("sequence cut by a carriage return", bytes("A\xC3\r\xA9"), QStringLiteral("A\uFFFD\uFFFD"));
    row("sequence cut by a tab", bytes("A\xC3\t\xA9"), QStringLiteral("A\uFFFD|0"));
    row("invalid byte in an index", bytes("A\t1\xFF"), QStringLiteral("A|0"));
    row("non-ASCII digit", bytes("A\t\xD9\xA3\t\xEF\xBC\x91"), QStringLiteral("A|0|0"));
    row("no-break space",
        bytes("A\t\xC2\xA0"
              "1"),
        QStringLiteral("A|1"));
    row("em space", bytes("A\t1\xE2\x80\x83"), QStringLiteral("A|1"));

    row("NUL in the name", bytes("A\0B\t1"), QString(QStringLiteral("A") + QChar(0) + QStringLiteral("B|1")));
    row("NUL as the name", bytes("\0\t1"), QString(QChar(0) + QStringLiteral("|1")));
    row("NUL before an index",
        bytes("A\t\0"
              "1"),
        QStringLiteral("A|0"));
    row("NUL inside an index",
        bytes("A\t1\0"
              "2"),
        QStringLiteral("A|0"));
}

void TestDatabaseLine::line()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, expected);
    QCOMPARE(parse(line), expected);
    QCOMPARE(parseAsText(line), expected);
}

void TestDatabaseLine::randomLinesReadAsText_data()
{
    QTest::addColumn<unsigned>("seed");
    for (const unsigned seed : {1U, 20U, 300U, 4000U}) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

void TestDatabaseLine::randomLinesReadAsText()
{
    QFETCH(unsigned, seed);
    RandomLines lines(seed);
    for (int number = 0; number < 100000; ++number) {
        const QByteArray line = lines.next();
        const QString expected = parseAsText(line);
        const QString actual = parse(line);
        if (actual != expected) {
            QFAIL(qPrintable(QStringLiteral("seed %1, line %2, bytes %3: \"%4\" instead of \"%5\"")
                                 .arg(seed)
                                 .arg(number)
                                 .arg(QString::fromLatin1(line.toHex(' ')), actual, expected)));
        }
    }
}

void TestDatabaseLine::splitKeepsAnEmptyNameAndCarriageReturns()
{
    DatabaseLine line;
    splitDatabaseLine("\t1\t\tx", line);
    QCOMPARE(describe(true, line), QStringLiteral("|1|0|0"));
    splitDatabaseLine("A\r\t2\r", line);
    QCOMPARE(describe(true, line), QStringLiteral("A\r|2"));
}

void TestDatabaseLine::nothingIsLeftOfThePreviousLine()
{
    DatabaseLine line;
    QVERIFY(parseDatabaseLine("A\t1\t2", line));
    QVERIFY(parseDatabaseLine("B", line));
    QCOMPARE(describe(true, line), QStringLiteral("B"));
    QVERIFY(parseDatabaseLine("C\t1\r\t2", line));
    QVERIFY(parseDatabaseLine("D\r\t3", line));
    QCOMPARE(describe(true, line), QStringLiteral("D|3"));
}

QTEST_APPLESS_MAIN(TestDatabaseLine)
#include "tst_databaseline.moc"
