#ifndef TAVOLINE_INVARIANTGROUPS_H
#define TAVOLINE_INVARIANTGROUPS_H

#include "invariantcatalogue.h"

#include <vector>

// The entries of the catalogue, each group in a file of its own.

std::vector<Invariant> countInvariants();
std::vector<Invariant> degreeInvariants();
std::vector<Invariant> distanceInvariants();
std::vector<Invariant> cycleInvariants();
std::vector<Invariant> subsetInvariants();
std::vector<Invariant> spectralInvariants();
std::vector<Invariant> propertyInvariants();

#endif
