#include "opmode/tree/station_tree.h"

namespace ktr {

QList<NodeChange> StationTree::acknowledgement(const QModelIndexList &entries, const QDateTime &now) const
{
    QList<NodeChange> changes;
    QSet<Id> taken;
    QHash<Id, int> ofBranch;
    QList<Id> branches; // in the order in which they were met
    const auto change = [&](Id id) {
        NodeChange result;
        result.what = NodeChange::What::Colour;
        m_nodes.getKey(id, result.key);
        result.colour = normalColour;
        result.moment = now.toMSecsSinceEpoch();
        result.count = m_nodes.kind(id) == NodeKind::Notification ? m_arrivals.value(id).count : 0;
        changes.append(result);
    };
    const auto meet = [&](Id branch) -> int & {
        const auto known = ofBranch.find(branch);
        if (known != ofBranch.end()) {
            return *known;
        }
        branches.append(branch);
        return *ofBranch.insert(branch, 0);
    };
    const auto acknowledge = [&](Id id) {
        if (m_nodes.colour(id) == alarmColour && !taken.contains(id)) {
            taken.insert(id);
            ++meet(m_nodes.parent(id));
            change(id);
        }
    };
    const auto acknowledgeAll = [&](Id branch) {
        meet(branch);
        for (const Id id : m_nodes.children(branch)) {
            acknowledge(id);
        }
    };
    for (const QModelIndex &entry : entries) {
        const Id id = idOf(entry);
        switch (m_nodes.kind(id)) {
        case NodeKind::Notification:
            acknowledge(id);
            break;
        case NodeKind::Notifications:
            acknowledgeAll(id);
            break;
        case NodeKind::Station:
            if (const auto branch = m_nodes.child(id, branches::notifications)) {
                acknowledgeAll(*branch);
            }
            break;
        default:
            break;
        }
    }
    for (const Id branch : branches) {
        for (const Id id : {branch, m_nodes.parent(branch)}) {
            if (m_alarms.value(branch) == ofBranch[branch] && m_nodes.colour(id) == alarmColour) {
                change(id);
            }
        }
    }
    return changes;
}

void StationTree::carryOut(const QList<NodeChange> &acknowledgement)
{
    QSet<Id> branches;
    m_gathering = true;
    for (const NodeChange &change : acknowledgement) {
        const std::optional<Id> id = m_nodes.find(change.key);
        if (!id) {
            continue;
        }
        if (m_nodes.kind(*id) == NodeKind::Notification) {
            if (m_arrivals.value(*id).count == change.count && colour(*id, change.colour)) {
                m_arrivals[*id].acknowledged = change.moment;
                showChanged(*id, {AcknowledgedRole});
                branches.insert(m_nodes.parent(*id));
            }
        } else {
            const auto branch = m_nodes.child(*id, branches::notifications);
            if (m_alarms.value(branch.value_or(*id)) == 0) {
                colour(*id, change.colour);
            }
        }
    }
    m_gathering = false;
    for (const Id branch : branches) {
        showAlarmCount(branch);
    }
    tellAlarmCount();
}

void StationTree::setColour(const QModelIndex &index, std::int32_t newColour)
{
    if (index.isValid()) {
        const Id id = idOf(index);
        if (colour(id, newColour)) {
            tell(NodeChange::What::Colour, id);
            if (m_nodes.kind(id) == NodeKind::Notification) {
                m_arrivals[id].acknowledged = 0;
                calm(m_nodes.parent(id));
            }
        }
    }
}

bool StationTree::colour(Id id, std::int32_t colour)
{
    const std::int32_t before = m_nodes.colour(id);
    if (before == colour) {
        return false;
    }
    m_nodes.setColour(id, colour);
    if (before == alarmColour || colour == alarmColour) {
        countAlarm(id, colour == alarmColour ? 1 : -1);
    }
    showChanged(id, {ColourRole});
    return true;
}

void StationTree::colourAndTell(Id id, std::int32_t newColour, qint64 now)
{
    if (colour(id, newColour)) {
        tell(NodeChange::What::Colour, id, now);
    }
}

void StationTree::calm(Id notifications)
{
    if (m_alarms.value(notifications) > 0) {
        return;
    }
    for (const Id id : {notifications, m_nodes.parent(notifications)}) {
        if (m_nodes.colour(id) == alarmColour) {
            colourAndTell(id, normalColour, 0);
        }
    }
}

void StationTree::countAlarm(Id id, int by)
{
    if (m_nodes.kind(id) != NodeKind::Notification) {
        return;
    }
    m_alarms[m_nodes.parent(id)] += by;
    m_alarmCount += by;
    if (!m_loading && !m_gathering) {
        showAlarmCount(m_nodes.parent(id));
        tellAlarmCount();
    }
}

void StationTree::showAlarmCount(Id notifications)
{
    showChanged(notifications, {AlarmCountRole});
    showChanged(m_nodes.parent(notifications), {AlarmCountRole});
}

void StationTree::tellAlarmCount()
{
    if (m_toldAlarmCount != m_alarmCount) {
        m_toldAlarmCount = m_alarmCount;
        Q_EMIT alarmCountChanged();
    }
}

} // namespace ktr
