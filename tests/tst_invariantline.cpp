// The parsing and writing of one line of an invariant file.

#include "invariantline.h"
#include "support/literals.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace
{
bool parse(const QByteArray &line, InvariantLine &result)
{
    return parseInvariantLine(std::string_view(line.constData(), line.size()), result);
}

/// What the line says, as text; NaN and both zeros included.
QString describe(const InvariantLine &line)
{
    return line.name + QLatin1Char('|') + QString::number(line.value, 'g', 17) +
           (line.missing ? QStringLiteral("|missing") : QString());
}

/// The same found by a plain reading of the line as text.
QString plainReading(const QByteArray &bytes)
{
    QString line = QString::fromUtf8(bytes.constData(), bytes.size());
    const QStringList fields = line.remove(QLatin1Char('\r')).split(QLatin1Char('\t'));
    if (fields.size() < 2) {
        return text("too few fields");
    }
    bool isNumber = false;
    const double value = fields.at(1).toDouble(&isNumber);
    return describe({fields.at(0), value, !isNumber});
}

QByteArray lineOf(const QString &name, double value, bool missing)
{
    QByteArray lines;
    appendInvariantLine(lines, name, value, missing);
    return lines;
}
} // namespace

class TestInvariantLine : public QObject
{
    Q_OBJECT

private slots:
    void parses_data();
    void parses();
    void tooFewFields_data();
    void tooFewFields();
    void wordsAreMissingValues_data();
    void wordsAreMissingValues();
    void nothingStaysOfTheLineBefore();
    void readsLikeText();

    void formats_data();
    void formats();
    void readsBackWhatItFormats();
    void numbersAreThoseOfQt();
};

void TestInvariantLine::parses_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("value");
    QTest::newRow("integer") << bytes("Bw\t3") << text("Bw") << 3.0;
    QTest::newRow("fraction") << bytes("Bw\t-0.25") << text("Bw") << -0.25;
    QTest::newRow("exponent") << bytes("Bw\t1e+06") << text("Bw") << 1e6;
    QTest::newRow("infinity") << bytes("Bw\tinf") << text("Bw") << std::numeric_limits<double>::infinity();
    QTest::newRow("DOS line end") << bytes("Bw\t3\r") << text("Bw") << 3.0;
    QTest::newRow("carriage returns inside") << bytes("\rB\rw\r\t\r1\r2\r") << text("Bw") << 12.0;
    QTest::newRow("third field") << bytes("Bw\t3\tNA") << text("Bw") << 3.0;
    QTest::newRow("trailing tab") << bytes("Bw\t3\t") << text("Bw") << 3.0;
    QTest::newRow("no name") << bytes("\t3") << QString() << 3.0;
    QTest::newRow("blanks belong to the name") << bytes(" B w \t3") << text(" B w ") << 3.0;
    QTest::newRow("name of many bytes") << bytes("\xc3\xa9\xe2\x82\xac\t3") << text("é€") << 3.0;
    QTest::newRow("many bytes behind the value") << bytes("Bw\t3\t\xe2\x82\xac") << text("Bw") << 3.0;
    QTest::newRow("more digits than a double holds") << bytes("Bw\t0.1000000000000000000001") << text("Bw") << 0.1;
}

void TestInvariantLine::parses()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, name);
    QFETCH(double, value);
    InvariantLine result;
    QVERIFY(parse(line, result));
    QCOMPARE(result.name, name);
    QVERIFY(!result.missing);
    QVERIFY(result.value == value); // exactly
}

void TestInvariantLine::tooFewFields_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty") << bytes("");
    QTest::newRow("name only") << bytes("Bw");
    QTest::newRow("carriage return only") << bytes("\r");
    QTest::newRow("blank instead of a tab") << bytes("Bw 3");
    QTest::newRow("name of many bytes") << bytes("\xc3\xa9");
}

void TestInvariantLine::tooFewFields()
{
    QFETCH(QByteArray, line);
    InvariantLine result;
    QVERIFY(!parse(line, result));
}

void TestInvariantLine::wordsAreMissingValues_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("NA") << bytes("NA");
    QTest::newRow("nothing") << bytes("");
    QTest::newRow("word") << bytes("planar");
    QTest::newRow("number and word") << bytes("3 of 4");
    QTest::newRow("decimal comma") << bytes("0,5");
    QTest::newRow("hexadecimal") << bytes("0x10");
    QTest::newRow("sign only") << bytes("-");
    QTest::newRow("exponent only") << bytes("e5");
    QTest::newRow("many bytes") << bytes("\xe2\x82\xac");
    QTest::newRow("NUL") << bytes("3\0");
}

void TestInvariantLine::wordsAreMissingValues()
{
    QFETCH(QByteArray, field);
    InvariantLine result;
    QVERIFY(parse("Bw\t" + field, result));
    QCOMPARE(describe(result), text("Bw|0|missing"));
}

