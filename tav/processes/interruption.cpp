#include "interruption.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>

namespace
{
constexpr std::array<int, 4> endingSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

std::atomic<int> lastSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may set it");

void note(int number)
{
    lastSignal = number;
}

/// The actions of the signals before the scope, in the order of endingSignals.
std::array<struct sigaction, endingSignals.size()> actionsBefore;
} // namespace

InterruptionScope::InterruptionScope()
{
    lastSignal = 0;
    struct sigaction noting = {};
    noting.sa_handler = note;
    for (size_t i = 0; i < endingSignals.size(); ++i) {
        sigaction(endingSignals[i], nullptr, &actionsBefore[i]);
        if (actionsBefore[i].sa_handler != SIG_IGN) {
            sigaction(endingSignals[i], &noting, nullptr);
        }
    }
}

InterruptionScope::~InterruptionScope()
{
    leave();
}

bool InterruptionScope::isRequested()
{
    return lastSignal != 0;
}

void InterruptionScope::check()
{
    if (isRequested()) {
        throw Interrupted(lastSignal);
    }
}

void InterruptionScope::leave()
{
    for (size_t i = 0; i < endingSignals.size(); ++i) {
        sigaction(endingSignals[i], &actionsBefore[i], nullptr);
    }
}

void endBySignal(int number)
{
    std::signal(number, SIG_DFL);
    std::raise(number);
    std::abort();
}
