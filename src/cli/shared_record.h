#pragma once

#include "cli/arguments.h"

#include <optional>

namespace ktr::cli {

// The option --record of commands that take a list of stations or the record of several keepers in its place.

void addRecordOption(Arguments &arguments);
/// The record on a server: of the command line, or else of the environment where no list is named; empty for
/// none.
QString sharedRecord(const Arguments &arguments);
/// Wrong usage: both, none, or an address that is none.
std::optional<int> checkSharedRecord(const Arguments &arguments);

} // namespace ktr::cli
