#ifndef TAVOLINE_INTERRUPTION_H
#define TAVOLINE_INTERRUPTION_H

#include <exception>

/// Thrown where the work is given up after a signal; whoever catches it last ends the process by that signal.
class Interrupted : public std::exception
{
public:
    explicit Interrupted(int number) : signalNumber(number) {}
    int signal() const { return signalNumber; }
    const char *what() const noexcept override { return "interrupted"; }

private:
    int signalNumber;
};

/// While one lives, the signals that end a process (SIGINT, SIGTERM, SIGHUP, SIGPIPE) are noted instead, so that a file
/// that is being written can be taken back first. One that was ignored before, as nohup ignores SIGHUP, stays ignored.
/// There is never more than one scope.
class InterruptionScope
{
public:
    InterruptionScope();
    ~InterruptionScope();
    InterruptionScope(const InterruptionScope &) = delete;
    InterruptionScope &operator=(const InterruptionScope &) = delete;

    /// Whether one of the signals has come.
    static bool isRequested();
    /// Throws Interrupted when one has.
    static void check();
    /// Lets the signals do what they did before the scope: at its end, and in a child of the process it belongs to.
    static void leave();
};

/// Ends the process by the signal @p number, as if it had never been caught.
[[noreturn]] void endBySignal(int number);

#endif
