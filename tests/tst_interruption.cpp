// The signals that end the companion program: noted in a scope, restored behind it.

#include "interruption.h"
#include "support/endingsignals.h"

#include <QtTest>

#include <csignal>

namespace
{
volatile std::sig_atomic_t noticed = 0;

void notice(int number)
{
    noticed = number;
}

/// What the signal @p number does now.
sighandler_t handlerOf(int number)
{
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    return action.sa_handler;
}
} // namespace

class TestInterruption : public QObject
{
    Q_OBJECT

private slots:
    void aSignalIsNoted_data() { addEndingSignals(); }

    void aSignalIsNoted()
    {
        QFETCH(int, number);
        const InterruptionScope scope;
        InterruptionScope::check();
        QVERIFY(!InterruptionScope::isRequested());
        std::raise(number);
        QVERIFY(InterruptionScope::isRequested());
        int thrown = 0;
        try {
            InterruptionScope::check();
        } catch (const Interrupted &interruption) {
            thrown = interruption.signal();
        }
        QCOMPARE(thrown, number);
    }

    /// As nohup asks for.
    void anIgnoredSignalStaysIgnored()
    {
        const sighandler_t before = std::signal(SIGHUP, SIG_IGN);
        {
            const InterruptionScope scope;
            std::raise(SIGHUP);
            QVERIFY(!InterruptionScope::isRequested());
            std::raise(SIGTERM);
            QVERIFY(InterruptionScope::isRequested());
        }
        QVERIFY(handlerOf(SIGHUP) == SIG_IGN);
        std::signal(SIGHUP, before);
    }

    void aScopeLeavesTheSignalsAsTheyWere()
    {
        const sighandler_t before = std::signal(SIGTERM, notice);
        {
            const InterruptionScope scope;
            std::raise(SIGTERM);
            QCOMPARE(int(noticed), 0);
            InterruptionScope::leave();
            std::raise(SIGTERM);
            QCOMPARE(int(noticed), SIGTERM);
        }
        QVERIFY(handlerOf(SIGTERM) == notice);
        std::signal(SIGTERM, before);
    }
};

QTEST_APPLESS_MAIN(TestInterruption)
#include "tst_interruption.moc"
