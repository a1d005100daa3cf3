// Texts that may hold any character, made safe for a terminal.

#include "plaintext.h"

#include <QtTest>

#include <string>

class TestPlainText : public QObject
{
    Q_OBJECT

private slots:
    void text_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("plain");
        const auto stays = [](const char *title, const QString &text) { QTest::newRow(title) << text << text; };
        const auto becomes = [](const char *title, const char32_t character, const char *plain) {
            const std::u32string text = {U'a', character, U'b'};
            QTest::newRow(title) << QString::fromStdU32String(text) << QStringLiteral("a%1b").arg(QLatin1String(plain));
        };
        stays("nothing", QString());
        stays("graph6", QStringLiteral("G?~@`{|}^_"));
        stays("blank and backslash", QStringLiteral(" \\x1b\\"));
        stays("letters", QStringLiteral("\u00a0\u00e4\u05d0\u0627\u56f3"));
        stays("beyond 16 bits", QStringLiteral("\U0001d53e\U0001f600"));

        becomes("zero", U'\0', R"(\x00)");
        becomes("line end", U'\n', R"(\x0a)");
        becomes("escape", U'\x1b', R"(\x1b)");
        becomes("delete", U'\x7f', R"(\x7f)");
        becomes("first of C1", U'\x80', R"(\x80)");
        becomes("control sequence of C1", U'\x9b', R"(\x9b)");
        becomes("last of C1", U'\x9f', R"(\x9f)");
        becomes("soft hyphen", U'\u00ad', R"(\u00ad)");
        becomes("Arabic letter mark", U'\u061c', R"(\u061c)");
        becomes("zero width space", U'\u200b', R"(\u200b)");
        becomes("left-to-right mark", U'\u200e', R"(\u200e)");
        becomes("right-to-left mark", U'\u200f', R"(\u200f)");
        becomes("line separator", U'\u2028', R"(\u2028)");
        becomes("paragraph separator", U'\u2029', R"(\u2029)");
        becomes("left-to-right embedding", U'\u202a', R"(\u202a)");
        becomes("pop directional formatting", U'\u202c', R"(\u202c)");
        becomes("right-to-left override", U'\u202e', R"(\u202e)");
        becomes("left-to-right isolate", U'\u2066', R"(\u2066)");
        becomes("pop directional isolate", U'\u2069', R"(\u2069)");
        becomes("byte order mark", U'\ufeff', R"(\ufeff)");
        becomes("tag", U'\U000e0041', R"(\U000e0041)");
    }

    void text()
    {
        QFETCH(QString, text);
        QTEST(plainText(text), "plain");
    }

    /// As where a name is cut in the middle of a character.
    void halvesOfCharacters()
    {
        const QString replacement = QChar(QChar::ReplacementCharacter);
        QCOMPARE(plainText(QString(QChar(0xd83d))), replacement);
        QCOMPARE(plainText(QString(QChar(0xde00))), replacement);
        QCOMPARE(plainText(QString(QChar(0xd83d)) + QLatin1Char('a')), replacement + QLatin1Char('a'));
    }
};

QTEST_APPLESS_MAIN(TestPlainText)
#include "tst_plaintext.moc"
