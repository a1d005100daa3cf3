// The lines of a device.

#include "linereader.h"

#include <QBuffer>
#include <QtTest>

#include <algorithm>
#include <cstring>
#include <random>

namespace
{
constexpr int defaultBlockSize = 0;

/// A device that hands out @p content in small portions and then ends or fails.
class DribblingDevice : public QIODevice
{
public:
    DribblingDevice(QByteArray bytes, qint64 portionSize, qint64 resultAtTheEnd)
        : content(std::move(bytes))
        , portion(portionSize)
        , endResult(resultAtTheEnd)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 count = std::min({size, portion, content.size() - position});
        if (count == 0) {
            return endResult;
        }
        std::memcpy(data, content.constData() + position, count);
        position += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray content;
    qint64 portion;
    qint64 endResult;
    qint64 position = 0;
};

/// One line that never ends.
class EndlessLine : public QIODevice
{
public:
    EndlessLine() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        std::memset(data, 'x', size);
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }
};

LineReader readerOf(QIODevice &device, int blockSize)
{
    return blockSize == defaultBlockSize ? LineReader(device) : LineReader(device, blockSize);
}

struct Reading {
    QList<QByteArray> lines;
    LineReader::Status status;
};

Reading readAll(LineReader reader)
{
    Reading reading{{}, LineReader::Status::Line};
    std::string_view line;
    while ((reading.status = reader.next(line)) == LineReader::Status::Line) {
        reading.lines.append(QByteArray(line.data(), int(line.size())));
    }
    return reading;
}

/// The lines of @p content: the pieces between its newlines, without the empty one behind a last newline.
QList<QByteArray> linesOf(const QByteArray &content)
{
    QList<QByteArray> lines = content.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}
} // namespace

class TestLineReader : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void randomContent_data();
    void randomContent();
    void failingDevice();
    void staysAtTheEnd();
    void lineIsLeftAloneWithoutALine();
    void refusesAnEndlessLine();
    void severalLinesAtATime();
    void longLinesTakeTimeInProportion();
    void linesUpToTheLimit_data();
    void linesUpToTheLimit();
};

void TestLineReader::lines_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<QByteArray>>("expected");
    const auto row = [](const char *title, const QByteArray &content, const QList<QByteArray> &expected) {
        QTest::newRow(title) << content << expected;
    };
    row("empty device", "", {});
    row("one line", "A\n", {"A"});
    row("no trailing newline", "A\nB", {"A", "B"});
    row("one line without newline", "A", {"A"});
    row("newline only", "\n", {""});
    row("newlines only", "\n\n\n", {"", "", ""});
    row("empty lines", "\nA\n\n\nB\n", {"", "A", "", "", "B"});
    row("carriage returns are kept", "A\r\nB\r\r\n\r\n\r", {"A\r", "B\r\r", "\r", "\r"});
    row("NUL bytes are kept", QByteArray("A\0B\n\0\n", 6), {QByteArray("A\0B", 3), QByteArray("\0", 1)});
    row("long line between short ones", "A\n" + QByteArray(1000, 'x') + "\nB\n", {"A", QByteArray(1000, 'x'), "B"});
    row("line longer than the default block", QByteArray(1000000, 'y') + "\nB", {QByteArray(1000000, 'y'), "B"});
}

void TestLineReader::lines()
{
    QFETCH(QByteArray, content);
    QFETCH(QList<QByteArray>, expected);
    for (const int blockSize : {1, 2, 3, 7, 64, defaultBlockSize}) {
        QBuffer device(&content);
        QVERIFY(device.open(QIODevice::ReadOnly));
        const Reading reading = readAll(readerOf(device, blockSize));
        QCOMPARE(reading.lines, expected);
        QCOMPARE(reading.status, LineReader::Status::End);
    }
}

void TestLineReader::randomContent_data()
{
    QTest::addColumn<int>("blockSize");
    for (const int blockSize : {1, 2, 3, 7, 64, defaultBlockSize}) {
        QTest::addRow("block size %d", blockSize) << blockSize;
    }
}

void TestLineReader::randomContent()
{
    QFETCH(int, blockSize);
    constexpr unsigned seed = 4711;
    std::mt19937 generator(seed);
    const auto below = [&generator](int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(generator); };
    for (int round = 0; round < 500; ++round) {
        // From hardly a newline to hardly anything else.
        const int newlineShare = below(100);
        QByteArray content(below(500), '\0');
        std::generate(content.begin(), content.end(),
                      [&] { return below(100) < newlineShare ? '\n' : "ab\r\t\0"[below(5)]; });
        DribblingDevice device(content, 1 + below(100), 0);
        const Reading reading = readAll(readerOf(device, blockSize));
        if (reading.lines != linesOf(content) || reading.status != LineReader::Status::End) {
            QFAIL(qPrintable(QStringLiteral("seed %1, round %2: %3")
                                 .arg(seed)
                                 .arg(round)
                                 .arg(QString::fromLatin1(content.toHex(' ')))));
        }
    }
}

