#pragma once

#include "opmode/station/exclusive_schedule.h"

#include <QString>

namespace ktr {

/// What is kept of a station beside its nodes.
struct StationAttributes
{
    bool exclusiveMode = false;
    ExclusiveSchedule schedule;
    QString hostAddress;
    bool online = false;
    bool operator==(const StationAttributes &) const = default;
};

} // namespace ktr
