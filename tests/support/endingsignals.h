#ifndef TAVOLINE_TESTS_ENDINGSIGNALS_H
#define TAVOLINE_TESTS_ENDINGSIGNALS_H

#include <QtTest>

#include <csignal>

/// The signals that the companion program ends with: a row each, with its "number".
inline void addEndingSignals()
{
    QTest::addColumn<int>("number");
    QTest::newRow("Ctrl+C") << SIGINT;
    QTest::newRow("end") << SIGTERM;
    QTest::newRow("hang-up") << SIGHUP;
    QTest::newRow("no reader") << SIGPIPE;
}

#endif
