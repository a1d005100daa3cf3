// Work that lets a load go on meanwhile, in place of a time to wait.
#ifndef TAVOLINE_TESTS_OTHERWORK_H
#define TAVOLINE_TESTS_OTHERWORK_H

#include <QByteArray>

/// Does the same work every time, some ten microseconds of it, and touches nothing that a load uses. How far a load
/// comes meanwhile is for the machine to decide: the tests that race with a load choose how often they call this.
inline void doOtherWork()
{
    static const QByteArray block(4096, 'x');
    qChecksum(block.constData(), uint(block.size()));
}

#endif
