#pragma once

#include "opmode/tree/node_store.h"

namespace ktr {

/// How many notifications are red: under each station's notifications node, and in all.
class AlarmCounts
{
public:
    int total() const { return m_total; }
    int under(NodeStore::Id notifications) const { return m_under.value(notifications); }

    void add(NodeStore::Id notifications, int number)
    {
        m_under[notifications] += number;
        m_total += number;
    }
    /// The notifications node goes.
    void remove(NodeStore::Id notifications) { m_total -= m_under.take(notifications); }

private:
    QHash<NodeStore::Id, int> m_under;
    int m_total = 0;
};

} // namespace ktr
