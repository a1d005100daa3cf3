// The guide and the manual do what they say: their commands are run, and their output is compared.

#include "support/literals.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <vector>

namespace
{
/// A fenced block of a page.
struct Block {
    QByteArray language;
    QByteArray text;
    int line; ///< of its first line
};

std::vector<Block> blocksOf(const char *page)
{
    std::vector<Block> blocks;
    bool isInside = false;
    int number = 0;
    for (const QByteArray &line :
         contents(QStringLiteral(TAVOLINE_SOURCES "/docs/") + QLatin1String(page)).split('\n')) {
        ++number;
        if (line.startsWith("```")) {
            isInside = !isInside;
            if (isInside) {
                blocks.push_back({line.mid(3), QByteArray(), number + 1});
            }
        } else if (isInside) {
            blocks.back().text += line + '\n';
        }
    }
    return blocks;
}
} // namespace

class TestGuide : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString programs = QFileInfo(QStringLiteral(TAVOLINE_TAV)).path();
        qputenv("PATH", programs.toLocal8Bit() + ':' + qgetenv("PATH"));
        qputenv("LC_ALL", "C");
    }

    /// The commands are carried out in their order and in the same folder, each block with what it must print. The
    /// other pages have some on the database of the guide.
    void commands_data()
    {
        QTest::addColumn<QByteArray>("commands");
        QTest::addColumn<QByteArray>("output");
        for (const char *page : {"guide.md", "manual.md", "expressions.md", "beyond-one-machine.md"}) {
            const std::vector<Block> blocks = blocksOf(page);
            for (size_t i = 0; i < blocks.size(); ++i) {
                const bool isAnswered = i + 1 < blocks.size() && blocks[i + 1].language == "text";
                QTest::addRow("%s, line %d", page, blocks[i].line)
                    << blocks[i].text << (isAnswered ? blocks[i + 1].text : QByteArray());
                QVERIFY2(blocks[i].language == "sh", "commands are expected");
                i += isAnswered ? 1 : 0;
            }
            QVERIFY(!blocks.empty());
        }
    }

    void commands()
    {
        QFETCH(QByteArray, commands);
        QFETCH(QByteArray, output);
        const QStringList shell = words({"-euo", "pipefail", "-c"});
        const QString script = QStringLiteral("exec 2>&1\n") + QString::fromUtf8(commands);
        const ToolResult result = runProgram(QStringLiteral("bash"), shell + QStringList{script}, {}, folder.path());
        QCOMPARE(result.output, output);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void links()
    {
        const QRegularExpression link(QStringLiteral("\\]\\(([^)#:]+)\\)"));
        int count = 0;
        for (const char *page : {"README.md", "docs/guide.md", "docs/manual.md", "docs/expressions.md",
                                 "docs/tav-run.md", "docs/beyond-one-machine.md", "docs/sql.md"}) {
            const QString path = QStringLiteral(TAVOLINE_SOURCES "/") + QLatin1String(page);
            for (auto match = link.globalMatch(QString::fromUtf8(contents(path))); match.hasNext(); ++count) {
                const QString target = match.next().captured(1);
                QVERIFY2(QFileInfo::exists(QFileInfo(path).path() + QLatin1Char('/') + target), qPrintable(target));
            }
        }
        QVERIFY(count > 5);
    }

private:
    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(TestGuide)
#include "tst_guide.moc"
