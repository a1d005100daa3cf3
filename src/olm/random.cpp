#include "random.h"

#include <QtGlobal>

#include <iostream>

double olm_rand()
{
    return qrand() / 2147483647.0;
}

int olm_rand(int n)
{
    if (n < 1) {
        return 0;
    }
    const int value = int(olm_rand() * n);
    if (value < n) {
        return value;
    }
    // qrand() has returned its greatest number.
    std::cerr << "ERROR IN OLM_RAND(int)" << std::endl;
    return n - 1;
}

bool is_odd(int n)
{
    return n % 2 != 0;
}
