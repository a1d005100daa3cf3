// Reading a database in chunks.

#include "databasechunk.h"
#include "support/plainreading.h"
#include "support/threads.h"

#include <QBuffer>
#include <QtTest>

#include <random>

namespace
{
/// What a chunk, or all of them, hold: a record in words with the number of its line in the file, and the lines.
struct Content {
    QStringList records;
    qint64 lines = 0;

    bool operator==(const Content &other) const { return records == other.records && lines == other.lines; }
};

QString describe(const QString &name, qint64 line, const std::vector<int> &indices)
{
    QStringList words = {QString::number(line), name};
    for (const int index : indices) {
        words.append(QString::number(index));
    }
    return words.join(QLatin1Char(' '));
}

void append(Content &content, const DatabaseChunk &chunk)
{
    auto index = chunk.links.indices.begin();
    for (size_t i = 0; i < chunk.records.size(); ++i) {
        const auto end = index + chunk.links.counts.at(i);
        content.records.append(
            describe(chunk.records[i].getName(), content.lines + chunk.lineNumbers.at(i), {index, end}));
        index = end;
    }
    QCOMPARE(index, chunk.links.indices.end());
    QCOMPARE(chunk.links.counts.size(), chunk.records.size());
    content.lines += chunk.lineCount;
}

/// Reads a file in chunks of about that length.
Content inChunks(QByteArray file, int chunkLength)
{
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    DatabaseReader reader(buffer, chunkLength);
    DatabaseChunk chunk;
    Content content;
    LineReader::Status status = LineReader::Status::Line;
    while ((status = reader.next(chunk)) == LineReader::Status::Line) {
        append(content, chunk);
    }
    [&] { QCOMPARE(status, LineReader::Status::End); }();
    return content;
}

/// Reads a file line by line.
Content inLines(const QByteArray &file)
{
    Content content;
    QList<QByteArray> lines = file.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (const QByteArray &bytes : qAsConst(lines)) {
        const DatabaseLine line = readPlainly(bytes);
        if (!line.name.isEmpty()) {
            content.records.append(describe(line.name, content.lines, line.indices));
        }
        ++content.lines;
    }
    return content;
}

/// Lines without an end.
class EndlessDatabase : public QIODevice
{
public:
    EndlessDatabase() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }

    qint64 handedOut = 0;

protected:
    qint64 readData(char *data, qint64 size) override
    {
        for (qint64 i = 0; i < size; ++i, ++handedOut) {
            data[i] = handedOut % 2 == 0 ? 'A' : '\n';
        }
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }
};

QByteArray randomFile(std::mt19937 &random)
{
    const QByteArray pieces[] = {"A",  "Bw",   "\t",   "\t0",      "\t12",          "\n",
                                 "\n", "\r\n", "\t-1", "\xc3\xa9", "\t99999999999", "\tx"};
    QByteArray file;
    for (unsigned i = random() % 60; i > 0; --i) {
        file += pieces[random() % std::size(pieces)];
    }
    return file;
}
} // namespace

class TestDatabaseChunk : public QObject
{
    Q_OBJECT

private slots:
    void aChunkByHand()
    {
        const DatabaseChunk chunk = parseDatabaseChunk("A\n\nB\t0\t0\n\t5\nC\tx");
        QCOMPARE(chunk.lineCount, 5);
        QCOMPARE(chunk.records.size(), size_t(3));
        QCOMPARE(chunk.records[0].getName(), QStringLiteral("A"));
        QCOMPARE(chunk.records[1].getName(), QStringLiteral("B"));
        QCOMPARE(chunk.records[2].getName(), QStringLiteral("C"));
        QCOMPARE(chunk.lineNumbers, (std::vector<int>{0, 2, 4}));
        QCOMPARE(chunk.links.counts, (std::vector<int>{0, 2, 1}));
        QCOMPARE(chunk.links.indices, (std::vector<int>{0, 0, 0}));
    }

    void linesWithoutNameTakeNoRoomForRecords_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("empty") << QByteArray("\n");
        QTest::newRow("empty, of another system") << QByteArray("\r\n");
        QTest::newRow("of an empty field and an index") << QByteArray("\t0\n");
    }

    void linesWithoutNameTakeNoRoomForRecords()
    {
        QFETCH(QByteArray, line);
        const QByteArray lines = line + line + "A\n" + line.repeated(1000000) + "B";
        const DatabaseChunk chunk = parseDatabaseChunk(std::string_view(lines.constData(), lines.size()));
        QCOMPARE(chunk.lineCount, 1000004);
        QCOMPARE(chunk.records.size(), size_t(2));
        QCOMPARE(chunk.records.capacity(), size_t(2));
        QCOMPARE(chunk.lineNumbers.capacity(), size_t(2));
        QCOMPARE(chunk.links.counts.capacity(), size_t(2));
    }

    void chunkBordersDoNotShow_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("records");
        QTest::addColumn<int>("lines");
        const auto row = [](const char *title, const QByteArray &file, const QStringList &records, int lines) {
            QTest::newRow(title) << file << records << lines;
        };
        row("empty", "", {}, 0);
        row("one line", "A\n", {QStringLiteral("0 A")}, 1);
        row("no newline at the end", "A\nB\t0", {QStringLiteral("0 A"), QStringLiteral("1 B 0")}, 2);
        row("only newlines", "\n\n\n", {}, 3);
        row("empty lines between", "A\n\n\nB\t0\n\n", {QStringLiteral("0 A"), QStringLiteral("3 B 0")}, 5);
        row("DOS", "A\r\nB\t0\r\n", {QStringLiteral("0 A"), QStringLiteral("1 B 0")}, 2);
        row("a line longer than a chunk", "A\nB" + QByteArray("\t0").repeated(40) + "\nC\t1\n",
            {QStringLiteral("0 A"), QStringLiteral("1 B") + QStringLiteral(" 0").repeated(40), QStringLiteral("2 C 1")},
            3);
    }

    void chunkBordersDoNotShow()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, records);
        QFETCH(int, lines);
        for (int length = 1; length <= file.size() + 2; ++length) {
            const Content content = inChunks(file, length);
            QCOMPARE(content.records, records);
            QCOMPARE(content.lines, lines);
        }
    }

    /// A file that is longer than the memory is not read at once.
    void readsABoundedDistanceAhead()
    {
        constexpr int chunkLength = 1000;
        constexpr int threads = 3;
        const ThreadCount count(threads);
        EndlessDatabase device;
        DatabaseReader reader(device, chunkLength);
        DatabaseChunk chunk;
        for (int taken = 0; taken < 20; ++taken) {
            QCOMPARE(reader.next(chunk), LineReader::Status::Line);
            // The chunk in hand, one for each thread, one more, and a block that ends in an unfinished line.
            const int most = (taken + threads + 3) * chunkLength;
            QVERIFY(device.handedOut <= most);
        }
    }

    void randomFilesReadLikeLines()
    {
        std::mt19937 random(6);
        for (int i = 0; i < 2000; ++i) {
            const QByteArray file = randomFile(random);
            QVERIFY2(inChunks(file, 1 + int(random() % 40)) == inLines(file), file.constData());
        }
    }
};

QTEST_APPLESS_MAIN(TestDatabaseChunk)
#include "tst_databasechunk.moc"
