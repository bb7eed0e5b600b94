#pragma once

#include "opmode/tree/station_tree.h"
#include "platform/timers.h"

#include <QSet>

#include <memory>

namespace ktr {

/// The number of a notification in the tree's store; nothing for a node of another kind.
std::optional<NodeStore::Id> notificationId(const QModelIndex &node);

/// Collects what changes about the notifications of the tree, for a list that takes it over a few times a
/// second.
class NotificationChanges : public QObject
{
    Q_OBJECT

public:
    using Id = NodeStore::Id;

    static constexpr Milliseconds longestDelay{100};

    NotificationChanges(const StationTree &tree, Timers &timers, QObject *parent = nullptr);
    ~NotificationChanges() override;

    struct Batch
    {
        QSet<Id> ids;        ///< new or changed
        bool hasOld = false; ///< what was there at the last take() changed, or is gone
    };
    /// What changed since the last time.
    Batch take();
    /// For a list that cannot take it over just now: it is due again in a moment.
    void postpone();

Q_SIGNALS:
    /// Something changed a moment ago.
    void due();
    /// Notifications are gone, and must not be drawn any more.
    void removed();
    void stationRenamed();
    /// All nodes are others.
    void replaced();

private:
    void noteRows(const QModelIndex &parent, int first, int last);
    void noteChanged(const QModelIndex &from, const QModelIndex &to, const QList<int> &roles);

    const StationTree &m_tree;
    Batch m_noted;
    Id m_firstNew = 0; ///< numbers grow: what was there at the last take() has lesser ones
    std::unique_ptr<OneShotTimer> m_delay;
};

} // namespace ktr
