#pragma once

#include "cli/arguments.h"

namespace ktr::cli {

// The option --fleet of "transmit": many stations at once. The options --changes, --resume, --timeout and
// those of the memory are those of a single transmission.

void addFleetTransmission(Arguments &arguments);
bool wantsFleetTransmission(const Arguments &arguments);
/// Complains about wrong usage and returns the exit code.
std::optional<int> checkFleetTransmission(const Arguments &arguments);
/// An option that is of use with a fleet only and was given; empty when there is none.
QString fleetOptionOfOne(const Arguments &arguments);

/// Transmits to each station of the list; the exit code.
int transmitToFleet(const Arguments &arguments);

} // namespace ktr::cli
