#ifndef TAVOLINE_OLM_RANDOM_H
#define TAVOLINE_OLM_RANDOM_H

/// A uniform number in [0, 1], from Qt's qrand().
double olm_rand();

/// A uniform integer in 0..n-1, from Qt's qrand(); 0 when @p n is below 1.
int olm_rand(int n);

/// Whether @p n is odd, negative numbers included.
bool is_odd(int n);

#endif
