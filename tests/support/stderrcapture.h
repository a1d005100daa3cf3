// Collects what the process writes to its standard error stream.
#ifndef TAVOLINE_TESTS_STDERRCAPTURE_H
#define TAVOLINE_TESTS_STDERRCAPTURE_H

#include <QByteArray>
#include <QTemporaryFile>

/// Collects what the process writes to its standard error stream while the object lives, or until take().
class StderrCapture
{
public:
    StderrCapture();
    ~StderrCapture();
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    /// Ends the collection and returns the bytes; to be called once.
    QByteArray take();

private:
    void restore();

    QTemporaryFile file;
    int savedDescriptor = -1;
};

#endif
