// Loads of a manager: waiting for their outcome.
#ifndef TAVOLINE_TESTS_LOADING_H
#define TAVOLINE_TESTS_LOADING_H

#include "TAVmanager.h"
#include "TAVsearchengine.h"
#include "patience.h"
#include "signalrecorder.h"

#include <QCoreApplication>
#include <QtTest>

#include <algorithm>

/// Whether a recorded signal of the manager is the outcome of a load.
inline bool isOutcome(const QString &line)
{
    return line == QLatin1String("database_loaded") || line == QLatin1String("database_empty");
}

inline bool hasOutcome(const QStringList &lines)
{
    return std::any_of(lines.begin(), lines.end(), isOutcome);
}

/// Turns the event loop until an outcome of @p manager is recorded, and delivers whatever the engine emits until the
/// end of its thread: after that nothing more comes. Returns false when there is no outcome.
inline bool waitForOutcome(const TAVManager &manager, const SignalRecorder &recorder)
{
    const bool arrived = QTest::qWaitFor([&recorder] { return hasOutcome(recorder.recorded()); }, patience);
    manager.findChild<TAVSearchEngine *>()->wait();
    QCoreApplication::sendPostedEvents();
    return arrived;
}

/// Loads the file @p path and returns the outcome: true when it was loaded.
inline bool loadAndWait(TAVManager &manager, const QString &path)
{
    const SignalRecorder recorder(manager);
    manager.loadDatabase(path);
    if (!waitForOutcome(manager, recorder)) {
        qFatal("the load does not end");
    }
    return recorder.recorded().contains(QLatin1String("database_loaded"));
}

#endif
