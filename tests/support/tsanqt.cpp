// Qt is compiled without the thread sanitizer, and its mutexes use futexes, which the sanitizer does not intercept. So
// the sanitizer knows neither that an event is posted before it is delivered nor that QThread::wait() waits. The linker
// replaces three functions by the ones below, which lock a std::mutex, known to the sanitizer, where Qt locks its own.
// This hides no fault: accesses that Qt does not order are still reported.

#include "tsanqt.h"

#include "TAVsearchengine.h"

#include <QDeadlineTimer>

#include <mutex>

// The linker's option --wrap makes these names from the mangled names of the functions.
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

/// Called before each delivery of an event. wrappedActivate() holds the mutex while it posts an event, so that the lock
/// here comes after that.
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

WithoutHandOver::WithoutHandOver()
{
    handOver.unlock();
}

WithoutHandOver::~WithoutHandOver()
{
    handOver.lock();
}