void TestInvariantLine::nothingStaysOfTheLineBefore()
{
    InvariantLine result;
    QVERIFY(parse("Bw\t3", result));
    QVERIFY(parse("BW\tNA", result));
    QCOMPARE(describe(result), text("BW|0|missing"));
    QVERIFY(parse("\t4", result));
    QCOMPARE(describe(result), text("|4"));
}

void TestInvariantLine::readsLikeText()
{
    const QByteArray pieces[] = {"\t",
                                 "\t",
                                 "\t",
                                 "Bw",
                                 "@",
                                 "\r",
                                 "\r",
                                 " ",
                                 "NA",
                                 "nan",
                                 "inf",
                                 "-inf",
                                 "-",
                                 "+",
                                 ".",
                                 "1",
                                 "27",
                                 "0.333333",
                                 "e",
                                 "e+06",
                                 "1e999",
                                 "1e-999",
                                 "1e-320",
                                 "0x1",
                                 ",",
                                 "1,000",
                                 "123456789012345678901",
                                 "-0",
                                 "+4",
                                 "\v",
                                 "\f",
                                 "\xc3\xa9",
                                 "\xe2\x82",
                                 "\xef\xbb\xbf",
                                 "\xff",
                                 bytes("\0"),
                                 "\x7f",
                                 "INF",
                                 "infinity",
                                 "\xc2\xa0",
                                 "\xef\xbc\x93",
                                 "1e",
                                 "0.1e1"};
    std::mt19937 random(1);
    const auto below = [&random](size_t bound) { return random() % bound; };
    for (int i = 0; i < 200000; ++i) {
        QByteArray line;
        for (size_t count = below(8); count > 0; --count) {
            line += pieces[below(std::size(pieces))];
        }
        InvariantLine result;
        const QString found = parse(line, result) ? describe(result) : text("too few fields");
        const QString expected = plainReading(line);
        QVERIFY2(found == expected,
                 qPrintable(QString::fromLatin1(line.toHex(' ')) + text(": ") + found + text(", not ") + expected));
    }
}

void TestInvariantLine::formats_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QByteArray>("formatted");
    QTest::newRow("a third") << 1.0 / 3.0 << bytes("0.333333");
    QTest::newRow("two thirds, rounded up") << 2.0 / 3.0 << bytes("0.666667");
    QTest::newRow("fraction") << 2.5 << bytes("2.5");
    QTest::newRow("negative integer") << -4.0 << bytes("-4");
    QTest::newRow("zero") << 0.0 << bytes("0");
    QTest::newRow("negative zero") << -0.0 << bytes("0");
    QTest::newRow("six digits") << 123456.0 << bytes("123456");
    QTest::newRow("seven digits") << 1234567.0 << bytes("1.23457e+06");
    QTest::newRow("a million") << 1000000.0 << bytes("1e+06");
    QTest::newRow("the last fixed form") << 0.0001 << bytes("0.0001");
    QTest::newRow("the first small exponent") << 0.00001 << bytes("1e-05");
    QTest::newRow("large") << 1e300 << bytes("1e+300");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << bytes("nan");
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity() << bytes("inf");
    QTest::newRow("negative infinity") << -std::numeric_limits<double>::infinity() << bytes("-inf");
}

void TestInvariantLine::formats()
{
    QFETCH(double, value);
    QFETCH(QByteArray, formatted);
    QCOMPARE(lineOf(text("Bw"), value, false), "Bw\t" + formatted + '\n');
    QCOMPARE(lineOf(text("Bw"), value, true), QByteArray("Bw\tNA\n"));
    QCOMPARE(lineOf(text("é€"), value, false), "\xe9?\t" + formatted + '\n'); // Latin-1
}

void TestInvariantLine::readsBackWhatItFormats()
{
    for (const double value : {0.25, -4.0, 1e6, 1e-5, 0.333333, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        InvariantLine result;
        QByteArray line = lineOf(text("Bw"), value, false);
        line.chop(1);
        QVERIFY(parse(line, result));
        QCOMPARE(describe(result), describe({text("Bw"), value, false}));
    }
}

void TestInvariantLine::numbersAreThoseOfQt()
{
    const auto check = [](double value) {
        QCOMPARE(lineOf(text("A"), value, false), "A\t" + QByteArray::number(value, 'g', 6) + '\n');
    };
    const double limit = std::numeric_limits<double>::infinity();
    for (const double value : {0.0, -0.0, limit, -limit, std::nan(""), -std::nan(""), 5e-324, -2.2250738585072014e-308,
                               1.7976931348623157e308, 1e-5, 0.0001, 999999.5, 999999.4, 1e6, 123456.5, 0.1 + 0.2}) {
        check(value);
    }
    std::mt19937_64 random(42);
    for (int i = 0; i < 200000 && !QTest::currentTestFailed(); ++i) {
        const quint64 bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        check(value);
        check(double(qint64(bits) % 2000001) / 1000.0); // ties
    }
}

QTEST_APPLESS_MAIN(TestInvariantLine)
#include "tst_invariantline.moc"
