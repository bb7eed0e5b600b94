#include "opmode/station_removal.h"

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
    for (const auto &[id, alarm] : m_parts.alarms.standing()) {
        if (alarm.station == removed.number && alarm.kind == AlarmKind::Module) { // the others begin anew
            removed.alarms += alarm;
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
    m_actions.bringBack(removed.kennung, removed.attributes);
    for (const Shelf &shelf : std::as_const(removed.shelves)) {
        m_parts.alarms.shelve(shelf);
    }
    m_returned += removed.alarms;
    m_removed.pop_front();
    return true;
}

/// All alarms at once: who shows them looks at all of them anew.
void StationRemoval::settle()
{
    const QList<AlarmRow> alarms = std::exchange(m_returned, {});
    for (const AlarmRow &alarm : alarms) {
        m_parts.record.add(alarm);
    }
    if (!alarms.isEmpty()) {
        m_parts.alarms.takeOver(alarms);
    }
}

void StationRemoval::forget()
{
    for (const Removed &removed : m_removed) {
        m_parts.tree.drop(removed.node);
    }
    m_removed.clear();
}

} // namespace ktr
