// Which files are read.

#include "inputfile.h"
#include "support/withoutrights.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

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

    void saysWhyNot()
    {
        const QTemporaryDir directory;
        QCOMPARE(::chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
        const auto reason = [](const QString &path) {
            QFile file(path);
            QString text;
            return openForReading(file, &text) ? QStringLiteral("opened") : text;
        };
        QFile file(directory.filePath(QStringLiteral("file")));
        QCOMPARE(reason(file.fileName()), QStringLiteral("No such file or directory"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QCOMPARE(reason(file.fileName()), QStringLiteral("opened"));
        QCOMPARE(reason(file.fileName() + QStringLiteral("/file")), QStringLiteral("Not a directory"));
        QCOMPARE(reason(directory.path()), QStringLiteral("Is a directory"));
        QCOMPARE(reason(QString()), QStringLiteral("No such file or directory"));
        const QString pipe = directory.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(reason(pipe), QStringLiteral("Not a regular file"));
        const WithoutRights secret(file.fileName(), 0);
        QCOMPARE(reason(file.fileName()), QStringLiteral("Permission denied"));
    }
};

QTEST_APPLESS_MAIN(TestInputFile)
#include "tst_inputfile.moc"
