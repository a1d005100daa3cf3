// Lines that are longer than the limit, in the files that the window reads: each file is refused, with the reason.

#include "TAVmanager.h"
#include "support/literals.h"
#include "support/loadedengine.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"

#include <QFile>
#include <QtTest>

namespace
{
using Load = bool (TAVSearchEngine::*)(const QString &);

/// Lengthens a file by a line beyond the limit, of zeros, which take no room on the disk.
void appendLongLine(const QString &path)
{
    if (!QFile::resize(path, qint64(1) << 30)) {
        qFatal("cannot resize %s", qPrintable(path));
    }
}
} // namespace

Q_DECLARE_METATYPE(Load)

class TestLongLines : public QObject
{
    Q_OBJECT

private slots:
    void invariantFile_data();
    void invariantFile();
    void listFile();
};

void TestLongLines::invariantFile_data()
{
    QTest::addColumn<Load>("load");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("inv");
    QTest::newRow("I1, header") << &TAVSearchEngine::loadInv1 << QByteArray() << QStringLiteral("7 8 9");
    QTest::newRow("I1, second graph") << &TAVSearchEngine::loadInv1 << QByteArray("h\n@\t5\n")
                                      << QStringLiteral("5 8 9");
    QTest::newRow("I2, third graph") << &TAVSearchEngine::loadInv2 << QByteArray("h\n@\t5\nA_\t6\n")
                                     << QStringLiteral("5 6 9");
}

void TestLongLines::invariantFile()
{
    QFETCH(Load, load);
    QFETCH(QByteArray, before);
    LoadedEngine database("@\nA_\t0\nBw\t1\n");
    database.setInv1({7.0, 8.0, 9.0});
    database.setInv2({7.0, 8.0, 9.0});
    const QString file = database.write("i.txt", before);
    appendLongLine(file);
    const SignalRecorder signalsSeen(database.engine);
    QVERIFY(!(database.engine.*load)(file));
    QCOMPARE(signalsSeen.recorded(), QStringList{QStringLiteral("console Unable to read file :") + file});
    QCOMPARE(database.engine.fileFault(), QStringLiteral("a line of more than 512 MiB"));
    QTEST(load == &TAVSearchEngine::loadInv1 ? database.inv1() : database.inv2(), "inv");
}

void TestLongLines::listFile()
{
    const TestFolder folder;
    const QString file = folder.write("list.g6", "Bw\n");
    appendLongLine(file);
    TAVManager manager;
    const SignalRecorder signalsSeen(manager);
    QVERIFY(!manager.addListFromFile(text("A"), file));
    QCOMPARE(signalsSeen.recorded(),
             (QStringList{QStringLiteral("console Unable to read file :") + file, QStringLiteral("manager_ready")}));
    QCOMPARE(manager.fileFault(), text("a line of more than 512 MiB"));
    QCOMPARE(manager.listNames(), QStringList());
}

QTEST_GUILESS_MAIN(TestLongLines)
#include "tst_longlines.moc"
