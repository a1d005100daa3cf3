// Whole text files, as the viewer reads them, and the parts of a text.

#include "support/literals.h"
#include "support/testfiles.h"
#include "support/withoutrights.h"
#include "textfile.h"

#include <QtTest>

#include <sys/stat.h>

namespace
{
constexpr int longest = 16 * 1024 * 1024; // bytes

QStringList partsOf(TextParts parts)
{
    QStringList all;
    while (!parts.atEnd()) {
        all.append(parts.next());
    }
    return all;
}
} // namespace

class TestTextFile : public QObject
{
    Q_OBJECT

private slots:
    void aTextWithoutItsCarriageReturns()
    {
        QByteArray text("old");
        QVERIFY(readTextFile(write("\r1\t2\r\n\n3\xe9\r\r\n\r"), text));
        QCOMPARE(text, QByteArray("1\t2\n\n3\xe9\n"));
        QVERIFY(readTextFile(write(QByteArray()), text));
        QCOMPARE(text, QByteArray());
    }

    void asLongAsTheLimitAndAByteMore()
    {
        QByteArray content(longest, 'x');
        QByteArray text;
        QVERIFY(readTextFile(write(content), text));
        QVERIFY(text == content);
        QVERIFY(!readTextFile(write(content + 'x'), text));
        content.replace(0, 2, "\r\r"); // they count, too
        QVERIFY(readTextFile(write(content), text));
        QCOMPARE(text.size(), longest - 2);
        QVERIFY(!readTextFile(write(content + '\r'), text));
    }

    void whatIsNoText()
    {
        QByteArray text;
        QVERIFY(!readTextFile(write(QByteArray("1\0", 2)), text));
        QVERIFY(!readTextFile(write(QByteArray("\0", 1)), text));
        QVERIFY(!readTextFile(folder.path(), text));
        QVERIFY(!readTextFile(folder.path("missing"), text));
        QVERIFY(!readTextFile(QString(), text));
        QVERIFY(!readTextFile(QStringLiteral("/dev/zero"), text));
        QVERIFY(!readTextFile(QStringLiteral("/proc/self/mem"), text)); // can be opened, but not read
    }

    void aFileThatCannotBeOpened()
    {
        const QString file = write("0\n\n");
        QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
        QByteArray text;
        {
            const WithoutRights secret(file, 0);
            QVERIFY(!readTextFile(file, text));
        }
        QVERIFY(readTextFile(file, text));
        QCOMPARE(text, QByteArray("0\n\n"));
    }

    void partsBetweenSeparators()
    {
        QCOMPARE(partsOf(TextParts::lines("a\tb\nc")), words({"a\tb", "c"}));
        QCOMPARE(partsOf(TextParts::fields(QLatin1String("a\tb\nc"))), words({"a", "b\nc"}));
        QCOMPARE(partsOf(TextParts::lines("\n\na\n")), words({"", "", "a", ""}));
        QCOMPARE(partsOf(TextParts::lines("")), words({""}));
        QCOMPARE(partsOf(TextParts(QLatin1String("1,2,,3"), ',')), words({"1", "2", "", "3"}));
    }

    void nothingIsBehindTheLastPart()
    {
        TextParts parts = TextParts::fields(QLatin1String("a\tb"));
        QVERIFY(!parts.atEnd());
        QCOMPARE(parts.next(), QLatin1String("a"));
        QVERIFY(!parts.atEnd());
        QCOMPARE(parts.next(), QLatin1String("b"));
        for (int i = 0; i < 3; ++i) {
            QVERIFY(parts.atEnd());
            QCOMPARE(parts.next(), QLatin1String(""));
        }
    }

    /// A reader that looked at all that is left for each line would never end.
    void manyLinesTakeTimeInProportion()
    {
        const QByteArray text(longest, '\n');
        TextParts lines = TextParts::lines(text);
        int count = 0;
        for (; !lines.atEnd(); ++count) {
            QVERIFY(lines.next().isEmpty());
        }
        QCOMPARE(count, longest + 1);
    }

private:
    QString write(const QByteArray &content) const { return folder.write("text", content); }

    TestFolder folder;
};

QTEST_GUILESS_MAIN(TestTextFile)
#include "tst_textfile.moc"
