#pragma once

#include "config/neighbours.h"
#include "link/problem.h"

namespace ktr {

/// Adds what a configuration must not share with those beside it: a MAC address, unless both are of one
/// station.
void findNeighbourProblems(const Configuration &configuration, const QList<Neighbour> &neighbours,
                           QList<Problem> &problems);

} // namespace ktr
