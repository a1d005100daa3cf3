// The signals that end the companion program, as rows of a test.
#ifndef TAVOLINE_TESTS_ENDINGSIGNALS_H
#define TAVOLINE_TESTS_ENDINGSIGNALS_H

#include <QtTest>

#include <csignal>

/// Adds a test row with the "number" of each signal that ends tav.
inline void addEndingSignals()
{
    QTest::addColumn<int>("number");
    QTest::newRow("Ctrl+C") << SIGINT;
    QTest::newRow("end") << SIGTERM;
    QTest::newRow("hang-up") << SIGHUP;
    QTest::newRow("no reader") << SIGPIPE;
}

#endif
