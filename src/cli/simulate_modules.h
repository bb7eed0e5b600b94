#pragma once

#include "cli/arguments.h"
#include "simulator/datagram_path.h"
#include "simulator/virtual_module.h"

namespace ktr::cli {

// The option --modules of "simulate": many modules that are to be configured, in one process.

void addModulesOption(Arguments &arguments);
bool wantsModules(const Arguments &arguments);
/// Complains and returns false when its number or the port is of no use.
bool areModulesUsable(const Arguments &arguments);

/// Plays the modules until it is asked to terminate; each begins with these options.
int simulateModules(const Arguments &arguments, const ModuleOptions &options, const DatagramFaults &network);

} // namespace ktr::cli
