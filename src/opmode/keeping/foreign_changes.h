#pragma once

#include "opmode/tree/station_tree.h"

#include <set>

namespace ktr {

/// Makes changes of a journal that belongs to another list fit the list that is there, node by node. The list
/// may be the journal's own with a damaged byte, an older copy or a newer one. Its stations, their names and
/// attributes stay as it says; notifications, history and values are taken up. Where it is newer than the
/// journal it is followed, where that is not known an alarm stays red. Example: the journal has an alarm of
/// 10:00. When the list has it as acknowledged at 11:00 it stays so; acknowledged at 9:00, or nobody knows
/// when, it becomes red again.
class ForeignChanges
{
public:
    /// The tree is being loaded, and must outlive this.
    explicit ForeignChanges(const StationTree &tree) : m_tree(tree) {}

    /// To be told all changes before the first is made fit: the list may have a station under the name that
    /// it was given in the journal.
    void learnName(const NodeChange &change);
    /// What of a change is to be carried out before the next one is asked for; nothing when it does not fit.
    QList<NodeChange> fit(NodeChange change);
    /// What colours stations and their notifications nodes as their notifications are now.
    QList<NodeChange> colours() const;

private:
    using Id = NodeStore::Id;

    QList<NodeChange> fitNotification(const NodeChange &change, const NodeStore::Place &place);
    bool isRed(Id id) const { return m_tree.nodes().colour(id) == StationTree::alarmColour; }
    bool areValuesNewer(Id branch, qint64 moment);

    const StationTree &m_tree;
    StationKeys m_names;                           ///< of stations that the list has under other ones
    std::set<std::string, std::less<>> m_followed; ///< notifications whose colour is the journal's
    QSet<Id> m_branches;                           ///< of those
    QHash<Id, qint64> m_valuesOf;                  ///< when the list's values arrived
};

} // namespace ktr
