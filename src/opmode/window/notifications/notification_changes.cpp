#include "opmode/window/notifications/notification_changes.h"

namespace ktr {

std::optional<NodeStore::Id> notificationId(const QModelIndex &node)
{
    const QModelIndex branch = node.parent();
    const QModelIndex station = branch.parent();
    if (!station.isValid() ||
        branch.data(StationTree::KindRole).value<NodeKind>() != NodeKind::Notifications) {
        return std::nullopt;
    }
    return StationTree::idOf(node); // rows are in any order
}

NotificationChanges::NotificationChanges(const StationTree &tree, Timers &timers, QObject *parent)
    : QObject(parent), m_tree(tree), m_delay(timers.create())
{
    connect(&tree, &StationTree::rowsInserted, this, &NotificationChanges::noteRows);
    connect(&tree, &StationTree::dataChanged, this, &NotificationChanges::noteChanged);
    connect(&tree, &StationTree::rowsRemoved, this, [this] {
        m_noted.hasOld = true;
        Q_EMIT removed();
    });
    connect(&tree, &StationTree::modelReset, this, &NotificationChanges::replaced);
}

NotificationChanges::~NotificationChanges() = default;

NotificationChanges::Batch NotificationChanges::take()
{
    m_delay->stop();
    m_firstNew = m_tree.nodes().end();
    return std::exchange(m_noted, {});
}

void NotificationChanges::postpone()
{
    if (!m_delay->isRunning()) {
        m_delay->start(longestDelay, [this] { Q_EMIT due(); });
    }
}

void NotificationChanges::noteRows(const QModelIndex &parent, int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const auto id = notificationId(m_tree.index(row, 0, parent));
        if (!id) {
            return;
        }
        m_noted.ids.insert(*id);
        m_noted.hasOld = m_noted.hasOld || *id < m_firstNew;
        postpone();
    }
}

void NotificationChanges::noteChanged(const QModelIndex &from, const QModelIndex &to, const QList<int> &roles)
{
    const bool isStation = !from.parent().isValid();
    if (isStation && (roles.isEmpty() || roles.contains(Qt::DisplayRole))) {
        Q_EMIT stationRenamed();
    } else {
        noteRows(from.parent(), from.row(), to.row());
    }
}

} // namespace ktr
