// Work that is shared out among threads.

#include "parallel.h"
#include "support/threads.h"

#include <QtTest>

#include <numeric>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

namespace
{
QByteArray numbers(int begin, int end)
{
    QByteArray text;
    for (int i = begin; i < end; ++i) {
        text += QByteArray::number(i) + ' ';
    }
    return text;
}
} // namespace

class TestParallel : public QObject
{
    Q_OBJECT

private slots:
    void everyIndexOnce_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("pieceLength");
        QTest::addColumn<int>("jobs");
        QTest::newRow("nothing") << 0 << 10 << 4;
        QTest::newRow("less than a piece") << 7 << 10 << 4;
        QTest::newRow("a piece") << 10 << 10 << 4;
        QTest::newRow("a piece and one") << 11 << 10 << 4;
        QTest::newRow("one thread") << 1000 << 10 << 1;
        QTest::newRow("many pieces") << 100003 << 10 << 8;
        QTest::newRow("pieces of one") << 1000 << 1 << 3;
    }

    void everyIndexOnce()
    {
        QFETCH(int, count);
        QFETCH(int, pieceLength);
        QFETCH(int, jobs);
        std::vector<int> visits(count, 0);
        forEachRange(count, pieceLength, jobs, [&](int begin, int end) {
            if (begin >= end || end > count || end - begin > pieceLength) {
                throw std::logic_error("a range that is empty, too long or beyond the end");
            }
            for (int i = begin; i < end; ++i) {
                ++visits[i];
            }
        });
        QVERIFY(visits == std::vector<int>(count, 1));
    }

    void aFaultReachesTheCaller()
    {
        const auto fail = [](int begin, int) {
            if (begin == 700) {
                throw std::runtime_error("700");
            }
        };
        QVERIFY_EXCEPTION_THROWN(forEachRange(1000, 1, 4, fail), std::runtime_error);
    }

    void piecesComeInOrder()
    {
        for (const int count : {0, 1, 9, 10, 11, 1000}) {
            QByteArray all;
            forEachPiece(count, 10, numbers, [&all](const QByteArray &piece) { all += piece; });
            QCOMPARE(all, numbers(0, count));
        }
    }

    void theWorkIsDoneWithoutThreads()
    {
        const NoThreads shortage;
        QVERIFY_EXCEPTION_THROWN(std::thread([] {}).join(), std::system_error);
        std::vector<int> visits(1000, 0);
        forEachRange(1000, 10, 8, [&](int begin, int end) {
            for (int i = begin; i < end; ++i) {
                ++visits[i];
            }
        });
        QVERIFY(visits == std::vector<int>(1000, 1));
        QByteArray all;
        forEachPiece(1000, 10, numbers, [&all](const QByteArray &piece) { all += piece; });
        QCOMPARE(all, numbers(0, 1000));
    }

    void thereIsAProcessor() { QVERIFY(processorCount() >= 1); }

    void theNumberOfThreadsCanBeChosen()
    {
        QCOMPARE(threadCount(), processorCount());
        {
            const ThreadCount three(3);
            QCOMPARE(threadCount(), 3);
        }
        QCOMPARE(threadCount(), processorCount());
    }
};

QTEST_APPLESS_MAIN(TestParallel)
#include "tst_parallel.moc"
