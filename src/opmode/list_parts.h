#pragma once

#include "opmode/alarms/alarm_book.h"
#include "opmode/exclusive_scheduler.h"
#include "opmode/keeping/list_record.h"
#include "opmode/station/value_trends.h"

namespace ktr {

/// The parts of an open list of stations, for the classes that work on it. They outlive those.
struct ListParts
{
    StationTree &tree;
    cStations &stations;
    ExclusiveScheduler &scheduler;
    ValueTrends &trends;
    ListRecord &record;
    AlarmBook &alarms;
    Timers &timers;
    const Environment &environment;

    /// Milliseconds since 1970, UTC.
    qint64 moment() const { return environment.now().toMSecsSinceEpoch(); }
};

} // namespace ktr
