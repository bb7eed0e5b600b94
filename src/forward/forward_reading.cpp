#include "forward/forward_reading.h"

#include "opmode/keeping/list_record.h"
#include "opmode/station_states.h"

#include <QDateTime>

#include <algorithm>

namespace ktr {

namespace {

/// After which a station is another in the list.
const QList<EventKind> listKinds{EventKind::StationAdded, EventKind::StationRemoved, EventKind::Attributes};

} // namespace

Status ForwardReading::end(RecordReader &reader, ForwardPosition &end)
{
    Status read = reader.lastAlarmChange(end.change);
    if (read) {
        read = reader.lastEvent(end.event);
    }
    return read;
}

Status ForwardReading::readStations(RecordReader &reader)
{
    return reader.stations([this](const StationRow &row) {
        m_names.insert(row.id, row.name);
        if (m_statesUpTo) {
            Station &station = m_stations[row.id];
            station.attributes = stationAttributes(row.attributes);
            station.isListed = row.listed;
        }
    });
}

ForwardPage ForwardReading::present(RecordReader &reader, const ForwardPosition &from)
{
    ForwardPage page;
    page.upTo = from;
    m_stations.clear();
    m_statesUpTo = 0;
    qint64 at = 0;
    page.status = reader.beginSnapshot();
    const auto go = [&page](const auto &step) { page.status = page.status ? step() : page.status; };
    go([&] { return readStations(reader); });
    go([&] {
        return reader.latestOf(stateKinds(), 1, [&](const EventRow &event) {
            takeState(m_stations[event.station].seen, event);
            at = std::max(at, event.at);
        });
    });
    go([&] {
        return reader.openAlarms([&](const AlarmRow &alarm) {
            page.items.push_back(
                {{m_topics.standing(alarm.id), alarmJson(alarm, m_names.value(alarm.station)), true}});
        });
    });
    go([&] { return reader.lastEvent(page.lastEvent); });
    reader.endSnapshot();
    m_statesUpTo = page.lastEvent;
    for (const qint64 station : m_stations.keys()) {
        tellState(station, at, page);
    }
    return page;
}

void ForwardReading::tellState(qint64 number, qint64 at, ForwardPage &page)
{
    const auto station = m_stations.find(number);
    if (station == m_stations.end() || !station->isListed) {
        return;
    }
    const QString name = m_names.value(number);
    const QByteArray json = stateJson(station->attributes, station->seen, name);
    if (json != std::exchange(station->told, json)) {
        page.items.push_back({{m_topics.state(name), withTime(json, at), true}});
    }
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
                                return event.kind == EventKind::StationRenamed || isUnknown(event.station) ||
                                       (m_statesUpTo && listKinds.contains(event.kind));
                            }) ||
        std::ranges::any_of(alarms, [&](const auto &alarm) { return isUnknown(alarm.first.station); });
    if (page.status && hasNews) {
        page.status = readStations(reader);
    }
    if (page.status) {
        page.status = reader.lastEvent(page.lastEvent);
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

void ForwardReading::add(const EventRow &event, ForwardPage &page)
{
    const QString name = m_names.value(event.station);
    const bool isRenaming = event.kind == EventKind::StationRenamed;
    if (isRenaming || event.kind == EventKind::StationRemoved) {
        clear(isRenaming ? nameBefore(event) : name, page);
    }
    if (m_statesUpTo && event.station != 0) {
        if (event.id > *m_statesUpTo) {
            takeState(m_stations[event.station].seen, event);
        }
        tellState(event.station, event.at, page);
    }
    page.upTo.event = event.id;
    page.items.push_back({{m_topics.events(name), eventJson(event, name)}, page.upTo});
}

/// Another station may be called so by now.
void ForwardReading::clear(const QString &name, ForwardPage &page)
{
    const QString topic = m_topics.state(name);
    page.items.push_back({{topic, {}, true}, {}, true});
    for (auto [number, station] : m_stations.asKeyValueRange()) {
        if (station.isListed && m_topics.state(m_names.value(number)) == topic) {
            station.told.clear();
            tellState(number, QDateTime::currentMSecsSinceEpoch(), page);
        }
    }
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
