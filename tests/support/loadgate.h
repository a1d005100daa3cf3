// A gate at which the load of a database stops at a chosen moment.
#ifndef TAVOLINE_TESTS_LOADGATE_H
#define TAVOLINE_TESTS_LOADGATE_H

#include "TAVmanager.h"
#include "TAVsearchengine.h"
#include "patience.h"

#include <QObject>
#include <QSemaphore>
#include <QThread>

#include <memory>

#ifdef __SANITIZE_THREAD__
#include "tsanqt.h"
#endif

/// Holds a load of @p manager at the signal number @p position, counted from 0, that the engine emits while the gate
/// lives: this signal is posted, nothing comes after it. The load goes on when the gate is opened or destroyed, or when
/// the load is asked to stop.
class LoadGate : public QObject
{
public:
    LoadGate(const TAVManager &manager, int position)
    {
        const auto *engine = manager.findChild<TAVSearchEngine *>();
        const auto pass = [gate = gate, position] { gate->pass(position); };
        // The manager connected first: its event is posted when the gate closes.
        connect(engine, &TAVSearchEngine::signal_console, this, pass, Qt::DirectConnection);
        connect(engine, &TAVSearchEngine::signal_progress, this, pass, Qt::DirectConnection);
        connect(engine, &TAVSearchEngine::signal_load_succedded, this, pass, Qt::DirectConnection);
        connect(engine, &TAVSearchEngine::signal_load_failed, this, pass, Qt::DirectConnection);
    }
    ~LoadGate() override { open(); }
    LoadGate(const LoadGate &) = delete;
    LoadGate &operator=(const LoadGate &) = delete;

    /// Waits, without a turn of the event loop, until a load stands at the gate; false when none comes.
    bool waitForLoad() { return gate->reached.tryAcquire(1, patience); }
    void open() { gate->opened.release(); }

private:
    /// What the thread of the load uses, even if the gate is gone by then.
    struct Gate {
        void pass(int position)
        {
            if (count++ == position) {
                reached.release();
#ifdef __SANITIZE_THREAD__
                const WithoutHandOver others;
#endif
                while (!opened.tryAcquire(1, 1) && !QThread::currentThread()->isInterruptionRequested()) {
                }
            }
        }

        QSemaphore reached;
        QSemaphore opened;
        int count = 0; // of the signals so far
    };

    const std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};

#endif
