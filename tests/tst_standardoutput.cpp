// Why standard output could not be written.

#include "commandline.h"
#include "standardoutput.h"
#include "support/redirection.h"

#include <QtTest>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <future>
#include <iostream>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

namespace
{
/// Why what was printed could not be written; empty when it could.
QString faultOfFlush()
{
    try {
        flushStandardOutput();
    } catch (const CommandError &error) {
        return error.text();
    }
    return {};
}

/// Reads a pipe to its end, once it is full.
QByteArray readFullPipe(int descriptor)
{
    for (int count = 0; count < ::fcntl(descriptor, F_GETPIPE_SZ);) {
        ::ioctl(descriptor, FIONREAD, &count);
        std::this_thread::yield();
    }
    QFile file;
    return file.open(descriptor, QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class TestStandardOutput : public QObject
{
    Q_OBJECT

private slots:
    /// A program at the other end may have made the pipe so that a write to it does not wait.
    void aPipeThatTakesAPartAtATime()
    {
        std::array<int, 2> ends{};
        QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
        QCOMPARE(::fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
        auto taken = std::async(std::launch::async, readFullPipe, ends[0]);
        const QString text = QStringLiteral("\u00e4\n").repeated(1 << 18);
        QString fault;
        {
            const Redirection redirection(STDOUT_FILENO, ends[1]);
            print(text);
            fault = faultOfFlush();
        }
        ::close(ends[1]);
        const bool isWhole = taken.get() == text.toUtf8();
        QCOMPARE(fault, QString());
        QVERIFY(isWhole);
    }

    void widthOfTheHelp_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("shown");
        const auto x = [](int length) { return QString(length, QLatin1Char('x')); };
        const QString blank = QStringLiteral(" ");
        const QString end = QStringLiteral("\n");
        QTest::newRow("79") << x(40) + blank + x(38) << x(40) + blank + x(38);
        QTest::newRow("80") << x(40) + blank + x(39) << x(40) + end + x(39);
        QTest::newRow("79 in the second line")
            << x(70) + blank + x(20) + blank + x(58) + blank + x(1) << x(70) + end + x(20) + blank + x(58) + end + x(1);
        QTest::newRow("80 in the second line")
            << x(70) + blank + x(20) + blank + x(59) + blank + x(1) << x(70) + end + x(20) + end + x(59) + blank + x(1);
        QTest::newRow("words of one letter")
            << (x(1) + blank).repeated(40) + x(1) << (x(1) + blank).repeated(39) + x(1) + end + x(1);
        QTest::newRow("a word of 80") << x(1) + blank + x(80) + blank + x(1) << x(1) + end + x(80) + end + x(1);
    }

    void widthOfTheHelp()
    {
        QFETCH(QString, description);
        QFETCH(QString, shown);
        QTemporaryFile file;
        QVERIFY(file.open());
        char name[] = "tav";
        char *names[] = {name, nullptr};
        int count = 1;
        const QCoreApplication application(count, names);
        QCommandLineParser parser;
        parser.setApplicationDescription(description);
        {
            const Redirection redirection(STDOUT_FILENO, file.handle());
            parseArguments(parser, {QStringLiteral("command"), QStringLiteral("--help")});
            faultOfFlush();
        }
        file.seek(0);
        const QString help = QString::fromUtf8(file.readAll());
        QVERIFY2(help.startsWith(QStringLiteral("Usage: tav command [options]\n") + shown +
                                 QStringLiteral("\n\nOptions:\n")),
                 qPrintable(help));
    }

    /// The last test, as what is printed afterwards goes nowhere. libstdc++ flushes the standard output of glibc before
    /// it writes to std::cerr, in whatever thread; and every call of the system that fails says so in the same place.
    void theReasonOfAFailureStays()
    {
        QString fault;
        const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
        {
            const Redirection redirection(STDOUT_FILENO, full);
            print(QStringLiteral("a line\n"));
            std::thread([] { std::cerr << std::flush; }).join();
            errno = ENOTTY;
            fault = faultOfFlush();
        }
        ::close(full);
        QCOMPARE(fault, QStringLiteral("standard output: cannot be written: No space left on device"));
    }
};

QTEST_APPLESS_MAIN(TestStandardOutput)
#include "tst_standardoutput.moc"
