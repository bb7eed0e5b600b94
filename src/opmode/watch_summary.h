#pragma once

#include "opmode/station/station.h"
#include "opmode/tree/station_tree.h"
#include "record/record_reader.h"

namespace ktr {

class OperationalMode;

/// What every mark and every count takes a station for. Silent is who is online and was not heard for the
/// last period, whatever alarms it has; who is not online is offline, whatever was heard before.
StationStatus::Line lineOf(bool online, cStation::Liveness liveness);

/// How many stations of a list there are in each state, and how many alarms stand.
struct WatchSummary
{
    int alive = 0;
    int silent = 0;
    int unheard = 0; ///< online, and neither of both yet
    int offline = 0;
    int standing = 0;
    int unacknowledged = 0; ///< of those that stand
    int shelved = 0;        ///< of those that stand

    int stations() const { return alive + silent + unheard + offline; }
    void addStation(StationStatus::Line line);
    void addAlarm(const AlarmRow &alarm);
    bool operator==(const WatchSummary &) const = default;
};

WatchSummary summaryOf(const OperationalMode &mode);
/// As a record tells it of the present or last keeper. After a failure not all is counted.
Status readSummary(RecordReader &reader, WatchSummary &summary);

} // namespace ktr
