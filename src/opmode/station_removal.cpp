#include "opmode/station_removal.h"

#include <numeric>

namespace ktr {

void StationRemoval::remove(const QString &kennung)
{
    const QModelIndex station = m_parts.tree.find(kennung);
    if (!station.isValid()) {
        return;
    }
    Removed removed;
    removed.kennung = kennung;
    removed.number = m_parts.record.number(kennung);
    removed.attributes = m_actions.attributes(kennung);
    if (const cStation *watched = m_parts.stations.Item(kennung)) {
        removed.seen = watched->seen();
    }
    for (const auto &[id, alarm] : m_parts.alarms.standing()) {
        if (alarm.station == removed.number) {
            removed.alarms += alarm;
            removed.waiting += m_parts.alarms.isWaiting(alarm) ? 1 : 0;
        }
    }
    for (const Shelf &shelf : m_parts.alarms.shelves()) {
        if (shelf.station == removed.number) {
            removed.shelves += shelf;
        }
    }
    removed.trends = m_parts.trends.take(kennung);
    m_actions.takeOut(kennung);
    removed.node = m_parts.tree.setAside(station);
    m_parts.record.removeStation(kennung);
    m_removed.push_back(std::move(removed));
}

QStringList StationRemoval::stations() const
{
    QStringList stations;
    for (const Removed &removed : m_removed) {
        stations += removed.kennung;
    }
    return stations;
}

int StationRemoval::closedAlarms() const
{
    return std::accumulate(m_removed.begin(), m_removed.end(), 0,
                           [](int sum, const Removed &removed) { return sum + removed.waiting; });
}

bool StationRemoval::restoreNext()
{
    if (m_removed.empty()) {
        return false;
    }
    Removed &removed = m_removed.front();
    if (!m_parts.tree.putBack(removed.node).isValid()) {
        m_removed.push_back(std::move(removed));
        m_removed.pop_front();
        return false;
    }
    m_parts.record.knowStation(removed.number, removed.kennung);
    m_parts.trends.putBack(std::move(removed.trends));
    for (const Shelf &shelf : std::as_const(removed.shelves)) {
        m_parts.alarms.shelve(shelf);
    }
    putBackAlarms(removed); // before its module may say that what one tells of is over
    m_actions.bringBack(removed.kennung, removed.attributes, removed.seen);
    m_parts.record.add(EventKind::Note, removed.kennung, m_parts.moment(),
                       tr("The removal was undone. Alarms that it had closed and that are open again: %1")
                           .arg(removed.alarms.size()),
                       ListRecord::By::Operator);
    m_removed.pop_front();
    return true;
}

void StationRemoval::putBackAlarms(const Removed &removed)
{
    for (const AlarmRow &alarm : removed.alarms) {
        m_parts.record.add(alarm);
    }
    m_parts.alarms.putBack(removed.alarms);
    m_watchAlarms.takeOver(removed.alarms);
}

/// All alarms at once: who shows them looks at all of them anew.
void StationRemoval::settle()
{
    m_parts.alarms.tellPutBack();
}

void StationRemoval::forget()
{
    for (const Removed &removed : m_removed) {
        m_parts.tree.drop(removed.node);
    }
    m_removed.clear();
}

} // namespace ktr
