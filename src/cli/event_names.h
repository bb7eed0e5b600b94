#pragma once

#include "opmode/station_event.h"
#include "record/event_names.h"

namespace ktr::cli {

/// As the record's events of the same kind.
QString nameOf(StationEvent::Kind kind);

} // namespace ktr::cli