void TestLineReader::failingDevice()
{
    for (const int blockSize : {1, 2, 3, 7, 64, defaultBlockSize}) {
        DribblingDevice broken(QByteArray(), 1, -1);
        const Reading nothing = readAll(readerOf(broken, blockSize));
        QCOMPARE(nothing.lines, QList<QByteArray>());
        QCOMPARE(nothing.status, LineReader::Status::Failed);

        DribblingDevice breaking("A\nB\nunfinished", 4, -1);
        const Reading some = readAll(readerOf(breaking, blockSize));
        QCOMPARE(some.lines, (QList<QByteArray>{"A", "B"}));
        QCOMPARE(some.status, LineReader::Status::Failed);
    }
}

void TestLineReader::staysAtTheEnd()
{
    DribblingDevice device("A\nB", 64, 0);
    LineReader reader(device);
    std::string_view line;
    QCOMPARE(reader.next(line), LineReader::Status::Line);
    QCOMPARE(reader.next(line), LineReader::Status::Line);
    QCOMPARE(reader.next(line), LineReader::Status::End);
    QCOMPARE(reader.next(line), LineReader::Status::End);
}

void TestLineReader::lineIsLeftAloneWithoutALine()
{
    std::string_view line = "before";
    DribblingDevice empty(QByteArray(), 1, 0);
    QCOMPARE(LineReader(empty).next(line), LineReader::Status::End);
    QVERIFY(line == "before");
    DribblingDevice failing("unfinished", 4, -1);
    QCOMPARE(LineReader(failing).next(line), LineReader::Status::Failed);
    QVERIFY(line == "before");
}

void TestLineReader::refusesAnEndlessLine()
{
    EndlessLine device;
    LineReader reader(device, 1 << 24);
    std::string_view line;
    QCOMPARE(reader.next(line), LineReader::Status::TooLong);
}

void TestLineReader::severalLinesAtATime()
{
    std::mt19937 generator(4712);
    for (int round = 0; round < 500; ++round) {
        QByteArray content(int(generator() % 300), 'a');
        for (int newlines = int(generator() % 30); newlines > 0 && !content.isEmpty(); --newlines) {
            content[int(generator() % content.size())] = '\n';
        }
        DribblingDevice device(content, 1 + generator() % 100, 0);
        LineReader reader(device, 1 + int(generator() % 64));
        QByteArray all;
        std::string_view lines;
        LineReader::Status status = LineReader::Status::Line;
        while ((status = reader.nextLines(lines)) == LineReader::Status::Line) {
            all.append(lines.data(), int(lines.size()));
            QVERIFY(!lines.empty());
            QVERIFY(lines.back() == '\n' || all.size() == content.size());
        }
        QCOMPARE(status, LineReader::Status::End);
        QCOMPARE(all, content);
    }
}

void TestLineReader::longLinesTakeTimeInProportion()
{
    // A million blocks: a reader that looked at the whole line again after each would never end.
    QByteArray content((1 << 24) - 1, 'x');
    content += '\n';
    for (const auto read : {&LineReader::next, &LineReader::nextLines}) {
        QBuffer device(&content);
        QVERIFY(device.open(QIODevice::ReadOnly));
        LineReader reader(device, 16);
        std::string_view line;
        QCOMPARE((reader.*read)(line), LineReader::Status::Line);
        QVERIFY(content.startsWith(QByteArray::fromRawData(line.data(), int(line.size()))));
        QVERIFY(line.size() >= size_t(content.size()) - 1);
    }
}

void TestLineReader::linesUpToTheLimit_data()
{
    QTest::addColumn<int>("blockSize");
    for (const int size : {1, 2, 3, 7, 8, 9, 100}) {
        QTest::addRow("blocks of %d", size) << size;
    }
}

/// A line of as many bytes as are allowed is read, and one of a byte more is not, wherever blocks begin.
void TestLineReader::linesUpToTheLimit()
{
    QFETCH(int, blockSize);
    constexpr int longest = 8;
    const QByteArray fits(longest, 'x');
    for (const QByteArray &before : {QByteArray(), QByteArray("a\n"), QByteArray("abcdefg\n\n")}) {
        for (const QByteArray &behind : {QByteArray(), QByteArray("\n"), QByteArray("\nb\n")}) {
            QByteArray allowed = before + fits + behind;
            QByteArray tooLong = before + fits + 'x' + behind;
            for (const bool single : {true, false}) {
                QBuffer allowedDevice(&allowed);
                QBuffer tooLongDevice(&tooLong);
                QVERIFY(allowedDevice.open(QIODevice::ReadOnly) && tooLongDevice.open(QIODevice::ReadOnly));
                LineReader allowedReader(allowedDevice, blockSize, longest);
                LineReader tooLongReader(tooLongDevice, blockSize, longest);
                const auto read = single ? &LineReader::next : &LineReader::nextLines;
                std::string_view lines;
                LineReader::Status status = LineReader::Status::Line;
                while (status == LineReader::Status::Line) {
                    status = (allowedReader.*read)(lines);
                }
                QCOMPARE(status, LineReader::Status::End);
                do {
                    status = (tooLongReader.*read)(lines);
                } while (status == LineReader::Status::Line);
                QCOMPARE(status, LineReader::Status::TooLong);
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestLineReader)
#include "tst_linereader.moc"
