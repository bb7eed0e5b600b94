#include "forward/forward_reading.h"

#include "opmode/keeping/list_record.h"

#include <algorithm>

namespace ktr {

Status ForwardReading::end(RecordReader &reader, ForwardPosition &end)
{
    Status read = reader.lastAlarmChange(end.change);
    if (read) {
        read = reader.lastEvent(end.event);
    }
    return read;
}

ForwardPage ForwardReading::page(RecordReader &reader, const ForwardPosition &from)
{
    ForwardPage page;
    page.upTo = from;
    std::vector<EventRow> events;
    std::vector<std::pair<AlarmRow, qint64>> alarms;
    page.status = reader.eventsAfter(from.event, [&](const EventRow &event) {
        events.push_back(event);
        return events.size() < mostOfPage;
    });
    if (page.status) {
        page.status = reader.alarmsChangedAfter(
            from.change, [&](const AlarmRow &alarm, qint64 change) { alarms.emplace_back(alarm, change); },
            mostOfPage);
    }
    const auto isUnknown = [this](qint64 station) { return station != 0 && !m_names.contains(station); };
    const bool hasNews =
        std::ranges::any_of(events,
                            [&](const EventRow &event) {
                                return event.kind == EventKind::StationRenamed || isUnknown(event.station);
                            }) ||
        std::ranges::any_of(alarms, [&](const auto &alarm) { return isUnknown(alarm.first.station); });
    if (page.status && hasNews) {
        page.status =
            reader.stations([this](const StationRow &station) { m_names.insert(station.id, station.name); });
    }
    if (!page.status) {
        return page;
    }
    for (const EventRow &event : events) {
        add(event, page);
    }
    for (const auto &[alarm, change] : alarms) {
        add(alarm, change, page);
    }
    return page;
}

void ForwardReading::add(const EventRow &event, ForwardPage &page) const
{
    const QString name = m_names.value(event.station);
    const bool isRenaming = event.kind == EventKind::StationRenamed;
    if (isRenaming || event.kind == EventKind::StationRemoved) {
        const QString before = isRenaming ? nameBefore(event) : name;
        page.items.push_back({{m_topics.state(before), {}, true}, {}, true});
    }
    page.upTo.event = event.id;
    page.items.push_back({{m_topics.events(name), eventJson(event, name)}, page.upTo});
}

/// Whoever subscribes later is told of those that stand, and of no others.
void ForwardReading::add(const AlarmRow &alarm, qint64 change, ForwardPage &page) const
{
    const QString name = m_names.value(alarm.station);
    const QByteArray json = alarmJson(alarm, name);
    const bool stands = alarm.acknowledged == 0 || alarm.over == 0;
    page.items.push_back({{m_topics.standing(alarm.id), stands ? json : QByteArray(), true}});
    page.upTo.change = change;
    page.items.push_back({{m_topics.alarms(name), json}, page.upTo});
}

} // namespace ktr
