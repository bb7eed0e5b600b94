#include "opmode/acknowledger.h"

#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/notifications.h"

#include <QSet>

#include <algorithm>

namespace ktr {

/// What is acknowledged, and the rows that tell of it.
struct Acknowledger::Deed
{
    qint64 at;
    QList<qint64> alarms;
    QSet<NodeStore::Id> entries{};
    QSet<qint64> concerned{}; ///< alarms that some of the entries belong to
    std::vector<RecordRow> rows{};
};

QModelIndexList Acknowledger::entriesOf(const AlarmRow &alarm) const
{
    QModelIndexList entries;
    const QString kennung = m_parts.record.kennung(alarm.station);
    for (const QString &number : alarm.recipients) {
        const QModelIndex entry = m_parts.tree.find(
            entryKey(kennung, branches::notifications, notificationText({number, alarm.text})));
        if (entry.isValid()) {
            entries += entry;
        }
    }
    return entries;
}

Status Acknowledger::acknowledgeAlarms(const QList<qint64> &alarms)
{
    QModelIndexList entries;
    QList<qint64> wanted;
    for (const qint64 id : alarms) {
        const AlarmRow *alarm = m_parts.alarms.alarm(id);
        if (alarm != nullptr && alarm->acknowledged == 0 && !wanted.contains(id)) {
            entries += entriesOf(*alarm);
            wanted += id;
        }
    }
    return acknowledge(entries, wanted);
}

Status Acknowledger::acknowledge(const QModelIndexList &entries, const QList<qint64> &alarms)
{
    const QDateTime now = m_parts.environment.now();
    const NodeStore &nodes = m_parts.tree.nodes();
    const QList<NodeChange> changes = acknowledgementOf(entries, m_parts.tree, now);
    Deed deed{now.toMSecsSinceEpoch(), alarms};
    for (const NodeChange &change : changes) {
        const std::optional<NodeStore::Id> id = nodes.find(change.key);
        if (id && nodes.kind(*id) == NodeKind::Notification) {
            addEntry(deed, *id);
        }
    }
    addAlarmsWithoutEntries(deed);
    for (const qint64 id : std::as_const(deed.alarms)) {
        addAlarm(deed, id);
    }
    if (m_parts.record.isOpen()) {
        if (Status kept = m_parts.record.writer().commit(std::move(deed.rows)); !kept) {
            return kept;
        }
    }
    m_parts.tree.carryOut(changes);
    m_parts.alarms.acknowledge(deed.alarms, deed.at, m_parts.record.operatorName());
    return Status::done();
}

void Acknowledger::addEntry(Deed &deed, NodeStore::Id entry) const
{
    const NodeStore &nodes = m_parts.tree.nodes();
    const QString name = textOf(nodes.name(entry));
    deed.entries.insert(entry);
    const qint64 station = m_parts.record.number(textOf(nodes.name(nodes.parent(nodes.parent(entry)))));
    const AlarmRow *alarm =
        m_parts.alarms.find(station, splitNotification(textOf(nodes.text(entry))).message);
    if (alarm != nullptr && alarm->acknowledged == 0) {
        deed.concerned.insert(alarm->id);
    }
    Arrival arrival = m_parts.tree.arrivals().value(entry);
    arrival.acknowledged = deed.at;
    deed.rows.emplace_back(m_parts.record.notification(station, name, arrival));
    addEvent(deed, station, name, alarm != nullptr ? alarm->id : 0);
}

/// Those of which no entry stays red.
void Acknowledger::addAlarmsWithoutEntries(Deed &deed) const
{
    const auto stays = [&](const QModelIndex &entry) {
        const NodeStore::Id node = StationTree::idOf(entry);
        return isAlarm(m_parts.tree, node) && !deed.entries.contains(node);
    };
    for (const qint64 id : std::as_const(deed.concerned)) {
        if (!deed.alarms.contains(id) && std::ranges::none_of(entriesOf(*m_parts.alarms.alarm(id)), stays)) {
            deed.alarms += id;
        }
    }
}

void Acknowledger::addAlarm(Deed &deed, qint64 id) const
{
    AlarmRow alarm = *m_parts.alarms.alarm(id);
    alarm.acknowledged = deed.at;
    alarm.acknowledgedBy = m_parts.record.operatorName();
    if (!deed.concerned.contains(id)) { // nothing in the tree tells of it
        addEvent(deed, alarm.station, alarm.text, id);
    }
    deed.rows.emplace_back(std::move(alarm));
}

void Acknowledger::addEvent(Deed &deed, qint64 station, const QString &text, qint64 alarm) const
{
    deed.rows.emplace_back(EventRow{m_parts.record.nextEvent(),
                                    deed.at,
                                    station,
                                    EventKind::Acknowledged,
                                    text,
                                    {},
                                    m_parts.record.operatorName(),
                                    alarm});
}

} // namespace ktr
