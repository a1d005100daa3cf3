// What a test has to tell the model of Qt's guarantees that the thread sanitizer is given.
#ifndef TAVOLINE_TESTS_TSANQT_H
#define TAVOLINE_TESTS_TSANQT_H

/// While one lives, in a slot that the emitting thread calls and that waits, other threads get their events.
class WithoutHandOver
{
public:
    WithoutHandOver();
    ~WithoutHandOver();
    WithoutHandOver(const WithoutHandOver &) = delete;
    WithoutHandOver &operator=(const WithoutHandOver &) = delete;
};

#endif
