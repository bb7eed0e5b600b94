#include "opmode/window/record/line_place.h"

#include "opmode/operational_mode.h"
#include "opmode/station/station_messages.h"

namespace ktr {

namespace {

QModelIndex firstOf(const QModelIndexList &entries)
{
    return entries.isEmpty() ? QModelIndex() : entries.constFirst();
}

QModelIndex entryOf(const EventRow &event, const QString &kennung, const OperationalMode &mode)
{
    const StationMessage message =
        event.kind == EventKind::Notification ? interpretStationMessage(event.text) : NoStationMessage();
    if (const auto *notification = std::get_if<NotificationMessage>(&message)) {
        return mode.tree().find(entryKey(kennung, branches::notifications, notification->entry.key));
    }
    const AlarmRow *alarm = mode.alarms().alarm(event.alarm);
    return alarm == nullptr ? QModelIndex() : firstOf(mode.entriesOf(*alarm));
}

} // namespace

LinePlace placeOf(const RecordLine &line, const OperationalMode &mode)
{
    LinePlace place;
    place.kennung = mode.stationOf(AlarmRow{.station = stationOf(line)});
    if (!place.kennung.isEmpty()) {
        const auto *event = std::get_if<EventRow>(&line);
        place.entry = event == nullptr ? firstOf(mode.entriesOf(std::get<AlarmRow>(line)))
                                       : entryOf(*event, place.kennung, mode);
    }
    return place;
}

} // namespace ktr
