// The line that shows the progress of some work on a terminal.

#include "progress.h"
#include "support/redirection.h"

#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

namespace
{
/// While one lives, the standard error stream is a terminal.
class Terminal
{
public:
    Terminal() : screen(::posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (screen < 0 || ::grantpt(screen) != 0 || ::unlockpt(screen) != 0) {
            qFatal("there is no terminal");
        }
        stream.emplace(STDERR_FILENO, QString::fromLocal8Bit(::ptsname(screen)), O_RDWR | O_NOCTTY);
    }
    ~Terminal() { ::close(screen); }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    /// What was written to it since the last call. A terminal hands on what it gets a little later: a zero at the end
    /// tells that all is there.
    QByteArray take() const
    {
        std::fputc('\0', stderr);
        std::fflush(stderr);
        QByteArray bytes;
        for (char byte = 0; ::read(screen, &byte, 1) == 1 && byte != 0;) {
            bytes.append(byte);
        }
        return bytes;
    }

private:
    int screen;
    std::optional<Redirection> stream;
};

const QByteArray removal = QByteArrayLiteral("\r\033[K");
} // namespace

class TestProgress : public QObject
{
    Q_OBJECT

private slots:
    void aLineForEveryPercent()
    {
        const Terminal terminal;
        Progress progress(QStringLiteral("Counting"), 300);
        progress.report(0);
        QCOMPARE(terminal.take(), QByteArray("\rCounting: 0 %"));
        progress.report(2);
        QCOMPARE(terminal.take(), QByteArray());
        progress.report(3);
        progress.report(5);
        QCOMPARE(terminal.take(), QByteArray("\rCounting: 1 %"));
        progress.report(300);
        QCOMPARE(terminal.take(), QByteArray("\rCounting: 100 %"));
    }

    void workOfOneUnit()
    {
        const Terminal terminal;
        Progress progress(QStringLiteral("Counting"), 1);
        progress.report(1);
        QCOMPARE(terminal.take(), QByteArray("\rCounting: 100 %"));
    }

    /// Where the size of the work is not known, how much is done.
    void amountWithoutASize()
    {
        const Terminal terminal;
        Progress progress(QStringLiteral("Reading"), 0);
        progress.report(17);
        progress.report(17);
        QCOMPARE(terminal.take(), QByteArray("\rReading: 17"));
        progress.report(18);
        QCOMPARE(terminal.take(), QByteArray("\rReading: 18"));
    }

    void comesBackAfterARemoval()
    {
        const Terminal terminal;
        Progress progress(QStringLiteral("Counting"), 100);
        progress.report(1);
        Progress::clear();
        Progress::clear();
        QCOMPARE(terminal.take(), "\rCounting: 1 %" + removal);
        progress.report(1);
        QCOMPARE(terminal.take(), QByteArray("\rCounting: 1 %"));
    }

    void endsWithTheWork()
    {
        const Terminal terminal;
        auto progress = std::make_unique<Progress>(QStringLiteral("Counting"), 100);
        progress->report(1);
        progress.reset();
        QCOMPARE(terminal.take(), "\rCounting: 1 %" + removal);
    }

    void nothingWithoutATerminal()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        {
            const Redirection stream(STDERR_FILENO, file.handle());
            Progress progress(QStringLiteral("Counting"), 100);
            progress.report(1);
        }
        QCOMPARE(file.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestProgress)
#include "tst_progress.moc"
