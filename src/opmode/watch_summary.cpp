#include "opmode/watch_summary.h"

#include "opmode/keeping/list_replay.h"
#include "opmode/operational_mode.h"

namespace ktr {

StationStatus::Line lineOf(bool online, cStation::Liveness liveness)
{
    using Line = StationStatus::Line;
    using enum cStation::Liveness;
    return !online              ? Line::Offline
           : liveness == Alive  ? Line::Alive
           : liveness == Silent ? Line::Silent
                                : Line::Connecting;
}

void WatchSummary::addStation(StationStatus::Line line)
{
    using enum StationStatus::Line;
    ++(line == Offline ? offline : line == Alive ? alive : line == Silent ? silent : unheard);
}

void WatchSummary::addAlarm(const AlarmRow &alarm)
{
    ++standing;
    unacknowledged += alarm.acknowledged == 0 ? 1 : 0;
    shelved += alarm.shelvedUntil != 0 ? 1 : 0;
}

WatchSummary summaryOf(const OperationalMode &mode)
{
    WatchSummary summary;
    mode.stations().forEach(
        [&](const cStation &station) { summary.addStation(lineOf(station.online(), station.liveness())); });
    for (const auto &[id, alarm] : mode.alarms().standing()) {
        summary.addAlarm(alarm);
    }
    return summary;
}

Status readSummary(RecordReader &reader, WatchSummary &summary)
{
    QHash<qint64, cStation::Seen> seen;
    Status read = reader.beginSnapshot();
    if (read) {
        read = reader.statesOfRun(stateKinds(),
                                  [&](const EventRow &event) { takeState(seen[event.station], event); });
    }
    if (read) {
        read = reader.stations([&](const StationRow &station) {
            if (station.listed) {
                summary.addStation(
                    lineOf(stationAttributes(station.attributes).online, seen.value(station.id).liveness));
            }
        });
    }
    if (read) {
        read = reader.openAlarms([&](const AlarmRow &alarm) { summary.addAlarm(alarm); });
    }
    reader.endSnapshot();
    return read;
}

} // namespace ktr
