#pragma once

#include "cli/arguments.h"

#include <optional>

namespace ktr::cli {

// The option --record of commands that take a list of stations or the record of several keepers in its place.

void addRecordOption(Arguments &arguments);
/// The record on a server: of the command line, or else of the environment where no list is named; empty for
/// none.
QString sharedRecord(const Arguments &arguments);
/// The same option of commands that remember transmissions, or tell them.
void addMemoryOption(Arguments &arguments);
/// For commands that take it where another record is named.
extern const QString recordOption;
/// Wrong usage of --record alone: an address that is none.
std::optional<int> checkRecordAddress(const Arguments &arguments, const QString &record);
/// Wrong usage: both, none, or an address that is none.
std::optional<int> checkSharedRecord(const Arguments &arguments);

} // namespace ktr::cli
