// How long a test waits for what surely comes.
#ifndef TAVOLINE_TESTS_PATIENCE_H
#define TAVOLINE_TESTS_PATIENCE_H

/// In milliseconds. Only a fault lets a test wait so long: no machine is so slow.
constexpr int patience = 280000;

#endif
