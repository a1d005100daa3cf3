// The bytes of a line of a text file: what they mean, with and without "\r", and their fields.

#include "textline.h"

#include <QtTest>

#include <random>

namespace
{
const QByteArray mark("\xEF\xBB\xBF");

std::string_view view(const QByteArray &bytes)
{
    return std::string_view(bytes.constData(), bytes.size());
}

QByteArray copy(std::string_view bytes)
{
    return {bytes.data(), int(bytes.size())};
}

QByteArray keeping(const QByteArray &line)
{
    QByteArray memory;
    return copy(normaliseKeepingReturns(view(line), memory));
}

QByteArray dropping(const QByteArray &line)
{
    QByteArray memory;
    return copy(normaliseDroppingReturns(view(line), memory));
}
} // namespace

class TestTextLine : public QObject
{
    Q_OBJECT

private slots:
    void plainIsAsciiWithoutReturns()
    {
        QVERIFY(isPlain(""));
        QVERIFY(isPlain("E?Bw\t12 \x7f\x01"));
        QVERIFY(!isPlain("A\r"));
        QVERIFY(!isPlain("A\x80"));
        QVERIFY(!isPlain("\xff"));
    }

    void everyReturnAtTheEndGoes()
    {
        QCOMPARE(copy(withoutReturnsAtEnd("A\r\r\r")), QByteArray("A"));
        QCOMPARE(copy(withoutReturnsAtEnd("A\rB\r")), QByteArray("A\rB"));
        QCOMPARE(copy(withoutReturnsAtEnd("\r\r")), QByteArray());
        QCOMPARE(copy(withoutReturnsAtEnd("")), QByteArray());
    }

    void oneMarkGoesFromTheBeginning()
    {
        QCOMPARE(copy(withoutByteOrderMark(view(mark + "A"))), QByteArray("A"));
        QCOMPARE(copy(withoutByteOrderMark(view(mark + mark))), mark);
        QCOMPARE(copy(withoutByteOrderMark(view("A" + mark))), "A" + mark);
        QCOMPARE(copy(withoutByteOrderMark("\xEF\xBB")), QByteArray("\xEF\xBB"));
    }

    void plainBytesAreTakenAsTheyAre()
    {
        const QByteArray line("A\t1");
        QByteArray memory("untouched");
        QCOMPARE(normaliseDroppingReturns(view(line), memory).data(), line.constData());
        QCOMPARE(normaliseKeepingReturns(view(line), memory).data(), line.constData());
        QCOMPARE(memory, QByteArray("untouched"));
    }

    void returnsAreKeptOrDropped()
    {
        QCOMPARE(keeping("A\rB\t\r1\r"), QByteArray("A\rB\t\r1\r"));
        QCOMPARE(dropping("A\rB\t\r1\r"), QByteArray("AB\t1"));
    }

    void whatIsNoUtf8BecomesTheReplacementCharacter()
    {
        QCOMPARE(dropping("A\xFF\t1"), QByteArray("A\xEF\xBF\xBD\t1"));
        QCOMPARE(keeping("\xC3"), QByteArray("\xEF\xBF\xBD"));
        QCOMPARE(dropping("A\xC3\r\xA9"), QByteArray("A\xEF\xBF\xBD\xEF\xBF\xBD")); // decoded first, then dropped
    }

    void aMarkIsDroppedFromTheBeginningOnly()
    {
        QCOMPARE(dropping(mark + "A"), QByteArray("A"));
        QCOMPARE(dropping(mark + mark + "A"), mark + "A");
        QCOMPARE(dropping("\r" + mark + "A"), mark + "A");
        QCOMPARE(keeping("A\t" + mark), "A\t" + mark);
    }

    void textKeepsAMark()
    {
        QCOMPARE(textOf("A"), QStringLiteral("A"));
        QCOMPARE(textOf(view(mark + "A")), QString(QStringLiteral("\uFEFF") + QStringLiteral("A")));
        QCOMPARE(textOf("\xC3\xA9"), QStringLiteral("\u00E9"));
        QCOMPARE(textOf(std::string_view("\0", 1)), QString(QChar(0)));
    }

    void fieldsEndAtEveryTab()
    {
        std::string_view rest = "A\t\tB";
        bool more = false;
        QCOMPARE(copy(takeField(rest, more)), QByteArray("A"));
        QVERIFY(more);
        QCOMPARE(copy(takeField(rest, more)), QByteArray());
        QVERIFY(more);
        QCOMPARE(copy(takeField(rest, more)), QByteArray("B"));
        QVERIFY(!more);
        QCOMPARE(copy(takeField(rest, more)), QByteArray());
        QVERIFY(!more);
        rest = "A\t";
        takeField(rest, more);
        QVERIFY(more); // the field behind the tab is empty
        QCOMPARE(copy(takeField(rest, more)), QByteArray());
        QVERIFY(!more);
    }

    /// Decoding a line and dropping or keeping its "\r" gives the text of its normalised bytes.
    void randomBytesMeanTheirText()
    {
        const QByteArray pieces[] = {"A",           "\t", "\r", mark, "\xC3\xA9", "\xC3", "\xA9", "\xF0\x9F\x98\x80",
                                     "\xED\xA0\x80"};
        std::mt19937 random(11);
        for (int i = 0; i < 100000; ++i) {
            QByteArray line;
            for (unsigned count = random() % 8; count > 0; --count) {
                line += pieces[random() % std::size(pieces)];
            }
            QString text = QString::fromUtf8(line);
            QVERIFY2(textOf(view(keeping(line))) == text, line.toHex(' ').constData());
            text.remove(QLatin1Char('\r'));
            QVERIFY2(textOf(view(dropping(line))) == text, line.toHex(' ').constData());
        }
    }
};

QTEST_APPLESS_MAIN(TestTextLine)
#include "tst_textline.moc"
