#include "interruption.h"

#include <array>
#include <csignal>
#include <cstdlib>

namespace
{
constexpr std::array<int, 4> endingSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

volatile std::sig_atomic_t lastSignal = 0;

void note(int number)
{
    lastSignal = number;
}

void handleBy(void (*handler)(int))
{
    for (const int number : endingSignals) {
        struct sigaction action = {};
        action.sa_handler = handler;
        sigaction(number, &action, nullptr);
    }
}
} // namespace

InterruptionScope::InterruptionScope()
{
    lastSignal = 0;
    handleBy(note);
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
    handleBy(SIG_DFL);
}

void endBySignal(int number)
{
    std::signal(number, SIG_DFL);
    std::raise(number);
    std::abort();
}
