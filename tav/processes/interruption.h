#ifndef TAVOLINE_INTERRUPTION_H
#define TAVOLINE_INTERRUPTION_H

#include <exception>

/// Thrown to end the work after a signal. main() catches it and ends the process by that signal.
class Interrupted : public std::exception
{
public:
    explicit Interrupted(int number) : signalNumber(number) {}
    int signal() const { return signalNumber; }
    const char *what() const noexcept override { return "interrupted"; }

private:
    int signalNumber;
};

/// While one lives, the signals that end a process (SIGINT, SIGTERM, SIGHUP, SIGPIPE) are only noted, so that the
/// program can remove an unfinished file before it ends. A signal that was ignored before, as nohup ignores SIGHUP,
/// stays ignored. At most one scope may live at a time.
class InterruptionScope
{
public:
    InterruptionScope();
    ~InterruptionScope();
    InterruptionScope(const InterruptionScope &) = delete;
    InterruptionScope &operator=(const InterruptionScope &) = delete;

    /// Whether one of the signals has come.
    static bool isRequested();
    /// Throws Interrupted if one has come.
    static void check();
    /// Restores the actions of the signals from before the scope. For child processes; the destructor does the same.
    static void leave();
};

/// Ends the process by the signal @p number, so that the parent process sees it.
[[noreturn]] void endBySignal(int number);

#endif
