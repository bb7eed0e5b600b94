#include "opmode/shared_state.h"

#include "opmode/station_states.h"

namespace ktr {

SharedState readSharedState(RecordReader &reader)
{
    constexpr int reportsOfEach = 20; // of an archive; the record has the others
    SharedState state;
    RecordedStations &stations = state.stations;
    const auto add = [&state](const EventRow &event) { state.latest += event; };
    Status &read = state.status;
    read = reader.beginSnapshot();
    const auto go = [&read](const auto &step) { read = read ? step() : read; };
    go([&] { return reader.stations([&](const StationRow &row) { stations.stations += row; }); });
    go([&] {
        return reader.notifications([&](const NotificationRow &row) { stations.notifications += row; });
    });
    go([&] { return reader.openAlarms([&](const AlarmRow &row) { stations.alarms += row; }); });
    go([&] { return reader.settings(state.settings); });
    go([&] { return reader.lastEvent(state.lastEvent); });
    go([&] {
        return reader.eventsAfter(state.lastEvent - 1, [&](const EventRow &event) {
            state.lastEventAt = event.at;
            return false;
        });
    });
    go([&] { return reader.lastAlarmChange(state.lastAlarmChange); });
    go([&] { return reader.latestOf({EventKind::History}, reportsOfEach, add); });
    go([&] {
        return reader.latestOf(QList{EventKind::Values, EventKind::Notification, EventKind::OtherMessage} +
                                   stateKinds(),
                               1, add);
    });
    go([&] { return reader.rights(state.rights); });
    reader.endSnapshot();
    if (read) {
        state.keepers = keepersOf(reader).value_or(Keepers()).names;
    }
    return state;
}

std::optional<Keepers> keepersOf(RecordReader &reader)
{
    QList<KeeperRow> keepers;
    QStringList names;
    if (!reader.keepers(keepers)) {
        return std::nullopt;
    }
    const Milliseconds lease = Leases::Times().lease;
    Milliseconds lastSign = lease;
    for (const KeeperRow &keeper : std::as_const(keepers)) {
        names += keeper.name;
        lastSign = std::clamp(lease - Milliseconds(keeper.leftMs), Milliseconds(0), lastSign);
    }
    return Keepers{names.join(QLatin1String(", ")), lastSign};
}

} // namespace ktr
