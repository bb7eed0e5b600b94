#include "opmode/standing_alarms.h"

#include "opmode/acknowledger.h"
#include "opmode/tree/notifications.h"

#include <algorithm>

namespace ktr {

namespace {

void takeUpEntry(const ListParts &parts, NodeStore::Id id)
{
    const NodeStore &nodes = parts.tree.nodes();
    const NodeStore::Id station = nodes.parent(nodes.parent(id));
    const qint64 number = parts.record.number(textOf(nodes.name(station)));
    const NotificationText text = splitNotification(textOf(nodes.text(id)));
    const AlarmRow *known = parts.alarms.find(number, text.message);
    if (known == nullptr || known->acknowledged != 0 || !known->recipients.contains(text.number)) {
        const Arrival arrival = parts.tree.arrivals().value(id);
        parts.alarms.addNotification(number, text.number, text.message,
                                     arrival.raised != 0 ? arrival.raised : arrival.received);
    }
}

} // namespace

void takeUpAlarms(const ListParts &parts, const Acknowledger &acknowledger, const QList<AlarmRow> &standing,
                  const QList<Shelf> &shelves)
{
    parts.alarms.load(standing, shelves);
    eachNotification(parts.tree, [&parts](NodeStore::Id id) {
        if (isAlarm(parts.tree, id)) {
            takeUpEntry(parts, id);
        }
    });
    QList<qint64> acknowledged;
    for (const auto &[id, alarm] : parts.alarms.standing()) {
        if (alarm.kind == AlarmKind::Module && alarm.acknowledged == 0 && isAlarmText(alarm.text)) {
            const QModelIndexList entries = acknowledger.entriesOf(alarm);
            if (std::ranges::none_of(entries, [&parts](const QModelIndex &entry) {
                    return isAlarm(parts.tree, StationTree::idOf(entry));
                })) {
                acknowledged += id;
            }
        }
    }
    parts.alarms.acknowledge(acknowledged, parts.moment(), {});
}

} // namespace ktr
