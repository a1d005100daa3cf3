// Qt is not instrumented, and its mutexes do not go through the functions that the thread sanitizer intercepts: the
// sanitizer sees neither that an event is posted before it is delivered nor that QThread::wait() waits. The linker puts
// the functions below in the place of the ones that they call, and a mutex that the sanitizer does see repeats what the
// mutexes of Qt guarantee. Nothing is hidden: accesses that Qt does not bring into an order are still reported.

#include "TAVsearchengine.h"

#include <QDeadlineTimer>

#include <mutex>

// The names are the ones that the linker's option --wrap makes of the functions' own.
void realRun(TAVSearchEngine *engine) asm("__real__ZN15TAVSearchEngine3runEv");
void wrappedRun(TAVSearchEngine *engine) asm("__wrap__ZN15TAVSearchEngine3runEv");
bool realWait(QThread *thread, QDeadlineTimer deadline) asm("__real__ZN7QThread4waitE14QDeadlineTimer");
bool wrappedWait(QThread *thread, QDeadlineTimer deadline) asm("__wrap__ZN7QThread4waitE14QDeadlineTimer");
void realActivate(QObject *sender, const QMetaObject *type, int signal,
                  void **arguments) asm("__real__ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
void wrappedActivate(QObject *sender, const QMetaObject *type, int signal,
                     void **arguments) asm("__wrap__ZN11QMetaObject8activateEP7QObjectPKS_iPPv");

namespace
{
std::mutex handOver;

void passHandOver()
{
    const std::lock_guard<std::mutex> lock(handOver);
}

/// Called before each delivery of an event: an event that is there was posted by an emission that is over or that still
/// holds the mutex.
bool beforeDelivery(void **)
{
    passHandOver();
    return false;
}

const bool callbackRegistered = QInternal::registerCallback(QInternal::EventNotifyCallback, beforeDelivery);
} // namespace

void wrappedRun(TAVSearchEngine *engine)
{
    realRun(engine);
    passHandOver();
}

bool wrappedWait(QThread *thread, QDeadlineTimer deadline)
{
    const bool ended = realWait(thread, deadline);
    passHandOver();
    return ended;
}

void wrappedActivate(QObject *sender, const QMetaObject *type, int signal, void **arguments)
{
    std::unique_lock<std::mutex> lock(handOver, std::defer_lock);
    if (sender->thread() != QThread::currentThread()) {
        lock.lock();
    }
    realActivate(sender, type, signal, arguments);
}
