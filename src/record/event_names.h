#pragma once

#include "record/record_rows.h"

namespace ktr {

// What kinds of events are called in tables and JSON lines, in every language.

/// The number, where a newer version of the program made the kind.
QString nameOf(EventKind kind);
/// Empty for a kind of a newer version.
QString nameOf(AlarmKind kind);

} // namespace ktr
