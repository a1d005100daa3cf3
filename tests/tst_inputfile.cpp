#include "inputfile.h"
#include "support/withoutrights.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

/// Which files are read.
class TestInputFile : public QObject
{
    Q_OBJECT

private slots:
    void opensFilesOnly()
    {
        const QTemporaryDir directory;
        QCOMPARE(::chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
        QFile file(directory.filePath(QStringLiteral("file")));
        QVERIFY(!openForReading(file));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        {
            const WithoutRights secret(file.fileName(), 0);
            QVERIFY(!openForReading(file));
        }
        QVERIFY(openForReading(file));
        QFile folder(directory.path());
        QVERIFY(!openForReading(folder));
    }
};

QTEST_APPLESS_MAIN(TestInputFile)
#include "tst_inputfile.moc"
