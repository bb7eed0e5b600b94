#include "opmode/tree/acknowledgement.h"

namespace ktr {

namespace {

/// Gathers the changes of one acknowledgement.
class Acknowledgement
{
public:
    using Id = NodeStore::Id;

    Acknowledgement(const StationTree &tree, const QDateTime &now)
        : m_tree(tree), m_nodes(tree.nodes()), m_moment(now.toMSecsSinceEpoch())
    {}

    void add(Id id)
    {
        switch (m_nodes.kind(id)) {
        case NodeKind::Notification:
            addNotification(id);
            break;
        case NodeKind::Notifications:
            addAll(id);
            break;
        case NodeKind::Station:
            if (const auto branch = m_nodes.child(id, branches::notifications)) {
                addAll(*branch);
            }
            break;
        default:
            break;
        }
    }

    QList<NodeChange> changes()
    {
        for (const Id branch : m_branches) {
            for (const Id id : {branch, m_nodes.parent(branch)}) {
                const bool noneStays = m_tree.alarms().under(branch) == m_inBranch[branch];
                if (noneStays && isRed(id)) {
                    makeNormal(id);
                }
            }
        }
        return m_changes;
    }

private:
    bool isRed(Id id) const { return m_nodes.colour(id) == StationTree::alarmColour; }

    void addNotification(Id id)
    {
        if (isRed(id) && !m_added.contains(id)) {
            m_added.insert(id);
            ++countIn(m_nodes.parent(id));
            makeNormal(id);
        }
    }

    void addAll(Id branch)
    {
        countIn(branch);
        for (const Id id : m_nodes.children(branch)) {
            addNotification(id);
        }
    }

    int &countIn(Id branch)
    {
        if (!m_inBranch.contains(branch)) {
            m_branches.append(branch);
        }
        return m_inBranch[branch];
    }

    void makeNormal(Id id)
    {
        NodeChange change;
        change.what = NodeChange::What::Colour;
        m_nodes.getKey(id, change.key);
        change.colour = StationTree::normalColour;
        change.moment = m_moment;
        change.count = m_nodes.kind(id) == NodeKind::Notification ? m_tree.arrivals().value(id).count : 0;
        m_changes.append(change);
    }

    const StationTree &m_tree;
    const NodeStore &m_nodes;
    qint64 m_moment;
    QList<NodeChange> m_changes;
    QSet<Id> m_added;
    QHash<Id, int> m_inBranch; ///< how many of a notifications node are acknowledged
    QList<Id> m_branches;      ///< in the order in which they were met
};

} // namespace

QList<NodeChange> acknowledgementOf(const QModelIndexList &entries, const StationTree &tree,
                                    const QDateTime &now)
{
    Acknowledgement acknowledgement(tree, now);
    for (const QModelIndex &entry : entries) {
        acknowledgement.add(tree.idOf(entry));
    }
    return acknowledgement.changes();
}

} // namespace ktr
