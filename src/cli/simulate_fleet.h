#pragma once

#include "cli/arguments.h"
#include "simulator/datagram_path.h"

namespace ktr::cli {

/// The options of a fleet, "--fleet" first among them.
void addFleetOptions(Arguments &arguments);

bool wantsFleet(const Arguments &arguments);

/// The first option that only a fleet has and that is set; empty when there is none.
QString fleetOptionInUse(const Arguments &arguments);

/// False, after a complaint, when a fleet's number is none.
bool isFleetUsable(const Arguments &arguments);

/// Plays many modules in operation until the program is asked to terminate.
int simulateFleet(const Arguments &arguments, const DatagramFaults &network);

} // namespace ktr::cli
