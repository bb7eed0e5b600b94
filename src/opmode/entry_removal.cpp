#include "opmode/entry_removal.h"

#include "opmode/tree/notifications.h"

#include <QSet>

namespace ktr {

bool EntryRemoval::mayGo(NodeStore::Id notification) const
{
    const NodeStore &nodes = m_parts.tree.nodes();
    const NodeStore::Id station = nodes.parent(nodes.parent(notification));
    return !isAlarm(m_parts.tree, notification) &&
           m_parts.alarms.find(m_parts.record.number(textOf(nodes.name(station))),
                               splitNotification(textOf(nodes.text(notification))).message) == nullptr;
}

void EntryRemoval::remove(NodeStore::Id entry, ListRecord::By by)
{
    const NodeStore &nodes = m_parts.tree.nodes();
    ListRecord &record = m_parts.record;
    const NodeStore::Id branch = nodes.parent(entry);
    const QString kennung = textOf(nodes.name(nodes.parent(branch)));
    const QString name = textOf(nodes.name(entry));
    if (nodes.kind(entry) == NodeKind::Notification) {
        NotificationRow row =
            record.notification(record.number(kennung), name, m_parts.tree.arrivals().value(entry));
        row.listed = false;
        record.add(row);
    }
    record.add(EventKind::EntryRemoved, kennung, m_parts.moment(), textOf(nodes.name(branch)) + u'/' + name,
               by);
    m_parts.tree.remove(nodeIndex(m_parts.tree, entry));
}

int EntryRemoval::remove(const QModelIndexList &entries)
{
    const NodeStore &nodes = m_parts.tree.nodes();
    QList<NodeStore::Id> removed;
    QSet<NodeStore::Id> known;
    for (const QModelIndex &entry : entries) {
        const NodeStore::Id id = StationTree::idOf(entry);
        const NodeKind kind = nodes.kind(id);
        const bool isWanted = kind == NodeKind::HistoryEntry || (kind == NodeKind::Notification && mayGo(id));
        if (isWanted && !known.contains(id)) {
            known += id;
            removed += id;
        }
    }
    for (const NodeStore::Id id : std::as_const(removed)) {
        remove(id, ListRecord::By::Operator);
    }
    return static_cast<int>(removed.size());
}

} // namespace ktr
